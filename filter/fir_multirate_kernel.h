// The sums of products of the multi-rate FIR filters.
//
// With U = up and D = down, output n stands at place downPhase + n D of the signal with U places for each
// input. Its phase is the distance to the newest input at or before it; phase p meets the taps h(p), h(p +
// U), ..., the first of them on the newest input. As every D-th place is taken, the phases met are those of
// one remainder modulo g = gcd(U, D): phase first + k g is number k of U / g.
//
// The taps of a phase are a row, the last one first, as its samples stand in memory. All rows have as many
// vectors of kRowValues elements as ceil(tapsLen / U) taps need; what a row has not is -0 at its start, and
// the samples there are masked, so that neither their values nor their zeros' signs count.
//
// The products of an output are added to kRowValues running values, tap j of its phase to value j mod
// kRowValues, oldest sample first, and those by halves in the end. So the bits follow from phase, factors and
// taps alone.
#pragma once

#include "filter/fir_multirate.h"

namespace zpp::ZPP_ISA {

template <class T>
inline constexpr size_t kRowValues = 4;
template <>
inline constexpr size_t kRowValues<Zpp64fc> = 2;

struct Rates {
    uint64_t tapsLen, up, upPhase, down, downPhase;
};

inline Rates ratesOf(const MultiRateNumbers& n) {
    const auto number = [](int x) { return static_cast<uint64_t>(x); };
    return {number(n.tapsLen), number(n.up), number(n.upPhase), number(n.down), number(n.downPhase)};
}
inline Rates ratesOf(const ZppsFIRState* state) {
    return ratesOf({state->tapsLen, state->up, state->upPhase, state->down, state->downPhase});
}

inline uint64_t commonDivisor(uint64_t a, uint64_t b) {
    while (b != 0) {
        const uint64_t rest = a % b;
        a = b;
        b = rest;
    }
    return a;
}

inline uint64_t dividedUp(uint64_t a, uint64_t b) { return a / b + (a % b != 0 ? 1 : 0); }

// Where an output stands: the number of its phase, and how many inputs are at or before it.
struct Place {
    size_t phase, taken;
};

struct Phases {
    size_t count;                 // U / g
    size_t step;                  // D / g
    size_t rows;                  // phases with taps; the others, which follow them, share one row of none
    size_t longRows;              // those with a tap on the oldest sample
    size_t first, divisor;        // g
    size_t window;                // samples of an output, and elements of the delay line: ceil(tapsLen / U)
    Place start;                  // of the first output
    size_t wholeStep, phaseStep;  // D / U and D / g mod U / g: from an output to the next
    size_t mostRows;              // of the same filter with other phases

    explicit Phases(const Rates& r) {
        const uint64_t g = commonDivisor(r.up, r.down);
        const bool isBefore = r.downPhase < r.upPhase;
        const uint64_t places = r.downPhase + (isBefore ? r.up : 0) - r.upPhase;
        const uint64_t phase = places % r.up;
        const auto upTo = [&](uint64_t end) {  // phases below `end`
            return static_cast<size_t>(end > phase % g ? dividedUp(end - phase % g, g) : 0);
        };
        divisor = static_cast<size_t>(g);
        first = static_cast<size_t>(phase % g);
        count = static_cast<size_t>(r.up / g);
        step = static_cast<size_t>(r.down / g);
        const uint64_t withTaps = r.up < r.tapsLen ? r.up : r.tapsLen;
        rows = upTo(withTaps);
        mostRows = static_cast<size_t>(dividedUp(withTaps, g));
        longRows = r.tapsLen % r.up == 0 ? rows : upTo(r.tapsLen % r.up);
        window = static_cast<size_t>(dividedUp(r.tapsLen, r.up));
        start = {static_cast<size_t>(phase / g), static_cast<size_t>(places / r.up + (isBefore ? 0 : 1))};
        wholeStep = static_cast<size_t>(r.down / r.up);
        phaseStep = step % count;
    }

    // Elements of a row. A row of no taps stands behind the others.
    template <class T>
    size_t rowLen() const {
        return (window + kRowValues<T> - 1) / kRowValues<T> * kRowValues<T>;
    }
    size_t tapsOf(size_t phase) const { return phase < longRows ? window : window - 1; }  // 0 behind all rows

    // The index of tap j of a phase.
    size_t tap(size_t phase, size_t j, const Rates& rates) const {
        return first + phase * divisor + j * static_cast<size_t>(rates.up);
    }

    void advance(Place& place) const {
        place.taken += wholeStep;
        place.phase += phaseStep;
        if (place.phase < count) return;
        place.phase -= count;
        ++place.taken;
    }

    // How many outputs from `place` on have no more than `taken` inputs at or before them.
    size_t outputsUpTo(const Place& place, size_t taken) const {
        if (place.taken > taken) return 0;
        const uint64_t places = (uint64_t{taken - place.taken} + 1) * count - place.phase;
        return static_cast<size_t>((places - 1) / step + 1);
    }
};

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

// The running values of one output.
template <class T>
struct Row;

template <>
struct Row<Zpp64f> {
    using V = Vec<double, kRowLanes>;
    V value[kRowVectors]{};

    ZPP_INLINE void add(const double* h, int i, V x) { value[i] = mulAdd(load<V>(h), x, value[i]); }
    ZPP_INLINE void put(Zpp64f* y) const {
        double v[4];
        memcpy(v, value, sizeof v);
        *y = stored(stored(v[0] + v[2]) + stored(v[1] + v[3]));
    }
};

// Products of re and im, and those of re and im exchanged.
template <>
struct Row<Zpp64fc> {
    using V = Vec<double, kRowLanes>;
    V straight[kRowVectors]{}, crossed[kRowVectors]{};

    ZPP_INLINE void add(const double* h, int i, V x) {
        straight[i] = mulAdd(load<V>(h), x, straight[i]);
        crossed[i] = mulAdd(exchanged<V>(h, i), x, crossed[i]);
    }
    template <class W>
    ZPP_INLINE static W exchanged(const double* h, int i) {
        if constexpr (std::is_same_v<W, double>)
            return i % 2 == 0 ? h[1] : h[-1];
        else
            return swapPairs(load<W>(h));
    }
    ZPP_INLINE void put(Zpp64fc* y) const {
        double a[4], b[4];
        memcpy(a, straight, sizeof a);
        memcpy(b, crossed, sizeof b);
        y->re = stored(stored(a[0] + a[2]) - stored(a[1] + a[3]));
        y->im = stored(stored(b[0] + b[2]) + stored(b[1] + b[3]));
    }
};

// Adds the products of `len` taps, a multiple of kRowValues; of the first samples those that the mask leaves.
template <class T>
[[gnu::noinline]] void addProducts(Row<T>& row, const T* taps, const T* samples, size_t len,
                                   const Mask& mask) {
    using V = typename Row<T>::V;
    using Bits = Vec<uint64_t, kRowLanes>;
    Row<T> sums = row;
    const auto* h = reinterpret_cast<const double*>(taps);
    const auto* x = reinterpret_cast<const double*>(samples);
#pragma GCC unroll 4
    for (int i = 0; i < kRowVectors; ++i) {
        const int at = i * kRowLanes;
        sums.add(h + at, i, bitCast<V>(load<Bits>(x + at) & load<Bits>(mask.bits + at)));
    }
    for (size_t j = 4; j < len * sizeof(T) / sizeof(double); j += 4)
#pragma GCC unroll 4
        for (int i = 0; i < kRowVectors; ++i) {
            const size_t at = j + static_cast<size_t>(i * kRowLanes);
            sums.add(h + at, i, load<V>(x + at));
        }
    row = sums;
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
