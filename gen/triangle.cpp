// Triangles.
//
// A sample is as far above the last trough as its edge has risen or fallen since: with x, the turns from that
// trough, negative on the falling edge, it is the larger one of -1 - x / (half of its length) and -1 + x /
// (half of the length of the rising edge). x is that of the first sample of a row, exact but for its last
// bits, plus a table of f k, less 1 where that leaves the rising edge. So no error adds up from sample to
// sample, as it does where slopes are added and ends folded; the signal is the same.
//
// Where the falling edge has no length, which of both ends a sample has that meets it follows from the sums:
// they are formed one by one.
//
// Error: below 2^-50 turns of x, and a rounding.
#include "gen/exports.h"
#include "gen/rows.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr int kRow = 256;  // doubles
constexpr double kPi = kTurn / 2;

// Lengths of both edges in radians.
struct Edges {
    double falling, rising;
};

double firstSample(double magn, const Edges& edges, double phase) {
    const double v = phase >= edges.falling ? magn * ((phase - edges.falling) * 2 / edges.rising - 1)
                                            : magn * (1 - 2 * phase / edges.falling);
    return min(v, magn);
}

// The largest slope that gets from -magn to magn at most in a length.
double slopeOf(double length, double magn) {
    if (length == 0) return 0;
    const double slope = 2 * magn / length;
    return mulAdd(length, slope, -magn) > magn ? bitCast<double>(bitCast<uint64_t>(slope) - 1) : slope;
}

// AVX-512 subtracts under a mask; elsewhere the mask makes a zero of the 1.
template <class M, class V>
ZPP_INLINE V lessOneWhere(M condition, V v) {
    if constexpr (sizeof(V) == 64)
        return select(condition, v - 1.0, v);
    else
        return v - select(condition, broadcast<V>(1.0), V{});
}

// The doubles of a row, from the turns between its first sample and each of them. Imaginary parts are a
// quarter of a turn behind.
template <class T>
class TriangleTable {
  public:
    // In turns the longer edge is rounded, and the shorter one exactly the rest.
    TriangleTable(double magn, const Edges& edges, const Frequency& f, size_t len) : magn_(magn) {
        const bool fallsLonger = edges.falling > edges.rising;
        const double longer = (fallsLonger ? edges.falling : edges.rising) / kTurn;
        falling_ = fallsLonger ? longer : 1 - longer;
        rising_ = fallsLonger ? 1 - longer : longer;
        fall_ = slopeOf(falling_, magn);
        rise_ = slopeOf(rising_, magn);

        static constexpr double kSample[] = {0, 1, 2, 3, 4, 5, 6, 7}, kPair[] = {0, 0, 1, 1, 2, 2, 3, 3},
                                kNone[8] = {}, kQuarter[] = {0, .25, 0, .25, 0, .25, 0, .25};
        constexpr bool isComplex = kParts<T> == 2;
        for (size_t k = 0; k < kRow && k < len; k += kLanes<double>) {
            const size_t samples = k / 8 * 8 / kParts<T>;
            const V n = load<V>((isComplex ? kPair : kSample) + k % 8) + static_cast<double>(samples);
            const V turns = f.turns(n) - load<V>((isComplex ? kQuarter : kNone) + k % 8);
            store(turns_ + k, select(turns < 0, turns + 1.0, turns));
        }
    }

    // Of the turns since phase 0 the turns since the trough, from the top before it to the top behind.
    double fromTrough(double turns) const {
        turns -= falling_;
        const double x = turns - nearestInteger(turns - rising_ + 0.5);
        return max(min(x, rising_), -falling_);
    }

    // The first sample is `start` turns from the trough.
    template <class Put>
    ZPP_INLINE void write(Put put, double* dst, int count, double start) const {
#pragma GCC unroll 4
        for (int k = 0; k < count; k += kLanes<double>) {
            const V turns = load<V>(turns_ + k) + start;
            const V x = lessOneWhere(turns > rising_, turns);
            const V bottom = broadcast<V>(-magn_);
            put(dst + k,
                max(mulAdd(x, broadcast<V>(rise_), bottom), mulSubFrom(x, broadcast<V>(fall_), bottom)));
        }
    }

  private:
    using V = Vec<double>;
    double magn_, falling_, rising_, fall_, rise_;
    alignas(64) double turns_[kRow];
};

// Of `len` doubles.
template <class T, bool kStreamed>
void triangleOfRows(double* dst, size_t len, double magn, double rFreq, const Edges& edges, double phase) {
    // Slopes of a magnitude at the ends of the range of doubles are out of it.
    const bool isMiddling = magn >= 0x1p-900 && magn <= 0x1p900;
    const Frequency f(rFreq), ofRows = f.ofEvery(kRow / kParts<T>);
    const TriangleTable<T> table(isMiddling ? magn : 1, edges, f, len);
    const double first = phase / kTurn;
    for (size_t i = 0; i < len; i += kRow) {
        const double start = table.fromTrough(first + ofRows.turns(i / kRow));
        writeRow<kRow, kStreamed>(dst, i, len, [&](auto put, double* row, int count) ZPP_INLINE_LAMBDA {
            table.write(put, row, count, start);
        });
    }
    if (!isMiddling)
        for (size_t i = 0; i < len; ++i) dst[i] *= magn;
}

// The sums themselves of one part, where the falling edge has no length.
template <int kStep>
void sawtooth(double* dst, size_t len, double magn, double rFreq, double v) {
    const double step = 2 * magn * rFreq;
    for (size_t i = 0; i < len; v -= 2 * magn) {
        do {
            dst[i] = v;
            v += step;
            i += kStep;
        } while (i < len && v <= magn);
    }
}

template <class T>
ZppStatus triangle(T* pDst, int len, double magn, double rFreq, double asym, double* pPhase) {
    if (const ZppStatus error =
            firstError(checkPointers(pPhase), require(magn > 0, zppStatusTriangleMagnitude),
                       require(rFreq >= 0 && rFreq < 0.5, zppStatusTriangleFrequency),
                       require(asym >= -kPi && asym < kPi, zppStatusTriangleAsymmetry)))
        return error;
    const double phase = *pPhase;
    if (const ZppStatus error =
            firstError(require(phase >= 0 && phase < kTurn, zppStatusTrianglePhase), checkVectors(len, pDst)))
        return error;
    const Environment environment;
    *pPhase = phaseBehind(phase, rFreq, len);
    const Edges edges = {kPi + asym, kPi - asym};
    const size_t count = static_cast<size_t>(len) * kParts<T>;
    double* const dst = reinterpret_cast<double*>(pDst);
    const double phases[] = {phase, phase < kPi / 2 ? phase + 3 * (kPi / 2) : phase - kPi / 2};
    if (edges.falling > 0)
        withStreaming(count, [=](auto streamed) {
            triangleOfRows<T, streamed>(dst, count, magn, rFreq, edges, phase);
        });
    for (int part = 0; part < kParts<T>; ++part) {
        dst[part] = firstSample(magn, edges, phases[part]);
        if (!(edges.falling > 0))
            sawtooth<kParts<T>>(dst + part, count - static_cast<size_t>(part), magn, rFreq, dst[part]);
    }
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsTriangle_Direct_64f(Zpp64f* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f asym,
                                  Zpp64f* pPhase) {
    return triangle(pDst, len, magn, rFreq, asym, pPhase);
}
ZppStatus zppsTriangle_Direct_64fc(Zpp64fc* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f asym,
                                   Zpp64f* pPhase) {
    return triangle(pDst, len, magn, rFreq, asym, pPhase);
}

}  // namespace zpp::ZPP_ISA
