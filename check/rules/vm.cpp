#include "check/rules.h"

namespace zpp::check {
namespace {

// Builds with and without a fused multiply-add differ in the last place.
constexpr Promised kPromises[] = {{"*", Promise::kNear}};

}  // namespace

const Rules kVmRules = {.folder = "vm", .promises = kPromises};

}  // namespace zpp::check
