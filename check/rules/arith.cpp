#include <climits>

#include "check/rules.h"
#include "zpp.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"*", Promise::kValues}};

constexpr double kBelowZero[] = {-1, INT_MIN};

constexpr Number kNumbers[] = {
    {"zppsLShiftC* zppsRShiftC*", "val",
     [](const Function&, const Case&, test::Random& random) { return static_cast<double>(random.below(40)); },
     kBelowZero, zppStatusNegativeShift},
};

}  // namespace

const Rules kArithRules = {.folder = "arith", .promises = kPromises, .numbers = kNumbers};

}  // namespace zpp::check
