#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {
    {"zppsSort*", Promise::kBits},
    {"zppsSumLn_*", Promise::kNear, 0x1p-40},  // twice the bound of sums of 4096 terms
    {"*", Promise::kValues},
};

const Extent kExtents[] = {
    stated("zppsSum_* zppsSumLn_*", "pSum", 0, 1),
    stated("zppsMean_*", "pMean", 0, 1),
    stated("zppsStdDev_*", "pStdDev", 0, 1),
    stated("zppsNorm*", "pNorm", 0, 1),
    stated("zppsDotProd_*", "pDp", 0, 1),
    stated("zppsM*", "pMin pMax pIndx pMinIndx pMaxIndx pOrder", 0, 1),
};

constexpr Optional kOptional[] = {{"zppsMaxIndx_* zppsMinIndx_*", "pIndx"}};

}  // namespace

const Rules kStatsRules = {
    .folder = "stats", .promises = kPromises, .extents = kExtents, .optional = kOptional};

}  // namespace zpp::check
