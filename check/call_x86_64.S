/* zpp_watched_call(CallBlock*): calls a function on the stack and with the registers that the block gives, and
 * notes the state in which it comes back. After the call nothing is taken for granted but rip. */
#include "call_common.S"

    .bss
    .p2align 3
block:
    .zero 8

    .text
beginFunction zpp_watched_call
    pushq %rbx
    pushq %rbp
    pushq %r12
    pushq %r13
    pushq %r14
    pushq %r15
    movq %rdi, block(%rip)
    movq %rsp, CALL_OWN_STACK(%rdi)
    movq CALL_STACK(%rdi), %rsp
    movq CALL_TARGET(%rdi), %r11
    testb $2, CALL_WATCH(%rdi)
    jz 1f
    vzeroupper
1:
    .irp i, 0, 1, 2, 3, 4, 5, 6, 7
    movq CALL_VECTORS + 8 * \i(%rdi), %xmm\i
    .endr
    loadSentinels rbx, rbp, r12, r13, r14, r15
    movq CALL_INTEGERS + 8(%rdi), %rsi
    movq CALL_INTEGERS + 16(%rdi), %rdx
    movq CALL_INTEGERS + 24(%rdi), %rcx
    movq CALL_INTEGERS + 32(%rdi), %r8
    movq CALL_INTEGERS + 40(%rdi), %r9
    movq CALL_INTEGERS(%rdi), %rdi
    call *%r11

    .globl zpp_abandoned_call
zpp_abandoned_call:
    noteReturn 3f, rbx, rbp, r12, r13, r14, r15
    noteState 3f
3:
    popq %r15
    popq %r14
    popq %r13
    popq %r12
    popq %rbp
    popq %rbx
    ret
endFunction zpp_watched_call
