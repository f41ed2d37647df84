// The oracle of integers and conversions: a value that is exact, then scaled, rounded once and saturated.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "zpp/types.h"

namespace zpp::test {

// With 64 bits it holds integers of 32 bits, their products, sums of two of these, and doubles; and all of
// them times powers of two. (The targets of 32 bits have no __int128.)
using Exact = long double;
static_assert(std::numeric_limits<Exact>::digits >= 64);

// x * 2^-scaleFactor.
inline Exact scaled(Exact x, int scaleFactor) { return std::ldexp(x, -std::clamp(scaleFactor, -5000, 5000)); }

// y as D, rounded in the mode (zppRoundNear: to nearest, ties to even). Integers are saturated; a NaN gives
// the lower bound.
template <class D>
D rounded(Exact y, ZppRoundMode mode = zppRoundNear) {
    if constexpr (std::is_floating_point_v<D>) {
        return static_cast<D>(y);
    } else {
        using Limits = std::numeric_limits<D>;
        if (!(y > static_cast<Exact>(Limits::min()))) return Limits::min();
        if (y >= static_cast<Exact>(Limits::max())) return Limits::max();
        return static_cast<D>(
            static_cast<std::int64_t>(mode == zppRoundNear ? std::nearbyint(y) : std::trunc(y)));
    }
}

}  // namespace zpp::test
