#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

// Pairs to a low and a high band, by an operation on a pair for each, and back.
template <class T, auto kLow, auto kHigh>
void split(const T* __restrict src, int len, T* __restrict low, T* __restrict high) {
    for (int i = 0; i < len / 2; ++i) {
        low[i] = kLow(src[2 * i], src[2 * i + 1]);
        high[i] = kHigh(src[2 * i], src[2 * i + 1]);
    }
}
template <class T, auto kFirst, auto kSecond>
void join(const T* __restrict low, const T* __restrict high, T* __restrict dst, int len) {
    for (int i = 0; i < len / 2; ++i) {
        dst[2 * i] = kFirst(low[i], high[i]);
        dst[2 * i + 1] = kSecond(low[i], high[i]);
    }
}

// Halves, rounded to even, in 32 bits: of the halves, and of what they have lost. At both ends of the range
// they are not exact.
constexpr bool farApart(Zpp32s a, Zpp32s b) { return (b >> 1) - (a >> 1) == 2147483647; }
constexpr Zpp32s halfSum(Zpp32s a, Zpp32s b) {
    return farApart(a, b) ? 0 : ((a >> 1) + (b >> 1) + ((a | b) & 1)) & ~((a ^ b) & 1);
}
constexpr Zpp32s halfDifference(Zpp32s a, Zpp32s b) {
    const Zpp32s half = (b >> 1) - (a >> 1);
    return farApart(a, b) ? half : (half + (b & ~a & 1)) & ~((a ^ b) & 1);
}

// The recurrence, sample by sample; of two frequencies side by side.
template <int kTones>
void goertzel(const Zpp64fc* src, int len, Zpp64fc* values, const double* frequencies) {
    double c[kTones], s[kTones], re1[kTones] = {}, im1[kTones] = {}, re2[kTones] = {}, im2[kTones] = {};
    for (int j = 0; j < kTones; ++j) {
        c[j] = __builtin_cos(6.283185307179586 * frequencies[j]);
        s[j] = __builtin_sin(6.283185307179586 * frequencies[j]);
    }
    for (int i = 0; i < len; ++i)
        for (int j = 0; j < kTones; ++j) {
            const double re = 2 * c[j] * re1[j] - re2[j] + src[i].re,
                         im = 2 * c[j] * im1[j] - im2[j] + src[i].im;
            re2[j] = re1[j], im2[j] = im1[j], re1[j] = re, im1[j] = im;
        }
    for (int j = 0; j < kTones; ++j)
        values[j] = {c[j] * re1[j] - s[j] * im1[j] - re2[j], c[j] * im1[j] + s[j] * re1[j] - im2[j]};
}
template <int kTones>
void timedGoertzel(benchmark::State& state, int len) {
    Zpp64fc values[kTones];
    const double frequencies[] = {0.1234, 0.321};
    for (auto iteration : state) {
        (void)iteration;
        goertzel<kTones>(complexVector(source(0)), len, values, frequencies);
        benchmark::DoNotOptimize(values);
    }
}
[[maybe_unused]] const Peers tones(kWho,
                                   {{"Goertz_64fc", timedGoertzel<1>}, {"GoertzTwo_64fc", timedGoertzel<2>}});

[[maybe_unused]] const Peers haar(
    kWho,
    {
        {"WTHaarFwd_64f", timed<split<double, [](double a, double b) { return a + (b - a) * 0.5; },
                                      [](double a, double b) { return (b - a) * 0.5; }>>},
        {"WTHaarFwd_32s", timed<split<Zpp32s, [](Zpp32s a, Zpp32s b) { return halfSum(a, b); },
                                      [](Zpp32s a, Zpp32s b) { return halfDifference(a, b); }>>},
        {"WTHaarFwd_32s_Sfs", timed<split<Zpp32s, [](Zpp32s a, Zpp32s b) { return scaled<4>(0LL + a + b); },
                                          [](Zpp32s a, Zpp32s b) { return scaled<4>(0LL + b - a); }>>},
        {"WTHaarInv_64f", timed<join<double, [](double l, double h) { return l - h; },
                                     [](double l, double h) { return l + h; }>>},
        {"WTHaarInv_32s", timed<join<Zpp32s, [](Zpp32s l, Zpp32s h) { return scaled<0>(0LL + l - h); },
                                     [](Zpp32s l, Zpp32s h) { return scaled<0>(0LL + l + h); }>>},
        {"WTHaarInv_32s_Sfs", timed<join<Zpp32s, [](Zpp32s l, Zpp32s h) { return scaled<3>(0LL + l - h); },
                                         [](Zpp32s l, Zpp32s h) { return scaled<3>(0LL + l + h); }>>},
    });

}  // namespace
}  // namespace zpp::bench
