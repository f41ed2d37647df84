#include "bench/generators.h"
#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

constexpr double kTurn = 6.283185307179586, kPi = kTurn / 2;

double behind(double phase, int len, double frequency) {
    return __builtin_fmod(phase + kTurn * frequency * len, kTurn);
}

void tone(double* __restrict dst, int len, double magn, double frequency, double* phase) {
    for (int i = 0; i < len; ++i) dst[i] = magn * __builtin_cos(kTurn * frequency * i + *phase);
    *phase = behind(*phase, len, frequency);
}
void toneComplex(Zpp64fc* __restrict dst, int len, double magn, double frequency, double* phase) {
    for (int i = 0; i < len; ++i) {
        const double angle = kTurn * frequency * i + *phase;
        dst[i] = {magn * __builtin_cos(angle), magn * __builtin_sin(angle)};
    }
    *phase = behind(*phase, len, frequency);
}

// Slopes added and folded; of frequencies below those that skip an edge.
template <int kStep>
void triangle(double* __restrict dst, int len, double magn, double frequency, double asym, double phase) {
    const double a = kPi + asym, b = kPi - asym, fall = 2 * kTurn * magn * frequency / a, rise = fall * a / b;
    bool rises = phase >= a;
    double v = rises ? magn * ((phase - a) * 2 / b - 1) : magn * (1 - 2 * phase / a);
    for (int i = 0; i < len; ++i) {
        dst[kStep * i] = v;
        v += rises ? rise : -fall;
        if (rises && v > magn) {
            v = magn - (v - magn) * b / a;
            rises = false;
        } else if (!rises && v < -magn) {
            v = -magn + (-magn - v) * a / b;
            rises = true;
        }
    }
}
void triangleReal(double* dst, int len, double magn, double frequency, double asym, double* phase) {
    triangle<1>(dst, len, magn, frequency, asym, *phase);
    *phase = behind(*phase, len, frequency);
}
void triangleComplex(Zpp64fc* dst, int len, double magn, double frequency, double asym, double* phase) {
    triangle<2>(&dst->re, len, magn, frequency, asym, *phase);
    triangle<2>(&dst->im, len, magn, frequency, asym, behind(*phase, 3, 0.25));
    *phase = behind(*phase, len, frequency);
}

template <class T>
void jaehne(T* __restrict dst, int len, T magn) {
    const double step = kPi / 2 / len;
    for (int i = 0; i < len; ++i) {
        const double v = magn * __builtin_sin(i * step * i);
        dst[i] = static_cast<T>(std::is_integral_v<T> ? __builtin_rint(v) : v);
    }
}
void ramp(double* __restrict dst, int len, float offset, float slope) {
    for (int i = 0; i < len; ++i) dst[i] = i * double{slope} + double{offset};
}
void rampIntegers(Zpp32s* __restrict dst, int len, float offset, float slope) {
    for (int i = 0; i < len; ++i) {
        const double v = i * double{slope} + double{offset}, adjusted = v + (v <= 0 ? -0.5 : 0.5);
        dst[i] = adjusted >= 2147483647.0    ? 2147483647
                 : adjusted <= -2147483648.0 ? -2147483647 - 1
                                             : static_cast<Zpp32s>(adjusted);
    }
}

[[maybe_unused]] const Peers signals(kWho,
                                     {
                                         {"Tone_Direct_64f", timedTone<Zpp64f, tone>},
                                         {"Tone_Direct_64fc", timedTone<Zpp64fc, toneComplex>},
                                         {"Triangle_Direct_64f", timedTriangle<Zpp64f, triangleReal>},
                                         {"Triangle_Direct_64fc", timedTriangle<Zpp64fc, triangleComplex>},
                                         {"VectorJaehne_64f", timed<jaehne<double>>},
                                         {"VectorJaehne_32s", timed<jaehne<Zpp32s>, 1000000>},
                                         {"VectorRamp_64f", timed<ramp>},
                                         {"VectorRamp_32s", timed<rampIntegers>},
                                     });

}  // namespace
}  // namespace zpp::bench
