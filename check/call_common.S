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
