#include <algorithm>
#include <cstring>
#include <vector>

#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

template <class T>
void sampleUp(const T* __restrict src, int len, T* __restrict dst, int factor, int phase) {
    memset(static_cast<void*>(dst), 0, sizeof(T) * static_cast<size_t>(len));
    for (int i = phase; i < len; i += factor) dst[i] = *src++;
}
template <class T>
void sampleDown(const T* __restrict src, int len, T* __restrict dst, int factor, int phase) {
    for (int i = phase; i < len; i += factor) *dst++ = src[i];
}

template <class T>
struct Sum {
    T value = 0;
    void add(T h, T x) { value += h * x; }
};
template <>
struct Sum<Zpp64fc> {
    Zpp64fc value = {0, 0};
    void add(Zpp64fc h, Zpp64fc x) {
        value.re += h.re * x.re - h.im * x.im;
        value.im += h.re * x.im + h.im * x.re;
    }
};

// Polyphase: the taps of each phase lie together, and are met by the samples in their order.
template <class T, class D, int kUp, int kDown, int kTaps>
void multiRate(const D* __restrict src, const T* __restrict taps, int len, D* __restrict dst) {
    constexpr int larger = kUp > kDown ? kUp : kDown;
    const int outputs = len > larger ? len / larger * kUp : kUp;
    for (int n = 0, phase = 0; n < outputs; ++n) {
        const T* h = taps + phase * kTaps;
        Sum<T> sum;
        for (int k = 0; k < kTaps; ++k) sum.add(h[k], src[k]);
        if constexpr (sizeof(D) == sizeof(T))
            dst[n] = sum.value;
        else
            dst[n] = static_cast<D>(sum.value);
        for (phase += kDown; phase >= kUp; phase -= kUp) ++src;
    }
}
template <int kUp, int kDown, int kTaps>
constexpr auto multiRateReal = timed<multiRate<double, double, kUp, kDown, kTaps>>;
template <int kUp, int kDown, int kTaps>
constexpr auto multiRateComplex = timed<multiRate<Zpp64fc, Zpp64fc, kUp, kDown, kTaps>>;
template <int kUp, int kDown, int kTaps>
constexpr auto multiRateSingle = timed<multiRate<double, float, kUp, kDown, kTaps>>;

[[maybe_unused]] const Peers multiRates(kWho,
                                        {
                                            {"FIRMR_64f_147_160_64", multiRateReal<147, 160, 64>},
                                            {"FIRMR_64f_1_6_64", multiRateReal<6, 1, 64>},
                                            {"FIRMR_64f_6_1_384", multiRateReal<1, 6, 384>},
                                            {"FIRMR_64f_2_3_8", multiRateReal<2, 3, 8>},
                                            {"FIRMR_64fc_147_160_64", multiRateComplex<147, 160, 64>},
                                            {"FIRMR_64fc_1_6_64", multiRateComplex<6, 1, 64>},
                                            {"FIRMR_64fc_6_1_384", multiRateComplex<1, 6, 384>},
                                            {"FIRMR64f_32f_147_160_64", multiRateSingle<147, 160, 64>},
                                            {"FIRMR64f_32f_1_6_64", multiRateSingle<6, 1, 64>},
                                            {"FIRMR64f_32f_6_1_384", multiRateSingle<1, 6, 384>},
                                            {"FIRMR_Direct_64f_147_160_64", multiRateReal<147, 160, 64>},
                                        });

[[maybe_unused]] const Peers sampling(kWho, {
                                                {"SampleUp_64f_2", timed<sampleUp<double>, 2, 1>},
                                                {"SampleUp_64f_3", timed<sampleUp<double>, 3, 1>},
                                                {"SampleUp_64f_20", timed<sampleUp<double>, 20, 1>},
                                                {"SampleUp_64fc_2", timed<sampleUp<Zpp64fc>, 2, 1>},
                                                {"SampleUp_64fc_4", timed<sampleUp<Zpp64fc>, 4, 1>},
                                                {"SampleDown_64f_2", timed<sampleDown<double>, 2, 1>},
                                                {"SampleDown_64f_5", timed<sampleDown<double>, 5, 1>},
                                                {"SampleDown_64fc_2", timed<sampleDown<Zpp64fc>, 2, 1>},
                                                {"SampleDown_64fc_5", timed<sampleDown<Zpp64fc>, 5, 1>},
                                            });

// A window is copied, its ends repeated, and its middle found.
template <class T, int kMask>
void median(const T* src, T* dst, int len) {
    std::vector<T> window(kMask);
    for (int n = 0; n < len; ++n) {
        for (int j = 0; j < kMask; ++j)
            window[static_cast<size_t>(j)] = src[std::clamp(n + j - kMask / 2, 0, len - 1)];
        std::nth_element(window.begin(), window.begin() + kMask / 2, window.end());
        dst[n] = window[kMask / 2];
    }
}

template <int kShort>
void convolution(const double* __restrict a, const double* __restrict b, double* __restrict dst, int len) {
    const int shortLen = kShort > 0 ? kShort : len;
    std::fill_n(dst, shortLen + len - 1, 0.0);
    for (int i = 0; i < shortLen; ++i)
        for (int j = 0; j < len; ++j) dst[i + j] += a[i] * b[j];
}

// Only as far as a plain loop ends in time.
template <auto kLoop, int kLongest>
void upTo(benchmark::State& state, int len) {
    if (len > kLongest)
        state.SkipWithError("takes too long");
    else
        timed<kLoop>(state, len);
}

[[maybe_unused]] const Peers medians(kWho, {
                                               {"FilterMedian_64f_3", upTo<median<double, 3>, 1 << 18>},
                                               {"FilterMedian_64f_5", upTo<median<double, 5>, 1 << 18>},
                                               {"FilterMedian_64f_9", upTo<median<double, 9>, 1 << 18>},
                                               {"FilterMedian_64f_15", upTo<median<double, 15>, 1 << 18>},
                                               {"FilterMedian_64f_25", upTo<median<double, 25>, 1 << 16>},
                                               {"FilterMedian_64f_101", upTo<median<double, 101>, 1 << 14>},
                                               {"FilterMedian_64f_1001", upTo<median<double, 1001>, 1 << 12>},
                                               {"FilterMedian_32s_9", upTo<median<Zpp32s, 9>, 1 << 18>},
                                               {"FilterMedian_32s_101", upTo<median<Zpp32s, 101>, 1 << 14>},
                                           });
[[maybe_unused]] const Peers convolutions(kWho, {
                                                    {"Conv_64f_16", timed<convolution<16>>},
                                                    {"Conv_64f_256", timed<convolution<256>>},
                                                    {"Conv_64f_1000", upTo<convolution<1000>, 1 << 14>},
                                                    {"Conv_64f_equal", upTo<convolution<0>, 1 << 12>},
                                                });

}  // namespace
}  // namespace zpp::bench
