#include "check/watch.h"

#include <cpuid.h>
#include <setjmp.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include "tests/support/guarded.h"

extern "C" void zpp_watched_call(void* block);

namespace zpp::check {
namespace {

#ifdef __x86_64__
constexpr const char* kPreserved[] = {"rbx", "rbp", "r12", "r13", "r14", "r15"};
constexpr unsigned kStackAlignment = 16;
#else
constexpr const char* kPreserved[] = {"ebx", "ebp", "esi", "edi"};
constexpr unsigned kStackAlignment = 4;  // callers of old compilers keep no more
#endif

constexpr std::size_t kStackBytes = 1 << 20;
constexpr std::size_t kCanaryBytes = 256;  // above the arguments, where the frame of the caller would be
constexpr unsigned char kCanary = 0xC7;
constexpr std::uint32_t kMxcsr = 0x1F80, kMxcsrControl = 0xFFC0;
constexpr std::uint64_t kDirectionFlag = 0x400;
constexpr std::uint64_t kUpperHalves = 0x44;  // of XINUSE: AVX and the upper halves of AVX-512

test::Guarded<unsigned char>& stack() {
    static test::Guarded<unsigned char> bytes(kStackBytes, test::Edge::kEnd);
    return bytes;
}

sigjmp_buf beforeCall;
volatile sig_atomic_t calling = 0;
void* volatile lastFault;

void onFault(int signal, siginfo_t* info, void*) {
    if (!calling) {
        ::signal(signal, SIG_DFL);
        return;  // and the instruction faults again
    }
    lastFault = info->si_addr;
    siglongjmp(beforeCall, signal);
}

template <class T>
T read(const unsigned char* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

void setControl(std::uint16_t x87, std::uint32_t mxcsr) {
    __asm__ volatile("cld; fninit; fldcw %0; ldmxcsr %1" : : "m"(x87), "m"(mxcsr) : "memory");
}

// Not compiled for AVX, or the compiler would clean up.
int dirtyVectors() {
    __asm__ volatile("vcmpps $15, %%ymm0, %%ymm0, %%ymm0" : : : "xmm0");
    return 0;
}
int doNothing() { return 0; }

}  // namespace

bool watchesVectors() {
    static const bool watches = [] {
        std::uint32_t a = 0, b = 0, c = 0, d = 0;
        constexpr std::uint32_t kXgetbvOfOne = 4;
        if (!supportsIsa(kAvx2Isa) || !__get_cpuid_count(13, 1, &a, &b, &c, &d) || (a & kXgetbvOfOne) == 0)
            return false;
        // Processors may report more than is in use: believed only where it tells clean from dirty.
        const auto used = [](int (*function)()) {
            alignas(8) unsigned char block[CALL_OWN_STACK + 8] = {};
            const auto target = reinterpret_cast<std::uintptr_t>(function);
            const auto top = reinterpret_cast<std::uintptr_t>(stack().end() - kCanaryBytes);
            std::memcpy(block + CALL_TARGET, &target, sizeof target);
            std::memcpy(block + CALL_STACK, &top, sizeof top);
            block[CALL_WATCH] = 3;
            zpp_watched_call(block);
            setControl(0x37F, kMxcsr);
            return (read<std::uint64_t>(block + CALL_VECTORS_USED) & kUpperHalves) != 0;
        };
        return used(dirtyVectors) && !used(doNothing);
    }();
    return watches;
}

void catchFaults() {
    static unsigned char alternate[64 << 10];
    stack_t alternateStack = {};
    alternateStack.ss_sp = alternate;
    alternateStack.ss_size = sizeof alternate;
    sigaltstack(&alternateStack, nullptr);
    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE}) sigaction(signal, &action, nullptr);
}

WatchedCall::WatchedCall(Entry target, unsigned phase)
    // Both precisions that programs run the x87 unit with.
    : phase_(phase), x87Control_(phase % 2 == 0 ? 0x37F : 0x27F) {
    std::memcpy(block_ + CALL_TARGET, &target, sizeof target);
}

void WatchedCall::passWord(std::uintptr_t word) {
#ifdef __x86_64__
    if (integers_ < 6) {
        std::memcpy(block_ + CALL_INTEGERS + 8 * integers_++, &word, sizeof word);
        return;
    }
#endif
    words_.push_back(word);
}

