// The real transforms' share: N real samples are taken as M = N / 2 complex ones, and the M-point spectrum Z
// becomes the N-point spectrum X, or X becomes Z for the inverse.
//     2 X[k] = s - i w^k d,   2 conj(X[M - k]) = s + i w^k d,   w = exp(-2 pi i / N),
// with s and d the sum and the difference of Z[k] and conj(Z[M - k]); likewise Z from X with i / w^k.
#pragma once

#include "transform/fft_large.h"

namespace zpp::ZPP_ISA {

// Twice the pairs k .. k + W - 1 and m - k, ... of X from those of Z (or back); `in` and `out` point at pair
// 0.
template <bool kInverse, class V>
ZPP_INLINE void recombine(const double* in, double* out, size_t k, size_t m, Complex<V> w) {
    constexpr int W = sizeof(V) / sizeof(double);
    const size_t low = 2 * k, high = 2 * (m - k - (W - 1));
    const Complex<V> a = loadComplex<W>(in + low);
    const Complex<V> mirrored = loadComplex<W>(in + high);
    const Complex<V> b = {reverseLanes(mirrored.re), -reverseLanes(mirrored.im)};
    const Complex<V> both = a + b;
    const Complex<V> t = twiddled(a - b, kInverse ? Complex<V>{w.re, -w.im} : w);
    const Complex<V> other = kInverse ? Complex<V>{-t.im, t.re} : rotated(t);
    storeComplex(out + low, both + other);
    const Complex<V> mirror = both - other;
    storeComplex(out + high, Complex<V>{reverseLanes(mirror.re), -reverseLanes(mirror.im)});
}

// The pairs first .. last - 1 and their mirrors, in vectors of V, of whose length both are multiples.
template <bool kInverse, class V>
inline void recombinePairs(size_t first, size_t last, const double* in, double* out, size_t m,
                           const SplitRoots& roots) {
    constexpr int W = sizeof(V) / sizeof(double);
    size_t k = first;
    if (roots.fineOrder == roots.order)
        for (; k < last; k += W) recombine<kInverse>(in, out, k, m, loadComplex<W>(roots.fine + 2 * k));
    while (k < last) {
        const RootParts<V> coarse = coarseRoot<V>(roots, k);
        const size_t next = (k | ((size_t{1} << roots.fineOrder) - 1)) + 1;
        for (const size_t end = next < last ? next : last; k < end; k += W)
            recombine<kInverse>(in, out, k, m, rootsAt<true>(roots, coarse, k));
    }
}

// All pairs 1 .. m - 1 of recombine.
template <bool kInverse>
inline void recombineAll(const double* in, double* out, size_t m, const SplitRoots& roots) {
    constexpr size_t n = kLanes<double>;
    const size_t half = m / 2;
    recombinePairs<kInverse, double>(1, n < half ? n : half, in, out, m, roots);
    recombinePairs<kInverse, Vec<double>>(n, half, in, out, m, roots);
    if (m < 2) return;
    const double re = 2 * in[m], im = -2 * in[m + 1];
    out[m] = re;
    out[m + 1] = im;
}

}  // namespace zpp::ZPP_ISA
