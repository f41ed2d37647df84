// Cosine transforms by their sums: the fixed lengths, and any other up to kMaxDirect.
//
// The signal is folded, x[n] +- x[N - 1 - n]: the sums alone give the even results, the differences the odd
// ones, so that two matrices of a quarter of the size are enough. The inverse unfolds.
#pragma once

#include "transform/dct_passes.h"

namespace zpp::ZPP_ISA {

inline constexpr double kRootOfHalf = 0.70710678118654752440;
// c cos(i pi / 16) of length 8, and of length 4 what has i even, times the root of 2.
inline constexpr double kCosines8[] = {0,
                                       0.49039264020161522457,
                                       0.46193976625564337807,
                                       0.41573480615127261853,
                                       0.35355339059327376220,
                                       0.27778511650980111238,
                                       0.19134171618254488587,
                                       0.09754516100806413393};
inline constexpr double kCosines4[] = {0, 0.65328148243818826393, 0, 0.27059805007309849220};

// In and out may be the same.
template <int N>
ZPP_INLINE void smallForward(const double* x, double* y) {
    if constexpr (N == 1) y[0] = x[0];
    if constexpr (N == 2) {
        const double a = x[0], b = x[1];
        y[0] = (a + b) * kRootOfHalf;
        y[1] = (a - b) * kRootOfHalf;
    }
    if constexpr (N == 4) {
        constexpr auto& c = kCosines4;
        const double s = x[0] + x[3], t = x[1] + x[2], d = x[0] - x[3], e = x[1] - x[2];
        y[0] = (s + t) * 0.5;
        y[1] = mulAdd(d, c[1], e * c[3]);
        y[2] = (s - t) * 0.5;
        y[3] = mulSubFrom(e, c[1], d * c[3]);
    }
    if constexpr (N == 8) {
        constexpr auto& c = kCosines8;
        const double s0 = x[0] + x[7], s1 = x[1] + x[6], s2 = x[2] + x[5], s3 = x[3] + x[4];
        const double d0 = x[0] - x[7], d1 = x[1] - x[6], d2 = x[2] - x[5], d3 = x[3] - x[4];
        const double a = s0 + s3, b = s1 + s2, d = s0 - s3, e = s1 - s2;
        y[0] = (a + b) * c[4];
        y[4] = (a - b) * c[4];
        y[2] = mulAdd(d, c[2], e * c[6]);
        y[6] = mulSubFrom(e, c[2], d * c[6]);
        y[1] = mulAdd(d0, c[1], d1 * c[3]) + mulAdd(d2, c[5], d3 * c[7]);
        y[3] = mulSubFrom(d1, c[7], d0 * c[3]) - mulAdd(d2, c[1], d3 * c[5]);
        y[5] = mulSubFrom(d1, c[1], d0 * c[5]) + mulAdd(d2, c[7], d3 * c[3]);
        y[7] = mulSubFrom(d1, c[5], d0 * c[7]) + mulSubFrom(d3, c[1], d2 * c[3]);
    }
}
template <int N>
ZPP_INLINE void smallInverse(const double* y, double* x) {
    if constexpr (N <= 2) smallForward<N>(y, x);
    if constexpr (N == 4) {
        constexpr auto& c = kCosines4;
        const double s = (y[0] + y[2]) * 0.5, t = (y[0] - y[2]) * 0.5;
        const double d = mulAdd(y[1], c[1], y[3] * c[3]), e = mulSubFrom(y[3], c[1], y[1] * c[3]);
        x[0] = s + d;
        x[1] = t + e;
        x[2] = t - e;
        x[3] = s - d;
    }
    if constexpr (N == 8) {
        constexpr auto& c = kCosines8;
        const double a = (y[0] + y[4]) * c[4], b = (y[0] - y[4]) * c[4];
        const double d = mulAdd(y[2], c[2], y[6] * c[6]), e = mulSubFrom(y[6], c[2], y[2] * c[6]);
        const double s0 = a + d, s1 = b + e, s2 = b - e, s3 = a - d;
        const double d0 = mulAdd(y[1], c[1], y[3] * c[3]) + mulAdd(y[5], c[5], y[7] * c[7]);
        const double d1 = mulSubFrom(y[3], c[7], y[1] * c[3]) - mulAdd(y[5], c[1], y[7] * c[5]);
        const double d2 = mulSubFrom(y[3], c[1], y[1] * c[5]) + mulAdd(y[5], c[7], y[7] * c[3]);
        const double d3 = mulSubFrom(y[3], c[5], y[1] * c[7]) + mulSubFrom(y[7], c[1], y[5] * c[3]);
        x[0] = s0 + d0, x[1] = s1 + d1, x[2] = s2 + d2, x[3] = s3 + d3;
        x[4] = s3 - d3, x[5] = s2 - d2, x[6] = s1 - d1, x[7] = s0 - d0;
    }
}

// The rows of the matrices are those of the input, of as many numbers as fill vectors.
inline constexpr size_t rowLength(size_t outputs) {
    const size_t lanes = static_cast<size_t>(kLanes<double>);
    return (outputs + lanes - 1) / lanes * lanes;
}
inline constexpr size_t kMaxRow = rowLength(kMaxDirect / 2);

// Even elements of the transform, of which there is one more where N is odd, and odd ones.
struct Halfway {
    size_t even, odd;
    explicit Halfway(size_t n) : even(n - n / 2), odd(n / 2) {}
    size_t matrixSize() const { return even * rowLength(even) + odd * rowLength(odd); }
};

// As many results at once as registers hold beside an input and what is loaded.
inline constexpr int kMaxSums = kRegisters > 16 ? 14 : kRegisters - 2;

template <int K>
inline void sumsOfProducts(const double* in, size_t inputs, const double* matrix, size_t row, double* out) {
    using V = Vec<double>;
    V sums[K] = {};
    for (size_t i = 0; i < inputs; ++i, matrix += row) {
        const V x = broadcast<V>(in[i]);
#pragma GCC unroll 16
        for (size_t k = 0; k < K; ++k) sums[k] = mulAdd(x, load<V>(matrix + k * kLanes<double>), sums[k]);
    }
#pragma GCC unroll 16
    for (size_t k = 0; k < K; ++k) store(out + k * kLanes<double>, sums[k]);
}

// out = in * matrix, `vectors` of them at a time.
template <int K = kMaxSums>
inline void multiplyBlock(size_t vectors, const double* in, size_t inputs, const double* matrix, size_t row,
                          double* out) {
    if constexpr (K > 0) {
        if (vectors == K) return sumsOfProducts<K>(in, inputs, matrix, row, out);
        multiplyBlock<K - 1>(vectors, in, inputs, matrix, row, out);
    }
}
inline void multiply(const double* in, size_t inputs, const double* matrix, size_t row, double* out) {
    constexpr size_t lanes = static_cast<size_t>(kLanes<double>);
    const size_t vectors = row / lanes, blocks = (vectors + kMaxSums - 1) / kMaxSums;
    for (size_t i = 0, done = 0; i < blocks; ++i) {
        const size_t next = vectors * (i + 1) / blocks;
        multiplyBlock(next - done, in, inputs, matrix + done * lanes, row, out + done * lanes);
        done = next;
    }
}

inline void multiplyHalves(const double* in, const ZppsDCTSpec* spec, double* even, double* odd) {
    const Halfway half(static_cast<size_t>(spec->len));
    const size_t row = rowLength(half.even);
    multiply(in, half.even, spec->matrices, row, even);
    multiply(in + half.even, half.odd, spec->matrices + half.even * row, rowLength(half.odd), odd);
}

inline void forwardDirectly(const double* src, double* dst, const ZppsDCTSpec* spec, double* buffer) {
    const size_t n = static_cast<size_t>(spec->len);
    const Halfway half(n);
    double* const differences = buffer + half.even;
    forOverlapping(half.odd, [=](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const V a = load<V>(src + i), b = reverseLanes(load<V>(src + n - i - width));
        store(buffer + i, a + b);
        store(differences + i, a - b);
    });
    if (half.even > half.odd) buffer[half.odd] = src[half.odd];
    double even[kMaxRow], odd[kMaxRow];
    multiplyHalves(buffer, spec, even, odd);
    forOverlapping(half.odd, [=, &even, &odd](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        storeParts(dst + 2 * i, load<V>(even + i), load<V>(odd + i));
    });
    if (half.even > half.odd) dst[n - 1] = even[half.odd];
}

inline void inverseDirectly(const double* src, double* dst, const ZppsDCTSpec* spec, double* buffer) {
    const size_t n = static_cast<size_t>(spec->len);
    const Halfway half(n);
    forOverlapping(half.odd, [=](auto width, size_t i) ZPP_INLINE_LAMBDA {
        const auto pair = loadParts<Vec<double, width>>(src + 2 * i);
        store(buffer + i, pair.re);
        store(buffer + half.even + i, pair.im);
    });
    if (half.even > half.odd) buffer[half.odd] = src[n - 1];
    double even[kMaxRow], odd[kMaxRow];
    multiplyHalves(buffer, spec, even, odd);
    forOverlapping(half.odd, [=, &even, &odd](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const V a = load<V>(even + i), b = load<V>(odd + i);
        store(dst + i, a + b);
        store(dst + n - i - width, reverseLanes(a - b));
    });
    if (half.even > half.odd) dst[half.odd] = even[half.odd];
}

}  // namespace zpp::ZPP_ISA