void WatchedCall::pass(const Element& type, const void* value) {
    const auto* bytes = static_cast<const unsigned char*>(value);
#ifdef __x86_64__
    if (!type.floating) {
        std::uintptr_t word = 0xDEADBEEFDEADBEEF;  // what lies above a narrow argument is not defined
        std::memcpy(&word, bytes, type.size);
        return passWord(word);
    }
    for (std::size_t i = 0; i < type.size; i += 8)  // never more than fit in registers
        std::memcpy(block_ + CALL_VECTORS + 8 * vectors_++, bytes + i, type.size - i < 8 ? type.size - i : 8);
#else
    for (std::size_t i = 0; i < type.size; i += sizeof(std::uintptr_t)) {
        std::uintptr_t word = 0;
        std::memcpy(&word, bytes + i, type.size - i < sizeof word ? type.size - i : sizeof word);
        passWord(word);
    }
#endif
}

void WatchedCall::layOutStack() {
    const std::size_t bytes = words_.size() * sizeof(std::uintptr_t);
    const auto end = reinterpret_cast<std::uintptr_t>(stack().end());
    const unsigned offset = phase_ * kStackAlignment % 32;
    const std::uintptr_t top = ((end - kCanaryBytes - bytes - 32) & ~std::uintptr_t{31}) + offset;
    std::memset(reinterpret_cast<void*>(top), kCanary, end - top);
    std::copy(words_.begin(), words_.end(), reinterpret_cast<std::uintptr_t*>(top));
    std::memcpy(block_ + CALL_STACK, &top, sizeof top);
}

bool WatchedCall::stackIntact() const {
    const auto* p = reinterpret_cast<const unsigned char*>(read<std::uintptr_t>(block_ + CALL_STACK));
    for (p += words_.size() * sizeof(std::uintptr_t); p != stack().end(); ++p)
        if (*p != kCanary) return false;
    return true;
}

double WatchedCall::time(int calls) {
    using Clock = std::chrono::steady_clock;
    layOutStack();
    const auto arguments = reinterpret_cast<std::uintptr_t*>(read<std::uintptr_t>(block_ + CALL_STACK));
    const auto begin = Clock::now();
    for (int i = 0; i < calls; ++i) {
        std::memcpy(arguments, words_.data(),
                    words_.size() * sizeof(std::uintptr_t));  // the callee's to change
        zpp_watched_call(block_);
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / calls;
}

std::uint64_t WatchedCall::run() {
    block_[CALL_WATCH] = static_cast<unsigned char>(watchesVectors() ? 3 : 1);
    layOutStack();
    signal_ = sigsetjmp(beforeCall, 0);
    if (signal_ == 0) {
        setControl(x87Control_, kMxcsr);
        calling = 1;
        zpp_watched_call(block_);
    }
    calling = 0;
    setControl(0x37F, kMxcsr);
    fault_ = signal_ == 0 ? nullptr : lastFault;
    return read<std::uint64_t>(block_ + CALL_RESULT);
}

std::string WatchedCall::complaint() const {
    if (signal_ != 0) return std::string("ends in signal ") + strsignal(signal_);
    const std::string registers = registerComplaint();
    return registers.empty() ? stateComplaint() : registers;
}

std::string WatchedCall::registerComplaint() const {
    for (unsigned i = 0; i < sizeof kPreserved / sizeof *kPreserved; ++i)
        if (read<std::uint64_t>(block_ + CALL_PRESERVED + 8 * i) != CALL_SENTINEL + i)
            return std::string("does not preserve ") + kPreserved[i];
    if (std::memcmp(block_ + CALL_STACK, block_ + CALL_STACK_AFTER, 8) != 0)
        return "returns with another stack pointer";
    return stackIntact() ? "" : "writes into the stack frame of its caller";
}

std::string WatchedCall::stateComplaint() const {
    if (read<std::uint64_t>(block_ + CALL_FLAGS) & kDirectionFlag) return "leaves the direction flag set";
    if ((read<std::uint32_t>(block_ + CALL_MXCSR) ^ kMxcsr) & kMxcsrControl) return "leaves MXCSR changed";
    if (read<std::uint16_t>(block_ + CALL_X87) != x87Control_) return "leaves the x87 control word changed";
    if (read<std::uint16_t>(block_ + CALL_X87 + 8) != 0xFFFF) return "leaves x87 registers in use";
    if (read<std::uint64_t>(block_ + CALL_VECTORS_USED) & kUpperHalves)
        return "leaves upper halves of vector registers in use";
    return "";
}

}  // namespace zpp::check
