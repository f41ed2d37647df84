#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"*", Promise::kValues}};

const Extent kExtents[] = {
    stated("zppsSum_*", "pSum", 0, 1),       stated("zppsMean_*", "pMean", 0, 1),
    stated("zppsStdDev_*", "pStdDev", 0, 1), stated("zppsNorm*", "pNorm", 0, 1),
    stated("zppsDotProd_*", "pDp", 0, 1),
};

}  // namespace

const Rules kStatsRules = {.folder = "stats", .promises = kPromises, .extents = kExtents};

}  // namespace zpp::check
