// What the generators of periodic signals have in common: turns of 2 pi, and rows, in which samples are made.
#pragma once

#include "core/checks.h"
#include "core/complex.h"
#include "core/loops.h"
#include "vm/environment.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {

inline constexpr double kTurn = 6.28318530717958647693, kTurnLow = 0x1.1a62633145c07p-52;

// To the nearest integer, of numbers below 2^51.
template <class V>
ZPP_INLINE V nearestInteger(V v) {
    return (v + 0x1.8p52) - 0x1.8p52;
}

// a + b and what it lacks of the sum, whichever is larger.
template <class V>
ZPP_INLINE Sum<V> exactSum(V a, V b) {
    const V sum = a + b, fromB = sum - a;
    return {sum, (a - (sum - fromB)) + (b - fromB)};
}

// A frequency in turns, |f| < 1, in two halves, so that its multiples can be reduced exactly.
class Frequency {
  public:
    explicit Frequency(double f) : high_(firstHalf(f)), low_(f - high_) {}

    // The frequency of every so many samples, a power of 2.
    Frequency ofEvery(int samples) const {
        const double f = (high_ + low_) * samples;
        return Frequency(f - nearestInteger(f));
    }

    // n f less a whole number of turns: at most 1, right to 2^-53. Of whole n up to 2^26.
    template <class V>
    ZPP_INLINE V turns(V n) const {
        const V product = n * high_;
        return (product - nearestInteger(product)) + n * low_;
    }
    double turns(size_t n) const { return turns(static_cast<double>(static_cast<int>(n))); }

  private:
    double high_, low_;
};

// phase + 2 pi f len less whole turns, in [0, 2 pi]: with the real pi, right to 2^-100, then rounded once.
inline double phaseBehind(double phase, double f, int len) {
    const Sum<double> product = exactProduct(f, static_cast<double>(len));
    const Sum<double> turns = sumOf(product.high - nearestInteger(product.high), product.low);
    const Sum<double> angle = exactProduct(turns.high, kTurn);
    const Sum<double> sum = exactSum(phase, angle.high);
    const double low = sum.low + (angle.low + (turns.high * kTurnLow + turns.low * kTurn));
    if (sum.high + low < 0) {
        const Sum<double> positive = sumOf(kTurn, sum.high);
        return positive.high + (positive.low + (low + kTurnLow));
    }
    const double above = (sum.high - kTurn) + (low - kTurnLow);
    return above >= 0 ? above : sum.high + low;
}

// The doubles dst[i .. len-1] of a row of kRow, or all: write(put, p, count) makes `count` from p on, and
// puts them by whole registers.
template <int kRow, bool kStreamed, class WriteRow>
ZPP_INLINE void writeRow(double* dst, size_t i, size_t len, WriteRow write) {
    if (len - i >= kRow) [[likely]]
        return write(Write<kStreamed>(), dst + i, kRow);
    double rest[kRow];
    write(Write<false>(), rest, static_cast<int>(len - i));
    memcpy(dst + i, rest, (len - i) * sizeof(double));
}

// run(kStreamed), for a result of `len` doubles.
template <class Run>
ZPP_INLINE void withStreaming(size_t len, Run run) {
    if (isStreamed(nullptr, len * sizeof(double))) {
        run(std::true_type());
        streamFence();
    } else {
        run(std::false_type());
    }
}

}  // namespace zpp::ZPP_ISA
