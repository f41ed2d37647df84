// Extremes of vectors, and where they are met first.
//
//     Extreme<Lowest, double> low;
//     Extreme<Highest, double> high;
//     findExtremes<kIndexed>(p, len, low, high)    of one kind or of both, in one pass
//     indexOf(p, low)                              the first element that is the extreme
//     copyTo(dst, p, high)                         its bytes
//
// findExtremes returns whether there is a NaN. Of one kind NaNs are passed over; of both nothing is found
// then, nor where element 0 is one, which with kIndexed it must not be. The vector is covered by blocks, the
// last of which may overlap the one before: an element may be looked at twice.
#pragma once

#include "core/checks.h"
#include "core/simd_fold.h"

namespace zpp::ZPP_ISA {

// A kind of extreme is that of the keys of all elements: pick(key, best) is best unless key is better, also
// where key is a NaN. better() is for indices only.
struct OfElements {
    template <class V>
    ZPP_INLINE static V key(V x) {
        return x;
    }
};
struct Lowest : OfElements {
    template <class V>
    ZPP_INLINE static V pick(V key, V best) {
        return min(key, best);
    }
    template <class V>
    ZPP_INLINE static auto better(V key, V best) {
        return key < best;
    }
};
struct Highest : OfElements {
    template <class V>
    ZPP_INLINE static V pick(V key, V best) {
        return max(key, best);
    }
    template <class V>
    ZPP_INLINE static auto better(V key, V best) {
        return key > best;
    }
};

// The first of `count` elements from `begin` on that is equal to `value`.
template <class Kind, class T>
struct Extreme {
    T value;
    size_t begin, count;
};

// N elements. Integers need not be aligned; of a double a build without SSE2 would copy the bytes by halves.
template <int N, class T>
ZPP_INLINE Vec<T, N> loadAny(const T* p) {
    if constexpr (N == 1 && std::is_floating_point_v<T>)
        return *p;
    else
        return load<Vec<T, N>>(p);
}

template <class Kind, class T>
inline size_t indexOf(const T* p, const Extreme<Kind, T>& extreme) {
    if (extreme.count == 1) return extreme.begin;
    constexpr size_t n = kLanes<T>, group = n < 16 ? 4 * n : 32;
    const size_t end = extreme.begin + extreme.count;
    size_t i = extreme.begin;
    if constexpr (n > 1) {
        const auto value = broadcast<Vec<T>>(extreme.value);
        for (; i + group <= end; i += group) {
            unsigned lanes = 0;
#pragma GCC unroll 4
            for (size_t at = 0; at < group; at += n)
                lanes |= equalLanes(load<Vec<T>>(p + i + at), value) << at;
            if (lanes != 0) return i + static_cast<size_t>(__builtin_ctz(lanes));
        }
    }
    while (i + 1 < end && loadAny<1>(p + i) != extreme.value) ++i;
    return i;
}

// A zero has the sign of the element. Where there is but one element to copy, no x87 register sees it, which
// would change a signalling NaN.
template <class Kind, class T>
inline void copyTo(T* dst, const T* p, const Extreme<Kind, T>& extreme) {
    if (extreme.count == 1 || (std::is_floating_point_v<T> && extreme.value == 0))
        memcpy(dst, p + indexOf(p, extreme), sizeof(T));
    else
        store(dst, extreme.value);
}

// The running extreme of one kind: several registers of N lanes, to hide the latency of pick().
template <class Kind, class T, int N, int kCount>
class Running {
  public:
    using V = Vec<T, N>;
    ZPP_INLINE explicit Running(V first) {
#pragma GCC unroll 8
        for (V& best : best_) best = Kind::key(first);
    }
    // The registers from p on.
    ZPP_INLINE explicit Running(const T* p) {
#pragma GCC unroll 8
        for (int i = 0; i < kCount; ++i) best_[i] = Kind::key(loadAny<N>(p + i * N));
    }
    ZPP_INLINE void take(int i, V x) {
        V& best = best_[i % kCount];
        best = Kind::pick(Kind::key(x), best);
    }
    ZPP_INLINE V folded() {
#pragma GCC unroll 8
        for (int half = kCount / 2; half > 0; half /= 2)
#pragma GCC unroll 8
            for (int i = 0; i < half; ++i) best_[i] = Kind::pick(best_[i], best_[i + half]);
        return best_[0];
    }

  private:
    V best_[kCount];
};

template <class Kind, class V>
ZPP_INLINE V bestOfLanes(V v) {
    return overLanes([](V x, V best) { return Kind::pick(x, best); }, v);
}

// The extreme of all blocks and, lane by lane, where the block begins in which it was met first.
template <class Kind, class T, int N>
class BestBlock {
  public:
    using V = Vec<T, N>;
    ZPP_INLINE explicit BestBlock(V first) : best_(first), begin_{} {}
    // In a block that overlaps the one before, what is better is not of that one.
    ZPP_INLINE void take(V extreme, size_t begin) {
        const auto begins = broadcast<Vec<Index, N>>(static_cast<Index>(begin));
        begin_ = select(Kind::better(extreme, best_), begins, begin_);
        best_ = Kind::pick(extreme, best_);
    }
    ZPP_INLINE Extreme<Kind, T> found(size_t count) {
        const V value = bestOfLanes<Kind>(best_);
        Index begins[N];
        store(begins, begin_);
        unsigned lanes = equalLanes(value, best_);
        Index first = begins[__builtin_ctz(lanes)];
        while ((lanes &= lanes - 1) != 0)
            if (const Index begin = begins[__builtin_ctz(lanes)]; begin < first) first = begin;
        return {firstLane(value), static_cast<size_t>(first), count};
    }

