#include "check/rules.h"

#include <cstdint>
#include <cstring>

#include "check/watch.h"
#include "tests/support/random.h"
#include "zpp.h"

namespace zpp::check {
namespace {

bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

struct Count {
    const char* function;
    const char* argument;
    int perLength, perTap, more;  // elements
};

// Vectors that do not hold one element per unit of length.
constexpr Count kCounts[] = {
    {"zppsConvert_24?*", "pSrc", 3, 0, 0},
    {"zppsConvert_*24?_Sfs", "pDst", 3, 0, 0},
    {"zppsSwapBytes_24u*", "*", 3, 0, 0},
    {"zppsFIR*Direct*", "pDlyLine", 0, 2, 0},
    {"*", "pDlyLine", 0, 1, 0},
    {"*", "pTaps", 0, 1, 0},
    {"*", "pDstVal", 0, 0, 1},
    {"zppsFIROne*", "pSrcDst", 0, 0, 1},
};

// CCS: one complex element more than half of the length.
constexpr const char* kCcs[][2] = {
    {"zppsConjCcs_64fc", "pSrc"}, {"zppsFFTFwd_RToCCS_*", "pDst"}, {"zppsFFTInv_CCSToR_*", "pSrc"}};

constexpr const char* kOptional[][2] = {{"zppsFFT*", "pBuffer"},
                                        {"zppsFIRInit*", "pDlyLine"},
                                        {"zppsFIRSetDlyLine*", "pDlyLine"},
                                        {"zppsFree", "ptr"}};

constexpr const char* kNeverShared[] = {"zppsCopy_*", "zppsFlip_64f"};

constexpr const char* kBounded[] = {"zppsFFT*", "zppsFIR*"};
constexpr const char* kExactBits[] = {"zppsCopy_*",      "zppsMove_*", "zppsSet_*",         "zppsZero_*",
                                      "zppsSwapBytes_*", "zppsFlip_*", "zppsConvert_16f32f"};

template <std::size_t N>
bool listed(const char* const (&patterns)[N], const std::string& name) {
    for (const char* pattern : patterns)
        if (like(name.c_str(), pattern)) return true;
    return false;
}
template <std::size_t N>
bool listed(const char* const (&patterns)[N][2], const std::string& function, const std::string& argument) {
    for (const auto& pattern : patterns)
        if (like(function.c_str(), pattern[0]) && like(argument.c_str(), pattern[1])) return true;
    return false;
}

// An export by its name: as in frame/dispatch.h, the type is that of the call.
template <class... T>
ZppStatus call(const std::string& name, T... arguments) {
    const Entry stub = findStub(name);
    return stub == nullptr ? zppStatusError : reinterpret_cast<ZppStatus (*)(T...)>(stub)(arguments...);
}

// The family of a function on objects: what its name begins with, and how it ends for the type of the object.
bool isFft(const Function& f) { return f.matches("zppsFFT*"); }
bool isFir(const Function& f) { return f.matches("zppsFIR*"); }

std::string suffixOf(const Function& f) {
    if (isFft(f))
        return contains(f.name, "64fc") ? "_C_64fc" : contains(f.name, "C_64f") ? "_C_64f" : "_R_64f";
    for (const char* suffix : {"64fc_32fc", "64f_32f", "_64fc"})
        if (contains(f.name, suffix)) return suffix;
    return "_64f";
}

std::size_t bufferBytes(const Function& f, const Case& c) {
    int bytes = 0;
    if (isFir(f)) {
        call("zppsFIRGetStateSize" + suffixOf(f), c.taps(f), &bytes);
    } else {
        const Object spec(f, c);
        call("zppsFFTGetBufSize" + suffixOf(f), spec.get(), &bytes);
    }
    return static_cast<std::size_t>(bytes);
}

// Enough numbers for taps or a delay line of either type.
template <class T>
std::vector<T> numbers(int taps) {
    std::vector<T> values(static_cast<std::size_t>(2 * taps));
    test::Random random(static_cast<std::uint64_t>(taps));
    for (T& x : values) x = static_cast<T>(random.uniform());
    return values;
}

}  // namespace

int Case::taps(const Function& f) const {
    constexpr int kTaps[] = {1, 2, 3, 4, 5, 7, 8, 15, 16, 31, 32, 33, 64, 100};
    return f.has(Role::kLength) ? kTaps[static_cast<unsigned>(length + 5 * variant) % 14] : length;
}

int Case::order() const { return 31 - __builtin_clz(static_cast<unsigned>(length)); }

int Case::flag() const { return 1 << (order() + variant) % 4; }

std::vector<int> lengthsOf(const Function& f) {
    if (isFft(f)) return {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096};
    // Around every vector and unroll width: tail only, body only, both.
    return {1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 13,  15,  16,  17,  19,  23,
            31, 32, 33, 40, 47, 63, 64, 65, 71, 97, 127, 128, 129, 515, 1031};
}

std::size_t elementsOf(const Function& f, const Argument& a, const Case& c) {
    if (a.role == Role::kIndex || a.role == Role::kSize || a.role == Role::kObjectOut) return 1;
    if (a.role == Role::kBuffer) return bufferBytes(f, c);
    const auto length = static_cast<std::size_t>(c.length);
    if (listed(kCcs, f.name, a.name)) return (length / 2 + 1) * 2;
    for (const Count& count : kCounts)
        if (f.matches(count.function) && like(a.name.c_str(), count.argument))
            return static_cast<std::size_t>(count.perLength * c.length + count.perTap * c.taps(f) +
                                            count.more);
    return length;
}

bool mayBeNull(const Function& f, const Argument& a) { return listed(kOptional, f.name, a.name); }

bool mayShare(const Function& f) { return !listed(kNeverShared, f.name); }

bool releasesObject(const Function& f) { return f.matches("zppsF??Free*"); }

Promise promiseOf(const Function& f) {
    if (listed(kBounded, f.name)) return Promise::kBound;
    return listed(kExactBits, f.name) ? Promise::kBits : Promise::kValues;
}

Object::Object(const Function& f, const Case& c) : f_(f), case_(c) {
    if (!f.has(Role::kObject)) return;
    const std::string suffix = suffixOf(f);
    if (isFft(f)) {
        call("zppsFFTInitAlloc" + suffix, &object_, c.order(), c.flag(), 0);
    } else {
        const int taps = c.taps(f);
        const bool single = contains(suffix, "_32f");
        const auto doubles = numbers<double>(taps);
        const auto floats = numbers<float>(taps);
        call("zppsFIRInitAlloc" + suffix, &object_, doubles.data(), taps,
             single ? static_cast<const void*>(floats.data()) : doubles.data());
    }
}

Object::~Object() {
    if (object_ != nullptr) call((isFft(f_) ? "zppsFFTFree" : "zppsFIRFree") + suffixOf(f_), object_);
}

std::vector<unsigned char> Object::content() const {
    std::vector<unsigned char> bytes;
    if (object_ == nullptr || !isFir(f_)) return bytes;
    const auto half = static_cast<std::size_t>(case_.taps(f_)) * sizeof(Zpp64fc);
    bytes.resize(2 * half);
    call("zppsFIRGetTaps" + suffixOf(f_), object_, bytes.data());
    call("zppsFIRGetDlyLine" + suffixOf(f_), object_, bytes.data() + half);
    return bytes;
}

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
    if (callWith(f, 0, complaint) != 0) complaint = "allocates nothing";
    for (const int len : {1, 31, 1000}) {
        const std::uint64_t block = callWith(f, len, complaint);
        if (!complaint.empty()) break;
        if (block == 0 || block % 32 != 0) return "gives no block aligned to 32 bytes";
        std::memset(asPointer<void>(block), 0xA5, static_cast<std::size_t>(len) * 4);
        zppsFree(asPointer<void>(block));
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

constexpr struct {
    const char* function;
    OwnCheck check;
} kOwnChecks[] = {
    {"zppGetStatusString", checkStatusText},
    {"zppGetCpuType", checkCpuType},
    {"zppSetFlushToZero", checkControl},
    {"zppSetDenormAreZeros", checkControl},
    {"zppGetCpuClocks", checkClocks},
    {"zppsMalloc_*", checkMalloc},
    {"zppsFree", checkFree},
    {"zpp*GetLibVersion", checkVersion},
};

}  // namespace

OwnCheck ownCheckOf(const Function& f) {
    for (const auto& own : kOwnChecks)
        if (f.matches(own.function)) return own.check;
    return nullptr;
}

}  // namespace zpp::check
