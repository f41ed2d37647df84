// Numbers of vm/arcsine.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// 1 / 6.
inline constexpr double kSixth = 0x1.5555555555555p-3;

// What it lacks.
inline constexpr double kSixthLow = 0x1.5555555555555p-57;

// 1 / 6 in 26 bits.
inline constexpr double kSixthHalf = 0x1.5555558000000p-3;

// What these lack.
inline constexpr double kSixthRest = -0x1.5555555555555p-30;

// (asin(u) - u - u^3 / 6) / u^5 in u^2 for |u| <= 1/2: asin(u) / u to 2^-63.5.
inline constexpr double kArcsinePolynomial[] = {
    0x1.3333333333576p-4, 0x1.6db6db6d7f5c1p-5, 0x1.f1c71c939fa97p-6, 0x1.6e8b9d4d8c1d8p-6,
    0x1.1c4f5825d7a00p-6, 0x1.c9858b259e25ap-7, 0x1.7b79067340498p-7, 0x1.37de641554911p-7,
    0x1.42e90be8e156dp-7, 0x1.34e1a873f904dp-10, 0x1.85b6350bce062p-6, -0x1.9751bd603f7d7p-6,
    0x1.0dc11f312d9b5p-5
};

}  // namespace zpp::ZPP_ISA
