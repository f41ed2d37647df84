// Cascades by intrinsics of AVX-512. Sections of four and eight are a wave, one sample apart. One section
// alone takes eight samples at once, from two numbers that stand for all before: the quickest way, but its
// roundings depend on where a block begins, and its errors grow with those of the powers of the poles.
#include "bench/iir.h"
#include "bench/jobs.h"

#ifdef __AVX512VL__
#include <immintrin.h>

namespace zpp::bench {
namespace {

struct Eight {
    double lanes[8];
    __m512d load() const { return _mm512_loadu_pd(lanes); }
};

// The last section is in lane 0.
template <int kSections>
void wave(const double* src, double* dst, int len) {
    static Eight d0s, d1s;
    Eight b0s{}, b1s{}, b2s{}, a1s{}, a2s{};
    for (int k = 0; k < kSections; ++k) {
        const int lane = kSections - 1 - k;
        double b[3], a[2];
        sectionTaps(k, b, a);
        b0s.lanes[lane] = b[0], b1s.lanes[lane] = b[1], b2s.lanes[lane] = b[2];
        a1s.lanes[lane] = a[0], a2s.lanes[lane] = a[1];
    }
    const __m512d b0 = b0s.load(), b1 = b1s.load(), b2 = b2s.load(), a1 = a1s.load(), a2 = a2s.load();
    __m512d d0 = d0s.load(), d1 = d1s.load(), y = _mm512_setzero_pd();
    const auto step = [&](double x, __mmask8 active) __attribute__((always_inline)) {
        const __m512i down = _mm512_alignr_epi64(_mm512_setzero_si512(), _mm512_castpd_si512(y), 1);
        const __m512d in =
            _mm512_mask_broadcastsd_pd(_mm512_castsi512_pd(down), 1 << (kSections - 1), _mm_set_sd(x));
        y = _mm512_fmadd_pd(b0, in, d0);
        d0 = _mm512_mask_mov_pd(d0, active, _mm512_fnmadd_pd(a1, y, _mm512_fmadd_pd(b1, in, d1)));
        d1 = _mm512_mask_mov_pd(d1, active, _mm512_fnmadd_pd(a2, y, _mm512_mul_pd(b2, in)));
        return _mm512_cvtsd_f64(y);
    };
    constexpr int lead = kSections - 1, all = (1 << kSections) - 1;
    for (int t = 0; t < lead; ++t) step(src[t], static_cast<__mmask8>(all & ~(all >> (t + 1))));
    for (int t = lead; t < len; ++t) dst[t - lead] = step(src[t], 0xFF);
    for (int t = 0; t < lead; ++t) dst[len - lead + t] = step(0, static_cast<__mmask8>(all >> (t + 1)));
    _mm512_storeu_pd(d0s.lanes, d0);
    _mm512_storeu_pd(d1s.lanes, d1);
}

// Eight samples from d0, d1 and the inputs: the responses to each of them.
void ahead(const double* src, double* dst, int len) {
    static double d0, d1;
    double b[3], a[2];
    sectionTaps(0, b, a);
    const auto response = [&](double s0, double s1, int at) {
        Eight y;
        for (int n = 0; n < 8; ++n) {
            const double x = n == at;
            y.lanes[n] = b[0] * x + s0;
            s0 = b[1] * x + s1 - a[0] * y.lanes[n];
            s1 = b[2] * x - a[1] * y.lanes[n];
        }
        return y.load();
    };
    const __m512d by0 = response(1, 0, -1), by1 = response(0, 1, -1);
    __m512d byInput[8];
    for (int i = 0; i < 8; ++i) byInput[i] = response(0, 0, i);
    for (int n = 0; n < len; n += 8) {
        __m512d even = _mm512_mul_pd(byInput[0], _mm512_set1_pd(src[n]));
        __m512d odd = _mm512_mul_pd(byInput[1], _mm512_set1_pd(src[n + 1]));
#pragma GCC unroll 3
        for (int i = 2; i < 8; i += 2) {
            even = _mm512_fmadd_pd(byInput[i], _mm512_set1_pd(src[n + i]), even);
            odd = _mm512_fmadd_pd(byInput[i + 1], _mm512_set1_pd(src[n + i + 1]), odd);
        }
        const __m512d forced = _mm512_add_pd(even, odd);
        const __m512d y =
            _mm512_fmadd_pd(by0, _mm512_set1_pd(d0), _mm512_fmadd_pd(by1, _mm512_set1_pd(d1), forced));
        const double x6 = src[n + 6], x7 = src[n + 7];
        _mm512_storeu_pd(dst + n, y);
        const __m128d last = _mm512_extractf64x2_pd(y, 3);
        const double y6 = _mm_cvtsd_f64(last), y7 = _mm_cvtsd_f64(_mm_unpackhi_pd(last, last));
        d0 = b[1] * x7 + (b[2] * x6 - a[1] * y6) - a[0] * y7;
        d1 = b[2] * x7 - a[1] * y7;
    }
}

[[maybe_unused]] const Peers iir("simd512", {
                                                {"IIR_BiQuad_64f_1", timed<ahead>},
                                                {"IIR_BiQuad_64f_2", timed<wave<2>>},
                                                {"IIR_BiQuad_64f_4", timed<wave<4>>},
                                                {"IIR_BiQuad_64f_8", timed<wave<8>>},
                                            });

}  // namespace
}  // namespace zpp::bench
#endif
