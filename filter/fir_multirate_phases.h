// Where the outputs of a multi-rate FIR filter stand.
//
// With U = up and D = down, output n stands at place downPhase + n D of the signal with U places for each
// input. Its phase is the distance to the newest input at or before it; phase p meets the taps h(p), h(p +
// U), ..., the first of them on the newest input. As every D-th place is taken, the phases met are those of
// one remainder modulo g = gcd(U, D): phase first + k g is number k of U / g.
#pragma once

#include "filter/fir_multirate.h"

namespace zpp::ZPP_ISA {

// Elements of the vectors of a row (fir_multirate_kernel.h).
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

// From an output to a later one.
struct Step {
    size_t outputs, phases, taken;
};

// The number below n by which that of phases to be stepped over is to be multiplied to be 1 modulo n, 0 for n
// = 1. (The extended algorithm of Euclid.)
inline uint64_t inverseOf(uint64_t step, uint64_t n) {
    uint64_t a = n, b = step % n, x = 0, y = 1 % n;
    while (b > 1) {
        const uint64_t times = a / b, rest = a % b;
        const uint64_t next = (x + (n - y) * times) % n;  // below 2^62: both factors are below 2^31
        a = b, b = rest, x = y, y = next;
    }
    return y;
}

struct Phases {
    size_t count;           // U / g
    size_t step;            // D / g
    size_t rows;            // phases with taps; the others, which follow them, share one row of none
    size_t longRows;        // those with a tap on the oldest sample
    size_t first, divisor;  // g
    size_t window;          // samples of an output, and elements of the delay line: ceil(tapsLen / U)
    Place start;            // of the first output
    size_t mostRows;        // of the same filter with other phases
    Step toNext;            // from an output to the next
    Step toNextPhase;       // or, some outputs later, to that of the next phase

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
        toNext = stepOf(1);
        toNextPhase = stepOf(inverseOf(step, count));
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

    void advance(Place& place, const Step& by) const {
        place.taken += by.taken;
        place.phase += by.phases;
        const bool wraps = place.phase >= count;
        place.phase -= wraps ? count : 0;
        place.taken += wraps ? 1 : 0;
    }

    // That of the output `n` later.
    Place placeBehind(const Place& place, size_t n) const {
        const uint64_t places = place.phase + uint64_t{n % count} * step;
        return {static_cast<size_t>(places % count),
                place.taken + n / count * step + static_cast<size_t>(places / count)};
    }

    // How many outputs from `place` on have no more than `taken` inputs at or before them.
    size_t outputsUpTo(const Place& place, size_t taken) const {
        if (place.taken > taken) return 0;
        const uint64_t places = (uint64_t{taken - place.taken} + 1) * count - place.phase;
        return static_cast<size_t>((places - 1) / step + 1);
    }

  private:
    Step stepOf(uint64_t outputs) const {
        const uint64_t places = outputs * step;
        return {static_cast<size_t>(outputs), static_cast<size_t>(places % count),
                static_cast<size_t>(places / count)};
    }
};

// Those that a state keeps.
inline const Phases& phasesOf(const ZppsFIRState* state) {
    return *static_cast<const Phases*>(state->phases);
}

}  // namespace zpp::ZPP_ISA
