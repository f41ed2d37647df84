// The FFT kernel: Stockham autosort passes over blocks, a block being one vector of real and one of imaginary
// parts. A pass of radix R over sequences of n blocks, s of them interleaved,
//     out[q + s (R p + k)] = w^(p k) sum_j w_R^(j k) in[q + s (p + j n / R)],  w = exp(-2 pi i / n),
// leaves R s sequences of n / R blocks: all lanes do the same, with the same twiddle. Whoever wants the lanes
// of a block to be neighbours of one transform runs a first pass with the radix of the vector, which
// transposes in registers (firstPass); in the four-step scheme they are columns of their own.
//
// The promise of (1 + order) 2^-52 of the largest result: a value on its way is a mean of results with other
// signs and phases, so never above the largest of them. Each of the `order` halvings of the length rounds its
// values anew, with errors that differ in sign: together 0.65 sqrt(order) 2^-53 in the root mean square,
// where all results are as large. The largest of 2^order such errors is above that by sqrt(2 ln 2^order),
// which makes it linear in the order: measured (bench/accuracy) are 12.5 2^-53 at order 16 and 16.2 2^-53 at
// order 22, for the inverse of the real transform with results of one magnitude and random sign.
#pragma once

#include "transform/fft_spec.h"

namespace zpp::ZPP_ISA {

// Where blocks are. All have load(i) and store(i, value) for the i-th block.

// Between passes.
template <int W>
struct Blocks {
    using V = Vec<double, W>;
    static constexpr bool kComplexOrder = true;
    double* p;

    ZPP_INLINE Complex<V> load(size_t i) const {
        return {zpp::ZPP_ISA::load<V>(p + 2 * W * i), zpp::ZPP_ISA::load<V>(p + 2 * W * i + W)};
    }
    ZPP_INLINE void store(size_t i, Complex<V> v) const {
        zpp::ZPP_ISA::store(p + 2 * W * i, v.re);
        zpp::ZPP_ISA::store(p + 2 * W * i + W, v.im);
    }
    ZPP_INLINE void prefetch(size_t i) const { __builtin_prefetch(p + 2 * W * i, 0, 2); }
    Blocks from(size_t i) const { return {p + 2 * W * i}; }
};

// Interleaved complex numbers; the parts exchanged for the inverse transform, as
// inverse(x) = exchange(forward(exchange(x))).
template <int W, bool kExchange>
struct Interleaved {
    using V = Vec<double, W>;
    static constexpr bool kComplexOrder = true;  // lanes are in the order of loadComplex
    double* p;

    ZPP_INLINE Complex<V> load(size_t i) const {
        const Complex<V> v = loadComplex<W>(p + 2 * W * i);
        return kExchange ? Complex<V>{v.im, v.re} : v;
    }
    ZPP_INLINE void store(size_t i, Complex<V> v) const {
        storeComplex(p + 2 * W * i, kExchange ? Complex<V>{v.im, v.re} : v);
    }
    ZPP_INLINE void prefetch(size_t i) const { __builtin_prefetch(p + 2 * W * i, 0, 2); }
    bool operator==(const Interleaved& other) const { return p == other.p; }
    Interleaved from(size_t i) const { return {p + 2 * W * i}; }
    Blocks<W> blocks() const { return {p}; }  // the same memory between passes
};

// Real and imaginary parts in arrays of their own.
template <int W>
struct Split {
    using V = Vec<double, W>;
    static constexpr bool kComplexOrder = false;
    double* re;
    double* im;

