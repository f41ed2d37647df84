// Numbers of vm/hyperbolic.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// (sinh(r) / r - 1) / r^2 in r^2 for |r| <= ln 2 / 32: sinh(r) / r to 2^-69.5.
inline constexpr double kSinhPolynomial[] = {
    0x1.5555555555557p-3, 0x1.11111110b1ffcp-7, 0x1.a01b56f948480p-13
};

// (cosh(r) - 1 - r^2 / 2) / r^4 in r^2: cosh(r) to 2^-65.3.
inline constexpr double kCoshPolynomial[] = {
    0x1.55555554e6677p-5, 0x1.6c17f8ffb1d24p-10
};

}  // namespace zpp::ZPP_ISA
