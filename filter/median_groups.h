// Medians of many samples, for groups of outputs that follow each other.
//
// g outputs, a power of two, have windows that share their middle. Of a sorted list of what they share only g
// keys in its middle can be the median of any of them, whatever else is in the windows: the candidates. Half
// of the outputs have the g / 2 samples right before the shared ones in common too, the other half those
// right behind. Either half's candidates are the middle third of the candidates and these samples: so a group
// falls into two of half the size, until there is one candidate for each output.
//
// With h = g / 2 and sorted lists c of 2 h candidates and a of h samples, the middle third is, in no order
// yet,
//     max(c[h - 1 - j], min(c[2 h - 1 - j], a[j])),   j = 0 .. h - 1:
// of the three keys of each j the one that is neither among the h least of all 3 h nor among the h greatest.
// These go down, up and down again with j, and the last is not below the first: a bitonic sequence, which
// log2(h) steps of exchanges sort. (Batcher, "Sorting networks and their applications", 1968.)
//
// A mask of m = 2 r + 1 samples takes the g above r; what the shared samples, m - g + 1, lack of g candidates
// are as many keys before all others as behind them. The samples before and behind come in runs of powers of
// two, sorted by merging them from single samples on. Everything is done for as many groups at once as a
// register has lanes. A sample takes log2(g) (2 log2(g) + 1) minima or maxima at most, and as many to sort
// the shared ones as they are long.
#pragma once

#include "core/areas.h"
#include "filter/median_keys.h"
#include "stats/sort_network.h"

namespace zpp::ZPP_ISA {

// Sorts a bitonic sequence of N.
template <int N, class V>
ZPP_INLINE void sortBitonic(V (&v)[N]) {
#pragma GCC unroll 16
    for (int apart = N / 2; apart > 0; apart /= 2)
#pragma GCC unroll 16
        for (int i = 0; i < N; ++i)
            if ((i & apart) == 0) putInOrder(v[i], v[i + apart]);
}

// Makes sorted runs of kRun ones of 2 kRun, by Batcher's odd-even merge, which takes fewer exchanges.
template <int kRun, int N, class V>
ZPP_INLINE void mergeNeighbours(V (&v)[N]) {
#pragma GCC unroll 16
    for (int apart = kRun; apart > 0; apart /= 2)
#pragma GCC unroll 16
        for (int i = 0; i < N; ++i) {
            const int place = i % (2 * kRun), begin = apart == kRun ? 0 : apart;
            if (place >= begin && place + apart < 2 * kRun && (place - begin) % (2 * apart) < apart)
                putInOrder(v[i], v[i + apart]);
        }
}

template <int N, class V>
ZPP_INLINE void loadList(const V* p, V (&v)[N]) {
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) v[i] = p[i];
}
template <int N, class V>
ZPP_INLINE void storeList(V* p, const V (&v)[N]) {
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) p[i] = v[i];
}

// What is sorted in registers at once.
inline constexpr int kListOrder = 3;
inline constexpr size_t kList = size_t{1} << kListOrder;

// The same of n, a power of two, from kList on.
template <class V>
inline void sortBitonic(V* p, size_t n) {
    while (n > 2 * kList) {
        const size_t q = n / 4;
        for (size_t i = 0; i < q; ++i) {
            V v[4] = {p[i], p[i + q], p[i + 2 * q], p[i + 3 * q]};
            sortBitonic(v);
            p[i] = v[0], p[i + q] = v[1], p[i + 2 * q] = v[2], p[i + 3 * q] = v[3];
        }
        for (size_t i = 0; i < 3; ++i, p += q) sortBitonic(p, q);
        n = q;
    }
    if (n == 2 * kList)
        for (size_t i = 0; i < kList; ++i) putInOrder(p[i], p[i + kList]);
    for (size_t i = 0; i < n; i += kList) {
        V v[kList];
        loadList(p + i, v);
        sortBitonic(v);
        storeList(p + i, v);
    }
}

