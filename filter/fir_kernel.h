// The sums of products of the FIR filters.
//
// A block of outputs is computed with the outputs in the lanes of vectors: each tap is broadcast once for a
// tile of several vectors of running sums, which hide the latency of the multiply-adds. Every output adds its
// products in the same order, whatever tile it falls into, so its bits do not depend on how a signal is
// split.
#pragma once

#include "core/loops.h"

namespace zpp::ZPP_ISA {

// Taps in the order in which they meet a window of samples, oldest sample first, `step` elements apart.
template <class T>
struct TapRow {
    const T* first;
    ptrdiff_t step;

    ZPP_INLINE const T& operator[](size_t j) const { return first[static_cast<ptrdiff_t>(j) * step]; }
};

// Elements that fill a vector, as interleaved complex numbers do not in kStep.
template <class T>
inline constexpr int kFull = kLanes<double>;
template <>
inline constexpr int kFull<Zpp64fc> = kLanes<double> > 1 ? kLanes<double> / 2 : 1;

// Vectors of outputs in a tile: eight registers of sums where there are sixteen, four where there are eight.
inline constexpr int kSums = sizeof(void*) == 4 ? 4 : 8;
template <class T>
inline constexpr int kTileVectors = kSums;
template <>
inline constexpr int kTileVectors<Zpp64fc> = kSums / 2;

// The running sums of N outputs, for a tap that is broadcast.
template <class T, int N>
struct Sums;

template <int N>
struct Sums<Zpp64f, N> {
    using V = Vec<double, N>;
    using Tap = V;
    V sum{};

    ZPP_INLINE static Tap tap(const Zpp64f& h) { return broadcast<V>(h); }
    ZPP_INLINE static V samples(const Zpp64f* x) { return load<V>(x); }
    ZPP_INLINE void add(Tap h, V x) { sum = mulAdd(h, x, sum); }
    ZPP_INLINE void put(Zpp64f* y) const { store(y, sum); }
};

// Interleaved samples times re and times im of the tap, each summed on its own; im's sum is turned by a right
// angle at the end.
template <int N>
struct Sums<Zpp64fc, N> {
    using V = Vec<double, 2 * N>;
    struct Tap {
        V re, im;
    };
    V byRe{}, byIm{};

    ZPP_INLINE static Tap tap(const Zpp64fc& h) { return {broadcast<V>(h.re), broadcast<V>(h.im)}; }
    ZPP_INLINE static V samples(const Zpp64fc* x) { return pinned(load<V>(x)); }
    ZPP_INLINE void add(Tap h, V x) {
        byRe = mulAdd(h.re, x, byRe);
        byIm = mulAdd(h.im, x, byIm);
    }
    ZPP_INLINE void put(Zpp64fc* y) const { store(y, subtractAdd(byRe, swapPairs(byIm))); }
};

// y[i] = sum over j of taps[j] * x[i + j], for `Vectors` vectors of N outputs. All of x is read before y is
// written.
//
// A vector of samples that meets tap j for one vector of outputs meets tap j + kFull for the one before: with
// two such taps at a time there are fewer loads than multiply-adds. (Of unaligned loads every second or third
// spans two cache lines and takes twice the time.) Complex samples are used twice anyway.
template <class T, int N, int Vectors>
ZPP_INLINE void filterTile(TapRow<T> taps, size_t tapsLen, const T* x, T* y) {
    using Sum = Sums<T, N>;
    Sum sums[Vectors];
    size_t j = 0;
    if constexpr (std::is_same_v<T, Zpp64f>) {
        constexpr size_t apart = kFull<T>;
        static_assert(N == apart || Vectors == 1);
        for (; j + 2 * apart <= tapsLen; j += 2 * apart)
            for (size_t k = j; k < j + apart; ++k) {
                const auto first = Sum::tap(taps[k]);
                const auto second = Sum::tap(taps[k + apart]);
                auto samples = pinned(Sum::samples(x + k));
#pragma GCC unroll 8
                for (int i = 0; i < Vectors; ++i) {
                    const auto next = pinned(Sum::samples(x + k + apart + i * N));
                    sums[i].add(first, samples);
                    sums[i].add(second, next);
                    samples = next;
                }
            }
    }
    for (; j < tapsLen; ++j) {
        const auto tap = Sum::tap(taps[j]);
#pragma GCC unroll 8
        for (int i = 0; i < Vectors; ++i) sums[i].add(tap, Sum::samples(x + j + i * N));
    }
#pragma GCC unroll 8
    for (int i = 0; i < Vectors; ++i) sums[i].put(y + i * N);
}

// The last count outputs by tiles of Size, the others by smaller ones.
template <int Size, class T>
ZPP_INLINE void filterTiles(TapRow<T> taps, size_t tapsLen, const T* x, T* y, size_t count) {
    constexpr int n = Size < kFull<T> ? Size : kFull<T>;
    while (count >= Size) {
        count -= Size;
        filterTile<T, n, Size / n>(taps, tapsLen, x + count, y + count);
    }
    if constexpr (Size > 1) filterTiles<Size / 2>(taps, tapsLen, x, y, count);
}

// y[i] = sum over j of taps[j] * x[i + j], for i = count-1 down to 0: right also where y[i] stands in the
// place of x[i + tapsLen - 1] or of a later sample, as when a block is filtered in place.
template <class T>
[[gnu::noinline]] void filterWindows(TapRow<T> taps, size_t tapsLen, const T* x, T* y, size_t count) {
    const DoublePrecision precision;
    filterTiles<kTileVectors<T> * kFull<T>>(taps, tapsLen, x, y, count);
}

// What a vector of products adds to a sum over samples, for single outputs.
template <class T>
struct Products;

template <>
struct Products<Zpp64f> {
    using V = Vec<double, kFull<Zpp64f>>;
    V sum{};

