#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"*", Promise::kValues}};

}  // namespace

const Rules kArithRules = {.folder = "arith", .promises = kPromises};

}  // namespace zpp::check
