// FIR filters: beside the plain loop, and beside as many fused multiply-adds as the convolution sum has, at
// the processor's peak, which direct filtering cannot beat.
#include <algorithm>

#include "bench/jobs.h"
#include "bench/peers/fir.h"
#include "bench/peers/limits.h"

namespace zpp::bench {
namespace {

constexpr int kLengths[] = {16, 64, 1024, 4096, 1 << 18};
constexpr int kMaxTaps = 1024;

template <class T>
const T* taps() {
    return reinterpret_cast<const T*>(source(1));
}

// Samples with kMaxTaps older ones before them.
template <class T>
T* signal() {
    return reinterpret_cast<T*>(source(0)) + kMaxTaps;
}
template <class T>
T* result() {
    return reinterpret_cast<T*>(destination());
}

// A state that filters directly; never released, like the vectors.
template <class T, class Size, class Init>
ZppsFIRState* directState(int tapsLen, Size size, Init init) {
    int bytes = 0;
    size(tapsLen, &bytes);
    ZppsFIRState* state = nullptr;
    init(&state, taps<T>(), tapsLen, nullptr, reinterpret_cast<Zpp8u*>(zppsMalloc_64f(bytes / 8 + 1)));
    return state;
}

template <class T, class Filter>
void time(const std::string& what, const char* who, int len, Filter filter) {
    add(what, who, len, 2 * sizeof(T) * static_cast<size_t>(len), filter);
}

// `products` real products a tap and output.
template <class T, class Filter>
void compare(const std::string& what, int tapsLen, int products, Filter filter) {
    for (const int len : kLengths) {
        time<T>(what, "zpp", len, [=] { filter(len); });
        time<T>(what, "plain", len, [=] { peers::fir(signal<T>(), result<T>(), len, taps<T>(), tapsLen); });
        const long long count = static_cast<long long>(len) * tapsLen * products;
        time<T>(what, "limit", len, [=] { benchmark::DoNotOptimize(peers::multiplyAdds(count)); });
    }
}

void compareReal(const std::string& what, int tapsLen) {
    ZppsFIRState* state = directState<Zpp64f>(tapsLen, zppsFIRGetStateSize_64f, zppsFIRInit_64f);
    compare<Zpp64f>(what, tapsLen, 1,
                    [=](int len) { zppsFIR_64f(signal<Zpp64f>(), result<Zpp64f>(), len, state); });
}

// With the FFT.
void compareFft(const std::string& what, int tapsLen) {
    ZppsFIRState* state = nullptr;
    zppsFIRInitAlloc_64f(&state, taps<Zpp64f>(), tapsLen, nullptr);
    for (const int len : {4096, 1 << 18}) {
        time<Zpp64f>(what, "zpp", len, [=] { zppsFIR_64f(signal<Zpp64f>(), result<Zpp64f>(), len, state); });
        time<Zpp64f>(what, "plain", len,
                     [=] { peers::fir(signal<Zpp64f>(), result<Zpp64f>(), len, taps<Zpp64f>(), tapsLen); });
    }
}

}  // namespace

void registerFilters() {
    compareReal("FIR_64f_8taps", 8);
    compareReal("FIR_64f_64taps", 64);
    compareReal("FIR_64f_1024taps", 1024);

    ZppsFIRState* complexState = directState<Zpp64fc>(64, zppsFIRGetStateSize_64fc, zppsFIRInit_64fc);
    compare<Zpp64fc>("FIR_64fc_64taps", 64, 4,
                     [=](int len) { zppsFIR_64fc(signal<Zpp64fc>(), result<Zpp64fc>(), len, complexState); });

    ZppsFIRState* singleState = directState<Zpp64f>(64, zppsFIRGetStateSize64f_32f, zppsFIRInit64f_32f);
    for (const int len : kLengths) {
        static Zpp32f samples[1 << 18], filtered[1 << 18];
        add("FIR64f_32f_64taps", "zpp", len, 8 * static_cast<size_t>(len),
            [=] { zppsFIR64f_32f(samples, filtered, len, singleState); });
        const long long count = 64LL * len;
        add("FIR64f_32f_64taps", "limit", len, 8 * static_cast<size_t>(len),
            [=] { benchmark::DoNotOptimize(peers::multiplyAdds(count)); });
    }

    compare<Zpp64f>("FIR_Direct_64f_64taps", 64, 1, [](int len) {
        static Zpp64f line[128];
        static int index;
        zppsFIR_Direct_64f(signal<Zpp64f>(), result<Zpp64f>(), len, taps<Zpp64f>(), 64, line, &index);
    });

    ZppsFIRState* oneState = directState<Zpp64f>(64, zppsFIRGetStateSize_64f, zppsFIRInit_64f);
    time<Zpp64f>("FIROne_64f_64taps", "zpp", 1,
                 [=] { zppsFIROne_64f(*signal<Zpp64f>(), result<Zpp64f>(), oneState); });
    time<Zpp64f>("FIROne_64f_64taps", "plain", 1,
                 [] { peers::fir(signal<Zpp64f>(), result<Zpp64f>(), 1, taps<Zpp64f>(), 64); });

    compareFft("FIRFft_64f_64taps", 64);
    compareFft("FIRFft_64f_1024taps", 1024);
}

namespace {

// For a result of len elements, or from as many; the phase is found where it was.
template <auto kSample, class T, int kFactor>
ZppStatus sampleUp(const T* src, int len, T* dst, int phase) {
    int dstLen = 0;
    return kSample(src, len / kFactor, dst, &dstLen, kFactor, &phase);
}
template <auto kSample, class T>
ZppStatus sampleDown(const T* src, int len, T* dst, int factor, int phase) {
    int dstLen = 0;
    return kSample(src, len, dst, &dstLen, factor, &phase);
}

[[maybe_unused]] const Jobs sampling = {
    {"SampleUp_64f_2", 12, timed<sampleUp<zppsSampleUp_64f, Zpp64f, 2>, 1>, true},
    {"SampleUp_64f_3", 11, timed<sampleUp<zppsSampleUp_64f, Zpp64f, 3>, 1>, true},
    {"SampleUp_64f_20", 8, timed<sampleUp<zppsSampleUp_64f, Zpp64f, 20>, 1>, true},
    {"SampleUp_64fc_2", 24, timed<sampleUp<zppsSampleUp_64fc, Zpp64fc, 2>, 1>},
    {"SampleUp_64fc_4", 20, timed<sampleUp<zppsSampleUp_64fc, Zpp64fc, 4>, 1>},
    {"SampleDown_64f_2", 12, timed<sampleDown<zppsSampleDown_64f, Zpp64f>, 2, 1>, true},
    {"SampleDown_64f_5", 10, timed<sampleDown<zppsSampleDown_64f, Zpp64f>, 5, 1>},
    {"SampleDown_64fc_2", 24, timed<sampleDown<zppsSampleDown_64fc, Zpp64fc>, 2, 1>},
    {"SampleDown_64fc_5", 20, timed<sampleDown<zppsSampleDown_64fc, Zpp64fc>, 5, 1>},
};

// `len` is the larger number of inputs and outputs, of one block at least. The taps, of which there are more
// than the outputs' one window, are those of vectors(1).
template <auto kInitAlloc, auto kFilter, class T, class D, int kUp, int kDown, int kTaps>
ZppStatus multiRate(const D* src, const T* taps, int len, D* dst) {
    static ZppsFIRState* const state = [=] {
        ZppsFIRState* made = nullptr;
        kInitAlloc(&made, taps, kTaps * kUp, kUp, 0, kDown, 0, nullptr);
        return made;
    }();
    return kFilter(src, dst, std::max(1, len / std::max(kUp, kDown)), state);
}
template <int kUp, int kDown, int kTaps>
constexpr auto multiRateReal =
    timed<multiRate<zppsFIRMRInitAlloc_64f, zppsFIR_64f, Zpp64f, Zpp64f, kUp, kDown, kTaps>>;
template <int kUp, int kDown, int kTaps>
constexpr auto multiRateComplex =
    timed<multiRate<zppsFIRMRInitAlloc_64fc, zppsFIR_64fc, Zpp64fc, Zpp64fc, kUp, kDown, kTaps>>;
template <int kUp, int kDown, int kTaps>
constexpr auto multiRateSingle =
    timed<multiRate<zppsFIRMRInitAlloc64f_32f, zppsFIR64f_32f, Zpp64f, Zpp32f, kUp, kDown, kTaps>>;

template <class T, int kUp, int kDown, int kTaps>
ZppStatus multiRateDirect(const T* src, const T* taps, int len, T* dst) {
    static T line[kTaps];
    return zppsFIRMR_Direct_64f(src, dst, std::max(1, len / std::max(kUp, kDown)), taps, kTaps * kUp, kUp, 0,
                                kDown, 0, line);
}

// By the rates and the taps of a phase.
[[maybe_unused]] const Jobs multiRates = {
    {"FIRMR_64f_147_160_64", 16, multiRateReal<147, 160, 64>},
    {"FIRMR_64f_1_6_64", 10, multiRateReal<6, 1, 64>},
    {"FIRMR_64f_6_1_384", 10, multiRateReal<1, 6, 384>},
    {"FIRMR_64f_2_3_8", 14, multiRateReal<2, 3, 8>},
    {"FIRMR_64fc_147_160_64", 32, multiRateComplex<147, 160, 64>},
    {"FIRMR_64fc_1_6_64", 20, multiRateComplex<6, 1, 64>},
    {"FIRMR_64fc_6_1_384", 20, multiRateComplex<1, 6, 384>},
    {"FIRMR64f_32f_147_160_64", 8, multiRateSingle<147, 160, 64>},
    {"FIRMR64f_32f_1_6_64", 5, multiRateSingle<6, 1, 64>},
    {"FIRMR64f_32f_6_1_384", 5, multiRateSingle<1, 6, 384>},
    {"FIRMR_Direct_64f_147_160_64", 16, timed<multiRateDirect<Zpp64f, 147, 160, 64>>},
};

template <int kMask>
ZppStatus median64f(const double* src, double* dst, int len) {
    return zppsFilterMedian_64f(src, dst, len, kMask);
}
template <int kMask>
ZppStatus median32s(const Zpp32s* src, Zpp32s* dst, int len) {
    return zppsFilterMedian_32s(src, dst, len, kMask);
}

[[maybe_unused]] const Jobs medians = {
    {"FilterMedian_64f_3", 16, timed<median64f<3>>},
    {"FilterMedian_64f_5", 16, timed<median64f<5>>},
    {"FilterMedian_64f_9", 16, timed<median64f<9>>},
    {"FilterMedian_64f_15", 16, timed<median64f<15>>},
    {"FilterMedian_64f_25", 16, timed<median64f<25>>},
    {"FilterMedian_64f_101", 16, timed<median64f<101>>},
    {"FilterMedian_64f_1001", 16, timed<median64f<1001>>},
    {"FilterMedian_64f_100001", 16, timed<median64f<100001>>},
    {"FilterMedian_32s_9", 8, timed<median32s<9>>},
    {"FilterMedian_32s_101", 8, timed<median32s<101>>},
};

// A vector of 16, 256 or as many elements with one of the length of the case, all of it and its lags.
template <int kShort>
ZppStatus convolution(const double* a, const double* b, double* dst, int len) {
    return zppsConv_64f(a, kShort > 0 ? kShort : len, b, len, dst);
}
ZppStatus cross(const double* a, const double* b, double* dst, int len) {
    return zppsCrossCorr_64f(a, len, b, len, dst, len, -len / 2);
}
ZppStatus autoCorrelation(const double* src, double* dst, int len) {
    return zppsAutoCorr_64f(src, len, dst, len);
}
ZppStatus autoCorrelationComplex(const Zpp64fc* src, Zpp64fc* dst, int len) {
    return zppsAutoCorr_64fc(src, len, dst, len);
}

[[maybe_unused]] const Jobs convolutions = {
    {"Conv_64f_16", 16, timed<convolution<16>>},
    {"Conv_64f_256", 16, timed<convolution<256>>},
    {"Conv_64f_1000", 16, timed<convolution<1000>>},
    {"Conv_64f_equal", 32, timed<convolution<0>>},
    {"CrossCorr_64f_equal", 24, timed<cross>},
    {"AutoCorr_64f", 16, timed<autoCorrelation>},
    {"AutoCorr_64fc", 32, timed<autoCorrelationComplex>},
};

}  // namespace
}  // namespace zpp::bench
