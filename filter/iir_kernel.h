// The recursions of the IIR filters.
//
// The stated recursion y = B0 x + d0, d0 = B1 x + d1 - A1 y, ... has each output wait for the one before it
// through three operations. Up to kSmallOrder, and in cascades, it is computed with y written out:
//     y = B0 x + d0    d(i) = C(i+1) x + d(i+1) - A(i+1) d0    C(i) = B(i) - A(i) B0
// where only the last product is between d0 and the next one, and nothing waits for y. Higher orders, which
// have enough to do meanwhile, take y.
//
// Whatever the width, the length of a block and the way it is taken, an element goes through the same
// operations: so blocks have the bits of single samples. The delay line is rounded to double with every
// sample.
//
// The callers set precision and flushing (core/precision.h).
#pragma once

#include "core/loops.h"

namespace zpp::ZPP_ISA {

// N elements of T in a register, and N of them as what others are multiplied by.
template <class V>
struct PairFactor {
    V re, im;  // im of alternating sign, to be multiplied by exchanged pairs
};
template <class T, int N>
struct ValueOf {
    using Value = Vec<double, N>;
    using Factor = Value;
};
template <int N>
struct ValueOf<Zpp64fc, N> {
    using Value = Vec<double, 2 * N>;
    using Factor = PairFactor<Value>;
};
#ifndef __SSE2__
template <>
struct ValueOf<Zpp64fc, 1> {
    using Value = Complex<double>;
    using Factor = Value;
};
#endif
template <class T, int N = 1>
using Value = typename ValueOf<T, N>::Value;
template <class T, int N = 1>
using Factor = typename ValueOf<T, N>::Factor;

template <int N = 1, class T>
ZPP_INLINE auto loadValue(const T* p) {
    return load<Value<T, N>>(p);
}

// N factors, or the same one for N values.
template <int N = 1>
ZPP_INLINE auto loadFactor(const double* p) {
    return load<Vec<double, N>>(p);
}
template <int N = 1>
ZPP_INLINE auto loadFactor(const Zpp64fc* p) {
    const auto v = loadValue<N>(p);
    if constexpr (kVectorBytes == 0)
        return v;
    else
        return Factor<Zpp64fc, N>{evenTwice(v),
                                  exclusiveOr(oddTwice(v), pairsOf<Value<Zpp64fc, N>>(-0.0, 0.0))};
}
template <int N>
ZPP_INLINE auto sameFactor(double x) {
    return broadcast<Vec<double, N>>(x);
}
template <int N>
ZPP_INLINE auto sameFactor(Zpp64fc x) {
    using V = Value<Zpp64fc, N>;
    if constexpr (kVectorBytes == 0)
        return V{x.re, x.im};
    else
        return Factor<Zpp64fc, N>{broadcast<V>(x.re), pairsOf<V>(-x.im, x.im)};
}

template <class V>
ZPP_INLINE V negative(V v) {
    return -v;
}
template <class V>
ZPP_INLINE Complex<V> negative(Complex<V> v) {
    return {-v.re, -v.im};
}
template <class V>
ZPP_INLINE PairFactor<V> negative(PairFactor<V> f) {
    return {-f.re, -f.im};
}

// f x
template <class V>
ZPP_INLINE V multiplied(V f, V x) {
    return f * x;
}
template <class V>
ZPP_INLINE V multiplied(PairFactor<V> f, V x) {
    return mulAdd(f.im, swapPairs(x), f.re * x);
}
ZPP_INLINE Complex<double> multiplied(Complex<double> f, Complex<double> x) {
    return {f.re * x.re - f.im * x.im, f.re * x.im + f.im * x.re};
}

// sum + f x
template <class V>
ZPP_INLINE V addProduct(V f, V x, V sum) {
    return mulAdd(f, x, sum);
}
template <class V>
ZPP_INLINE V addProduct(PairFactor<V> f, V x, V sum) {
    return mulAdd(f.im, swapPairs(x), mulAdd(f.re, x, sum));
}
ZPP_INLINE Complex<double> addProduct(Complex<double> f, Complex<double> x, Complex<double> sum) {
    return {sum.re + f.re * x.re - f.im * x.im, sum.im + f.re * x.im + f.im * x.re};
}

// C = B - A B0
template <class T>
ZPP_INLINE auto inputFactor(const T* a, const T* b, const T* b0) {
    return addProduct(negative(loadFactor(a)), loadValue(b0), loadValue(b));
}

// A filter of a small order, in registers; taps and delay line as in a state.
inline constexpr int kSmallOrder = 6;

template <int kOrder, class T>
[[gnu::noinline]] void filterSmall(const T* taps, T* line, const T* src, T* dst, size_t len) {
    Factor<T> back[kOrder], input[kOrder];
    Value<T> d[kOrder];
    const auto b0 = loadFactor(taps);
#pragma GCC unroll 8
    for (int i = 0; i < kOrder; ++i) {
        const T* a = taps + kOrder + 1 + i;
        T c;
        store(&c, inputFactor(a, taps + 1 + i, taps));
        input[i] = loadFactor(&c);
        back[i] = negative(loadFactor(a));
        d[i] = loadValue(line + i);
    }
    for (size_t n = 0; n < len; ++n) {
        const auto x = loadValue(src + n), first = d[0];
        store(dst + n, addProduct(b0, x, first));
#pragma GCC unroll 8
        for (int i = 0; i < kOrder; ++i) {
            const auto in = multiplied(input[i], x);
            d[i] =
                stored(addProduct(back[i], first, i + 1 < kOrder ? d[i + 1 < kOrder ? i + 1 : i] + in : in));
        }
    }
#pragma GCC unroll 8
    for (int i = 0; i < kOrder; ++i) store(line + i, d[i]);
}

// One sample of a filter of a higher order.
template <class T>
ZPP_INLINE void filterSample(const T* taps, size_t order, T* line, const T* src, T* dst) {
    constexpr int n = kStep<T>;
    const T *b = taps + 1, *a = b + order;
    const T x = *src;
    T y;
    store(&y, stored(addProduct(loadFactor(taps), loadValue(src), loadValue(line))));
    size_t i = 0;
    const auto advance = [&]<int N>(Lanes<N>) ZPP_INLINE_LAMBDA {
        const auto in = addProduct(sameFactor<N>(x), loadValue<N>(b + i), loadValue<N>(line + i + 1));
        store(line + i, addProduct(negative(sameFactor<N>(y)), loadValue<N>(a + i), in));
        i += N;
    };
    while (i + n <= order) advance(Lanes<n>());
    if constexpr (n > 1)
        while (i < order) advance(Lanes<1>());
    *dst = y;
}

template <class T>
[[gnu::noinline]] void filterLarge(const T* taps, size_t order, T* line, const T* src, T* dst, size_t len) {
    for (size_t i = 0; i < len; ++i) filterSample(taps, order, line, src + i, dst + i);
}

}  // namespace zpp::ZPP_ISA
