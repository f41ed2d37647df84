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
    movq $CALL_SENTINEL + 0, %rbx
    movq $CALL_SENTINEL + 1, %rbp
    movq $CALL_SENTINEL + 2, %r12
    movq $CALL_SENTINEL + 3, %r13
    movq $CALL_SENTINEL + 4, %r14
    movq $CALL_SENTINEL + 5, %r15
    movq CALL_INTEGERS + 8(%rdi), %rsi
    movq CALL_INTEGERS + 16(%rdi), %rdx
    movq CALL_INTEGERS + 24(%rdi), %rcx
    movq CALL_INTEGERS + 32(%rdi), %r8
    movq CALL_INTEGERS + 40(%rdi), %r9
    movq CALL_INTEGERS(%rdi), %rdi
    call *%r11

    .globl zpp_abandoned_call
zpp_abandoned_call:
    movq block(%rip), %r11
    movq %rax, CALL_RESULT(%r11)
    movq %rsp, CALL_STACK_AFTER(%r11)
    movq CALL_OWN_STACK(%r11), %rsp
    testb $1, CALL_WATCH(%r11)
    jz 3f
    pushfq
    popq CALL_FLAGS(%r11)
    cld
    movq %rbx, CALL_PRESERVED(%r11)
    movq %rbp, CALL_PRESERVED + 8(%r11)
    movq %r12, CALL_PRESERVED + 16(%r11)
    movq %r13, CALL_PRESERVED + 24(%r11)
    movq %r14, CALL_PRESERVED + 32(%r11)
    movq %r15, CALL_PRESERVED + 40(%r11)
    stmxcsr CALL_MXCSR(%r11)
    fnstenv CALL_X87(%r11)
    testb $2, CALL_WATCH(%r11)
    jz 3f
    noteUppers %r11, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
3:
    popq %r15
    popq %r14
    popq %r13
    popq %r12
    popq %rbp
    popq %rbx
    ret
endFunction zpp_watched_call
