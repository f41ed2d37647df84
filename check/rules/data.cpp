#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {
    {"zppsCopy_* zppsMove_* zppsSet_* zppsZero_* zppsFlip_* zppsSwapBytes_*", Promise::kBits},
    {"zppsConvert_16f32f", Promise::kBits},
    {"*", Promise::kValues},
};

// Packed 24-bit integers are vectors of bytes.
const Extent kExtents[] = {
    stated("zppsConvert_24?*", "pSrc", 3),
    stated("zppsConvert_*24?_Sfs", "pDst", 3),
    stated("zppsSwapBytes_24u*", "pSrc* pDst", 3),
};

}  // namespace

const Rules kDataRules = {
    .folder = "data", .promises = kPromises, .extents = kExtents, .neverShared = "zppsCopy_* zppsFlip_64f"};

}  // namespace zpp::check
