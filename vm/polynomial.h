// Polynomials in registers.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

// c[0] + c[1] x + ... of coefficients kFirst .. kFirst + kCount - 1, by halves: few steps one after the
// other. They are numbers, or registers with one for each lane.
template <int kFirst, int kCount, class V, class C, int N>
ZPP_INLINE V partOfPolynomial(const C (&c)[N], const V (&powers)[4]) {
    if constexpr (kCount == 1) {
        if constexpr (std::is_same_v<C, V>)
            return c[kFirst];
        else
            return broadcast<V>(c[kFirst]);
    } else {
        constexpr int level = kCount > 8 ? 3 : kCount > 4 ? 2 : kCount > 2 ? 1 : 0, half = 1 << level;
        return mulAdd(partOfPolynomial<kFirst + half, kCount - half>(c, powers), powers[level],
                      partOfPolynomial<kFirst, half>(c, powers));
    }
}
template <class V, class C, int N, int kFirst = 0>
ZPP_INLINE V polynomial(const C (&c)[N], V x) {
    static_assert(N - kFirst <= 16);
    V powers[4] = {x};  // x^(2^i)
    if constexpr (N - kFirst > 2) powers[1] = powers[0] * powers[0];
    if constexpr (N - kFirst > 4) powers[2] = powers[1] * powers[1];
    if constexpr (N - kFirst > 8) powers[3] = powers[2] * powers[2];
    return partOfPolynomial<kFirst, N - kFirst>(c, powers);
}
// The same of c[kFirst] on.
template <int kFirst, class V, class C, int N>
ZPP_INLINE V polynomialFrom(const C (&c)[N], V x) {
    return polynomial<V, C, N, kFirst>(c, x);
}

}  // namespace zpp::ZPP_ISA
