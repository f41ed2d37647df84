// Tables whose rows the lanes of a register look up by an index each.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

// kColumns numbers for each of kRows indices, a power of two. AVX-512 takes 16 or 32 rows from registers, a
// column from two of them or four; the other builds load rows, of which there may be more.
template <int kColumns, int kRows>
struct Table {
    alignas(64) double columns[kColumns][kRows];
    alignas(64) double rows[kRows][kColumns];

    template <class... Array>
    constexpr explicit Table(const Array&... arrays) : columns(), rows() {
        const double* const all[] = {arrays...};
        for (int c = 0; c < kColumns; ++c)
            for (int r = 0; r < kRows; ++r) columns[c][r] = rows[r][c] = all[c][r];
    }
    // One row after the other.
    constexpr explicit Table(const double (&all)[kColumns * kRows]) : columns(), rows() {
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kColumns; ++c) columns[c][r] = rows[r][c] = all[r * kColumns + c];
    }
};

// Of the pairs that the lanes have found, the first numbers and the second ones.
template <class V, int N>
ZPP_INLINE void splitPairs(const Vec<double, 2> (&pairs)[N], V& first, V& second) {
#ifdef __AVX2__
    if constexpr (N == 4) {
        const __m256d even = _mm256_insertf128_pd(_mm256_castpd128_pd256(pairs[0]), pairs[2], 1);
        const __m256d odd = _mm256_insertf128_pd(_mm256_castpd128_pd256(pairs[1]), pairs[3], 1);
        first = _mm256_unpacklo_pd(even, odd), second = _mm256_unpackhi_pd(even, odd);
    }
#endif
#ifdef __SSE2__
    if constexpr (N == 2)
        first = _mm_unpacklo_pd(pairs[0], pairs[1]), second = _mm_unpackhi_pd(pairs[0], pairs[1]);
#endif
}

// The numbers of the rows at index mod kRows.
template <int kColumns, int kRows, class V, class I>
ZPP_INLINE void lookUp(const Table<kColumns, kRows>& table, I index, V (&out)[kColumns]) {
    static_assert(kColumns % 2 == 0 && sizeof(V) == sizeof(I));
    constexpr int lanes = sizeof(V) / sizeof(double);
    if constexpr (lanes == 1) {
        for (int c = 0; c < kColumns; ++c) out[c] = table.rows[index & (kRows - 1)][c];
    } else if constexpr (lanes == 8) {
        static_assert(kRows == 16 || kRows == 32);
#ifdef __AVX512F__
        const auto find = [&](const double* of16) ZPP_INLINE_LAMBDA {
            return _mm512_permutex2var_pd(_mm512_load_pd(of16), bitCast<__m512i>(index),
                                          _mm512_load_pd(of16 + 8));
        };
#pragma GCC unroll 32
        for (int c = 0; c < kColumns; ++c) {
            out[c] = find(table.columns[c]);
            if constexpr (kRows == 32) {
                const auto upper = _mm512_test_epi64_mask(bitCast<__m512i>(index), _mm512_set1_epi64(16));
                out[c] = _mm512_mask_mov_pd(out[c], upper, find(table.columns[c] + 16));
            }
        }
#endif
    } else {
        using Pair = Vec<double, 2>;
        // Through memory: to extract the lanes of an index takes longer, and GCC 12 does that with registers
        // which wait for those of the round before.
        alignas(sizeof(V)) int64_t at[lanes];
        constexpr int64_t rowBytes = sizeof table.rows[0];
        store(at, (index & (kRows - 1)) * rowBytes);
        inMemory(at);
        const auto* const rows = reinterpret_cast<const unsigned char*>(table.rows);
#pragma GCC unroll 32
        for (int c = 0; c < kColumns; c += 2) {
            Pair pairs[lanes];
#pragma GCC unroll 8
            for (int l = 0; l < lanes; ++l) pairs[l] = load<Pair>(rows + at[l] + c * 8);
            splitPairs(pairs, out[c], out[c + 1]);
        }
    }
}

}  // namespace zpp::ZPP_ISA
