#include "check/watch.h"

#include <algorithm>
#include <chrono>
#include <cstring>

#include "tests/support/guarded.h"

extern "C" void zpp_watched_call(void* block);

namespace zpp::check {
namespace {

#if defined(_WIN64)
constexpr const char* kPreserved[] = {"rbx",   "rbp",   "rdi",   "rsi",   "r12",   "r13",   "r14",
                                      "r15",   "xmm6",  "xmm6",  "xmm7",  "xmm7",  "xmm8",  "xmm8",
                                      "xmm9",  "xmm9",  "xmm10", "xmm10", "xmm11", "xmm11", "xmm12",
                                      "xmm12", "xmm13", "xmm13", "xmm14", "xmm14", "xmm15", "xmm15"};
constexpr unsigned kStackAlignment = 16;
#elif defined(__x86_64__)
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

test::Guarded<unsigned char>& stack() {
    static test::Guarded<unsigned char> bytes(kStackBytes, test::Edge::kEnd);
    return bytes;
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

}  // namespace

bool watchesVectors() {
    static const bool watches = supportsIsa(kAvx2Isa);
    return watches;
}

WatchedCall::WatchedCall(Entry target, unsigned phase)
    // Both precisions that programs run the x87 unit with.
    : phase_(phase), x87Control_(phase % 2 == 0 ? 0x37F : 0x27F) {
    std::memcpy(block_ + CALL_TARGET, &target, sizeof target);
    words_.reserve(kMaxArguments);  // none in the call, where allocations are counted
}

void WatchedCall::passWord(std::uintptr_t word) {
#if defined(__x86_64__) && !defined(_WIN32)
    if (integers_ < 6) {
        std::memcpy(block_ + CALL_INTEGERS + 8 * integers_++, &word, sizeof word);
        return;
    }
#endif
    words_.push_back(word);
}

// By the convention of the target.
void WatchedCall::pass(const Element& type, const void* value) {
    const auto* bytes = static_cast<const unsigned char*>(value);
#ifdef __x86_64__
    std::uintptr_t word = 0xDEADBEEFDEADBEEF;  // what lies above a narrow argument is not defined
    if (type.size <= sizeof word) std::memcpy(&word, bytes, type.size);
#ifdef _WIN32
    if (type.size <= sizeof word) return passWord(word);
    pass(copies_.emplace_back(bytes, bytes + type.size).data());  // larger values by reference
#else
    if (!type.floating) return passWord(word);
    const bool inRegisters = vectors_ + (type.size + 7) / 8 <= 8;  // the whole of it or nothing
    for (std::size_t i = 0; i < type.size; i += 8) {
        std::memcpy(&word, bytes + i, std::min<std::size_t>(type.size - i, 8));
        if (inRegisters)
            std::memcpy(block_ + CALL_VECTORS + 8 * vectors_++, &word, 8);
        else
            words_.push_back(word);
    }
#endif
#else
    for (std::size_t i = 0; i < type.size; i += sizeof(std::uintptr_t)) {
        std::uintptr_t word = 0;
        std::memcpy(&word, bytes + i, type.size - i < sizeof word ? type.size - i : sizeof word);
        passWord(word);
    }
#endif
}

void WatchedCall::layOutStack() {
#ifdef _WIN64
    words_.resize(
        std::max<std::size_t>(words_.size(), 4));  // the room for the registers, which the callee may use
#endif
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
    setControl(x87Control_, kMxcsr);
    fault_ = callCatching(block_);
    setControl(0x37F, kMxcsr);
    return read<std::uint64_t>(block_ + CALL_RESULT);
}

std::string WatchedCall::complaint() const {
    if (fault_.what != nullptr) return std::string("is stopped by ") + fault_.what;
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
    if ((read<std::uint64_t>(block_ + CALL_UPPERS) | read<std::uint64_t>(block_ + CALL_UPPERS + 8)) != 0)
        return "leaves upper halves of vector registers in use";
    return "";
}

}  // namespace zpp::check
