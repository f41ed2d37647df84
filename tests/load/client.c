/* A program that loads the library named by its argument, unloads it, and loads it again. */
#include <dlfcn.h>

#include "exercise.h"

static int visit(const char* path, int mode) {
    Library library;
    void* handle = dlopen(path, mode);
    int failed;
    if (handle == NULL) {
        printf("%s\n", dlerror());
        return 1;
    }
#define LOOK_UP(name)                                \
    *(void**)(&library.name) = dlsym(handle, #name); \
    expect(library.name != NULL, "dlsym of " #name, 0);
    ZPP_USED(LOOK_UP)
    failed = wrongAnswers != 0 || exercise(&library);
    expect(dlclose(handle) == 0 && dlopen(path, RTLD_LAZY | RTLD_NOLOAD) == NULL, "unloaded", 0);
    return failed || wrongAnswers != 0;
}

int main(int argc, char** argv) {
    return argc != 2 || visit(argv[1], RTLD_NOW | RTLD_LOCAL) || visit(argv[1], RTLD_LAZY | RTLD_GLOBAL);
}
