/* zpp_watched_call(CallBlock*): as in call_x86_64.S. All arguments are in memory. */
#include "call_common.S"

    .bss
    .p2align 2
block:
    .zero 4

/* \register = the address of the block. */
.macro loadBlock register
    call 7f
7:  popl \register
    movl (block - 7b)(\register), \register
.endm

    .text
beginFunction SYMBOL(zpp_watched_call)
    pushl %ebx
    pushl %ebp
    pushl %esi
    pushl %edi
    call 1f
1:  popl %eax
    movl 20(%esp), %ecx
    movl %ecx, (block - 1b)(%eax)
    movl %esp, CALL_OWN_STACK(%ecx)
    movl CALL_STACK(%ecx), %esp
    movl CALL_TARGET(%ecx), %eax
    testb $2, CALL_WATCH(%ecx)
    jz 2f
    vzeroupper
2:  movl $CALL_SENTINEL + 0, %ebx
    movl $CALL_SENTINEL + 1, %ebp
    movl $CALL_SENTINEL + 2, %esi
    movl $CALL_SENTINEL + 3, %edi
    call *%eax

    .globl SYMBOL(zpp_abandoned_call)
SYMBOL(zpp_abandoned_call):
    loadBlock %ecx
    movl %esp, CALL_STACK_AFTER(%ecx)
    movl %eax, CALL_RESULT(%ecx)
    movl %edx, CALL_RESULT + 4(%ecx)
    movl CALL_OWN_STACK(%ecx), %esp
    testb $1, CALL_WATCH(%ecx)
    jz 3f
    pushfl
    popl CALL_FLAGS(%ecx)
    cld
    movl %ebx, CALL_PRESERVED(%ecx)
    movl %ebp, CALL_PRESERVED + 8(%ecx)
    movl %esi, CALL_PRESERVED + 16(%ecx)
    movl %edi, CALL_PRESERVED + 24(%ecx)
    stmxcsr CALL_MXCSR(%ecx)
    fnstenv CALL_X87(%ecx)
    testb $2, CALL_WATCH(%ecx)
    jz 3f
    noteUppers %ecx, 1, 2, 3, 4, 5, 6, 7
3:  popl %edi
    popl %esi
    popl %ebp
    popl %ebx
    ret
endFunction SYMBOL(zpp_watched_call)
