// The real transforms' share: N real samples are taken as M = N / 2 complex ones, and the M-point spectrum Z
// becomes the N-point spectrum X, or X becomes Z for the inverse.
//     2 X[k] = s - i w^k d,   2 conj(X[M - k]) = s + i w^k d,   w = exp(-2 pi i / N),
// with s and d the sum and the difference of Z[k] and conj(Z[M - k]); likewise Z from X with i / w^k.
#pragma once

#include "transform/fft_large.h"

namespace zpp::ZPP_ISA {

// Twice the pairs k .. k + W - 1 and m - k, ... of X from those of Z (or back); `in` and `out` point at pair
// 0.
template <int W, bool kInverse>
ZPP_INLINE void recombine(const double* in, double* out, size_t k, size_t m, const SplitRoots& roots) {
    using V = Vec<double, W>;
    const size_t low = 2 * k, high = 2 * (m - k - (W - 1));
    const Complex<V> a = loadComplex<W>(in + low);
    const Complex<V> mirrored = loadComplex<W>(in + high);
    const Complex<V> b = {reverseLanes(mirrored.re), -reverseLanes(mirrored.im)};
    const Complex<V> w = rootsAt<W, true>(roots, k);
    const Complex<V> sum = a + b;
    const Complex<V> t = twiddled(a - b, kInverse ? Complex<V>{w.re, -w.im} : w);
    const Complex<V> turned = kInverse ? Complex<V>{-t.im, t.re} : rotated(t);
    storeComplex(out + low, sum + turned);
    const Complex<V> other = sum - turned;
    storeComplex(out + high, Complex<V>{reverseLanes(other.re), -reverseLanes(other.im)});
}

// All pairs 1 .. m - 1 of recombine.
template <bool kInverse>
inline void recombineAll(const double* in, double* out, size_t m, const SplitRoots& roots) {
    constexpr size_t n = kLanes<double>;
    const size_t half = m / 2;
    size_t k = 1;
    for (; k < half && k % n != 0; ++k) recombine<1, kInverse>(in, out, k, m, roots);
    for (; k < half; k += n) recombine<n, kInverse>(in, out, k, m, roots);
    if (m < 2) return;
    const double re = 2 * in[m], im = -2 * in[m + 1];
    out[m] = re;
    out[m + 1] = im;
}

}  // namespace zpp::ZPP_ISA
