// Numbers of vm/arctangent.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// What the double next to pi lacks.
inline constexpr double kPiLow = 0x1.1a62633145c07p-53;

// Points of 26 bits.
inline constexpr double kArctangentPoint[] = {
    0x1.31ca6e0000000p+1, 0x1.b3f2560000000p+1, 0x1.3045600000000p+2, 0x1.b2c7350000000p+2,
    0x1.2f4b6b0000000p+3, 0x1.6abbc98000000p+4, 0, 0x1.c4912b8000000p-4, 0x1.44145d8000000p-3,
    0x1.c328df8000000p-3, 0x1.4247180000000p-2, 0x1.c11c720000000p-2, 0x1.3ddd700000000p-1,
    0x1.bd41248000000p-1, 0x1.3715198000000p+0, 0x1.b7ad468000000p+0
};

// Their arctangents, multiples of 2^-51: right to 2^-61.
inline constexpr double kArctangent[] = {
    0x1.2ca3858f3f1bap+0, 0x1.49036dafc07a2p+0, 0x1.5d0d00a536080p+0, 0x1.6cb57ef15790ap+0,
    0x1.77369fefa02aap+0, 0x1.86d6d1d3ac7a2p+0, 0, 0x1.c2bd216347960p-4, 0x1.416a18b9e6ad0p-3,
    0x1.bc1124b0c69b0p-3, 0x1.383a54c357b38p-2, 0x1.a73d933f59740p-2, 0x1.1c76f57e43330p-1,
    0x1.6e7b59035a320p-1, 0x1.c3b34fa2e6430p-1, 0x1.0b25062738b22p+0
};

// (atan(r) / r - 1) / r^2 in r^2 for |r| <= 0.128: atan(r) / r to 2^-58.3.
inline constexpr double kArctangentPolynomial[] = {
    -0x1.5555555555497p-2, 0x1.999999992bcc1p-3, -0x1.2492487bef870p-3, 0x1.c71b836bc3dc4p-4,
    -0x1.7407c27145724p-4, 0x1.2bf93074078bap-4
};

}  // namespace zpp::ZPP_ISA
