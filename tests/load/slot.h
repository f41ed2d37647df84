/* Where an entry stub leads, read from its code. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

/* The slot that a stub jumps through; null for code that is no stub. */
static uintptr_t* slotOf(uintptr_t code) {
    const unsigned char* at = (const unsigned char*)code;
    int32_t offset;
#ifdef __x86_64__
    const uintptr_t mark = memcmp(at, "\xF3\x0F\x1E\xFA", 4) == 0 ? 4 : 0; /* endbr64 */
    if (at[mark] != 0xFF || at[mark + 1] != 0x25) return NULL;             /* jmp *offset(%rip) */
    memcpy(&offset, at + mark + 2, sizeof offset);
    return (uintptr_t*)(code + mark + 6 + (uintptr_t)(intptr_t)offset);
#elif defined(__ELF__)
    if (at[0] != 0xE8 || at[5] != 0xFF || at[6] != 0xA1) return NULL; /* call; jmp *offset(%ecx) */
    memcpy(&offset, at + 7, sizeof offset);
    return (uintptr_t*)(code + 5 + (uintptr_t)offset);
#else
    if (at[0] != 0xFF || at[1] != 0x25) return NULL; /* jmp *offset */
    memcpy(&offset, at + 2, sizeof offset);
    return (uintptr_t*)offset;
#endif
}

/* Prints how far behind its stub a function lies: the library's symbols tell of which ISA build it is. On
 * Windows a linked program has a jump of its own before the stub. */
static void printLead(const char* name, uintptr_t stub) {
    uintptr_t* slot = slotOf(stub);
    while (slot != NULL && slotOf(*slot) != NULL) {
        stub = *slot;
        slot = slotOf(stub);
    }
    printf("%s leads %ld bytes on\n", name, slot == NULL ? 0L : (long)((intptr_t)*slot - (intptr_t)stub));
}
