/* A program that loads the library named by its argument, unloads it, and loads it again, elsewhere. With the
 * name of an export behind it, the program writes into the slot of that. */
#include "exercise.h"
#include "library.h"

static Handle visit(const char* path) {
    Library functions;
    const Handle library = openLibrary(path);
    expect(library != NULL, "loaded", 0);
    if (library == NULL) return NULL;
#define LOOK_UP(name)                        \
    lookUp(library, #name, &functions.name); \
    expect(functions.name != NULL, "look-up of " #name, 0);
    ZPP_USED(LOOK_UP)
    if (wrongAnswers == 0) exercise(&functions);
    expect(closeLibrary(library) && !isLoaded(path), "unloaded", 0);
    return library;
}

static int writeSlot(const char* path, const char* name) {
    const Handle library = openLibrary(path);
    uintptr_t stub = 0, *slot;
    lookUp(library, name, &stub);
    slot = stub != 0 ? slotOf(stub) : NULL;
    if (slot == NULL) return 2;
    expectFault(slot);
    *(volatile uintptr_t*)slot = *slot;
    printf("the slot of %s was written\n", name);
    return 1;
}

int main(int argc, char** argv) {
    Handle first, second;
    if (argc == 3) return writeSlot(argv[1], argv[2]);
    if (argc != 2) return 2;
#ifdef __linux__
    if (getauxval(AT_SECURE) != 0) printf("more rights than the user\n");
#endif
    first = visit(argv[1]);
#ifdef _WIN32
    /* Where it has been there is something else now. */
    expect(VirtualAlloc((void*)first, 1, MEM_RESERVE, PAGE_NOACCESS) != NULL, "its place taken", 0);
#endif
    second = visit(argv[1]);
#ifdef _WIN32
    expect(second != first, "loaded elsewhere", 0);
#endif
    return wrongAnswers != 0 || first == NULL || second == NULL;
}
