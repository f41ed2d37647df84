// What stands between a cosine transform and the Fourier transform that computes it. (Makhoul, "A fast cosine
// transform in one and two dimensions", 1980.)
//
// The signal x is taken in another order, v[n] = x[2 n] and v[N - 1 - n] = x[2 n + 1]; of its spectrum V,
//     c exp(-2 pi i k / (4 N)) V[k] = y[k] - i y[N - k].
// For even N it is taken as M = N / 2 complex numbers. With their spectrum Z, t = exp(-2 pi i k / (4 N)) and
//     G = c / 2 (t - i t^5),   H = c / 2 (t + i t^5)
// G Z[k] + H conj(Z[M - k]) is y[k] - i y[N - k], and H Z[k] + G conj(Z[M - k]), times exp(pi i / 4), is
// y[M - k] + i y[M + k]. Nothing is rounded on the way but the products and their sums.
#pragma once

#include "core/simd_interleave.h"
#include "transform/dct_spec.h"
#include "transform/fft_kernel.h"

namespace zpp::ZPP_ISA {

// Calls body(integral_constant W, i) for vectors that cover 0 .. count - 1, of full width or what there is
// room for; the last of them begins where it ends with the last element, and so may repeat some.
template <int W = kLanes<double>, class Body>
ZPP_INLINE void forOverlapping(size_t count, Body body) {
    if constexpr (W > 1)
        if (count < W) return forOverlapping<W / 2>(count, body);
    if (count == 0) return;
    for (size_t i = 0; i + W < count; i += W) body(std::integral_constant<int, W>{}, i);
    body(std::integral_constant<int, W>{}, count - W);
}
// How many these are, and how wide.
struct Overlapping {
    size_t width, vectors;
    explicit Overlapping(size_t count) : width(static_cast<size_t>(kLanes<double>)) {
        while (width > count) width /= 2;
        vectors = (count + width - 1) / width;
    }
    size_t first(size_t count, size_t i) const { return i + 1 < vectors ? i * width : count - width; }
};

// v from x, and x from v.
inline void takeInOrder(const double* x, double* v, size_t n) {
    forOverlapping(n / 2, [=](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const auto pair = loadDeinterleaved<V>(x + 2 * i);
        store(v + i, pair.low);
        store(v + n - i - width, reverseLanes(pair.high));
    });
    if (n % 2 != 0) v[n / 2] = x[n - 1];
}
inline void putInOrder(const double* v, double* x, size_t n) {
    forOverlapping(n / 2, [=](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const auto pair = interleaved(Halves<V>{load<V>(v + i), reverseLanes(load<V>(v + n - i - width))});
        store(x + 2 * i, pair.low);
        store(x + 2 * i + width, pair.high);
    });
    if (n % 2 != 0) x[n - 1] = v[n / 2];
}

// Pairs of numbers from p on: the first ones and the second ones.
template <class V>
ZPP_INLINE Complex<V> loadParts(const double* p) {
    const auto pair = loadDeinterleaved<V>(p);
    return {pair.low, pair.high};
}
template <class V>
ZPP_INLINE void storeParts(double* p, V first, V second) {
    const auto pair = interleaved(Halves<V>{first, second});
    store(p, pair.low);
    store(p + sizeof(V) / sizeof(double), pair.high);
}

// a v + b w and conj(a) v + conj(b) w
template <class V>
ZPP_INLINE Complex<V> sumOfProducts(Complex<V> a, Complex<V> v, Complex<V> b, Complex<V> w) {
    return {mulSubFrom(b.im, w.im, mulAdd(b.re, w.re, mulSubFrom(a.im, v.im, a.re * v.re))),
            mulAdd(b.im, w.re, mulAdd(b.re, w.im, mulAdd(a.im, v.re, a.re * v.im)))};
}
template <class V>
ZPP_INLINE Complex<V> sumOfConjugateProducts(Complex<V> a, Complex<V> v, Complex<V> b, Complex<V> w) {
    return {mulAdd(b.im, w.im, mulAdd(b.re, w.re, mulAdd(a.im, v.im, a.re * v.re))),
            mulSubFrom(b.im, w.re, mulAdd(b.re, w.im, mulSubFrom(a.im, v.re, a.re * v.im)))};
}

// For each vector of k = 1 .. M / 2 the twiddles hold blocks of G, H, exp(pi i / 4) G and exp(pi i / 4) H.
inline constexpr size_t kBlocksOfTwiddles = 4;

// y from Z, N being even.
inline void cosinesFromPairs(const double* z, double* y, size_t n, const double* twiddles, double c0) {
    const size_t m = n / 2;
    y[0] = c0 * (z[0] + z[1]);
    y[m] = c0 * (z[0] - z[1]);
    forOverlapping(m / 2, [=, &twiddles](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const size_t low = i + 1, high = m - low - (width - 1);
        const Blocks<width> t{const_cast<double*>(twiddles)};
        twiddles += kBlocksOfTwiddles * 2 * width;
        const Complex<V> a = loadParts<V>(z + 2 * low), mirrored = loadParts<V>(z + 2 * high);
        const Complex<V> b = {reverseLanes(mirrored.re), -reverseLanes(mirrored.im)};
        const Complex<V> p = sumOfProducts(t.load(0), a, t.load(1), b);
        const Complex<V> q = sumOfProducts(t.load(3), a, t.load(2), b);
        store(y + low, p.re);
        store(y + n - low - (width - 1), reverseLanes(-p.im));
        store(y + high, reverseLanes(q.re));
        store(y + m + low, q.im);
    });
}

// Z / M from y.
inline void pairsFromCosines(const double* y, double* z, size_t n, const double* twiddles, double c0) {
    const size_t m = n / 2;
    z[0] = c0 * (y[0] + y[m]);
    z[1] = c0 * (y[0] - y[m]);
    forOverlapping(m / 2, [=, &twiddles](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const size_t low = i + 1, high = m - low - (width - 1);
        const Blocks<width> t{const_cast<double*>(twiddles)};
        twiddles += kBlocksOfTwiddles * 2 * width;
        const Complex<V> p = {load<V>(y + low), -reverseLanes(load<V>(y + n - low - (width - 1)))};
        const Complex<V> q = {reverseLanes(load<V>(y + high)), load<V>(y + m + low)};
        const Complex<V> v = sumOfConjugateProducts(t.load(0), p, t.load(3), q);
        const Complex<V> w = sumOfConjugateProducts(t.load(1), p, t.load(2), q);
        storeParts(z + 2 * low, v.re, v.im);
        storeParts(z + 2 * high, reverseLanes(w.re), reverseLanes(-w.im));
    });
}

}  // namespace zpp::ZPP_ISA
