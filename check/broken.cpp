#include "check/broken.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "check/checker.h"
#include "check/watch.h"
#include "zpp.h"

namespace zpp::check {
namespace {

// What stands in for zppsAdd_64f: right but for its fault.
using Add = ZppStatus(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len);

ZppStatus add(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return zppStatusNullPointer;
    if (len <= 0) return zppStatusSizeError;
    for (int i = 0; i < len; ++i) pDst[i] = pSrc1[i] + pSrc2[i];
    return zppStatusOk;
}

// Right, and then what the statement does after a call that succeeded.
#define BROKEN(name, statement)                                                       \
    ZppStatus name(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) { \
        const ZppStatus status = add(pSrc1, pSrc2, pDst, len);                        \
        if (status == zppStatusOk) statement;                                         \
        return status;                                                                \
    }

volatile double sink;
const unsigned kFlushToZero = 0x9F80;
const unsigned short kSinglePrecision = 0x7F;

BROKEN(writesBehind, const_cast<volatile Zpp64f*>(pDst)[len] = 0)
BROKEN(writesBefore, const_cast<volatile Zpp64f*>(pDst)[-1] = 0)
BROKEN(readsBehind, sink = pSrc2[len])
BROKEN(readsBefore, sink = pSrc1[-1])
BROKEN(writesSource, const_cast<Zpp64f*>(pSrc1)[len / 2] = 7)
BROKEN(missesLastBit, if (len == 33) reinterpret_cast<unsigned char&>(pDst[32]) ^= 1)
BROKEN(missesLength, if (len == 17) pDst[16] = 3)
BROKEN(losesSign, for (int i = 0; i < len; ++i) pDst[i] = pDst[i] == 0 ? 0 : pDst[i])
BROKEN(changesMxcsr, __asm__ volatile("ldmxcsr %0" : : "m"(kFlushToZero)))
BROKEN(changesX87, __asm__ volatile("fldcw %0" : : "m"(kSinglePrecision)))
BROKEN(leavesX87, __asm__ volatile("fld1"))
BROKEN(leavesDirection, __asm__ volatile("std"))
BROKEN(returnsWarning, return zppStatusDivByZero)

auto& kept = *new std::vector<void*>;  // what is left behind, for sanitizers to find, to the end
BROKEN(leaks, kept.push_back(zppsMalloc_64f(len)))

ZppStatus ignoresNull(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return pSrc2 == nullptr ? add(pSrc1, pSrc1, pDst, len) : add(pSrc1, pSrc2, pDst, len);
}
__attribute__((no_sanitize("undefined"))) ZppStatus touchesNull(const Zpp64f* pSrc1, const Zpp64f* pSrc2,
                                                                Zpp64f* pDst, int len) {
    sink = *const_cast<const volatile Zpp64f*>(pDst);
    return add(pSrc1, pSrc2, pDst, len);
}
ZppStatus writesFirst(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    if (pSrc1 != nullptr && pSrc2 != nullptr && pDst != nullptr && len < 0) *pDst = 0;
    return add(pSrc1, pSrc2, pDst, len);
}
ZppStatus failsInPlace(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    const bool inPlace = pSrc2 == pDst && pDst != nullptr;
    const ZppStatus status = add(pSrc1, pSrc2, pDst, len);
    if (inPlace && len > 8) pDst[len - 1] += pSrc1[len - 1];
    return status;
}
ZppStatus leaksInError(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    if (pDst == nullptr) kept.push_back(zppsMalloc_64f(1));
    return add(pSrc1, pSrc2, pDst, len);
}

template <class Result, class... T>
Entry entry(Result (*function)(T...)) {
    return reinterpret_cast<Entry>(function);
}

// What stands for functions that are made up, and their likes.
ZppStatus mean(const Zpp64f* pSrc, int len, Zpp64f* pMean) {
    if (pSrc == nullptr || pMean == nullptr) return zppStatusNullPointer;
    if (len <= 0) return zppStatusSizeError;
    *pMean = 0;
    for (int i = 0; i < len; ++i) *pMean += pSrc[i] / len;
    return zppStatusOk;
}
ZppStatus meanAndMore(const Zpp64f* pSrc, int len, Zpp64f* pMean) {
    const ZppStatus status = mean(pSrc, len, pMean);
    if (status == zppStatusOk) const_cast<volatile Zpp64f*>(pMean)[1] = 0;
    return status;
}

constexpr char kMany[] =
    "(Zpp64fc val1, Zpp64fc val2, Zpp64fc val3, Zpp64fc val4, Zpp64f val5, Zpp64fc val6, Zpp32f val7, "
    "int val8, Zpp32sc val9, const Zpp64f* pSrc, Zpp64f* pDst, int len)";
// Each of them is (3, 0), or 3.
template <bool misses>
ZppStatus addMany(Zpp64fc val1, Zpp64fc val2, Zpp64fc val3, Zpp64fc val4, Zpp64f val5, Zpp64fc val6,
                  Zpp32f val7, int val8, Zpp32sc val9, const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    for (const Zpp64fc& val : {val1, val2, val3, val4, val6})
        if (val.re != 3 || val.im != 0) return zppStatusError;
    if (val5 != 3 || val7 != 3 || val8 != 3 || val9.re != 3 || val9.im != 0) return zppStatusError;
    if (pSrc == nullptr || pDst == nullptr) return zppStatusNullPointer;
    if (len <= 0) return zppStatusSizeError;
    for (int i = 0; i < len; ++i) pDst[i] = pSrc[i] + (misses ? 0 : val6.re);
    return zppStatusOk;
}

// In the place of zppsFFTInitAlloc_C_64fc and zppsFFTFree_C_64fc.
template <ZppStatus error>
ZppStatus clearsAfter(ZppsFFTSpec** ppSpec, int order, int flag, int hint) {
    const auto right = reinterpret_cast<decltype(&zppsFFTInitAlloc_C_64fc)>(Checker::displaced);
    const ZppStatus status = right(ppSpec, order, flag, hint);
    if (status == error) *ppSpec = nullptr;
    return status;
}
ZppStatus clearsState(const Zpp64f* pSrc, Zpp64f* pDst, int numIters, ZppsFIRState* pState) {
    if (numIters < 0) zppsFIRSetDlyLine_64f(pState, nullptr);
    return reinterpret_cast<decltype(&zppsFIR_64f)>(Checker::displaced)(pSrc, pDst, numIters, pState);
}

// In the place of zppsFIRGetTaps_64f: wrong with what is no state.
ZppStatus getTaps(const ZppsFIRState* pState, Zpp64f* pTaps) {
    return reinterpret_cast<decltype(&zppsFIRGetTaps_64f)>(Checker::displaced)(pState, pTaps);
}
ZppStatus takesZeros(const ZppsFIRState* pState, Zpp64f* pTaps) {
    const ZppStatus status = getTaps(pState, pTaps);
    return status != zppStatusContextMismatch || *reinterpret_cast<const int*>(pState) != 0 ? status
                                                                                            : zppStatusOk;
}
ZppStatus readsOn(const ZppsFIRState* pState, Zpp64f* pTaps) {
    if (pState != nullptr) sink = reinterpret_cast<const volatile int*>(pState)[1];
    return getTaps(pState, pTaps);
}
ZppStatus writesStranger(const ZppsFIRState* pState, Zpp64f* pTaps) {
    const ZppStatus status = getTaps(pState, pTaps);
    if (status == zppStatusContextMismatch) ++*reinterpret_cast<int*>(const_cast<ZppsFIRState*>(pState));
    return status;
}
ZppStatus freesNothing(ZppsFFTSpec* pSpec) {
    int bytes;
    const ZppStatus status = zppsFFTGetBufSize_C_64fc(pSpec, &bytes);
    if (status == zppStatusOk) kept.push_back(pSpec);
    return status;
}

}  // namespace
}  // namespace zpp::check

