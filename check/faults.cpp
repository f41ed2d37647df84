#include "check/faults.h"

#include <cstdint>
#include <initializer_list>

#ifdef _WIN32
#include <windows.h>
#else
#include <signal.h>
#include <string.h>
#include <ucontext.h>
#endif

extern "C" {
void zpp_watched_call(void* block);
// Where the call returns to: it finds its own way back from there, whatever the registers hold.
extern char zpp_abandoned_call[];
}

namespace zpp::check {
namespace {

volatile bool calling = false;
volatile Fault fault;

// Whether a fault is one of a watched call, which then goes on at its return.
template <class Register>
bool abandonCall(const char* what, void* address, Register& instructionPointer) {
    if (!calling) return false;
    fault.what = what;
    fault.address = address;
    instructionPointer = static_cast<Register>(reinterpret_cast<std::uintptr_t>(zpp_abandoned_call));
    return true;
}

#ifdef _WIN32

const char* nameOf(DWORD exception) {
    switch (exception) {
        case EXCEPTION_ACCESS_VIOLATION:
            return "an access violation";
        case EXCEPTION_ILLEGAL_INSTRUCTION:
            return "an illegal instruction";
        default:
            return "an exception";
    }
}

LONG CALLBACK onFault(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    void* address =
        record.NumberParameters < 2 ? nullptr : reinterpret_cast<void*>(record.ExceptionInformation[1]);
#ifdef __x86_64__
    auto& instructionPointer = pointers->ContextRecord->Rip;
#else
    auto& instructionPointer = pointers->ContextRecord->Eip;
#endif
    return abandonCall(nameOf(record.ExceptionCode), address, instructionPointer)
               ? EXCEPTION_CONTINUE_EXECUTION
               : EXCEPTION_CONTINUE_SEARCH;
}

#else

#ifdef __x86_64__
constexpr int kInstructionPointer = REG_RIP;
#else
constexpr int kInstructionPointer = REG_EIP;
#endif

void onFault(int signal, siginfo_t* info, void* context) {
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    if (!abandonCall(strsignal(signal), info->si_addr, registers[kInstructionPointer]))
        ::signal(signal, SIG_DFL);  // and the instruction faults again
}

#endif

}  // namespace

void catchFaults() {
#ifdef _WIN32
    AddVectoredExceptionHandler(1, onFault);
#else
    static unsigned char alternate[64 << 10];
    stack_t alternateStack = {};
    alternateStack.ss_sp = alternate;
    alternateStack.ss_size = sizeof alternate;
    sigaltstack(&alternateStack, nullptr);
    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE}) sigaction(signal, &action, nullptr);
#endif
}

Fault callCatching(void* block) {
    fault.what = nullptr;
    fault.address = nullptr;
    calling = true;
    zpp_watched_call(block);
    calling = false;
    return {fault.what, fault.address};
}

}  // namespace zpp::check
