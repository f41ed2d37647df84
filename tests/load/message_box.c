/* Loads a library that refuses to be loaded: prints the message box that it shows, presses OK, and tells what
 * LoadLibrary says. */
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

static BOOL CALLBACK printChild(HWND child, LPARAM unused) {
    char kind[64] = "", text[256] = "";
    (void)unused;
    GetClassNameA(child, kind, sizeof kind);
    GetWindowTextA(child, text, sizeof text);
    if (text[0] != 0) printf("%s [%s]\n", kind, text);
    return TRUE;
}

static HWND findBox(void) { return FindWindowA("#32770", NULL); /* the class of dialogs */ }

/* A thread, since the box holds up the one that loads; at work before that, since a loading library keeps
 * others from starting. */
static DWORD WINAPI answer(LPVOID ready) {
    char caption[256] = "";
    HWND box = findBox();
    int tries;
    SetEvent((HANDLE)ready);
    for (tries = 0; tries < 300 && box == NULL; ++tries) {
        Sleep(100);
        box = findBox();
    }
    GetWindowTextA(box, caption, sizeof caption);
    if (box == NULL) {
        printf("there is no message box\n");
        exit(1);
    }
    printf("caption [%s] owner %d\n", caption, GetWindow(box, GW_OWNER) != NULL);
    EnumChildWindows(box, printChild, 0);
    PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
    return 0;
}

int main(int argc, char** argv) {
    const HANDLE ready = CreateEventA(NULL, TRUE, FALSE, NULL);
    HANDLE thread;
    HMODULE library;
    if (argc != 2) return 2;
    thread = CreateThread(NULL, 0, answer, ready, 0, NULL);
    WaitForSingleObject(ready, INFINITE);
    library = LoadLibraryA(argv[1]);
    printf("LoadLibrary %s, error %lu\n", library == NULL ? "fails" : "succeeds", GetLastError());
    WaitForSingleObject(thread, INFINITE);
    return 0;
}
