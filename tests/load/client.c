/* A program that loads the library named by its argument, unloads it, and loads it again, elsewhere. */
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

int main(int argc, char** argv) {
    Handle first, second;
    if (argc != 2) return 2;
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