// Sorted runs of 1, 2, 4, ... of `size` keys, a level each, `size` apart: from the keys, runs of kList and
// all below, if they are asked for.
template <class V>
inline void sortShortRuns(V* keys, size_t size, bool withLists) {
    for (size_t i = 0; i < size; i += kList) {
        V v[kList];
        loadList(keys + i, v);
        mergeNeighbours<1>(v);
        storeList(keys + i + size, v);
        mergeNeighbours<2>(v);
        storeList(keys + i + 2 * size, v);
        if (!withLists) continue;
        mergeNeighbours<4>(v);
        storeList(keys + i + 3 * size, v);
    }
}

// One sorted list of 2 n from two of n, which follow each other.
template <class V>
inline void mergeRuns(const V* runs, V* out, size_t n) {
    for (size_t i = 0; i < n; ++i) {
        V a = runs[i], b = runs[2 * n - 1 - i];
        putInOrder(a, b);
        out[i] = a;
        out[n + i] = b;
    }
    sortBitonic(out, n);
    sortBitonic(out + n, n);
}

// The sorted middle third of 2 h candidates and h samples.
template <class V>
inline void middleThird(const V* candidates, const V* samples, V* out, size_t h) {
    for (size_t j = 0; j < h; ++j)
        out[j] = max(candidates[h - 1 - j], min(candidates[2 * h - 1 - j], samples[j]));
    sortBitonic(out, h);
}

// The medians of a group of N from its candidates, all in registers.
template <int N, class V>
ZPP_INLINE void finishGroup(const V (&candidates)[N], const V* before, const V* behind, size_t size, V* out) {
    if constexpr (N == 1) {
        out[0] = candidates[0];
    } else {
        constexpr int h = N / 2;
        const size_t level = static_cast<size_t>(__builtin_ctz(h)) * size;
        V first[h], second[h];
#pragma GCC unroll 16
        for (int j = 0; j < h; ++j) {
            first[j] = max(candidates[h - 1 - j], min(candidates[2 * h - 1 - j], before[level + h + j]));
            second[j] = max(candidates[h - 1 - j], min(candidates[2 * h - 1 - j], behind[level + j]));
        }
        sortBitonic(first);
        finishGroup(first, before, behind, size, out);
        sortBitonic(second);
        finishGroup(second, before + h, behind + h, size, out + h);
    }
}

// out[i] has in its lanes x[i], x[i + stride], ...; for i < count rounded up to a number of lanes.
template <class T, class V>
inline void loadColumns(const T* x, size_t stride, size_t count, V* out) {
    using K = Keys<T, V>;
    constexpr size_t n = K::kCount;
    for (size_t i = 0; i < count; i += n) {
        V rows[n];
#pragma GCC unroll 16
        for (size_t l = 0; l < n; ++l) rows[l] = K::load(x + l * stride + i);
        exchangeNumbers<1, 1>(rows);
#pragma GCC unroll 16
        for (size_t l = 0; l < n; ++l) out[i + l] = rows[l];
    }
}
// The inverse; a count below the number of lanes divides it.
template <class T, class V>
inline void storeColumns(const V* in, size_t stride, size_t count, T* x) {
    using K = Keys<T, V>;
    constexpr size_t n = K::kCount;
    for (size_t i = 0; i < count; i += n) {
        V rows[n];
#pragma GCC unroll 16
        for (size_t l = 0; l < n; ++l) rows[l] = in[i + l];
        exchangeNumbers<1, 1>(rows);
#pragma GCC unroll 16
        for (size_t l = 0; l < n; ++l) K::store(x + l * stride + i, rows[l]);
    }
}

// As many groups as lanes, whose outputs follow each other. Memory is taken for registers of kVectorBytes.
class MedianGroups {
  public:
    MedianGroups(Areas& areas, size_t mask, int order)
        : mask_(mask), order_(order), size_(size_t{1} << order) {
        const auto take = [&](size_t count) {
            const size_t bytes = kVectorBytes == 0 ? 8 : kVectorBytes;
            return areas.take<Zpp8u>((count + kSlack) * bytes);
        };
        before_ = take(size_ * static_cast<size_t>(order));
        behind_ = take(size_ * static_cast<size_t>(order));
        for (auto& list : lists_) list = take(2 * size_);
    }

