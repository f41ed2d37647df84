/* Loads a shared library by name, on every system. */
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <stdio.h>
#include <string.h>

#ifdef _WIN32

typedef HMODULE Handle;

static Handle openLibrary(const char* path) { return LoadLibraryA(path); }
static int closeLibrary(Handle library) { return FreeLibrary(library); }
static int isLoaded(const char* path) { return GetModuleHandleA(path) != NULL; }

static void lookUp(Handle library, const char* name, void* function) {
    const FARPROC found = GetProcAddress(library, name);
    memcpy(function, &found, sizeof found);
}

#else

typedef void* Handle;

static Handle openLibrary(const char* path) {
    const Handle library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) printf("%s\n", dlerror());
    return library;
}
static int closeLibrary(Handle library) { return dlclose(library) == 0; }
static int isLoaded(const char* path) { return dlopen(path, RTLD_LAZY | RTLD_NOLOAD) != NULL; }

static void lookUp(Handle library, const char* name, void* function) {
    void* found = dlsym(library, name);
    memcpy(function, &found, sizeof found);
}

#endif
