/* Loads a shared library by name, on every system; expectFault ends the program at a fault, and says so. */
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <signal.h>
#include <sys/auxv.h>
#endif

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const void* expectedPlace;

static void endAtFault(const void* place) {
    printf("fault %s\n", place == expectedPlace ? "at the slot" : "elsewhere");
    fflush(stdout);
    _Exit(place == expectedPlace ? 0 : 1);
}

#ifdef _WIN32

typedef HMODULE Handle;

static Handle openLibrary(const char* path) { return LoadLibraryA(path); }
static int closeLibrary(Handle library) { return FreeLibrary(library); }
static int isLoaded(const char* path) { return GetModuleHandleA(path) != NULL; }

static void lookUp(Handle library, const char* name, void* function) {
    const FARPROC found = GetProcAddress(library, name);
    memcpy(function, &found, sizeof found);
}

static LONG WINAPI onFault(EXCEPTION_POINTERS* fault) {
    const EXCEPTION_RECORD* record = fault->ExceptionRecord;
    if (record->ExceptionCode == EXCEPTION_ACCESS_VIOLATION)
        endAtFault((const void*)record->ExceptionInformation[1]);
    return EXCEPTION_CONTINUE_SEARCH;
}

static void expectFault(const void* place) {
    expectedPlace = place;
    SetUnhandledExceptionFilter(onFault);
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

static void onFault(int signal, siginfo_t* fault, void* context) {
    (void)signal;
    (void)context;
    endAtFault(fault->si_addr);
}

static void expectFault(const void* place) {
    struct sigaction action = {0};
    expectedPlace = place;
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSEGV, &action, NULL);
}

#endif