// In assembly, what a compiler would not do. They compute nothing: manners are looked at first.
#ifdef __x86_64__
#ifdef _WIN32
#define CLOBBER "xorps %xmm15, %xmm15"
#define SMASH "movl $0, 40(%rsp)"
#else
#define CLOBBER "xorl %r13d, %r13d"
#define SMASH "movl $0, 8(%rsp)"
#endif
#define MOVE_STACK "popq %rcx; leaq 16(%rsp), %rsp; jmpq *%rcx"
#define NEEDS_ALIGNMENT "leaq 8(%rsp), %rax; testb $31, %al; jz 1f; ud2; 1:"
#else
#define CLOBBER "xorl %edi, %edi"
#define MOVE_STACK "ret $16"
#define SMASH "movl $0, 20(%esp)"
#define NEEDS_ALIGNMENT "leal 4(%esp), %eax; testb $15, %al; jz 1f; ud2; 1:"
#endif
#define TEXT_OF(words) #words
#define PREFIX_OF(prefix) TEXT_OF(prefix)  // of C names, in 32-bit Windows objects
#define BROKEN_ASM(name, code)                                                          \
    extern "C" ZppStatus name(const Zpp64f*, const Zpp64f*, Zpp64f*, int);              \
    __asm__(".text\n" PREFIX_OF(__USER_LABEL_PREFIX__) #name ": xorl %eax, %eax; " code \
                                                             "; xorl %eax, %eax; ret\n");

