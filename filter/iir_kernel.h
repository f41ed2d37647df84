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

// N factors.
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
// A value as the same factor for N values.
template <class T, int N>
ZPP_INLINE Factor<T, N> factorOf(Value<T> x) {
    if constexpr (std::is_same_v<T, Zpp64f>) {
        return broadcast<Vec<double, N>>(x);
    } else if constexpr (kVectorBytes == 0) {
        return x;
    } else {
        using V = Value<T, N>;
        const V re = evenTwice(repeated<V>(x)), im = oddTwice(repeated<V>(x));
        return {re, exclusiveOr(im, pairsOf<V>(-0.0, 0.0))};
    }
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
inline constexpr int kSmallOrder = 8;

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
    const auto x = loadValue(src), y = stored(addProduct(loadFactor(taps), x, loadValue(line)));
    const auto advance = [=]<int N>(Lanes<N>, size_t i) ZPP_INLINE_LAMBDA {
        const auto in = addProduct(factorOf<T, N>(x), loadValue<N>(b + i), loadValue<N>(line + i + 1));
        store(line + i, addProduct(negative(factorOf<T, N>(y)), loadValue<N>(a + i), in));
    };
    size_t i = 0;
    for (; i + n <= order; i += n) advance(Lanes<n>(), i);
    if constexpr (n > 1)
        for (; i < order; ++i) advance(Lanes<1>(), i);
    store(dst, y);
}

// Samples that a higher order takes at once: each element of the delay line is then loaded and stored once
// for them, and the elements of a register depend on those of others only.
inline constexpr int kAhead = 4;
// From here on in the widest registers, which do not pay while what is stored is loaded again soon, in other
// pieces.
inline constexpr size_t kWideOrder = 48;
// Complex factors are too many for 16 registers.
template <class T>
inline constexpr size_t kMostAhead = std::is_same_v<T, Zpp64fc>&& kVectorBytes < 64 ? 64 : ~size_t{0};

// The recursions of kAhead samples for N elements of the delay line, with inputs and negative outputs as
// factors.
template <class T, int N>
struct Advance {
    const T *b, *a;  // B(1) .., A(1) ..
    Factor<T, N> x[kAhead], y[kAhead];

    // Element i and its neighbours after sample j, from the elements one further before it.
    ZPP_INLINE Value<T, N> after(int j, size_t i, Value<T, N> d) const {
        return addProduct(y[j], loadValue<N>(a + i), addProduct(x[j], loadValue<N>(b + i), d));
    }
    // The same after the last kSteps samples, from what those are that come to be there.
    template <int kSteps = kAhead>
    ZPP_INLINE void advance(size_t i, T* line) const {
        auto d = loadValue<N>(line + i + kSteps);
#pragma GCC unroll 4
        for (int j = kAhead - kSteps; j < kAhead; ++j)
            d = after(j, i + static_cast<size_t>(kAhead - 1 - j), d);
        store(line + i, d);
    }
    // The same for elements from i on, as many as are full registers and taken by all samples. Returns where
    // they end.
    ZPP_INLINE size_t advanceAll(size_t i, size_t order, T* line) const {
        for (; i + (N + kAhead - 1) <= order; i += N) advance(i, line);
        return i;
    }
};

template <int N, class T>
ZPP_INLINE Advance<T, N> widened(const Advance<T, 1>& single, const Value<T> (&x)[kAhead],
                                 const Value<T> (&y)[kAhead]) {
    Advance<T, N> wide;
    wide.b = single.b;
    wide.a = single.a;
#pragma GCC unroll 4
    for (int j = 0; j < kAhead; ++j) {
        wide.x[j] = factorOf<T, N>(x[j]);
        wide.y[j] = negative(factorOf<T, N>(y[j]));
    }
    return wide;
}

// kAhead samples of a filter of an order above kSmallOrder.
template <class T>
ZPP_INLINE void filterAhead(const T* taps, size_t order, T* line, const T* src, T* dst) {
    constexpr int n = kStep<T> < kAhead ? kStep<T> : kAhead;
    Advance<T, 1> single;
    single.b = taps + 1;
    single.a = single.b + order;
    const auto b0 = loadFactor(taps);
    Value<T> x[kAhead], y[kAhead], d[kAhead];
#pragma GCC unroll 4
    for (int j = 0; j < kAhead; ++j) {
        d[j] = loadValue(line + j);
        x[j] = loadValue(src + j);
    }
#pragma GCC unroll 4
    for (int j = 0; j < kAhead; ++j) {
        y[j] = addProduct(b0, x[j], d[0]);
        store(dst + j, y[j]);
        single.x[j] = factorOf<T, 1>(x[j]);
        single.y[j] = negative(factorOf<T, 1>(y[j]));
#pragma GCC unroll 4
        for (int i = 0; i + j + 1 < kAhead; ++i) d[i] = single.after(j, static_cast<size_t>(i), d[i + 1]);
    }
    size_t i = 0;
    if constexpr (kStep < T >> kAhead)
        if (order >= kWideOrder) i = widened<kStep<T>>(single, x, y).advanceAll(i, order, line);
    i = widened<n>(single, x, y).advanceAll(i, order, line);
    for (; i + kAhead <= order; ++i) single.advance(i, line);
    single.template advance<3>(i, line);
    single.template advance<2>(i + 1, line);
    single.template advance<1>(i + 2, line);
}

template <class T>
[[gnu::noinline]] void filterLarge(const T* taps, size_t order, T* line, const T* src, T* dst, size_t len) {
    size_t i = 0;
    if constexpr (kVectorBytes > 0)
        if (order < kMostAhead<T>)
            for (; i + kAhead <= len; i += kAhead) filterAhead(taps, order, line, src + i, dst + i);
    for (; i < len; ++i) filterSample(taps, order, line, src + i, dst + i);
}

}  // namespace zpp::ZPP_ISA
