// Numbers of vm/long_ln.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// The first coefficients of ln(1 + r) / r.
inline constexpr double kLongLnFirst[][2] = {
    {0x1.0000000000000p+0, 0},
    {-0x1.0000000000000p-1, 0},
    {0x1.5555555555555p-2, 0x1.5555555555555p-56}
};

// Those behind them, for |r| <= 1/256: of ln(1 + r) 2^-99.9 is missed.
inline constexpr double kLongLnRest[] = {
    -0x1.0000000000000p-2, 0x1.999999999999ep-3, -0x1.5555555555562p-3, 0x1.2492492368611p-3,
    -0x1.fffffffc338e2p-4, 0x1.c71fb22665f67p-4, -0x1.999d5f8d63f08p-4
};

// 10 / ln 10.
inline constexpr double kLongDecibels[][2] = {
    {0x1.15f2ced384f29p+2, -0x1.02bea6b55233cp-53}
};

}  // namespace zpp::ZPP_ISA
