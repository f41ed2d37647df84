// IIR filters: cascades of sections, and filters of arbitrary order.
#include "bench/iir.h"

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

template <class T>
T one() {
    if constexpr (requires(T t) { t.re; })
        return {1, 0};
    else
        return 1;
}

// A state is never released, like the vectors.
template <auto kInitAlloc, auto kFilter, class T, class D, int kSections>
ZppStatus cascade(const D* src, D* dst, int len) {
    static ZppsIIRState* const state = [] {
        T taps[6 * kSections];
        for (int k = 0; k < kSections; ++k) {
            sectionTaps(k, taps + 6 * k, taps + 6 * k + 4);
            taps[6 * k + 3] = one<T>();
        }
        ZppsIIRState* made = nullptr;
        kInitAlloc(&made, taps, kSections, nullptr);
        return made;
    }();
    return kFilter(src, dst, len, state);
}

template <auto kInitAlloc, auto kFilter, class T, class D, int kOrder>
ZppStatus arbitrary(const D* src, D* dst, int len) {
    static ZppsIIRState* const state = [] {
        T taps[2 * kOrder + 2];
        tapsOf(kOrder, taps, taps + kOrder + 2);
        taps[kOrder + 1] = one<T>();
        ZppsIIRState* made = nullptr;
        kInitAlloc(&made, taps, kOrder, nullptr);
        return made;
    }();
    return kFilter(src, dst, len, state);
}

template <int kSections>
constexpr auto real = timed<cascade<zppsIIRInitAlloc_BiQuad_64f, zppsIIR_64f, Zpp64f, Zpp64f, kSections>>;
template <int kSections>
constexpr auto complex =
    timed<cascade<zppsIIRInitAlloc_BiQuad_64fc, zppsIIR_64fc, Zpp64fc, Zpp64fc, kSections>>;
template <int kSections>
constexpr auto single =
    timed<cascade<zppsIIRInitAlloc64f_BiQuad_32f, zppsIIR64f_32f, Zpp64f, Zpp32f, kSections>>;
template <int kOrder>
constexpr auto ofOrder = timed<arbitrary<zppsIIRInitAlloc_64f, zppsIIR_64f, Zpp64f, Zpp64f, kOrder>>;
template <int kOrder>
constexpr auto complexOfOrder =
    timed<arbitrary<zppsIIRInitAlloc_64fc, zppsIIR_64fc, Zpp64fc, Zpp64fc, kOrder>>;

[[maybe_unused]] const Jobs iir = {
    {"IIR_BiQuad_64f_1", 16, real<1>},          {"IIR_BiQuad_64f_2", 16, real<2>},
    {"IIR_BiQuad_64f_4", 16, real<4>},          {"IIR_BiQuad_64f_8", 16, real<8>},
    {"IIR_BiQuad_64fc_1", 32, complex<1>},      {"IIR_BiQuad_64fc_2", 32, complex<2>},
    {"IIR_BiQuad_64fc_4", 32, complex<4>},      {"IIR_BiQuad_64fc_8", 32, complex<8>},
    {"IIR64f_BiQuad_32f_1", 8, single<1>},      {"IIR64f_BiQuad_32f_4", 8, single<4>},
    {"IIR_64f_order1", 16, ofOrder<1>},         {"IIR_64f_order2", 16, ofOrder<2>},
    {"IIR_64f_order8", 16, ofOrder<8>},         {"IIR_64f_order20", 16, ofOrder<20>},
    {"IIR_64fc_order8", 32, complexOfOrder<8>},
};

}  // namespace
}  // namespace zpp::bench