BROKEN_ASM(zpp_broken_register, CLOBBER)
BROKEN_ASM(zpp_broken_stack_pointer, MOVE_STACK)
BROKEN_ASM(zpp_broken_frame, SMASH)
BROKEN_ASM(zpp_broken_alignment, NEEDS_ALIGNMENT)
BROKEN_ASM(zpp_broken_vectors, "vcmpps $15, %ymm0, %ymm0, %ymm0")

namespace zpp::check {
namespace {

constexpr struct {
    const char* name;
    Add* function;
    const char* complaint;
} kBroken[] = {
    {"writes behind the destination", writesBehind, "pDst"},
    {"writes before the destination", writesBefore, "pDst"},
    {"reads behind a source", readsBehind, "of pSrc2"},
    {"reads before a source", readsBefore, "of pSrc1"},
    {"writes into a source", writesSource, "writes into pSrc1"},
    {"misses the last bit", missesLastBit, "pDst[32] is"},
    {"is wrong at one length", missesLength, "pDst[16] is"},
    {"loses the sign of -0", losesSign, "expected -0x0p+0"},
    {"changes MXCSR", changesMxcsr, "MXCSR"},
    {"changes the x87 control word", changesX87, "x87 control word"},
    {"leaves an x87 register in use", leavesX87, "x87 registers"},
    {"leaves the direction flag set", leavesDirection, "direction flag"},
    {"returns another status", returnsWarning, "returns 6, expected 0"},
    {"ignores a null pointer", ignoresNull, "returns 0, expected -8"},
    {"reads through a null pointer", touchesNull, "is stopped by"},
    {"writes before it checks", writesFirst, "fails but writes into pDst"},
    {"fails in place", failsInPlace, "shared source 1"},
    {"clobbers a register", zpp_broken_register, "does not preserve"},
    {"moves the stack pointer", zpp_broken_stack_pointer, "another stack pointer"},
    {"writes into its caller's frame", zpp_broken_frame, "stack frame of its caller"},
    {"needs an aligned stack", zpp_broken_alignment, "is stopped by"},
    {"leaves upper halves in use", zpp_broken_vectors, "upper halves"},
    {"leaks", leaks, "leaves blocks"},
    {"leaks where it fails", leaksInError, "leaves blocks"},
};

// Functions of other kinds: exports, and made-up ones that share the slot of zppsAdd_64f.
const struct {
    const char *name, *fault, *arguments;
    Entry right;  // null: the library's
    Entry broken;
    const char* complaint;  // null: it is not broken
} kOthers[] = {
    {"zppsMean_64f", "writes more than one mean", "(const Zpp64f* pSrc, int len, Zpp64f* pMean)", entry(mean),
     entry(meanAndMore), "of pMean, which has 8"},
    {"zppsAddMany_64f", "is right, with as many arguments as can be", kMany, entry(addMany<false>),
     entry(addMany<false>), nullptr},
    {"zppsAddMany_64f", "misses one of many arguments", kMany, entry(addMany<false>), entry(addMany<true>),
     "pDst[0] is"},
    {"zppsFFTInitAlloc_C_64fc", "clears the pointer after an error", nullptr, nullptr,
     entry(clearsAfter<zppStatusFftOrder>), "fails but writes into ppSpec"},
    {"zppsFFTInitAlloc_C_64fc", "clears the pointer where memory is short", nullptr, nullptr,
     entry(clearsAfter<zppStatusAllocationFailed>), "fails but writes into ppSpec"},
    {"zppsFIR_64f", "clears the state after an error", nullptr, nullptr, entry(clearsState),
     "fails but changes the state"},
    {"zppsFIRGetTaps_64f", "takes zeros for a state", nullptr, nullptr, entry(takesZeros),
     "returns 0, expected -17"},
    {"zppsFIRGetTaps_64f", "reads behind an identifier", nullptr, nullptr, entry(readsOn), "is stopped by"},
    {"zppsFIRGetTaps_64f", "writes into what is no state", nullptr, nullptr, entry(writesStranger),
     "writes into an object of another kind"},
    {"zppsFFTFree_C_64fc", "releases nothing", nullptr, nullptr, entry(freesNothing), "leaves blocks"},
};

// Declarations of which not all is stated.
constexpr struct {
    const char *name, *arguments, *complaint;
} kUnstated[] = {
    {"zppsAny", "(const Zpp64f* pSrc, int len, Zpp64f* pVariance)", "the extent of pVariance"},
    {"zppsAny", "(const Zpp64f* pTaps, Zpp64f* pDst, int len)", "the extent of pTaps"},
    {"zppsAny", "(const Zpp64f* pSrc, Zpp64f* pDst)", "the extent of pSrc"},
    {"zppsAny", "(Zpp64f* pDst, int len, int mystery)", "what mystery may be"},
    {"zppsAny", "(Zpp64f* pDst, int len, long double mystery)", "the type of"},
    {"zppsAny", "(ZppsMysteryState** ppState, int len)", "what kind of object ppState is"},
    {"zppsAny",
     "(Zpp8u val,Zpp8u val,Zpp8u val,Zpp8u val,Zpp8u val,Zpp8u val,Zpp8u val,Zpp8u val,Zpp8u val,"
     "Zpp8u val,Zpp8u val,Zpp64f* pDst,int len)",
     "13 arguments"},
    {"zppUnpromised", "(Zpp64f* pDst, int len)", "how far its results agree"},
};

constexpr Promised kPromises[] = {{"zpps*", Promise::kValues}};
const Extent kExtents[] = {stated("zppsMean_*", "pMean", 0, 1)};
constexpr Number kNumbers[] = {
    {"zppsAddMany_*", "val*", [](const Function&, const Case&, test::Random&) { return 3.0; }}};
const ObjectKind kObjects[] = {
    {"zppsNothing", [](const Function&, const Case&) { return nullptr; }, nullptr, nullptr, nullptr}};
const Rules kRules = {
    .folder = "any", .promises = kPromises, .extents = kExtents, .numbers = kNumbers, .objects = kObjects};

Function find(const char* name) {
    for (const Function& f : allFunctions())
        if (f.name == name) return f;
    std::abort();
}

Function makeUp(const char* name, const char* arguments) {
    Function f = parseFunction("ZppStatus", name, arguments);
    const Function add = find("zppsAdd_64f");
    f.stub = add.stub;
    f.record = add.record;
    f.rules = &kRules;
    return f;
}

// Whether the function is reported so often, each time for the right reason. What is broken stands in its
// slot but in the reference, which has what is right, or where that is null the library's.
bool isReported(std::size_t times, const Function& f, const char* complaint, Entry broken = nullptr,
                Entry right = nullptr) {
    Options options;
    options.quiet = true;
    Checker checker(options);
    if (broken != nullptr) checker.plant(f, broken, right);
    checker.check(f);
    const auto isRight = [=](const std::string& report) {
        return report.find(complaint) != std::string::npos;
    };
    return checker.reports().size() == times &&
           std::all_of(checker.reports().begin(), checker.reports().end(), isRight);
}

int count = 0, escaped = 0;

void expect(bool caught, const char* name, const char* fault) {
    ++count;
    if (caught) return;
    ++escaped;
    std::printf("ESCAPED: %s, which %s\n", name, fault);
}

}  // namespace

int checkBrokenFunctions() {
    const Function add = find("zppsAdd_64f");
    const std::size_t builds = test::runnableBindings().size();
    for (const auto& broken : kBroken) {
        if (broken.function == zpp_broken_vectors && !watchesVectors())
            std::printf("left out, as this machine does not show it: %s\n", broken.name);
        else
            expect(isReported(builds - 1, add, broken.complaint, entry(broken.function)), "a function",
                   broken.name);
    }
    for (const auto& other : kOthers) {
        const Function f =
            other.arguments == nullptr ? find(other.name) : makeUp(other.name, other.arguments);
        const std::size_t times = other.complaint == nullptr ? 0 : builds - 1;
        expect(isReported(times, f, other.complaint, other.broken, other.right), other.name, other.fault);
    }
    expect(isReported(builds, makeUp("zppsNothing", "(ZppsNothing* pState)"), "no object can be made"),
           "zppsNothing", "has no object");
    for (const auto& unstated : kUnstated)
        expect(isReported(1, makeUp(unstated.name, unstated.arguments), unstated.complaint),
               unstated.arguments, "does not state all");
    std::printf("%d broken functions: %d escaped\n", count, escaped);
    return escaped == 0 ? 0 : 1;
}

}  // namespace zpp::check
