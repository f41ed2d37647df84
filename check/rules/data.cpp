#include "check/rules.h"
#include "zpp.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {
    {"zppsCopy_* zppsMove_* zppsSet_* zppsZero_* zppsFlip_* zppsSwapBytes_*", Promise::kBits},
    {"zppsReal_64fc zppsImag_64fc zppsCplxToReal_64fc zppsRealToCplx_64f", Promise::kBits},
    {"zppsConvert_16f32f", Promise::kBits},
    {"zppsPhase_64f* zppsCartToPolar_*", Promise::kNear},
    {"zppsPolarToCart_*", Promise::kBound},  // a cosine next to another one, times a magnitude
    {"*", Promise::kValues},
};

// Packed 24-bit integers are vectors of bytes.
const Extent kExtents[] = {
    stated("zppsConvert_24?*", "pSrc", 3),
    stated("zppsConvert_*24?_Sfs", "pDst", 3),
    stated("zppsSwapBytes_24u*", "pSrc* pDst", 3),
};

double level(const Function&, const Case&, test::Random& random) {
    constexpr double kLevels[] = {0, 1e-200, 0.5, 1, 40};
    return kLevels[random.below(5)];
}
double relOp(const Function&, const Case&, test::Random& random) {
    constexpr int kOperators[] = {zppCmpLess, zppCmpGreater, 7};
    return kOperators[random.below(3)];
}
constexpr double kBelowZero[] = {-1, -1e-310}, kFarBelow[] = {-3}, kNoDivisors[] = {0, -0.0, 1e-310, -1e-310};

constexpr Number kNumbers[] = {
    {"zppsThreshold_*64fc* zppsThreshold_LTInv_64f*", "level", level, kBelowZero,
     zppStatusThresholdNegativeLevel},
    {"zppsThreshold_*", "relOp", relOp},
    {"zppsThreshold_LTValGTVal_64f*", "levelLT",
     [](const Function&, const Case&, test::Random& random) {
         return -static_cast<double>(random.below(3));
     }},
    {"zppsThreshold_LTValGTVal_64f*", "levelGT", level, kFarBelow, zppStatusThresholdBounds},
    {"zppsThreshold_*", "level value valueLT valueGT", nullptr},
    {"zppsNormalize_*", "vsub", nullptr},
    {"zppsNormalize_*", "vdiv",
     [](const Function&, const Case&, test::Random& random) { return random.uniform(-4, 4); }, kNoDivisors,
     zppStatusDivideByZeroError},
};

constexpr Optional kOptional[] = {{"zppsRealToCplx_64f", "pSrcRe pSrcIm"}};

}  // namespace

const Rules kDataRules = {.folder = "data",
                          .promises = kPromises,
                          .extents = kExtents,
                          .numbers = kNumbers,
                          .optional = kOptional,
                          .neverShared = "zppsCopy_* zppsFlip_64f zppsConjFlip_64fc"};

}  // namespace zpp::check
