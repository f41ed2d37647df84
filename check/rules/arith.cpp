#include <climits>

#include "check/rules.h"
#include "zpp.h"

namespace zpp::check {
namespace {

// Exponentials, logarithms and arctangents, but those of integers, differ in the last place between builds
// with and without a fused multiply-add; logarithms of complex numbers next to the unit circle by twice their
// bound.
constexpr Promised kPromises[] = {
    {"zppsLn_64fc*", Promise::kNear, 0x1p-104},
    {"zppsExp_64* zppsExp_32f* zppsLn_64* zppsLn_32f* zppsArctan_*", Promise::kNear},
    {"*", Promise::kValues},
};

constexpr double kBelowZero[] = {-1, INT_MIN};

constexpr Number kNumbers[] = {
    {"zppsLShiftC* zppsRShiftC*", "val",
     [](const Function&, const Case&, test::Random& random) { return static_cast<double>(random.below(40)); },
     kBelowZero, zppStatusNegativeShift},
};

}  // namespace

const Rules kArithRules = {.folder = "arith", .promises = kPromises, .numbers = kNumbers};

}  // namespace zpp::check
