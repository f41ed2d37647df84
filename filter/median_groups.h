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
ZPP_INLINE void sortBitonicFew(V* p) {
    V v[N];
#pragma GCC unroll 8
    for (int i = 0; i < N; ++i) v[i] = p[i];
#pragma GCC unroll 8
    for (int apart = N / 2; apart > 0; apart /= 2)
#pragma GCC unroll 8
        for (int i = 0; i < N; ++i)
            if ((i & apart) == 0) putInOrder(v[i], v[i + apart]);
#pragma GCC unroll 8
    for (int i = 0; i < N; ++i) p[i] = v[i];
}

// The same of n, a power of two.
template <class V>
inline void sortBitonic(V* p, size_t n) {
    if (n == 2) return sortBitonicFew<2>(p);
    if (n == 4) return sortBitonicFew<4>(p);
    if (n == 8) return sortBitonicFew<8>(p);
    if (n < 2) return;
    const size_t q = n / 4;
    for (size_t i = 0; i < q; ++i) {
        V a = p[i], b = p[i + q], c = p[i + 2 * q], d = p[i + 3 * q];
        putInOrder(a, c);
        putInOrder(b, d);
        putInOrder(a, b);
        putInOrder(c, d);
        p[i] = a, p[i + q] = b, p[i + 2 * q] = c, p[i + 3 * q] = d;
    }
    for (size_t i = 0; i < n; i += q) sortBitonic(p + i, q);
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
        for (int i = 0; i + 1 < order_; ++i) {
            const size_t n = size_t{1} << i, last = size_ - 2 * n;
            V *a = before + size_ * static_cast<size_t>(i), *b = behind + size_ * static_cast<size_t>(i);
            for (size_t begin = 0; begin < size_; begin += 2 * n) {
                if (begin > 0) mergeRuns(a + begin, a + size_ + begin, n);
                if (begin < last) mergeRuns(b + begin, b + size_ + begin, n);
            }
        }
        V *from = area<V>(lists_[0]), *to = area<V>(lists_[1]);
        for (int i = order_; i-- > 0;) {
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
        int steps = 0;
        while (size_t{1} << steps < shared) ++steps;
        const size_t rounded = size_t{1} << steps;
        V *from = area<V>(lists_[steps % 2]), *to = area<V>(lists_[1 - steps % 2]);
        const V last = broadcast<V>(K::kLast);
        loadColumns(x + size_ - 1, size_, shared, from + lacking / 2);
        for (V* list : {from + lacking / 2, to + lacking / 2})
            for (size_t i = shared; i < rounded; ++i) list[i] = last;
        for (int i = 0; i < steps; ++i) {
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
