// Cosine transforms of powers of two from 16 on, by an FFT of half the length.
#pragma once

#include "transform/dct_passes.h"
#include "transform/fft_large.h"

namespace zpp::ZPP_ISA {

// A signal as the complex numbers v[2 j] + i v[2 j + 1], for the first pass of an FFT: those of the first
// half of it are every second number of the signal, those of the second half the others, backwards.
template <int W>
struct TakenInOrder {
    using V = Vec<double, W>;
    static constexpr bool kComplexOrder = true;
    const double* x;
    size_t blocks;     // of the signal
    size_t begin = 0;  // the block that load(0) gives

    ZPP_INLINE Complex<V> load(size_t i) const {
        i += begin;
        return 2 * i < blocks ? ascending(x + 4 * W * i) : descending(x + 4 * W * (blocks - 1 - i));
    }
    ZPP_INLINE void prefetch(size_t i) const {
        i += begin;
        __builtin_prefetch(x + 4 * W * (2 * i < blocks ? i : blocks - 1 - i), 0, 2);
    }
    TakenInOrder from(size_t i) const { return {x, blocks, begin + i}; }

  private:
    // In the lanes are, of four numbers each, the first and the third of the W quadruples at p, ...
    ZPP_INLINE static Complex<V> ascending(const double* p) {
        if constexpr (W == 1) {
            return {p[0], p[2]};
        } else {
            const V a = evenLanes(part(p, 0), part(p, 2)), b = evenLanes(part(p, 1), part(p, 3));
            if constexpr (W == 2) return {a, b};
            if constexpr (W == 4) return {shuffle<0, 1, 4, 5>(a, b), shuffle<2, 3, 6, 7>(a, b)};
            if constexpr (W == 8)
                return {shuffle<0, 1, 4, 5, 8, 9, 12, 13>(a, b), shuffle<2, 3, 6, 7, 10, 11, 14, 15>(a, b)};
        }
    }
    // ... or the fourth and the second of them, from the last quadruple on.
    ZPP_INLINE static Complex<V> descending(const double* p) {
        if constexpr (W == 1) {
            return {p[3], p[1]};
        } else {
            const V a = oddLanes(part(p, 3), part(p, 1)), b = oddLanes(part(p, 2), part(p, 0));
            if constexpr (W == 2) return {a, b};
            if constexpr (W == 4) return {shuffle<2, 3, 6, 7>(a, b), shuffle<0, 1, 4, 5>(a, b)};
            if constexpr (W == 8)
                return {shuffle<6, 7, 2, 3, 14, 15, 10, 11>(a, b), shuffle<4, 5, 0, 1, 12, 13, 8, 9>(a, b)};
        }
    }
    ZPP_INLINE static V part(const double* p, size_t i) { return zpp::ZPP_ISA::load<V>(p + W * i); }
};

// An FFT from `in` to `out`, which lies in one of `first` and `second`; both are as large as the data, and
// `in` may be in the second one. `group` is the work area of the four-step scheme, where the order needs one.
template <int W, class In, class Out>
inline void fftBetween(In in, Out out, double* first, double* second, double* group,
                       const FftTables& tables) {
    if (shortTransform(in, out, tables, 1.0)) return;
    if constexpr (W == kLanes<double>) {
        const size_t n = (size_t{1} << tables.order) / W;
        const Blocks<W> a{first}, b{second};
        if (group != nullptr) {
            fourStep(in, a, out, group, tables, 1.0);
        } else if constexpr (W > 1) {
            firstPass<W>(in, a, n, tables.first);
            passes(a, b, out, n, 1, tables.columns[0], 1.0);
        } else {
            passesFrom(in, a, b, out, n, 1, tables.columns[0], 1.0);
        }
    }
}

inline const FftTables& fftTables(const ZppsDCTSpec* spec) {
    return *static_cast<const FftTables*>(spec->fft);
}

// Both directions may be in place. `buffer` holds n numbers.
inline void forwardByFft(const double* src, double* dst, const ZppsDCTSpec* spec, double* buffer,
                         double* group) {
    const size_t n = static_cast<size_t>(spec->len);
    withWidth(fftTables(spec).order, [=](auto width) {
        constexpr int W = decltype(width)::value;
        fftBetween<W>(TakenInOrder<W>{src, n / 2 / W}, Interleaved<W, false>{buffer}, buffer, dst, group,
                      fftTables(spec));
    });
    cosinesFromPairs(buffer, dst, n, spec->pow2Table, spec->c0);
}
inline void inverseByFft(const double* src, double* dst, const ZppsDCTSpec* spec, double* buffer,
                         double* group) {
    const size_t n = static_cast<size_t>(spec->len);
    pairsFromCosines(src, buffer, n, spec->pow2Table, spec->c0);
    withWidth(fftTables(spec).order, [=](auto width) {
        constexpr int W = decltype(width)::value;
        const Interleaved<W, true> z{buffer};
        fftBetween<W>(z, z, dst, buffer, group, fftTables(spec));
    });
    putInOrder(buffer, dst, n);
}

}  // namespace zpp::ZPP_ISA
