/* What the assembled calls share. */
#include "call.h"

#define CALL_PASTE(a, b) a##b
#define CALL_PASTED(a, b) CALL_PASTE(a, b)
#define SYMBOL(name) CALL_PASTED(__USER_LABEL_PREFIX__, name)

/* Notes in the block the upper halves of vector register 0 and of the others that are named, and cleans all. */
.macro noteUppers block, others:vararg
    .irp register, \others
    vorps %ymm\register, %ymm0, %ymm0
    .endr
    vextractf128 $1, %ymm0, CALL_UPPERS(\block)
    vzeroupper
.endm

#ifdef __x86_64__
/* Each of the callee-saved registers that are named holds its sentinel. */
.macro loadSentinels registers:vararg
    .set word, 0
    .irp register, \registers
    movq $CALL_SENTINEL + word, %\register
    .set word, word + 1
    .endr
.endm

/* Behind the call: notes result and stack, goes back to the own one, which r11 then tells, and unless the call is to be
 * watched to \away; notes the flags and the callee-saved registers that are named. */
.macro noteReturn away, registers:vararg
    movq block(%rip), %r11
    movq %rax, CALL_RESULT(%r11)
    movq %rsp, CALL_STACK_AFTER(%r11)
    movq CALL_OWN_STACK(%r11), %rsp
    testb $1, CALL_WATCH(%r11)
    jz \away
    pushfq
    popq CALL_FLAGS(%r11)
    cld
    .set word, 0
    .irp register, \registers
    movq %\register, CALL_PRESERVED + 8 * word(%r11)
    .set word, word + 1
    .endr
.endm

/* The control words, and the upper halves where they are watched, else to \away. */
.macro noteState away
    stmxcsr CALL_MXCSR(%r11)
    fnstenv CALL_X87(%r11)
    testb $2, CALL_WATCH(%r11)
    jz \away
    noteUppers %r11, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
.endm
#endif

#ifdef __ELF__
.macro beginFunction symbol
    .globl \symbol
    .type \symbol, @function
\symbol:
.endm
.macro endFunction symbol
    .size \symbol, . - \symbol
    .section .note.GNU-stack, "", @progbits
.endm
#else
.macro beginFunction symbol
    .globl \symbol
\symbol:
.endm
.macro endFunction symbol
.endm
#endif
