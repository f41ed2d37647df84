// Binding on Windows: the loader calls DllMain, one call at a time, before any function of the library can be
// called; the static library is bound by a constructor.
#include <windows.h>

#include "frame/dispatch.h"

namespace zpp {

void protectSlots() {
    DWORD before;
    VirtualProtect(zpp_slots, slotsBytes(), PAGE_READONLY, &before);
}

const char* readIsaVariable(IsaVariable& room) {
    const DWORD length = GetEnvironmentVariableA("ZPP_ISA", room, sizeof room);
    return length == 0 || length >= sizeof room ? nullptr : room;
}

void reportRefusal() {
    MessageBeep(MB_ICONHAND);
    MessageBoxA(nullptr, kRefusalText, kRefusalCaption, MB_OK | MB_ICONHAND);
}

}  // namespace zpp

#ifdef ZPP_STATIC

// A program, or a DLL with a DllMain of its own, has the static library in it: among its first constructors.
[[gnu::constructor(101)]] static void attach() {
    if (!zpp::bindLibrary()) ExitProcess(127);
}

#else

// A load is refused by the answer FALSE. Threads that come and go, and the end of the process, change
// nothing.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    return reason != DLL_PROCESS_ATTACH || zpp::bindLibrary();
}

#endif
