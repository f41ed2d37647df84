// The sums of products of the multi-rate FIR filters.
//
// The taps of a phase are a row, the last one first, as its samples stand in memory. All rows have as many
// vectors of kRowValues elements as ceil(tapsLen / U) taps need; what a row has not is -0 at its start, and
// the samples there are masked, so that neither their values nor their zeros' signs count.
//
// The products of an output are added to kRowValues running values, tap j of its phase to value j mod
// kRowValues, oldest sample first, and those by halves in the end. So the bits follow from phase, factors and
// taps alone.
#pragma once

#include "filter/fir_multirate_phases.h"

namespace zpp::ZPP_ISA {

// A vector of the values of a row, or a part of one.
inline constexpr int kRowLanes = kLanes<double> < 4 ? kLanes<double> : 4;
inline constexpr int kRowVectors = 4 / kRowLanes;

// Which elements of the first kRowValues samples count, as bits of doubles.
struct Mask {
    uint64_t bits[4];

    template <class T>
    static Mask behind(size_t missing) {
        Mask mask;
        for (size_t i = 0; i < 4; ++i)
            mask.bits[i] = i * sizeof(double) < missing * sizeof(T) ? 0 : ~uint64_t{0};
        return mask;
    }
};
inline constexpr Mask kNoMask = {{~uint64_t{0}, ~uint64_t{0}, ~uint64_t{0}, ~uint64_t{0}}};

// Elements of a row that are met at once where row or samples are gathered.
template <class T>
inline constexpr size_t kPartLen = 1024 / sizeof(T) * kRowValues<T>;

// The taps of a vector of a row.
template <class T>
struct RowTaps;

template <>
struct RowTaps<Zpp64f> {
    using V = Vec<double, kRowLanes>;
    V taps;

    ZPP_INLINE RowTaps(const double* h, int) : taps(load<V>(h)) {}
};
template <>
struct RowTaps<Zpp64fc> {
    using V = Vec<double, kRowLanes>;
    V taps, swapped;  // with re and im exchanged

    ZPP_INLINE RowTaps(const double* h, int i) : taps(load<V>(h)), swapped(exchanged<V>(h, i)) {}
    template <class W>
    ZPP_INLINE static W exchanged(const double* h, int i) {
        if constexpr (std::is_same_v<W, double>)
            return i % 2 == 0 ? h[1] : h[-1];
        else
            return swapPairs(load<W>(h));
    }
};

// Of four running values the sums of those that are two apart.
struct TwoSums {
    double even, odd;
};
template <class V, int N>
ZPP_INLINE TwoSums halvesAdded(const V (&v)[N]) {
    if constexpr (N == 4) {
        return {stored(v[0] + v[2]), stored(v[1] + v[3])};
    } else {
        Vec<double, 2> sums;
        if constexpr (N == 2)
            sums = v[0] + v[1];
        else
            sums = lowHalf(v[0]) + highHalf(v[0]);
        return {sums[0], sums[1]};
    }
}

// The running values of one output.
template <class T>
struct RowSum;

template <>
struct RowSum<Zpp64f> {
    using V = Vec<double, kRowLanes>;
    V value[kRowVectors]{};

    ZPP_INLINE void add(const RowTaps<Zpp64f>& h, int i, V x) { value[i] = mulAdd(h.taps, x, value[i]); }
    ZPP_INLINE void put(Zpp64f* y) const {
        const TwoSums v = halvesAdded(value);
        *y = stored(v.even + v.odd);
    }
};

// In turn products of both re and of both im, and of re and im.
template <>
struct RowSum<Zpp64fc> {
    using V = Vec<double, kRowLanes>;
    V straight[kRowVectors]{}, crossed[kRowVectors]{};

    ZPP_INLINE void add(const RowTaps<Zpp64fc>& h, int i, V x) {
        x = pinned(x);
        straight[i] = mulAdd(h.taps, x, straight[i]);
        crossed[i] = mulAdd(h.swapped, x, crossed[i]);
    }
    ZPP_INLINE void put(Zpp64fc* y) const {
        const TwoSums a = halvesAdded(straight), b = halvesAdded(crossed);
        y->re = stored(a.even - a.odd);
        y->im = stored(b.even + b.odd);
    }
};

// The G rows of taps that G outputs meet, and where the samples begin that each of them meets. A row that is
// the same for all is loaded once; so strided samples need few registers to point at them.
template <int G>
struct OneRow {
    const double* taps;
    const double* samples;
    size_t stride;

    static constexpr int kRows = 1;
    ZPP_INLINE const double* row(int) const { return taps; }
    ZPP_INLINE const double* x(int g) const { return samples + static_cast<size_t>(g) * stride; }
};
template <int G>
struct ManyRows {
    const double* taps[G];
    const double* samples[G];

