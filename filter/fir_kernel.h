// The sums of products of the FIR filters.
//
// The products of an output are added in one order, which tapsLen alone decides: its bits do not depend on
// how a signal is split, nor on the function. The taps meet the window of the output, oldest sample first.
// One running value takes fewer than kFewTaps in turn. Of more it takes tapsLen mod kValues; the others go,
// in parts of kPart, to kValues running values, tap k of the part to value k mod kValues, which are then
// added to it.
//
// A block has its outputs in the lanes of vectors, and one of the kValues after the other; a single output
// has those values in the lanes.
//
// The callers set the precision (core/precision.h).
#pragma once

#include "core/loops.h"

namespace zpp::ZPP_ISA {

// Elements that fill a vector, as interleaved complex numbers do not in kStep.
template <class T>
inline constexpr int kFull = kLanes<double>;
template <>
inline constexpr int kFull<Zpp64fc> = kLanes<double> > 1 ? kLanes<double> / 2 : 1;

// As many as hide the latency of a single output's multiply-adds: their additions cost a block something. The
// more parts a filter has, the more of them are under way.
template <class T>
inline constexpr int kValues = 8;
template <>
inline constexpr int kValues<Zpp64fc> = kFull<Zpp64fc> == 1 ? 2 : 4;
inline constexpr size_t kFewTaps = 32;
inline constexpr size_t kPart = 256;  // with its samples it stays in the first-level cache
static_assert(kFewTaps >= kValues<Zpp64f> && kPart % kValues<Zpp64f> == 0);

// Vectors of outputs in a tile: eight registers of sums where there are sixteen, four where there are eight.
inline constexpr bool kFewRegisters = sizeof(void*) == 4;
inline constexpr int kSums = kFewRegisters ? 4 : 8;
template <class T>
inline constexpr int kTileVectors = kSums;
template <>
inline constexpr int kTileVectors<Zpp64fc> = kSums / 2;

// The running sums of N outputs, or N running values of one.
template <class T, int N>
struct Sums;

template <int N>
struct Sums<Zpp64f, N> {
    using V = Vec<double, N>;
    using Tap = V;
    V sum{};

    ZPP_INLINE static Tap tap(const Zpp64f& h) { return broadcast<V>(h); }
    template <bool Reversed>
    ZPP_INLINE static Tap taps(const Zpp64f* h) {
        return Reversed ? reverseLanes(load<V>(h)) : load<V>(h);
    }
    ZPP_INLINE static V samples(const Zpp64f* x) { return load<V>(x); }
    ZPP_INLINE void add(Tap h, V x) { sum = mulAdd(h, x, sum); }
    ZPP_INLINE void add(const Sums& other) { sum = stored(sum + stored(other.sum)); }
    ZPP_INLINE Sums<Zpp64f, 1> lane(int i) const { return {sum[i]}; }
    ZPP_INLINE void put(Zpp64f* y) const { store(y, sum); }
};

// Interleaved samples times re and times im of the tap, each summed on its own; im's sum is turned by a right
// angle at the end. Of taps in lanes the odd products of both are exchanged until then.
template <int N>
struct Sums<Zpp64fc, N> {
    using V = Vec<double, 2 * N>;
    struct Tap {
        V re, im;
    };
    V byRe{}, byIm{};

    ZPP_INLINE static Tap tap(const Zpp64fc& h) { return {broadcast<V>(h.re), broadcast<V>(h.im)}; }
    template <bool Reversed>
    ZPP_INLINE static Tap taps(const Zpp64fc* h) {
        const V pairs = Reversed ? reversePairs(load<V>(h)) : load<V>(h);
        return {pairs, swapPairs(pairs)};
    }
    ZPP_INLINE static V samples(const Zpp64fc* x) { return load<V>(x); }
    ZPP_INLINE void add(Tap h, V x) {
        byRe = mulAdd(h.re, x, byRe);
        byIm = mulAdd(h.im, x, byIm);
    }
    ZPP_INLINE void add(const Sums& other) {
        byRe = stored(byRe + stored(other.byRe));
        byIm = stored(byIm + stored(other.byIm));
    }
    ZPP_INLINE Sums<Zpp64fc, 1> lane(int i) const {
        Sums<Zpp64fc, 1> one;
        one.byRe = Vec<double, 2>{byRe[2 * i], byIm[2 * i + 1]};
        one.byIm = Vec<double, 2>{byIm[2 * i], byRe[2 * i + 1]};
        return one;
    }
    ZPP_INLINE void put(Zpp64fc* y) const { store(y, subtractAdd(byRe, swapPairs(byIm))); }
};

// Taps in the order in which they meet a window of samples, from `first` on, upwards or (Reversed) downwards.
template <class T, bool Reversed>
struct TapRow {
    const T* first;

