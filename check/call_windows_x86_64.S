/* zpp_watched_call(CallBlock*): as in call_x86_64.S, by the convention of 64-bit Windows: the first four arguments in
 * registers, with room for them in memory, where they are found; xmm6 to xmm15 are the caller's. */
#include "call_common.S"

    .bss
    .p2align 3
block:
    .zero 8

    .section .rdata, "dr"
    .p2align 4
sentinels:
    .irp i, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27
    .quad CALL_SENTINEL + \i
    .endr

/* Applies a macro to each of xmm6 to xmm15. */
.macro forVectors action
    .irp i, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
    \action \i
    .endr
.endm
.macro saveOwn i
    movaps %xmm\i, 16 * (\i - 6)(%rsp)
.endm
.macro restoreOwn i
    movaps 16 * (\i - 6)(%rsp), %xmm\i
.endm
.macro loadVectorSentinel i
    movaps sentinels + 16 * (\i - 6)(%rip), %xmm\i
.endm
.macro storePreserved i
    movups %xmm\i, CALL_PRESERVED + 64 + 16 * (\i - 6)(%r11)
.endm

    .text
beginFunction zpp_watched_call
    .irp register, rbx, rbp, rdi, rsi, r12, r13, r14, r15
    pushq %\register
    .endr
    subq $168, %rsp
    forVectors saveOwn
    movq %rcx, block(%rip)
    movq %rsp, CALL_OWN_STACK(%rcx)
    movq CALL_STACK(%rcx), %rsp
    movq CALL_TARGET(%rcx), %r11
    testb $2, CALL_WATCH(%rcx)
    jz 1f
    vzeroupper
1:
    forVectors loadVectorSentinel
    loadSentinels rbx, rbp, rdi, rsi, r12, r13, r14, r15
    .irp i, 0, 1, 2, 3
    movq 8 * \i(%rsp), %xmm\i
    .endr
    movq (%rsp), %rcx
    movq 8(%rsp), %rdx
    movq 16(%rsp), %r8
    movq 24(%rsp), %r9
    call *%r11

    .globl zpp_abandoned_call
zpp_abandoned_call:
    noteReturn 3f, rbx, rbp, rdi, rsi, r12, r13, r14, r15
    forVectors storePreserved
    noteState 3f
3:
    forVectors restoreOwn
    addq $168, %rsp
    .irp register, r15, r14, r13, r12, rsi, rdi, rbp, rbx
    popq %\register
    .endr
    ret
endFunction zpp_watched_call
