// Complex numbers as a register of real and one of imaginary parts: of single elements or of vectors. Sums
// and products are the elementary formulas with each operation rounded to double, so that every build gives
// the same bits.
#pragma once

#include "core/precision.h"
#include "core/simd_convert.h"

namespace zpp::ZPP_ISA {

template <class V>
struct Complex {
    V re, im;
};

// The second operand may be a single number, the same for all lanes.
template <class A, class B>
ZPP_INLINE auto operator+(Complex<A> a, Complex<B> b) {
    return Complex<decltype(a.re + b.re)>{a.re + b.re, a.im + b.im};
}

template <class A, class B>
ZPP_INLINE auto operator-(Complex<A> a, Complex<B> b) {
    return Complex<decltype(a.re - b.re)>{a.re - b.re, a.im - b.im};
}

template <class A, class B>
ZPP_INLINE auto product(Complex<A> a, Complex<B> b) {
    return Complex<decltype(a.re * b.re)>{stored(product(a.re, b.re) - product(a.im, b.im)),
                                          stored(product(a.re, b.im) + product(a.im, b.re))};
}

// a * conj(b)
template <class A, class B>
ZPP_INLINE auto productConj(Complex<A> a, Complex<B> b) {
    return Complex<decltype(a.re * b.re)>{stored(product(a.re, b.re) + product(a.im, b.im)),
                                          stored(product(a.im, b.re) - product(a.re, b.im))};
}

template <class A, class B>
ZPP_INLINE auto product(Complex<A> a, B scale) {
    return Complex<decltype(a.re * scale)>{product(a.re, scale), product(a.im, scale)};
}

// The same without the care of product(), for results that are promised to a bound.
template <class A, class B>
ZPP_INLINE auto operator*(Complex<A> a, B scale) {
    return Complex<decltype(a.re * scale)>{a.re * scale, a.im * scale};
}

template <class V>
ZPP_INLINE V squaredNorm(Complex<V> a) {
    return stored(product(a.im, a.im) + product(a.re, a.re));
}

template <class V>
ZPP_INLINE V magnitude(Complex<V> a) {
    return stored(squareRoot(squaredNorm(a)));
}

// Complex numbers of two registers, parts beside each other.
template <class V>
ZPP_INLINE Complex<V> takenApart(V a, V b) {
    if constexpr (std::is_same_v<V, double>)
        return {a, b};
    else
        return {evenLanes(a, b), oddLanes(a, b)};
}

// N complex numbers from memory, of doubles, singles or integers: one de-interleaving load. Their order in
// the registers is that of evenLanes.
template <int N, class T>
ZPP_INLINE Complex<Vec<double, N>> loadComplex(const T* p) {
    return takenApart(loadAsDoubles<N>(p), loadAsDoubles<N>(p + N));
}

// The inverse of loadComplex, to doubles or singles.
template <class T, class V>
ZPP_INLINE void storeComplex(T* p, Complex<V> v) {
    constexpr int n = sizeof(V) / sizeof(double);
    if constexpr (n == 1) {
        storeFromDoubles(p, v.re);
        storeFromDoubles(p + 1, v.im);
    } else {
        storeFromDoubles(p, evenLanes(v.re, v.im));
        storeFromDoubles(p + n, oddLanes(v.re, v.im));
    }
}

// A vector of loadComplex with its lanes in the order of memory.
template <class V>
ZPP_INLINE V naturalOrder(V v) {
    if constexpr (sizeof(V) == 64)
        return shuffle<0, 2, 4, 6, 1, 3, 5, 7>(v, v);
    else if constexpr (sizeof(V) == 32)
        return shuffle<0, 2, 1, 3>(v, v);
    else
        return v;
}

}  // namespace zpp::ZPP_ISA