  private:
    using Index = std::conditional_t<sizeof(T) == 8, int64_t, int32_t>;
    V best_;
    Vec<Index, N> begin_;
};

// takeBlock(i) for blocks from i on that cover the vector.
template <size_t kBlock, class TakeBlock>
ZPP_INLINE void forEachBlock(size_t len, TakeBlock takeBlock) {
    const size_t last = len - kBlock;
    for (size_t i = 0;; i = i + kBlock < last ? i + kBlock : last) {
        takeBlock(i);
        if (i == last) break;
    }
}

// kCount registers from p on, of which the running extremes hold the first kTaken already.
template <int N, int kCount, int kTaken = 0, class T, class... R>
ZPP_INLINE void takeRegisters(const T* p, NanWatch<Vec<T, N>>& watch, R&... running) {
    using V = Vec<T, N>;
#pragma GCC unroll 16
    for (int i = 0; i < kCount; i += 2) {
        const V a = loadAny<N>(p + i * N);
        const V b = kCount == 1 ? a : loadAny<N>(p + (i + 1) * N);
        if constexpr (std::is_same_v<T, double>) watch.look(a, b);
        if (i >= kTaken) (running.take(i, a), ...);
        if (i + 1 >= kTaken && kCount > 1) (running.take(i + 1, b), ...);
    }
}

template <int N, int kCount, class T, class... Kind>
ZPP_INLINE bool findAnywhere(const T* p, size_t len, Extreme<Kind, T>&... extremes) {
    constexpr int kMost = (kRegisters < 16 ? 4 : 8) / sizeof...(Kind),
                  kRunning = kCount < kMost ? kCount : kMost;
    NanWatch<Vec<T, N>> watch;
    const auto find = [&](auto... running) ZPP_INLINE_LAMBDA {
        forEachBlock<kCount * N>(
            len, [&](size_t i) ZPP_INLINE_LAMBDA { takeRegisters<N, kCount>(p + i, watch, running...); });
        ((extremes = {firstLane(bestOfLanes<Kind>(running.folded())), 0, len}), ...);
    };
    find(Running<Kind, T, N, kRunning>(broadcast<Vec<T, N>>(loadAny<1>(p)))...);
    return watch.met();
}

// Blocks of so many registers are searched for the element.
inline constexpr int kSearched = 16;

// The running extremes of a block begin with its first registers, where a NaN would stay; but for one kind
// alone, of which that is not told, with element 0.
template <int N, class T, class... Kind>
ZPP_INLINE bool findBlocks(const T* p, size_t len, Extreme<Kind, T>&... extremes) {
    constexpr bool passesNans = std::is_same_v<T, double> && sizeof...(Kind) == 1;
    constexpr int kRunning = 4, kTaken = passesNans ? 0 : kRunning;
    const auto first = broadcast<Vec<T, N>>(loadAny<1>(p));
    NanWatch<Vec<T, N>> watch;
    const auto find = [&](auto... best) ZPP_INLINE_LAMBDA {
        forEachBlock<kSearched * N>(len, [&](size_t i) ZPP_INLINE_LAMBDA {
            const auto takeBlock = [&](auto... running) ZPP_INLINE_LAMBDA {
                takeRegisters<N, kSearched, kTaken>(p + i, watch, running...);
                (best.take(running.folded(), i), ...);
            };
            if constexpr (passesNans)
                takeBlock(Running<Kind, T, N, kRunning>(first)...);
            else
                takeBlock(Running<Kind, T, N, kRunning>(p + i)...);
        });
        ((extremes = best.found(kSearched * N)), ...);
    };
    find(BestBlock<Kind, T, N>(first)...);
    return watch.met();
}

template <bool kIndexed, class T, class... Kind>
ZPP_INLINE bool findExtremes(const T* p, size_t len, Extreme<Kind, T>&... extremes) {
    constexpr int n = kLanes<T>;
    if constexpr (n > 1) {
        if constexpr (kIndexed)
            if (len >= 2 * kSearched * n) return findBlocks<n>(p, len, extremes...);
        if (len >= 8 * n) return findAnywhere<n, 8>(p, len, extremes...);
        if (len >= 2 * n) return findAnywhere<n, 2>(p, len, extremes...);
        if (len >= n) return findAnywhere<n, 1>(p, len, extremes...);
    }
    return findAnywhere<1, 1>(p, len, extremes...);
}

}  // namespace zpp::ZPP_ISA
