// Binding on ELF: a constructor, run by the dynamic loader before any function of the library can be called,
// or at the start of a program that has the static library in it.
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include "frame/dispatch.h"

namespace zpp {
namespace {

void writeLine(const char* text) {
    // Nothing can be done about a failed write; the process ends either way.
    if (write(STDERR_FILENO, text, strlen(text)) < 0 || write(STDERR_FILENO, "\n", 1) < 0) return;
}

// Among the first constructors, so that those of a program linked with the library's objects may call it.
[[gnu::constructor(101)]] void attach() {
    // As the dynamic loader ends a process that lacks a symbol.
    if (!bindLibrary()) _exit(127);
}

}  // namespace

void protectSlots() { mprotect(zpp_slots, slotsBytes(), PROT_READ); }

// Not from the environment of a program that runs with more rights than its user.
const char* readIsaVariable(IsaVariable&) { return secure_getenv("ZPP_ISA"); }

void reportRefusal() {
    writeLine(kRefusalCaption);
    writeLine(kRefusalText);
}

}  // namespace zpp
