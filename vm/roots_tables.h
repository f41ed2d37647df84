// Numbers of vm/roots.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// The bits of 1 / x^(1/2) are about this less the half of those of x.
inline constexpr int64_t kInverseRootStart = 0x5fe6e00000000000;

// (1 - e)^(-1/2) for |e| <= 0.0703: to 2^-20.2.
inline constexpr double kInverseRoot[] = {
    0x1.ffffe3d9295d7p-1, 0x1.ffff34f58667dp-2, 0x1.816395e34abbdp-2, 0x1.41e0a4fd62f4fp-2
};

}  // namespace zpp::ZPP_ISA
