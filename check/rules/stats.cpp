#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"*", Promise::kValues}};

const Extent kExtents[] = {
    stated("zppsSum_*", "pSum", 0, 1),
};

}  // namespace

const Rules kStatsRules = {.folder = "stats", .promises = kPromises, .extents = kExtents};

}  // namespace zpp::check
