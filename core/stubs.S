/* One entry stub and one slot per export, made from the public headers. A stub is 16 bytes and jumps through its
 * slot; the slots start out null and are filled once, by the binding at load. */
#define ZPP_LIST(result, name, arguments) stub name
#define ZPP_LIST_SHARED ZPP_LIST
#define ZPP_LIST_COLUMN ZPP_LIST

#ifdef __x86_64__
#define POINTER 8
.macro forward name
    jmp *zpp_slot_\name(%rip)
.endm
#else
#define POINTER 4
/* ecx is free at the entry of a cdecl function. */
.macro forward name
    call zpp_program_counter
1:  jmp *(zpp_slot_\name - 1b)(%ecx)
.endm
#endif

.macro stub name
    .text
    .p2align 4
    .globl \name
    .type \name, @function
\name:
    forward \name
    .size \name, . - \name
    .bss
zpp_slot_\name:
    .zero POINTER
.endm

    .bss
    .p2align 6
    .globl zpp_slots
    .hidden zpp_slots
    .type zpp_slots, @object
zpp_slots:

#include "zpp.h"

    .bss
    .size zpp_slots, . - zpp_slots

#ifndef __x86_64__
    .text
    .type zpp_program_counter, @function
zpp_program_counter:
    movl (%esp), %ecx
    ret
    .size zpp_program_counter, . - zpp_program_counter
#endif

    .section .note.GNU-stack, "", @progbits
