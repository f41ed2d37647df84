// Numbers of vm/inverse_hyperbolic.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// (asinh(x) / x - 1) / x^2 in x^2 for |x| <= 1/16: asinh(x) / x to 2^-64.7.
inline constexpr double kAsinhPolynomial[] = {
    -0x1.5555555555547p-3, 0x1.333333331a969p-4, -0x1.6db6da8afba26p-5, 0x1.f1c38c92ae5fbp-6,
    -0x1.6b4a751569594p-6
};

}  // namespace zpp::ZPP_ISA
