/* One entry stub and one slot per export, made from the public headers. A stub is 16 bytes and jumps through its
 * slot; the slots start out null and are filled once, by the binding at load, which then makes them read-only: they
 * have pages of their own. */
#include <cet.h> /* _CET_ENDBR, nothing where the compiler marks no targets of jumps, and the note of it */

#define PAGE 12 /* of 2^12 bytes */
#define PASTE(a, b) a##b
#define PASTED(a, b) PASTE(a, b)
/* In 32-bit Windows objects the names of C have an underscore in front. */
#define SYMBOL(name) PASTED(__USER_LABEL_PREFIX__, name)

#define ZPP_LIST(result, name, arguments) stub name, SYMBOL(name)
#define ZPP_LIST_SHARED ZPP_LIST
#define ZPP_LIST_COLUMN ZPP_LIST

#ifdef __x86_64__
#define POINTER 8
.macro forward name
    _CET_ENDBR
    jmp *zpp_slot_\name(%rip)
.endm
#else
#define POINTER 4
.macro forward name
#ifdef __ELF__
    /* ecx is free at the entry of a cdecl function. */
    call zpp_program_counter
1:  jmp *(zpp_slot_\name - 1b)(%ecx)
#else
    jmp *zpp_slot_\name
#endif
.endm
#endif

#ifdef __ELF__
.macro export name, symbol
    .type \symbol, @function
    .size \symbol, . - \symbol
.endm
#elif defined ZPP_STATIC
.macro export name, symbol
.endm
#else
/* The linker reads the names to export, undecorated, in this section. */
.macro export name, symbol
    .def \symbol
    .scl 2
    .type 32
    .endef
    .section .drectve, "yn"
    .ascii " -export:\name"
.endm
#endif

.macro stub name, symbol
    .text
    .p2align 4
    .globl \symbol
\symbol:
    forward \name
    export \name, \symbol
    .bss
zpp_slot_\name:
    .zero POINTER
.endm

    .bss
    .p2align PAGE
    .globl SYMBOL(zpp_slots)
SYMBOL(zpp_slots):

#include "zpp.h"

    .bss
    .p2align PAGE
    .globl SYMBOL(zpp_slots_end)
SYMBOL(zpp_slots_end):

#ifdef __ELF__
    .hidden zpp_slots
    .hidden zpp_slots_end
    .type zpp_slots, @object
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
#endif
