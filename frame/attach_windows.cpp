// Binding on Windows: the loader calls DllMain, one call at a time, before any function of the library can be
// called.
#include <windows.h>

#include "frame/dispatch.h"

namespace zpp {

void reportRefusal() {
    MessageBeep(MB_ICONHAND);
    MessageBoxA(nullptr, kRefusalText, kRefusalCaption, MB_OK | MB_ICONHAND);
}

}  // namespace zpp

// A load is refused by the answer FALSE. Threads that come and go, and the end of the process, change
// nothing.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    return reason != DLL_PROCESS_ATTACH || zpp::bindLibrary();
}
