// Sorting of what fits a few registers, by networks of compare-exchanges.
//
// The rows of registers are sorted lane by lane: a network has no shuffles there. Then the lanes, columns of
// rows, are merged by pairs, by fours and so on, as bitonic sequences: one column is reversed behind the
// other, and what is left are exchanges at halving distances, between lanes and at last between rows.
// (Batcher, "Sorting networks and their applications", 1968, for both.)
#pragma once

#include "core/simd_sort.h"

namespace zpp::ZPP_ISA {

template <class T>
inline constexpr T kGreatest = static_cast<T>(__builtin_inf());
template <>
inline constexpr int32_t kGreatest<int32_t> = INT32_MAX;

struct Exchange {
    uint8_t low, high;
};

// Calls take(i, j) for each exchange of Batcher's odd-even merge sort of n numbers, a power of two.
template <class Take>
constexpr void forEachExchange(int n, Take take) {
    for (int sorted = 1; sorted < n; sorted *= 2)
        for (int apart = sorted; apart > 0; apart /= 2)
            for (int first = apart % sorted; first + apart < n; first += 2 * apart)
                for (int i = first; i < first + apart; ++i)
                    if (i / (2 * sorted) == (i + apart) / (2 * sorted)) take(i, i + apart);
}
constexpr int countExchanges(int n) {
    int count = 0;
    forEachExchange(n, [&](int, int) { ++count; });
    return count;
}
template <int kRows>
struct RowNetwork {
    static constexpr int kCount = countExchanges(kRows);
    Exchange exchanges[kCount + 1];
};
template <int kRows>
constexpr RowNetwork<kRows> makeRowNetwork() {
    RowNetwork<kRows> network{};
    int count = 0;
    forEachExchange(kRows, [&](int i, int j) {
        network.exchanges[count++] = {static_cast<uint8_t>(i), static_cast<uint8_t>(j)};
    });
    return network;
}

// Sorts each lane over the rows.
template <class V, int kRows, int... I>
ZPP_INLINE void sortColumns(V (&rows)[kRows], std::integer_sequence<int, I...>) {
    [[maybe_unused]] constexpr RowNetwork<kRows> network = makeRowNetwork<kRows>();
    (putInOrder(rows[network.exchanges[I].low], rows[network.exchanges[I].high]), ...);
}
template <class V, int kRows>
ZPP_INLINE void sortColumns(V (&rows)[kRows]) {
    sortColumns(rows, std::make_integer_sequence<int, RowNetwork<kRows>::kCount>());
}

// Puts lanes i and i ^ kOther in order: the lower one where kBit of its number is not set.
template <int kOther, int kBit, class V>
ZPP_INLINE V orderLanes(V v) {
    const V other = exchangeLanes<kOther>(v);
    return blend<kBit>(min(v, other), max(v, other));
}

template <int kDistance, class V, int kRows>
ZPP_INLINE void orderLanesApart(V (&rows)[kRows]) {
    if constexpr (kDistance > 0) {
#pragma GCC unroll 16
        for (V& row : rows) row = orderLanes<kDistance, kDistance>(row);
        orderLanesApart<kDistance / 2>(rows);
    }
}

// Makes sorted sequences in kLanes / 2 lanes each ones in kLanes lanes, along the rows of the first lane,
// then of the second, and so on; until they are in all lanes.
template <int kWidth, class V, int kRows>
ZPP_INLINE void mergeColumns(V (&rows)[kRows]) {
    if constexpr (kWidth <= kLanes<Lane<V>>) {
        if constexpr (kRows == 1) rows[0] = orderLanes<kWidth - 1, kWidth / 2>(rows[0]);
#pragma GCC unroll 16
        for (int i = 0; i < kRows / 2; ++i) {
            V a = rows[i], b = exchangeLanes<kWidth - 1>(rows[kRows - 1 - i]);
            putInOrder(a, b);
            rows[i] = blend<kWidth / 2>(a, b);
            rows[kRows - 1 - i] = exchangeLanes<kWidth - 1>(blend<kWidth / 2>(b, a));
        }
        orderLanesApart<kWidth / 4>(rows);
#pragma GCC unroll 16
        for (int apart = kRows / 2; apart > 0; apart /= 2)
#pragma GCC unroll 16
            for (int i = 0; i < kRows; ++i)
                if ((i & apart) == 0) putInOrder(rows[i], rows[i + apart]);
        mergeColumns<2 * kWidth>(rows);
    }
}

// The numbers of rows and lanes have bits; exchanges kRowBit of the one with kLaneBit of the other, and so
// the bits above, as far as both go.
template <int kRowBit, int kLaneBit, class V, int kRows>
ZPP_INLINE void exchangeNumbers(V (&rows)[kRows]) {
    if constexpr (kRowBit < kRows && kLaneBit < kLanes<Lane<V>>) {
#pragma GCC unroll 16
        for (int i = 0; i < kRows; ++i)
            if ((i & kRowBit) == 0) tradeLanes<kLaneBit>(rows[i], rows[i + kRowBit]);
        exchangeNumbers<2 * kRowBit, 2 * kLaneBit>(rows);
    }
}

// Sorts rows: the order goes along the lanes of the row that place(0) is, then of place(1), and so on.
template <class V, int kRows>
ZPP_INLINE void sortRows(V (&rows)[kRows]) {
    constexpr int n = kLanes<Lane<V>>;
    sortColumns(rows);
    mergeColumns<2>(rows);
    if constexpr (kRows >= n) {
        exchangeNumbers<1, 1>(rows);
    } else if constexpr (kRows > 1) {
        exchangeNumbers<1, n / kRows>(rows);
#pragma GCC unroll 16
        for (V& row : rows) row = rotateLaneNumbers<__builtin_ctz(kRows)>(row);
    }
}
template <int kRows, int n>
constexpr int placeOfRow(int i) {
    return kRows > n ? i % (kRows / n) * n + i / (kRows / n) : i;
}

// Sorts len elements that kRows registers have room for, and half as many have not.
template <int kRows, class T>
ZPP_INLINE void sortInRegisters(T* p, size_t len) {
    constexpr int n = kLanes<T>;
    const auto countIn = [=](int row) ZPP_INLINE_LAMBDA {
        const size_t before = static_cast<size_t>(row) * n;
        return len > before ? len - before : 0;
    };
    Vec<T> rows[kRows];
#pragma GCC unroll 16
    for (int i = 0; i < kRows; ++i)
        rows[i] =
            i < kRows / 2 ? load<Vec<T>>(p + i * n) : loadFirst<Vec<T>>(p + i * n, countIn(i), kGreatest<T>);
    sortRows(rows);
#pragma GCC unroll 16
    for (int i = 0; i < kRows; ++i) {
        const Vec<T> row = rows[placeOfRow<kRows, n>(i)];
        if (i < kRows / 2)
            store(p + i * n, row);
        else
            storeFirst(p + i * n, row, countIn(i));
    }
}

// The most elements that are sorted in registers.
inline constexpr int kMostRows = 16;
template <class T>
inline constexpr size_t kFewElements = kLanes<T> == 1 ? 24 : kMostRows* kLanes<T>;

template <class T>
inline void insertionSort(T* p, size_t len) {
    for (size_t i = 1; i < len; ++i) {
        const T x = p[i];
        size_t place = i;
        for (; place > 0 && x < p[place - 1]; --place) p[place] = p[place - 1];
        p[place] = x;
    }
}

template <int kRows, class T>
ZPP_INLINE void sortFewIn(T* p, size_t len) {
    if constexpr (kRows > 1)
        if (len <= kRows / 2 * kLanes<T>) return sortFewIn<kRows / 2>(p, len);
    sortInRegisters<kRows>(p, len);
}
// Sorts up to kFewElements.
template <class T>
[[gnu::noinline]] void sortFew(T* p, size_t len) {
    if constexpr (kLanes<T> == 1)
        insertionSort(p, len);
    else
        sortFewIn<kMostRows>(p, len);
}

}  // namespace zpp::ZPP_ISA
