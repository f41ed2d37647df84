// Tones.
//
// A row of samples is e^(i angle of its first one) times e^(i 2 pi f k), k = 0, 1, ..., a table that is made
// once for a call, by doubling: so a sample takes a complex product. Eight first samples at a time are turned
// on by a product, and computed anew from their exact angles from time to time. Short vectors, and magnitudes
// at the ends of the range of doubles, take a sine and a cosine for each sample.
//
// Error: below 2^-46 of the magnitude, most of it of the turning; of samples taken one by one below 2^-49.
#include "core/complex.h"
#include "gen/exports.h"
#include "gen/rows.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr int kRow = 128;       // doubles
constexpr int kAnchors = 8;     // rows whose first samples are computed together
constexpr int kRotations = 16;  // of anchors before they are computed anew
constexpr int kShort = 32;      // samples

template <int N>
struct Phasors {
    alignas(64) double re[N], im[N];
};

struct Count {
    double at[kShort];
    constexpr Count() : at() {
        for (int i = 0; i < kShort; ++i) at[i] = i;
    }
};
constexpr Count kCount;

// e^(i (2 pi (f n[k] + turns) + phase)) of the first `count` numbers, and of what is left of a register.
template <int N>
[[gnu::noinline]] void compute(Phasors<N>& phasors, int count, const Frequency& f, const double (&n)[N],
                               double turns, double phase) {
    using V = Vec<double>;
    for (int k = 0; k < count; k += kLanes<double>) {
        const auto angle = SineAngle<V>::template of<0>((f.turns(load<V>(n + k)) + turns) * kTurn + phase);
        const SmallAngle<V> small(angle);
        const Sum<V> cosine = cosineSum(angle, small), sine = sineSum(angle, small);
        store(phasors.re + k, withSignOf<V>(angle.k, cosine.high + cosine.low));
        store(phasors.im + k, withSignOf<V>(angle.k, sine.high + sine.low));
    }
}

// A sample from a phasor, a result or what is multiplied to be one.
ZPP_INLINE void putPhasor(double* dst, double re, double) { *dst = re; }
ZPP_INLINE void putPhasor(Zpp64fc* dst, double re, double im) { *dst = {re, im}; }

template <class T>
void toneOfSamples(T* dst, size_t len, double magn, const Frequency& f, double phase) {
    const Frequency ofBlocks = f.ofEvery(kShort);
    Phasors<kShort> p;
    for (size_t i = 0; i < len; i += kShort) {
        const int count = static_cast<int>(len - i < kShort ? len - i : kShort);
        compute(p, count, f, kCount.at, ofBlocks.turns(i / kShort), phase);
        for (int k = 0; k < count; ++k) putPhasor(dst + i + k, magn * p.re[k], magn * p.im[k]);
    }
}

// The numbers of samples whose phasors the table is made of, and the largest of which turns anchors.
template <class T>
constexpr double kPowers[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 16, 32, 64, 128, 256, 512, 1024 / kParts<T>};

// Doubles of a row: re t + im u, where t = e^(i 2 pi f k) and u = i t; of a real tone the real parts.
template <class T>
class ToneTable {
  public:
    explicit ToneTable(const Phasors<16>& z) {
        for (int k = 0; k < 8; ++k) {
            putPhasor(reinterpret_cast<T*>(t_) + k, z.re[k], z.im[k]);
            putPhasor(reinterpret_cast<T*>(u_) + k, -z.im[k], z.re[k]);
        }
        for (int power = 8, size = 8 * kParts<T>; size < kRow; ++power, size *= 2) {
            const double re = z.re[power], im = z.im[power];
            write(Write<false>(), t_ + size, size, re, im);
            for (int k = 0; k < size; k += kLanes<double>)
                store(u_ + size + k, turned(load<V>(u_ + k), load<V>(t_ + k), re, -im));
        }
    }

    template <class Put>
    ZPP_INLINE void write(Put put, double* dst, int count, double re, double im) const {
#pragma GCC unroll 4
        for (int k = 0; k < count; k += kLanes<double>)
            put(dst + k, turned(load<V>(t_ + k), load<V>(u_ + k), re, im));
    }

    ZPP_INLINE static void turn(Phasors<kAnchors>& anchors, double re, double im) {
        for (int k = 0; k < kAnchors; k += kLanes<double>) {
            const V x = load<V>(anchors.re + k), y = load<V>(anchors.im + k);
            store(anchors.re + k, turned(x, y, re, -im));
            store(anchors.im + k, turned(y, x, re, im));
        }
    }

  private:
    using V = Vec<double>;
    ZPP_INLINE static V turned(V t, V u, double re, double im) { return mulAdd(t, broadcast<V>(re), u * im); }

    alignas(64) double t_[kRow], u_[kRow];
};

// Of `len` doubles.
template <class T, bool kStreamed>
void toneOfRows(double* dst, size_t len, double magn, const Frequency& f, double phase) {
    Phasors<16> powers;
    compute(powers, 16, f, kPowers<T>, 0, 0);
    const ToneTable<T> table(powers);
    const Frequency ofRows = f.ofEvery(kRow / kParts<T>), ofGroups = ofRows.ofEvery(kAnchors);
    Phasors<kAnchors> anchors;
    for (size_t i = 0, group = 0; i < len; ++group) {
        if (group % kRotations == 0) {
            constexpr double kRows[kAnchors] = {0, 1, 2, 3, 4, 5, 6, 7};
            compute(anchors, kAnchors, ofRows, kRows, ofGroups.turns(group), phase);
        } else {
            table.turn(anchors, powers.re[15], powers.im[15]);
        }
        for (int k = 0; k < kAnchors && i < len; ++k, i += kRow)
            writeRow<kRow, kStreamed>(dst, i, len, [&](auto put, double* row, int count) ZPP_INLINE_LAMBDA {
                table.write(put, row, count, magn * anchors.re[k], magn * anchors.im[k]);
            });
    }
}

template <class T>
ZppStatus tone(T* pDst, int len, double magn, double rFreq, double* pPhase) {
    if (const ZppStatus error = firstError(checkPointers(pPhase), require(magn > 0, zppStatusToneMagnitude),
                                           require(rFreq >= 0 && rFreq < 0.5, zppStatusToneFrequency)))
        return error;
    const double phase = *pPhase;
    if (const ZppStatus error =
            firstError(require(phase >= 0 && phase < kTurn, zppStatusTonePhase), checkVectors(len, pDst)))
        return error;
    const Environment environment;
    const double next = phaseBehind(phase, rFreq, len);
    *pPhase = next < kTurn ? next : 0;
    const Frequency f(rFreq);
    const size_t count = static_cast<size_t>(len), doubles = count * kParts<T>;
    if (len <= kShort || !(magn >= 0x1p-900 && magn <= 0x1p1000))
        toneOfSamples(pDst, count, magn, f, phase);
    else
        withStreaming(doubles, [=](auto streamed) {
            toneOfRows<T, streamed>(reinterpret_cast<double*>(pDst), doubles, magn, f, phase);
        });
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsTone_Direct_64f(Zpp64f* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f* pPhase) {
    return tone(pDst, len, magn, rFreq, pPhase);
}
ZppStatus zppsTone_Direct_64fc(Zpp64fc* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f* pPhase) {
    return tone(pDst, len, magn, rFreq, pPhase);
}

}  // namespace zpp::ZPP_ISA
