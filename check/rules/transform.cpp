#include "zpp/transform.h"
#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"zppsFFT* zppsDCT* zppsGoertz*", Promise::kBound},
                                  {"*", Promise::kValues}};

constexpr int kPowersOf2[] = {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096};
constexpr Lengths kLengths[] = {{"zppsFFT*", kPowersOf2}};

int orderOf(const Case& c) { return 31 - __builtin_clz(static_cast<unsigned>(c.length)); }
int flagOf(const Case& c) { return 1 << (orderOf(c) + c.variant) % 4; }

constexpr double kBadOrders[] = {-1, 31}, kBadFlags[] = {0, 3, 16};
constexpr double kBadFrequencies[] = {-0.25, 1, 3};
constexpr Number kNumbers[] = {
    {"zppsFFT*", "order", [](const Function&, const Case& c, test::Random&) -> double { return orderOf(c); },
     kBadOrders, zppStatusFftOrder},
    {"zppsFFT*", "flag", [](const Function&, const Case& c, test::Random&) -> double { return flagOf(c); },
     kBadFlags, zppStatusFftFlag},
    {"zppsFFT* zppsDCT*", "hint", zero},
    // Near 0 and 1 / 2 the error grows with the square of the length.
    {"zppsGoertz*", "rFreq",
     [](const Function&, const Case&, test::Random& random) { return random.uniform(0.1, 0.4); },
     kBadFrequencies, zppStatusRelativeFrequency},
};

// Specifications that a function makes for a case.
template <class Spec>
struct Form {
    ZppStatus (*initAlloc)(Spec** ppSpec, const Case& c);
    ZppStatus (*free)(Spec* pSpec);
    ZppStatus (*getBufSize)(const Spec* pSpec, int* pSize);

    Spec* make(const Case& c) const {
        Spec* spec = nullptr;
        initAlloc(&spec, c);
        return spec;
    }
    Extent buffer(const char* functions) const {
        return {functions, "pBuffer", [form = *this](const Function&, const Case& c) {
                    Spec* spec = form.make(c);
                    int bytes = 0;
                    form.getBufSize(spec, &bytes);
                    form.free(spec);
                    return static_cast<std::size_t>(bytes);
                }};
    }
    ObjectKind object(const char* functions) const {
        return {functions, [form = *this](const Function&, const Case& c) { return form.make(c); },
                [form = *this](void* spec) { form.free(static_cast<Spec*>(spec)); },
                reinterpret_cast<Entry>(free), nullptr};
    }
};

template <auto kInitAlloc>
ZppStatus fft(ZppsFFTSpec** ppSpec, const Case& c) {
    return kInitAlloc(ppSpec, orderOf(c), flagOf(c), 0);
}
template <auto kInitAlloc>
ZppStatus dct(ZppsDCTSpec** ppSpec, const Case& c) {
    return kInitAlloc(ppSpec, c.length, 0);
}

constexpr Form<ZppsFFTSpec> kComplex = {fft<+zppsFFTInitAlloc_C_64fc>, zppsFFTFree_C_64fc,
                                        zppsFFTGetBufSize_C_64fc};
constexpr Form<ZppsFFTSpec> kSplit = {fft<+zppsFFTInitAlloc_C_64f>, zppsFFTFree_C_64f,
                                      zppsFFTGetBufSize_C_64f};
constexpr Form<ZppsFFTSpec> kReal = {fft<+zppsFFTInitAlloc_R_64f>, zppsFFTFree_R_64f,
                                     zppsFFTGetBufSize_R_64f};
constexpr const char kReals[] = "zppsFFT*_R_64f zppsFFT*_RTo* zppsFFT*ToR_64f";
constexpr Form<ZppsDCTSpec> kCosines = {dct<+zppsDCTFwdInitAlloc_64f>, zppsDCTFwdFree_64f,
                                        zppsDCTFwdGetBufSize_64f};
constexpr Form<ZppsDCTSpec> kInverseCosines = {dct<+zppsDCTInvInitAlloc_64f>, zppsDCTInvFree_64f,
                                               zppsDCTInvGetBufSize_64f};

std::size_t ccs(const Function&, const Case& c) { return (static_cast<std::size_t>(c.length) / 2 + 1) * 2; }

std::size_t low(const Function&, const Case& c) { return (static_cast<std::size_t>(c.length) + 1) / 2; }
std::size_t high(const Function&, const Case& c) { return static_cast<std::size_t>(c.length) / 2; }

const ObjectKind kObjects[] = {kComplex.object("zppsFFT*C_64fc"), kSplit.object("zppsFFT*C_64f"),
                               kReal.object(kReals), kCosines.object("zppsDCTFwd*"),
                               kInverseCosines.object("zppsDCTInv*")};

const Extent kExtents[] = {
    kComplex.buffer("zppsFFT*C_64fc"),
    kSplit.buffer("zppsFFT*C_64f"),
    kReal.buffer(kReals),
    kCosines.buffer("zppsDCTFwd*"),
    kInverseCosines.buffer("zppsDCTInv*"),
    // CCS: one complex element more than half of the length.
    {"zppsConjCcs_64fc zppsFFTInv_CCSToR_*", "pSrc", ccs},
    {"zppsFFTFwd_RToCCS_*", "pDst", ccs},
    stated("zppsFFT* zppsDCT*", "pSrc* pDst*", 1),
    {"zppsWTHaar*", "pSrcLow pDstLow", low},
    {"zppsWTHaar*", "pSrcHigh pDstHigh", high},
    stated("zppsGoertz_*", "pVal", 0, 1),
    stated("zppsGoertzTwo_*", "pVal rFreq", 0, 2),
};

constexpr Optional kOptional[] = {{"zppsFFT* zppsDCT*", "pBuffer"}};

}  // namespace

const Rules kTransformRules = {.folder = "transform",
                               .promises = kPromises,
                               .extents = kExtents,
                               .numbers = kNumbers,
                               .optional = kOptional,
                               .objects = kObjects,
                               .lengths = kLengths};

}  // namespace zpp::check
