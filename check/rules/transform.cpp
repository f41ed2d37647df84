#include "zpp/transform.h"
#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"zppsFFT*", Promise::kBound}, {"*", Promise::kValues}};

constexpr int kPowersOf2[] = {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096};
constexpr Lengths kLengths[] = {{"zppsFFT*", kPowersOf2}};

int orderOf(const Case& c) { return 31 - __builtin_clz(static_cast<unsigned>(c.length)); }
int flagOf(const Case& c) { return 1 << (orderOf(c) + c.variant) % 4; }

constexpr double kBadOrders[] = {-1, 31}, kBadFlags[] = {0, 3, 16};
constexpr Number kNumbers[] = {
    {"zppsFFT*", "order", [](const Function&, const Case& c, test::Random&) -> double { return orderOf(c); },
     kBadOrders, zppStatusFftOrder},
    {"zppsFFT*", "flag", [](const Function&, const Case& c, test::Random&) -> double { return flagOf(c); },
     kBadFlags, zppStatusFftFlag},
    {"zppsFFT*", "hint", zero},
};

// A specification of the C_64fc, C_64f or R_64f form.
struct Form {
    ZppStatus (*initAlloc)(ZppsFFTSpec** ppSpec, int order, int flag, int hint);
    ZppStatus (*free)(ZppsFFTSpec* pSpec);
    ZppStatus (*getBufSize)(const ZppsFFTSpec* pSpec, int* pSize);

    ZppsFFTSpec* make(const Case& c) const {
        ZppsFFTSpec* spec = nullptr;
        initAlloc(&spec, orderOf(c), flagOf(c), 0);
        return spec;
    }
    Extent buffer(const char* functions) const {
        return {functions, "pBuffer", [form = *this](const Function&, const Case& c) {
                    ZppsFFTSpec* spec = form.make(c);
                    int bytes = 0;
                    form.getBufSize(spec, &bytes);
                    form.free(spec);
                    return static_cast<std::size_t>(bytes);
                }};
    }
    ObjectKind object(const char* functions) const {
        return {functions, [form = *this](const Function&, const Case& c) { return form.make(c); },
                [form = *this](void* spec) { form.free(static_cast<ZppsFFTSpec*>(spec)); },
                reinterpret_cast<Entry>(free), nullptr};
    }
};

constexpr Form kComplex = {zppsFFTInitAlloc_C_64fc, zppsFFTFree_C_64fc, zppsFFTGetBufSize_C_64fc};
constexpr Form kSplit = {zppsFFTInitAlloc_C_64f, zppsFFTFree_C_64f, zppsFFTGetBufSize_C_64f};
constexpr Form kReal = {zppsFFTInitAlloc_R_64f, zppsFFTFree_R_64f, zppsFFTGetBufSize_R_64f};
constexpr const char kReals[] = "zppsFFT*_R_64f zppsFFT*_RTo* zppsFFT*ToR_64f";

std::size_t ccs(const Function&, const Case& c) { return (static_cast<std::size_t>(c.length) / 2 + 1) * 2; }

std::size_t low(const Function&, const Case& c) { return (static_cast<std::size_t>(c.length) + 1) / 2; }
std::size_t high(const Function&, const Case& c) { return static_cast<std::size_t>(c.length) / 2; }

const ObjectKind kObjects[] = {kComplex.object("zppsFFT*C_64fc"), kSplit.object("zppsFFT*C_64f"),
                               kReal.object(kReals)};

const Extent kExtents[] = {
    kComplex.buffer("zppsFFT*C_64fc"),
    kSplit.buffer("zppsFFT*C_64f"),
    kReal.buffer(kReals),
    // CCS: one complex element more than half of the length.
    {"zppsConjCcs_64fc zppsFFTInv_CCSToR_*", "pSrc", ccs},
    {"zppsFFTFwd_RToCCS_*", "pDst", ccs},
    stated("zppsFFT*", "pSrc* pDst*", 1),
    {"zppsWTHaar*", "pSrcLow pDstLow", low},
    {"zppsWTHaar*", "pSrcHigh pDstHigh", high},
};

constexpr Optional kOptional[] = {{"zppsFFT*", "pBuffer"}};

}  // namespace

const Rules kTransformRules = {.folder = "transform",
                               .promises = kPromises,
                               .extents = kExtents,
                               .numbers = kNumbers,
                               .optional = kOptional,
                               .objects = kObjects,
                               .lengths = kLengths};

}  // namespace zpp::check
