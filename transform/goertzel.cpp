// Goertzel's recurrence. A step waits for the one before it, so long signals are taken as segments that run
// side by side, and whose values are put together by the phase between them. That shortens the recurrence,
// whose error grows with its length, and the square of it where the frequency is near a multiple of 1 / 2.
//
// The bound: with |s| the largest state, at most H sum |x|, H = min(n, 1 / |sin w|), the step errs by 2 |s|
// 2^-53 for its two sums, 2 |s| 2^-53 for the product where it is not fused, and for k by 2 |s| 2^-53 and,
// as w is rounded, 9 |s sin w| 2^-53. An error of a step is one of the sample, and reaches the result as it
// is.
#include <math.h>

#include "core/checks.h"
#include "core/complex.h"
#include "transform/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr size_t kSegments = 4;    // with which a second frequency finds room beside the first
constexpr size_t kShortest = 128;  // shorter signals are one segment

// The samples of the segments of state i.
template <class V>
ZPP_INLINE V samples(const double* x, size_t stride, size_t i) {
    if constexpr (sizeof(V) == 64) {
        const auto pair = [=](size_t j) ZPP_INLINE_LAMBDA {
            return __builtin_shufflevector(load<Vec<double, 2>>(x + (4 * i + j) * stride),
                                           load<Vec<double, 2>>(x + (4 * i + j + 1) * stride), 0, 1, 2, 3);
        };
        return __builtin_shufflevector(pair(0), pair(2), 0, 1, 2, 3, 4, 5, 6, 7);
    } else if constexpr (sizeof(V) == 32) {
        return __builtin_shufflevector(load<Vec<double, 2>>(x + 2 * i * stride),
                                       load<Vec<double, 2>>(x + (2 * i + 1) * stride), 0, 1, 2, 3);
    } else if constexpr (sizeof(V) == 16) {
        return load<V>(x + i * stride);
    } else {
        return x[i / 2 * stride + i % 2];
    }
}

// A frequency, and what the recurrence of it needs.
struct Tone {
    double c, s, frequency;
    explicit Tone(double f) : frequency(f < 0.5 ? f : f - 1) {
        const double omega = 6.283185307179586 * frequency;
        c = cos(omega);
        s = sin(omega);
    }
    // exp(2 pi i frequency n), n < 2^28: of the turns only the fraction counts, and of the products the first
    // is exact.
    Complex<double> turnOf(size_t n) const {
        const double count = static_cast<double>(n);
        const double high = static_cast<float>(frequency), low = frequency - high;
        const double turns = high * count;
        const double angle = 6.283185307179586 * ((turns - rint(turns)) + low * count);
        return {cos(angle), sin(angle)};
    }
};

template <class S>
ZPP_INLINE S stepped(double k, S s1, S s2, S x) {
    return mulAdd(broadcast<S>(k), s1, -s2) + x;
}

// s1 exp(i omega) - s2
Complex<double> valueOf(const Tone& tone, Complex<double> s1, Complex<double> s2) {
    return {tone.c * s1.re - tone.s * s1.im - s2.re, tone.c * s1.im + tone.s * s1.re - s2.im};
}

// The values of segments of n samples each, for all tones. A state is a vector of the parts of as many as it
// holds, or a single part.
template <size_t kCount, size_t kTones>
inline void ofSegments(const Tone (&tones)[kTones], const double* x, size_t n,
                       Complex<double> (&values)[kTones][kCount]) {
    constexpr int kWidth = kLanes<double> < 2 * kCount ? kLanes<double> : 2 * kCount;
    constexpr size_t kStates = 2 * kCount / kWidth;
    using V = Vec<double, kWidth>;
    V s1[kTones][kStates] = {}, s2[kTones][kStates] = {};
    const size_t stride = 2 * n;
    const auto step = [&](auto& from, auto& to, size_t at) ZPP_INLINE_LAMBDA {
#pragma GCC unroll 16
        for (size_t i = 0; i < kStates; ++i) {
            const V sample = samples<V>(x + 2 * at, stride, i);
#pragma GCC unroll 2
            for (size_t j = 0; j < kTones; ++j)
                to[j][i] = stepped(2 * tones[j].c, from[j][i], to[j][i], sample);
        }
    };
    size_t at = 0;
    for (; at + 2 <= n; at += 2) {
        step(s1, s2, at);
        step(s2, s1, at + 1);
    }
    const bool odd = at < n;
    if (odd) step(s1, s2, at);
    for (size_t j = 0; j < kTones; ++j) {
        double last[2][2 * kCount];
        for (size_t i = 0; i < kStates; ++i) {
            store(last[0] + i * kWidth, odd ? s2[j][i] : s1[j][i]);
            store(last[1] + i * kWidth, odd ? s1[j][i] : s2[j][i]);
        }
        for (size_t i = 0; i < kCount; ++i)
            values[j][i] =
                valueOf(tones[j], {last[0][2 * i], last[0][2 * i + 1]}, {last[1][2 * i], last[1][2 * i + 1]});
    }
}

template <size_t kTones>
void goertzel(const Zpp64fc* src, int len, Zpp64fc* val, const Tone (&tones)[kTones]) {
    const double* x = &src->re;
    const size_t n = static_cast<size_t>(len), length = n < kShortest ? 0 : n / kSegments;
    const size_t rest = n - kSegments * length;
    Complex<double> sums[kTones][1], values[kTones][kSegments];
    ofSegments(tones, x, rest, sums);
    if (length > 0) ofSegments(tones, x + 2 * rest, length, values);
    for (size_t j = 0; j < kTones; ++j) {
        Complex<double> sum = sums[j][0];
        if (length > 0) {
            const Complex<double> turn = tones[j].turnOf(length);
            for (const Complex<double>& value : values[j]) sum = product(sum, turn) + value;
        }
        val[j] = {sum.re, sum.im};
    }
}

bool inRange(double frequency) { return frequency >= 0 && frequency < 1; }

}  // namespace

ZppStatus zppsGoertz_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pVal, Zpp64f rFreq) {
    const ZppStatus range = require(inRange(rFreq), zppStatusRelativeFrequency);
    if (const ZppStatus error = firstError(checkVectors(len, pSrc, pVal), range)) return error;
    const DoublePrecision precision;
    goertzel(pSrc, len, pVal, {Tone(rFreq)});
    return zppStatusOk;
}

ZppStatus zppsGoertzTwo_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pVal, const Zpp64f* rFreq) {
    if (const ZppStatus error = checkVectors(len, pSrc, pVal, rFreq)) return error;
    if (!inRange(rFreq[0]) || !inRange(rFreq[1])) return zppStatusRelativeFrequency;
    const DoublePrecision precision;
    goertzel(pSrc, len, pVal, {Tone(rFreq[0]), Tone(rFreq[1])});
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
