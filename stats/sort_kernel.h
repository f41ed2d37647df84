// Sorting of vectors: quicksort in place, down to what networks in registers sort (stats/sort_network.h).
//
// A range is parted by registers: what is read from its ends makes room for what is stored there, and always
// the end with less room is read next. Depth and time are bounded: a range is sorted by heapsort after twice
// as many bad pivots on the way down to it as there would be halvings to the end.
#pragma once

#include "stats/sort_network.h"

namespace zpp::ZPP_ISA {

// Parts len elements, two blocks or more, into those below the pivot, or not above it, and the others, and
// gives the number of the first ones.
template <bool kOrEqual, class T>
[[gnu::noinline]] size_t partRange(T* p, size_t len, T pivotElement) {
    constexpr int n = kPartedLanes<T>, kRows = 8;
    constexpr size_t block = kRows * n;
    static_assert(2 * block <= kFewElements<T>);
    using V = Vec<T, n>;
    const V pivot = broadcast<V>(pivotElement);
    // Where there is room: in the places from `begin` on, but for those from `first` to `last`, which are not
    // read. A block at each end is read now, and one more before what was read last is parted: the processor
    // need not wait for where that ends.
    T* begin = p;
    size_t count = len;
    const T *first = p + block, *last = p + len - block;
    V held[kRows], rows[kRows];
#pragma GCC unroll 8
    for (int i = 0; i < kRows; ++i) {
        held[i] = load<V>(p + i * n);
        rows[i] = load<V>(last + i * n);
    }
    // What makes no block.
    const size_t rest = len % block;
    for (size_t i = rest % n; i > 0; --i) part<kOrEqual>(*--last, pivotElement, begin, count);
    for (size_t i = rest / n; i > 0; --i) part<kOrEqual>(load<V>(last -= n), pivot, begin, count);

    while (first < last) {
        // From the end with less room: all bits of `atLast` or none. A branch would be mispredicted half of
        // the times.
        const size_t atLast = 0 - opaque(first - begin > begin + count - last);
        const T* next = first + (static_cast<size_t>(last - block - first) & atLast);
        first += block & ~atLast;
        last -= block & atLast;
        V now[kRows];
#pragma GCC unroll 8
        for (int i = 0; i < kRows; ++i) {
            now[i] = rows[i];
            rows[i] = load<V>(next + i * n);
        }
#pragma GCC unroll 8
        for (int i = 0; i < kRows; ++i) part<kOrEqual>(now[i], pivot, begin, count);
    }
#pragma GCC unroll 8
    for (int i = 0; i < kRows; ++i) part<kOrEqual>(rows[i], pivot, begin, count);
#pragma GCC unroll 8
    for (int i = 0; i < kRows; ++i) part<kOrEqual>(held[i], pivot, begin, count);
    return static_cast<size_t>(begin - p);
}

// Pivots: of rows at places spread evenly the medians of the lanes, and of these the median.
template <class T>
class MedianOfMedians {
  public:
    T operator()(const T* p, size_t len) {
        constexpr int n = kLanes<T>, kRows = n == 1 ? 8 : 4;
        Vec<T> rows[kRows];
        for (auto& row : rows) {
            place_ += 0x9E3779B9;  // steps of the golden ratio
            row = load<Vec<T>>(p + (uint64_t{place_} * (len - n + 1) >> 32));
        }
        sortColumns(rows);
        Vec<T> medians[] = {rows[kRows / 2]};
        if constexpr (n == 1) {
            return medians[0];
        } else {
            sortRows(medians);
            return medians[0][n / 2 - 1];
        }
    }

  private:
    uint32_t place_ = 0;
};

// The greatest of the first `len` moves to their end, and so with fewer and fewer.
template <class T>
[[gnu::noinline]] void heapSort(T* p, size_t len) {
    const auto sift = [=](size_t i, size_t end) {
        const T x = p[i];
        for (size_t child; (child = 2 * i + 1) < end; i = child) {
            if (child + 1 < end && p[child] < p[child + 1]) ++child;
            if (!(x < p[child])) break;
            p[i] = p[child];
        }
        p[i] = x;
    };
    for (size_t i = len / 2; i-- > 0;) sift(i, len);
    for (size_t end = len; --end > 0;) {
        const T greatest = p[0];
        p[0] = p[end];
        p[end] = greatest;
        sift(0, end);
    }
}

// Sorts a range of elements that are not below `least`. A pivot that equals it shows that many elements do:
// these are parted from the others, and are in their places. `patience` is how many pivots may be bad.
template <class T, class Choose>
void sortRange(T* p, size_t len, T least, int patience, Choose& choose) {
    while (len > kFewElements<T>) {
        if (patience <= 0) return heapSort(p, len);
        const T pivot = choose(p, len);
        const bool isLeast = !(least < pivot);
        const size_t low = isLeast ? partRange<true>(p, len, pivot) : partRange<false>(p, len, pivot);
        const size_t high = len - low, more = isLeast || high > low ? high : low;
        if (more > len - len / 8) --patience;
        if (more == high) {
            if (!isLeast) sortRange(p, low, least, patience, choose);
            p += low;
            least = pivot;
        } else {
            sortRange(p + low, high, pivot, patience, choose);
        }
        len = more;
    }
    sortFew(p, len);
}

template <class T>
inline constexpr T kLeast = static_cast<T>(-__builtin_inf());
template <>
inline constexpr int32_t kLeast<int32_t> = INT32_MIN;
template <>
inline constexpr int64_t kLeast<int64_t> = INT64_MIN;

// Sorts len elements by pivots that choose(range, len) gives.
template <class T, class Choose>
inline void sortAll(T* p, size_t len, Choose& choose) {
    int patience = 2;
    for (size_t rest = len; rest > kFewElements<T>; rest /= 2) patience += 2;
    sortRange(p, len, kLeast<T>, patience, choose);
}

}  // namespace zpp::ZPP_ISA
