// Numbers of vm/cbrt.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// The bits of 1 / x^(1/3) are about this less the third of those of x.
inline constexpr int64_t kInverseCubeRootStart = 0x553ee000;

// (1 - e)^(-1/3) for |e| <= 0.105: to 2^-23.2.
inline constexpr double kInverseCubeRoot[] = {
    0x1.00000029ba68dp+0, 0x1.55540d7b4c769p-2, 0x1.c71680a0e193cp-3, 0x1.6590110341559p-3,
    0x1.2b74d341ae28fp-3
};

}  // namespace zpp::ZPP_ISA
