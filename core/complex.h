// Complex numbers in registers: as one of real and one of imaginary parts (Complex), of single elements or of
// vectors, or as they stand in memory (ComplexPairs). Sums and products are the elementary formulas with each
// operation rounded to double, so that every build and both forms give the same bits.
#pragma once

#include "core/precision.h"
#include "core/simd_convert.h"

namespace zpp::ZPP_ISA {

template <class V>
struct Complex {
    V re, im;
};

// Elements as numbers, one or two each.
template <class T>
inline constexpr int kParts = 1 + requires(T x) {
    x.re;
};
template <class T>
ZPP_INLINE auto* partsOf(T* p) {
    if constexpr (kParts<T> == 2)
        return &p->re;
    else
        return p;
}

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

template <class M, class V>
ZPP_INLINE Complex<V> select(M condition, Complex<V> a, Complex<V> b) {
    return {select(condition, a.re, b.re), select(condition, a.im, b.im)};
}

template <class V>
ZPP_INLINE Complex<V> conjugate(Complex<V> z) {
    return {z.re, -z.im};
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

// A register of complex numbers in the order of memory. What is done to both parts alike needs no shuffles,
// and a product fewer of them than between loadComplex and storeComplex. A quotient would need two divisions
// for each element.
template <class V>
struct ComplexPairs {
    V v;
};

// N complex numbers from memory. Without vectors a single number is a Complex<double>.
template <int N>
ZPP_INLINE auto loadPairs(const double* p) {
    if constexpr (kVectorBytes == 0)
        return Complex<double>{p[0], p[1]};
    else
        return ComplexPairs<Vec<double, 2 * N>>{load<Vec<double, 2 * N>>(p)};
}

ZPP_INLINE void storePairs(double* p, Complex<double> z) {
    p[0] = z.re;
    p[1] = z.im;
}
template <class V>
ZPP_INLINE void storePairs(double* p, ComplexPairs<V> z) {
    store(p, z.v);
}

template <class V>
ZPP_INLINE void streamPairs(double* p, V z) {
    if constexpr (kVectorBytes == 0)
        storePairs(p, z);
    else
        stream(p, z.v);
}

template <class V>
ZPP_INLINE V pairsOf(double re, double im) {
    return repeated<V>(Vec<double, 2>{re, im});
}

template <class V>
ZPP_INLINE ComplexPairs<V> conjugate(ComplexPairs<V> z) {
    return {exclusiveOr(z.v, pairsOf<V>(0.0, -0.0))};
}

// The numbers in reverse order.
template <class V>
ZPP_INLINE ComplexPairs<V> reverseLanes(ComplexPairs<V> z) {
    return {reversePairs(z.v)};
}
ZPP_INLINE Complex<double> reverseLanes(Complex<double> z) { return z; }

template <class V>
ZPP_INLINE ComplexPairs<V> operator+(ComplexPairs<V> a, ComplexPairs<V> b) {
    return {a.v + b.v};
}
template <class V>
ZPP_INLINE ComplexPairs<V> operator+(ComplexPairs<V> a, Complex<double> b) {
    return {a.v + pairsOf<V>(b.re, b.im)};
}
template <class V>
ZPP_INLINE ComplexPairs<V> operator-(ComplexPairs<V> a, ComplexPairs<V> b) {
    return {a.v - b.v};
}
template <class V>
ZPP_INLINE ComplexPairs<V> operator-(ComplexPairs<V> a, Complex<double> b) {
    return {a.v - pairsOf<V>(b.re, b.im)};
}
template <class V>
ZPP_INLINE ComplexPairs<V> operator-(Complex<double> a, ComplexPairs<V> b) {
    return {pairsOf<V>(a.re, a.im) - b.v};
}

// (a.re b.re, a.re b.im) less and plus (a.im b.im, a.im b.re)
template <class V>
ZPP_INLINE ComplexPairs<V> product(ComplexPairs<V> a, ComplexPairs<V> b) {
    const V y = pinned(b.v);
    return {subtractAdd(evenTwice(a.v) * y, oddTwice(a.v) * swapPairs(y))};
}
// (a.re b.re, a.im b.re) plus and less (a.im b.im, a.re b.im)
template <class V>
ZPP_INLINE ComplexPairs<V> productConj(ComplexPairs<V> a, ComplexPairs<V> b) {
    const V x = pinned(a.v);
    return {addSubtract(x * evenTwice(b.v), swapPairs(x) * oddTwice(b.v))};
}
// The sign of a difference is in the constant.
template <class V>
ZPP_INLINE ComplexPairs<V> product(ComplexPairs<V> a, Complex<double> b) {
    const V x = pinned(a.v);
    return {x * b.re + swapPairs(x) * pairsOf<V>(-b.im, b.im)};
}
template <class V>
ZPP_INLINE ComplexPairs<V> productConj(ComplexPairs<V> a, Complex<double> b) {
    const V x = pinned(a.v);
    return {x * b.re + swapPairs(x) * pairsOf<V>(b.im, -b.im)};
}
template <class V>
ZPP_INLINE ComplexPairs<V> product(ComplexPairs<V> a, double scale) {
    return {a.v * scale};
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
