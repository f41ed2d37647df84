#include "zpp/frame.h"

#include <cstring>

#include "check/rules.h"
#include "check/watch.h"

namespace zpp::check {
namespace {

// One watched call with a number as its only argument.
std::uint64_t callWith(const Function& f, int value, std::string& complaint) {
    WatchedCall watched(f.stub, 1);
    if (!f.arguments.empty()) watched.pass({"int", sizeof value, sizeof value, false}, &value);
    watched.pass(nullptr);
    const std::uint64_t result = watched.run();
    if (complaint.empty()) complaint = watched.complaint();
    return result;
}

// On 32 bits the upper half of the result register is not the function's.
template <class T>
T* asPointer(std::uint64_t result) {
    return reinterpret_cast<T*>(static_cast<std::uintptr_t>(result));
}

std::string checkStatusText(const Function& f, const std::string&) {
    std::string complaint;
    for (int status = -200; status < 60; ++status) {
        const auto* text = asPointer<const char>(callWith(f, status, complaint));
        if (complaint.empty() && (text == nullptr || *text == 0)) complaint = "gives no text";
    }
    return complaint;
}

std::string checkCpuType(const Function& f, const std::string&) {
    std::string complaint;
    const auto type = static_cast<std::uint32_t>(callWith(f, 0, complaint));
    return complaint.empty() && type > zppCpuFamily15WithoutSse2 ? "gives an unknown type" : complaint;
}

// Functions for which it is no fault to change MXCSR.
std::string checkControl(const Function& f, const std::string&) {
    std::string complaint;
    const auto status = static_cast<std::int32_t>(callWith(f, 1, complaint));
    if (status != zppStatusOk && status != zppStatusCpuNotSupported) return "gives an unknown status";
    if (status == zppStatusOk && complaint != "leaves MXCSR changed") return "does not set MXCSR";
    complaint.clear();
    callWith(f, 0, complaint);
    return complaint;
}

std::string checkClocks(const Function& f, const std::string&) {
    std::string complaint;
    const std::uint64_t first = callWith(f, 0, complaint);
    const std::uint64_t second = callWith(f, 0, complaint);
    return complaint.empty() && second <= first ? "stands still" : complaint;
}

std::string checkMalloc(const Function& f, const std::string&) {
    std::string complaint;
    if (asPointer<void>(callWith(f, 0, complaint)) != nullptr) complaint = "allocates where it must not";
    for (const int len : {1, 31, 1000}) {
        void* block = asPointer<void>(callWith(f, len, complaint));
        if (!complaint.empty()) break;
        if (block == nullptr || reinterpret_cast<std::uintptr_t>(block) % 32 != 0)
            return "gives no block aligned to 32 bytes";
        std::memset(block, 0xA5, static_cast<std::size_t>(len) * 4);
        zppsFree(block);
    }
    return complaint;
}

std::string checkFree(const Function& f, const std::string&) {
    std::string complaint;
    for (void* block : {static_cast<void*>(zppsMalloc_64f(100)), static_cast<void*>(nullptr)}) {
        WatchedCall watched(f.stub, 1);
        watched.pass(block);
        watched.run();
        if (complaint.empty()) complaint = watched.complaint();
    }
    return complaint;
}

std::string checkVersion(const Function& f, const std::string& column) {
    std::string complaint;
    const auto* version = asPointer<const ZppLibraryVersion>(callWith(f, 0, complaint));
    if (!complaint.empty()) return complaint;
    return column == version->targetCpu ? "" : "names another column";
}

constexpr OwnCheck kOwnChecks[] = {
    {"zppGetStatusString", checkStatusText},
    {"zppGetCpuType", checkCpuType},
    {"zppSetFlushToZero zppSetDenormAreZeros", checkControl},
    {"zppGetCpuClocks", checkClocks},
    {"zppsMalloc_*", checkMalloc},
    {"zppsFree", checkFree},
    {"zpp*GetLibVersion", checkVersion},
};

}  // namespace

const Rules kFrameRules = {.folder = "frame", .promises = {}, .ownChecks = kOwnChecks};

}  // namespace zpp::check