    ZPP_INLINE static V reversed(V taps) { return reverseLanes(taps); }
    ZPP_INLINE void add(V taps, V x) { sum = mulAdd(taps, x, sum); }
    ZPP_INLINE void add(const Products& other) { sum = sum + other.sum; }
    ZPP_INLINE Zpp64f total() const {
        double lanes[kFull<Zpp64f>];
        store(lanes, sum);
        double s = lanes[0];
        for (int i = 1; i < kFull<Zpp64f>; ++i) s += lanes[i];
        return s;
    }
};

template <>
struct Products<Zpp64fc> {
    using V = Vec<double, 2 * kFull<Zpp64fc>>;
    V straight{}, crossed{};  // (re re, im im) and (im re, re im), tap first

    ZPP_INLINE static V reversed(V taps) { return reversePairs(taps); }
    ZPP_INLINE void add(V taps, V x) {
        straight = mulAdd(taps, x, straight);
        crossed = mulAdd(swapPairs(taps), x, crossed);
    }
    ZPP_INLINE void add(const Products& other) {
        straight = straight + other.straight;
        crossed = crossed + other.crossed;
    }
    ZPP_INLINE Zpp64fc total() const {
        Zpp64fc a[kFull<Zpp64fc>], b[kFull<Zpp64fc>];
        store(a, straight);
        store(b, crossed);
        Zpp64fc s{a[0].re - a[0].im, b[0].re + b[0].im};
        for (int i = 1; i < kFull<Zpp64fc>; ++i) s = {s.re + (a[i].re - a[i].im), s.im + (b[i].re + b[i].im)};
        return s;
    }
};

ZPP_INLINE Zpp64f addProduct(Zpp64f sum, Zpp64f a, Zpp64f b) { return mulAdd(a, b, sum); }
ZPP_INLINE Zpp64fc addProduct(Zpp64fc sum, Zpp64fc a, Zpp64fc b) {
    return {mulSubFrom(a.im, b.im, mulAdd(a.re, b.re, sum.re)),
            mulAdd(a.im, b.re, mulAdd(a.re, b.im, sum.im))};
}

// The sum over j of taps[j] * x[j], or of taps[len - 1 - j] * x[j]: one output, its products in the lanes of
// vectors.
template <bool Reversed, class T>
[[gnu::noinline]] T filterWindow(const T* taps, const T* x, size_t len) {
    const DoublePrecision precision;
    using Sum = Products<T>;
    constexpr size_t n = kFull<T>;
    constexpr size_t sums = kTileVectors<T>;
    const auto tapsAt = [=](size_t j) {
        if constexpr (Reversed)
            return Sum::reversed(load<typename Sum::V>(taps + len - n - j));
        else
            return load<typename Sum::V>(taps + j);
    };
    Sum partial[sums];
    size_t j = 0;
    for (; j + sums * n <= len; j += sums * n)
#pragma GCC unroll 8
        for (size_t i = 0; i < sums; ++i)
            partial[i].add(tapsAt(j + i * n), load<typename Sum::V>(x + j + i * n));
    for (; j + n <= len; j += n) partial[0].add(tapsAt(j), load<typename Sum::V>(x + j));
#pragma GCC unroll 8
    for (size_t i = 1; i < sums; ++i) partial[0].add(partial[i]);
    T result = partial[0].total();
    for (; j < len; ++j) result = addProduct(result, taps[Reversed ? len - 1 - j : j], x[j]);
    return result;
}

}  // namespace zpp::ZPP_ISA