    ZPP_INLINE Complex<V> load(size_t i) const {
        return {zpp::ZPP_ISA::load<V>(re + W * i), zpp::ZPP_ISA::load<V>(im + W * i)};
    }
    ZPP_INLINE void store(size_t i, Complex<V> v) const {
        zpp::ZPP_ISA::store(re + W * i, v.re);
        zpp::ZPP_ISA::store(im + W * i, v.im);
    }
    ZPP_INLINE void prefetch(size_t i) const {
        __builtin_prefetch(re + W * i, 0, 2);
        __builtin_prefetch(im + W * i, 0, 2);
    }
    bool operator==(const Split& other) const { return re == other.re || im == other.im; }
    Split from(size_t i) const { return {re + W * i, im + W * i}; }
    Split blocks() const { return *this; }
};

// The element of a block that a lane holds.
constexpr int elementOfLane(int width, int lane, bool complexOrder) {
    return complexOrder ? lane / 2 + lane % 2 * (width / 2) : lane;
}

// Exchanges rows and columns: lane l of x[k] is an element of row k; afterwards x[j] holds element j of the
// rows 0 .. W - 1, the lanes being in the order that they had.
template <bool kComplexOrder, class V, int W>
ZPP_INLINE void transposeBlocks(Complex<V> (&x)[W]) {
    V re[W], im[W];
#pragma GCC unroll 8
    for (int l = 0; l < W; ++l) {
        const int k = elementOfLane(W, l, kComplexOrder);
        re[l] = x[k].re, im[l] = x[k].im;
    }
    transpose(re);
    transpose(im);
#pragma GCC unroll 8
    for (int l = 0; l < W; ++l) x[elementOfLane(W, l, kComplexOrder)] = {re[l], im[l]};
}

// a * w
template <class V>
ZPP_INLINE Complex<V> twiddled(Complex<V> a, Complex<V> w) {
    return {mulSubFrom(a.im, w.im, a.re * w.re), mulAdd(a.re, w.im, a.im * w.re)};
}

// a * -i
template <class V>
ZPP_INLINE Complex<V> rotated(Complex<V> a) {
    return {a.im, -a.re};
}

template <class V>
ZPP_INLINE void dft(Complex<V> (&x)[1]) {
    (void)x;
}

template <class V>
ZPP_INLINE void dft(Complex<V> (&x)[2]) {
    const Complex<V> a = x[0], b = x[1];
    x[0] = a + b;
    x[1] = a - b;
}

template <class V>
ZPP_INLINE void dft(Complex<V> (&x)[4]) {
    const Complex<V> a = x[0] + x[2], b = x[0] - x[2], c = x[1] + x[3], d = x[1] - x[3];
    x[0] = a + c;
    x[2] = a - c;
    x[1] = {b.re + d.im, b.im - d.re};
    x[3] = {b.re - d.im, b.im + d.re};
}

template <class V>
ZPP_INLINE void dft(Complex<V> (&x)[8]) {
    Complex<V> even[4] = {x[0] + x[4], x[1] + x[5], x[2] + x[6], x[3] + x[7]};
    const Complex<V> b = x[1] - x[5], d = x[3] - x[7];
    const V h = broadcast<V>(0.70710678118654752440);
    Complex<V> odd[4] = {x[0] - x[4], Complex<V>{b.re + b.im, b.im - b.re} * h, rotated(x[2] - x[6]),
                         Complex<V>{d.im - d.re, -(d.re + d.im)} * h};
    dft(even);
    dft(odd);
    x[0] = even[0], x[2] = even[1], x[4] = even[2], x[6] = even[3];
    x[1] = odd[0], x[3] = odd[1], x[5] = odd[2], x[7] = odd[3];
}

// One pass but the last. `twiddles` holds w^(p k), k = 1 .. R - 1, for p = 0, 1, ...
template <int R, class In, class Out>
inline void pass(In in, Out out, size_t n, size_t s, const double* twiddles) {
    using V = typename In::V;
    const size_t m = n / R;
    for (size_t p = 0; p < m; ++p, twiddles += 2 * (R - 1)) {
        Complex<V> w[R];
#pragma GCC unroll 8
        for (size_t k = 1; k < R; ++k)
            w[k] = {broadcast<V>(twiddles[2 * k - 2]), broadcast<V>(twiddles[2 * k - 1])};
        for (size_t q = 0; q < s; ++q) {
            Complex<V> x[R];
#pragma GCC unroll 8
            for (size_t j = 0; j < R; ++j) x[j] = in.load(q + s * (p + m * j));
            dft(x);
            out.store(q + s * R * p, x[0]);
#pragma GCC unroll 8
            for (size_t k = 1; k < R; ++k) out.store(q + s * (R * p + k), twiddled(x[k], w[k]));
        }
    }
}

// The last pass, n = R: without twiddles, with the scale, and right in place.
template <int R, class In, class Out>
inline void lastPass(In in, Out out, size_t s, double scale) {
    using V = typename In::V;
    const V factor = broadcast<V>(scale);
    for (size_t q = 0; q < s; ++q) {
        Complex<V> x[R];
#pragma GCC unroll 8
        for (size_t j = 0; j < R; ++j) x[j] = in.load(q + s * j);
        dft(x);
#pragma GCC unroll 8
        for (size_t k = 0; k < R; ++k) out.store(q + s * k, x[k] * factor);
    }
}

// lastPass of any length up to 8.
template <class In, class Out>
inline void lastPass(In in, Out out, size_t n, size_t s, double scale) {
    switch (n) {
        case 1:
            return lastPass<1>(in, out, s, scale);
        case 2:
            return lastPass<2>(in, out, s, scale);
        case 4:
            return lastPass<4>(in, out, s, scale);
        default:
            return lastPass<8>(in, out, s, scale);
    }
}

// The radix of the next pass over sequences of n > 8 blocks.
constexpr size_t passRadix(size_t n) { return n >= kRadix8From ? 8 : 4; }

// The size of the tables of `passes` in doubles.
inline size_t passTableSize(size_t n) {
    size_t size = 0;
    while (n > 8) {
        const size_t radix = passRadix(n);
        n /= radix;
        size += n * 2 * (radix - 1);
    }
    return size;
}

// The next of the passes over s sequences of n > 8 blocks: what remains is in n, s and the twiddles.
template <class In, class Out>
inline void nextPass(In in, Out out, size_t& n, size_t& s, const double*& twiddles) {
    const size_t radix = passRadix(n);
    if (radix == 8)
        pass<8>(in, out, n, s, twiddles);
    else
        pass<4>(in, out, n, s, twiddles);
    n /= radix;
    s *= radix;
    twiddles += n * 2 * (radix - 1);
}

// All passes over s sequences of n blocks, from `a` to `out`; `a` and `b` are overwritten. `out` may be the
// memory of either.
template <class A, class B, class Out>
inline void passes(A a, B b, Out out, size_t n, size_t s, const double* twiddles, double scale) {
    for (;;) {
        if (n <= 8) return lastPass(a, out, n, s, scale);
        nextPass(a, b, n, s, twiddles);
        if (n <= 8) return lastPass(b, out, n, s, scale);
        nextPass(b, a, n, s, twiddles);
    }
}

// `passes` with the first of them from `in`.
template <class In, class A, class B, class Out>
inline void passesFrom(In in, A a, B b, Out out, size_t n, size_t s, const double* twiddles, double scale) {
    if (n <= 8) return lastPass(in, out, n, s, scale);
    nextPass(in, a, n, s, twiddles);
    passes(a, b, out, n, s, twiddles, scale);
}

// Calls body(integral_constant W) for the width W of an order.
template <int W = kLanes<double>, class Body>
ZPP_INLINE void withWidth(int order, Body body) {
    if constexpr (W > 1)
        if (transformWidth(order) < W) return withWidth<W / 2>(order, body);
    body(std::integral_constant<int, W>{});
}

// W vectors of the input become W blocks.
template <bool kComplexOrder, class V, int W>
ZPP_INLINE void firstButterfly(Complex<V> (&x)[W], const double* twiddles) {
    dft(x);
    const Blocks<W> w{const_cast<double*>(twiddles)};
#pragma GCC unroll 8
    for (size_t k = 1; k < W; ++k) x[k] = twiddled(x[k], w.load(k - 1));
    transposeBlocks<kComplexOrder>(x);
}

// The pass with the width W as its radix: takes W vectors of the input, n / W apart, and transposes the
// results so that a block holds results 0 .. W - 1. n is the length in blocks.
template <int W, class In>
inline void firstPass(In in, Blocks<W> out, size_t n, const double* twiddles) {
    using V = Vec<double, W>;
    const size_t m = n / W;
    for (size_t i = 0; i < m; ++i, twiddles += 2 * W * (W - 1)) {
        Complex<V> x[W];
#pragma GCC unroll 8
        for (size_t j = 0; j < W; ++j) x[j] = in.load(i + m * j);
        firstButterfly<In::kComplexOrder>(x, twiddles);
#pragma GCC unroll 8
        for (size_t j = 0; j < W; ++j) out.store(W * i + j, x[j]);
    }
}

// A transform of n blocks, W <= n <= 8, with all passes in registers.
template <int n, class In, class Out>
inline void shortTransform(In in, Out out, const double* twiddles, double scale) {
    using V = typename In::V;
    constexpr int W = sizeof(V) / sizeof(double);
    Complex<V> y[n];
#pragma GCC unroll 8
    for (size_t i = 0; i < n / W; ++i) {
        Complex<V> x[W];
#pragma GCC unroll 8
        for (size_t j = 0; j < W; ++j) x[j] = in.load(i + n / W * j);
        firstButterfly<In::kComplexOrder>(x, twiddles + 2 * W * (W - 1) * i);
#pragma GCC unroll 8
        for (size_t j = 0; j < W; ++j) y[W * i + j] = x[j];
    }
    dft(y);
    const V factor = broadcast<V>(scale);
#pragma GCC unroll 8
    for (size_t k = 0; k < n; ++k) out.store(k, y[k] * factor);
}

// The same for any length; false if it is not that short.
template <class In, class Out>
ZPP_INLINE bool shortTransform(In in, Out out, const FftTables& tables, double scale) {
    constexpr int W = sizeof(typename In::V) / sizeof(double);
    const size_t length = size_t{1} << tables.order;
    if (length > 8 * W) return false;
    if constexpr (W <= 1)
        if (length == 1) shortTransform<1>(in, out, tables.first, scale);
    if constexpr (W <= 2)
        if (length == 2 * W) shortTransform<2>(in, out, tables.first, scale);
    if constexpr (W <= 4)
        if (length == 4 * W) shortTransform<4>(in, out, tables.first, scale);
    if (length == 8 * W) shortTransform<8>(in, out, tables.first, scale);
    return true;
}

// A longer transform, by passes over the whole data. `work` holds as much as the data.
template <class In, class Out>
inline void plainTransform(In in, Out out, double* work, const FftTables& tables, double scale) {
    constexpr int W = sizeof(typename In::V) / sizeof(double);
    const size_t n = (size_t{1} << tables.order) / W;
    const Blocks<W> a{work};
    if constexpr (W > 1) {
        firstPass<W>(in, a, n, tables.first);
        passes(a, out.blocks(), out, n, 1, tables.columns[0], scale);
    } else {
        passesFrom(in, a, out.blocks(), out, n, 1, tables.columns[0], scale);
    }
}

}  // namespace zpp::ZPP_ISA
