// Phases in higher precision.
#pragma once

#include <quadmath.h>

#include "tests/support/rounded.h"

namespace zpp::test {

inline const Wide kTurn =
    Wide{0x1.921fb54442d18p+2} + Wide{0x1.1a62633145c07p-52} - Wide{0x1.f1976b7ed8fbcp-108};
inline constexpr double kRoundedTurn = 6.283185307179586, kRoundedPi = 3.141592653589793;

inline Wide phaseOf(double phase, double frequency, int n) {
    const Wide sum = phase + kTurn * fmodq(Wide{frequency} * static_cast<Wide>(n), 1);
    return sum >= kTurn ? sum - kTurn : sum;
}

}  // namespace zpp::test
