// Numbers of vm/long_exp.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// ln 2 in parts of 21 bits, and the rest.
inline constexpr double kLnOf2Parts[] = {
    0x1.62e4300000000p-1, -0x1.05c6100000000p-29, -0x1.950d800000000p-54, -0x1.c4c6800000000p-76,
    0x1.f97b57a079a19p-103
};

// 1 / j! from j = 1 on.
inline constexpr double kLongExpSeries[][2] = {
    {0x1.0000000000000p+0, 0},
    {0x1.0000000000000p-1, 0},
    {0x1.5555555555555p-3, 0x1.5555555555555p-57},
    {0x1.5555555555555p-5, 0x1.5555555555555p-59},
    {0x1.1111111111111p-7, 0x1.1111111111111p-63},
    {0x1.6c16c16c16c17p-10, -0x1.f49f49f49f49fp-65},
    {0x1.a01a01a01a01ap-13, 0x1.a01a01a01a01ap-73},
    {0x1.a01a01a01a01ap-16, 0x1.a01a01a01a01ap-76},
    {0x1.71de3a556c734p-19, -0x1.c154f8ddc6c00p-73}
};

// e.
inline constexpr double kLongE[][2] = {
    {0x1.5bf0a8b145769p+1, 0x1.4d57ee2b1013ap-53}
};

}  // namespace zpp::ZPP_ISA