    ZPP_INLINE const T& operator[](size_t j) const { return Reversed ? *(first - j) : first[j]; }
    template <int N>
    ZPP_INLINE auto lanes(size_t j) const {
        return Sums<T, N>::template taps<Reversed>(Reversed ? first - j - (N - 1) : first + j);
    }
};

// Adds the products of `Count` taps, Step apart, from tap j on.
//
// A vector of samples that meets one tap for some outputs meets the next for outputs Step before: so it is
// loaded once for all the taps. (Of unaligned loads every second or third spans two cache lines and takes
// twice the time.)
template <int Count, int Step, class T, bool Reversed, int N, int Vectors>
ZPP_INLINE void addTaps(Sums<T, N> (&sums)[Vectors], TapRow<T, Reversed> taps, size_t j, const T* x) {
    using Sum = Sums<T, N>;
    constexpr int lag = Step / N;
    static_assert(Count == 1 || Step % N == 0);
    typename Sum::Tap tap[Count];
#pragma GCC unroll 4
    for (int t = 0; t < Count; ++t) tap[t] = Sum::tap(taps[j + static_cast<size_t>(t * Step)]);
#pragma GCC unroll 32
    for (int i = 0; i < Vectors + (Count - 1) * lag; ++i) {
        if (Vectors < lag && i % lag >= Vectors) continue;
        const auto samples = pinned(Sum::samples(x + j + i * N));
#pragma GCC unroll 4
        for (int t = 0; t < Count; ++t)
            if (i >= t * lag && i < t * lag + Vectors) sums[i - t * lag].add(tap[t], samples);
    }
}

// Adds the products of the first `count` taps to one running value. Complex samples are used twice anyway.
template <class T, bool Reversed, int N, int Vectors>
ZPP_INLINE void addInTurn(Sums<T, N> (&sums)[Vectors], TapRow<T, Reversed> taps, size_t count, const T* x) {
    constexpr int apart = kFull<T>;
    size_t j = 0;
    if constexpr (std::is_same_v<T, Zpp64f>)
        for (; j + 2 * apart <= count; j += 2 * apart)
            for (size_t k = j; k < j + apart; ++k) addTaps<2, apart>(sums, taps, k, x);
    for (; j < count; ++j) addTaps<1, 1>(sums, taps, j, x);
}

// Adds the products of every kValues-th tap from begin to end.
template <class T, bool Reversed, int N, int Vectors>
ZPP_INLINE void addValue(Sums<T, N> (&sums)[Vectors], TapRow<T, Reversed> taps, size_t begin, size_t end,
                         const T* x) {
    constexpr int step = kValues<T>;
    // As many at a time as the registers hold, where that saves loads.
    constexpr bool many = N > 2 && !kFewRegisters && std::is_same_v<T, Zpp64f>;
    constexpr int count = step >= N * Vectors ? 1 : many ? 4 : 2;
    size_t j = begin;
    for (; j + (count - 1) * step < end; j += count * step) addTaps<count, step>(sums, taps, j, x);
    if constexpr (count > 1)
        for (; j < end; j += step) addTaps<1, 1>(sums, taps, j, x);
}

inline size_t partEnd(size_t begin, size_t tapsLen) {
    return tapsLen - begin < kPart ? tapsLen : begin + kPart;
}

// y[i] = sum over j of taps[j] * x[i + j], for `Vectors` vectors of N outputs. All of x is read before y is
// written. Few tells whether tapsLen < kFewTaps: with a loop of their own these keep their sums in registers.
template <bool Few, int N, int Vectors, class T, bool Reversed>
ZPP_INLINE void filterTile(TapRow<T, Reversed> taps, size_t tapsLen, const T* x, T* y) {
    constexpr size_t step = kValues<T>;
    Sums<T, N> total[Vectors];
    size_t begin = Few ? tapsLen : tapsLen % step;
    addInTurn(total, taps, begin, x);
    if constexpr (!Few)
        while (begin < tapsLen) {
            const size_t end = partEnd(begin, tapsLen);
            for (size_t k = begin; k < begin + step; ++k) {
                Sums<T, N> value[Vectors];
                addValue(value, taps, k, end, x);
#pragma GCC unroll 8
                for (int i = 0; i < Vectors; ++i) total[i].add(value[i]);
            }
            begin = end;
        }
#pragma GCC unroll 8
    for (int i = 0; i < Vectors; ++i) total[i].put(y + i * N);
}

// Elements of a vector of at most 256 bits. A wider load waits longer for the sample that was stored right
// before it.
template <class T>
inline constexpr int kHalfFull = kVectorBytes > 32 ? kFull<T> / 2 : kFull<T>;

// y[0] alone: the running values in the lanes of vectors.
template <bool Few, class T, bool Reversed>
ZPP_INLINE void filterSingle(TapRow<T, Reversed> taps, size_t tapsLen, const T* x, T* y) {
    if constexpr (Few || kLanes<double> == 1) {
        filterTile<Few, 1, 1>(taps, tapsLen, x, y);
    } else {
        constexpr int step = kValues<T>, n = kHalfFull<T>;
        Sums<T, 1> total[1];
        size_t j = tapsLen % step;
        addInTurn(total, taps, j, x);
        while (j < tapsLen) {
            Sums<T, n> values[step / n];
            for (const size_t end = partEnd(j, tapsLen); j < end;)
#pragma GCC unroll 8
                for (int i = 0; i < step / n; ++i, j += n)
                    values[i].add(taps.template lanes<n>(j), Sums<T, n>::samples(x + j));
#pragma GCC unroll 8
            for (int k = 0; k < step; ++k) total[0].add(values[k / n].lane(k % n));
        }
        total[0].put(y);
    }
}

// The last count outputs by tiles of Vectors vectors, the others by smaller ones, and singly.
template <bool Few, int Vectors, class T, bool Reversed>
ZPP_INLINE void filterTiles(TapRow<T, Reversed> taps, size_t tapsLen, const T* x, T* y, size_t count) {
    constexpr size_t size = Vectors * kFull<T>;
    while (count >= size) {
        count -= size;
        filterTile<Few, kFull<T>, Vectors>(taps, tapsLen, x + count, y + count);
    }
    if constexpr (Vectors > 1)
        filterTiles<Few, Vectors / 2>(taps, tapsLen, x, y, count);
    else
        while (count-- > 0) filterSingle<Few>(taps, tapsLen, x + count, y + count);
}

// y[0] = sum over j of taps[j] * x[j].
template <class T, bool Reversed>
[[gnu::noinline]] void filterWindow(TapRow<T, Reversed> taps, size_t tapsLen, const T* x, T* y) {
    if (tapsLen < kFewTaps)
        filterSingle<true>(taps, tapsLen, x, y);
    else
        filterSingle<false>(taps, tapsLen, x, y);
}

// y[i] = sum over j of taps[j] * x[i + j], for i = count-1 down to 0: right also where y[i] stands in the
// place of x[i + tapsLen - 1] or of a later sample, as when a block is filtered in place.
template <class T, bool Reversed>
[[gnu::noinline]] void filterWindows(TapRow<T, Reversed> taps, size_t tapsLen, const T* x, T* y,
                                     size_t count) {
    // The x87 unit keeps a sum beyond the range of a double until it is stored, and when that is, the
    // compiler decides: so there is one piece of code for all lengths.
    if constexpr (kLanes<double> == 1)
        while (count-- > 0) filterWindow(taps, tapsLen, x + count, y + count);
    else if (tapsLen < kFewTaps)
        filterTiles<true, kTileVectors<T>>(taps, tapsLen, x, y, count);
    else
        filterTiles<false, kTileVectors<T>>(taps, tapsLen, x, y, count);
}

}  // namespace zpp::ZPP_ISA