    // The medians of the windows of x that begin at its elements 0 .. lanes * size - 1.
    template <class V, class T>
    void run(const T* x, T* y) const {
        sortShared<V>(x);
        runFrom<V>(x, y);
    }
    // The same with the candidates in their place.
    template <class V, class T>
    void runFrom(const T* x, T* y) const {
        V *before = area<V>(before_), *behind = area<V>(behind_);
        // Sample i before the shared ones is element i + 1 of its runs: these are aligned with the groups.
        loadColumns(x, size_, size_ - 1, before + 1);
        loadColumns(x + mask_, size_, size_ - 1, behind);
        before[0] = behind[size_ - 1] = before[1];  // of no use
        sortShortRuns(before, size_, order_ > kListOrder);
        sortShortRuns(behind, size_, order_ > kListOrder);
        for (int i = kListOrder; i + 1 < order_; ++i) {
            const size_t n = size_t{1} << i, last = size_ - 2 * n;
            V *a = before + size_ * static_cast<size_t>(i), *b = behind + size_ * static_cast<size_t>(i);
            for (size_t begin = 0; begin < size_; begin += 2 * n) {
                if (begin > 0) mergeRuns(a + begin, a + size_ + begin, n);
                if (begin < last) mergeRuns(b + begin, b + size_ + begin, n);
            }
        }
        V *from = area<V>(lists_[0]), *to = area<V>(lists_[1]);
        for (int i = order_; i-- > kListOrder;) {
            const size_t h = size_t{1} << i;
            const V *a = before + size_ * static_cast<size_t>(i),
                    *b = behind + size_ * static_cast<size_t>(i);
            for (size_t begin = 0; begin < size_; begin += 2 * h) {
                middleThird(from + begin, a + begin + h, to + begin, h);
                middleThird(from + begin, b + begin, to + begin + h, h);
            }
            V* t = from;
            from = to;
            to = t;
        }
        for (size_t begin = 0; begin < size_; begin += kList) {
            V candidates[kList];
            loadList(from + begin, candidates);
            finishGroup(candidates, before + begin, behind + begin, size_, from + begin);
        }
        storeColumns(from, size_, size_, y);
    }
    template <class V>
    V* candidates() const {
        return area<V>(lists_[0]);
    }
    size_t size() const { return size_; }

  private:
    static constexpr size_t kSlack = 32;

    template <class V>
    static V* area(Zpp8u* p) {
        return reinterpret_cast<V*>(p);
    }

    // The shared samples in order, between as many first and last keys, in lists_[0].
    template <class V, class T>
    void sortShared(const T* x) const {
        using K = Keys<T, V>;
        const size_t shared = mask_ - size_ + 1, lacking = size_ - shared;
        int steps = kListOrder;
        while (size_t{1} << steps < shared) ++steps;
        V *from = area<V>(lists_[(steps - kListOrder) % 2]),
          *to = area<V>(lists_[(steps - kListOrder + 1) % 2]);
        const V last = broadcast<V>(K::kLast);
        loadColumns(x + size_ - 1, size_, shared, from + lacking / 2);
        for (V* list : {from + lacking / 2, to + lacking / 2})
            for (size_t i = shared; i < size_t{1} << steps; ++i) list[i] = last;
        for (size_t i = 0; i < shared; i += kList) {
            V v[kList];
            loadList(from + lacking / 2 + i, v);
            mergeNeighbours<1>(v);
            mergeNeighbours<2>(v);
            mergeNeighbours<4>(v);
            storeList(from + lacking / 2 + i, v);
        }
        for (int i = kListOrder; i < steps; ++i) {
            const size_t n = size_t{1} << i;
            for (size_t begin = 0; begin < shared; begin += 2 * n)
                mergeRuns(from + lacking / 2 + begin, to + lacking / 2 + begin, n);
            V* t = from;
            from = to;
            to = t;
        }
        for (size_t i = 0; i < lacking / 2; ++i) {
            from[i] = broadcast<V>(K::kFirst);
            from[size_ - 1 - i] = last;
        }
    }

    size_t mask_;
    int order_;
    size_t size_;
    Zpp8u *before_, *behind_, *lists_[2];
};

}  // namespace zpp::ZPP_ISA