    static constexpr int kRows = G;
    ZPP_INLINE const double* row(int g) const { return taps[g]; }
    ZPP_INLINE const double* x(int g) const { return samples[g]; }
};

// Adds the products of `len` doubles of a row, a multiple of 4, to the sums. Of the first samples the masks
// say which count.
template <int G, class T, class Rows>
ZPP_INLINE void addProducts(RowSum<T> (&sums)[G], const Rows& rows, size_t len,
                            const Mask* const (&masks)[G]) {
    using V = Vec<double, kRowLanes>;
    using Bits = Vec<uint64_t, kRowLanes>;
#pragma GCC unroll 4
    for (int i = 0; i < kRowVectors; ++i) {
        const int at = i * kRowLanes;
#pragma GCC unroll 8
        for (int g = 0; g < G; ++g)
            sums[g].add(RowTaps<T>(rows.row(g) + at, i), i,
                        bitCast<V>(load<Bits>(rows.x(g) + at) & load<Bits>(masks[g]->bits + at)));
    }
    for (size_t j = 4; j < len; j += 4)
#pragma GCC unroll 4
        for (int i = 0; i < kRowVectors; ++i) {
            const size_t at = j + static_cast<size_t>(i * kRowLanes);
            if constexpr (Rows::kRows == 1) {
                const RowTaps<T> taps(rows.row(0) + at, i);
#pragma GCC unroll 8
                for (int g = 0; g < G; ++g) sums[g].add(taps, i, load<V>(rows.x(g) + at));
            } else {
#pragma GCC unroll 8
                for (int g = 0; g < G; ++g)
                    sums[g].add(RowTaps<T>(rows.row(g) + at, i), i, load<V>(rows.x(g) + at));
            }
        }
}

template <class T>
ZPP_INLINE const double* doubles(const T* p) {
    return reinterpret_cast<const double*>(p);
}
template <class T>
inline constexpr size_t kDoubles = sizeof(T) / sizeof(double);

// The x87 unit keeps a sum beyond the range of a double until it is stored: there one piece of code adds all.
template <class T>
[[gnu::noinline]] void addPart(RowSum<T>& sum, const T* taps, size_t len, const T* x, const Mask& mask) {
    RowSum<T> sums[1] = {sum};
    addProducts<1, T>(sums, OneRow<1>{doubles(taps), doubles(x), 0}, len * kDoubles<T>, {&mask});
    sum = sums[0];
}

// The taps of an output, the samples that they meet, and where it goes.
template <class T>
struct Meeting {
    const T* taps;
    const T* x;
    const Mask* mask;
    T* y;
};

// The outputs of G such, or of one and of those that follow it, with samples `stride` elements further each,
// and places `apart` elements further.
template <int G, class T>
ZPP_INLINE void meetStrided(const Meeting<T>& m, size_t len, size_t stride, size_t apart) {
    RowSum<T> sums[G];
    const Mask* masks[G];
#pragma GCC unroll 8
    for (int g = 0; g < G; ++g) masks[g] = m.mask;
    addProducts<G, T>(sums, OneRow<G>{doubles(m.taps), doubles(m.x), stride * kDoubles<T>}, len * kDoubles<T>,
                      masks);
#pragma GCC unroll 8
    for (int g = 0; g < G; ++g) sums[g].put(m.y + static_cast<size_t>(g) * apart);
}
template <int G, class T>
ZPP_INLINE void meetEach(const Meeting<T>* m, size_t len) {
    RowSum<T> sums[G];
    ManyRows<G> rows;
    const Mask* masks[G];
#pragma GCC unroll 8
    for (int g = 0; g < G; ++g) {
        rows.taps[g] = doubles(m[g].taps);
        rows.samples[g] = doubles(m[g].x);
        masks[g] = m[g].mask;
    }
    addProducts<G, T>(sums, rows, len * kDoubles<T>, masks);
#pragma GCC unroll 8
    for (int g = 0; g < G; ++g) sums[g].put(m[g].y);
}

// As many outputs at once as there are registers for.
inline constexpr size_t kGroup = 4;
template <class T>
inline constexpr int kAtOnce = kRegisters == 8                 ? 2
                               : kRowVectors* kDoubles<T> == 1 ? 8
                                                               : 4;

// `count` outputs of a phase, a multiple of kGroup. By reference: a copy of the whole would wait for the
// fields to be stored.
template <class T>
[[gnu::noinline]] void meetStrided(const Meeting<T>& m, size_t len, size_t stride, size_t apart,
                                   size_t count) {
    constexpr int most = kAtOnce<T>;
    const T* x = m.x;
    T* y = m.y;
    for (; count >= most; count -= most) {
        meetStrided<most>(Meeting<T>{m.taps, x, m.mask, y}, len, stride, apart);
        x += most * stride;
        y += most * apart;
    }
    if (count > 0) meetStrided<kGroup>(Meeting<T>{m.taps, x, m.mask, y}, len, stride, apart);
}

// Outputs, `count` up to kGroup, of any phases.
template <class T>
[[gnu::noinline]] void meetEach(const Meeting<T>* m, size_t len, size_t count) {
    if constexpr (kRowLanes == 1) {
        for (; count > 0; --count, ++m) {
            RowSum<T> sum;
            for (size_t done = 0; done < len; done += kPartLen<T>) {
                const size_t rest = len - done;
                addPart(sum, m->taps + done, rest < kPartLen<T> ? rest : kPartLen<T>, m->x + done,
                        done == 0 ? *m->mask : kNoMask);
            }
            sum.put(m->y);
        }
    } else if (count == kGroup) {
        if constexpr (kRegisters == 8) {
            meetEach<2>(m, len);
            meetEach<2>(m + 2, len);
        } else {
            meetEach<kGroup>(m, len);
        }
    } else {
        for (; count > 0; --count) meetEach<1>(m++, len);
    }
}

// An element of a row, -0 where there is no tap.
template <class T>
inline void setRowElement(T& element, const T* tap) {
    constexpr double none[] = {-0.0, -0.0};
    memcpy(&element, tap != nullptr ? static_cast<const void*>(tap) : none, sizeof element);
}

// All rows, one behind the other; the last is that of no taps.
template <class T, class TapAt>
inline void layOutRows(const Phases& phases, const Rates& rates, TapAt tapAt, T* rows) {
    const size_t len = phases.rowLen<T>();
    for (size_t k = 0; k <= phases.rows; ++k) {
        const size_t taps = k < phases.rows ? phases.tapsOf(k) : 0;
        for (size_t j = 0; j < len; ++j)
            setRowElement(rows[(k + 1) * len - 1 - j], j < taps ? tapAt(phases.tap(k, j, rates)) : nullptr);
    }
}

}  // namespace zpp::ZPP_ISA
