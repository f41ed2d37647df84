// The few lines of intrinsics that one would write for a loop that matters. The sizes that are timed are
// multiples of all steps, so that there are no tails.
#include "bench/jobs.h"

#ifdef __AVX512BW__
#include <immintrin.h>

namespace zpp::bench {
namespace {

// step(src + i..., dst + i) for every kStep elements; packed elements have kSource and kResult bytes.
template <int kStep, auto kOp, class D, class... S>
void steps(const S*... src, D* dst, int len) {
    for (int i = 0; i < len; i += kStep) kOp(src + i..., dst + i);
}
template <int kStep, auto kOp, int kSource, int kResult, class S, class D>
void packedSteps(const S* src, D* dst, int len) {
    for (int i = 0; i < len; i += kStep) kOp(src + kSource * i, dst + kResult * i);
}

__m512 scaledFloats(const float* a) { return _mm512_mul_ps(_mm512_loadu_ps(a), _mm512_set1_ps(32)); }
__m512i ints(__m512 v) { return _mm512_cvtps_epi32(v); }
__m512i rounded(const Zpp32s* a) {  // by 2^-3
    const __m512i v = _mm512_loadu_si512(a),
                  odd = _mm512_and_si512(_mm512_srli_epi32(v, 3), _mm512_set1_epi32(1));
    return _mm512_srai_epi32(_mm512_add_epi32(v, _mm512_add_epi32(odd, _mm512_set1_epi32(3))), 3);
}

void add(const double* a, const double* b, double* dst) {
    _mm512_storeu_pd(dst, _mm512_add_pd(_mm512_loadu_pd(a), _mm512_loadu_pd(b)));
}
void bytesToSingles(const Zpp8u* a, float* dst) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a));
    _mm512_storeu_ps(dst, _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(v)));
}
void wordsToSingles(const Zpp16s* a, float* dst) {
    const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a));
    _mm512_storeu_ps(dst, _mm512_cvtepi32_ps(_mm512_cvtepi16_epi32(v)));
}
void intsToWords(const Zpp32s* a, Zpp16s* dst) {
    const __m256i v = _mm512_cvtsepi32_epi16(_mm512_loadu_si512(a));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), v);
}
void intsToWordsScaled(const Zpp32s* a, Zpp16s* dst) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), _mm512_cvtsepi32_epi16(rounded(a)));
}
void singlesToBytes(const float* a, Zpp8u* dst) {
    const __m512 v = _mm512_min_ps(_mm512_max_ps(scaledFloats(a), _mm512_setzero_ps()), _mm512_set1_ps(255));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm512_cvtepi32_epi8(ints(v)));
}
void singlesToWords(const float* a, Zpp16s* dst) {
    const __m512 v = _mm512_min_ps(scaledFloats(a), _mm512_set1_ps(32767));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), _mm512_cvtsepi32_epi16(ints(v)));
}
void singlesToInts(const float* a, Zpp32s* dst) {
    const __m512 v = scaledFloats(a);
    const __mmask16 above = _mm512_cmp_ps_mask(v, _mm512_set1_ps(2147483648.F), _CMP_GE_OQ);
    _mm512_storeu_si512(dst, _mm512_mask_mov_epi32(ints(v), above, _mm512_set1_epi32(2147483647)));
}
void doublesToInts(const double* a, Zpp32s* dst) {
    const __m512d v = _mm512_mul_pd(_mm512_loadu_pd(a), _mm512_set1_pd(32));
    const __m256i y = _mm512_cvtpd_epi32(_mm512_min_pd(v, _mm512_set1_pd(2147483647)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), y);
}
void halvesToSingles(const Zpp16f* a, float* dst) {
    _mm512_storeu_ps(dst, _mm512_cvtph_ps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a))));
}
void singlesToHalves(const float* a, Zpp16f* dst) {
    const __m256i v = _mm512_cvtps_ph(_mm512_loadu_ps(a), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), v);
}
// Four packed integers of 24 bits a lane of 128: as far as the source may be read.
void unpack24(const Zpp8u* a, Zpp32s* dst) {
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 0, 3, 4, 5, 0, 6, 7, 8, 0, 9, 10, 11, 0);
    const __m128i bytes = _mm_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11);
    const __m512i v = _mm512_permutexvar_epi32(lanes, _mm512_maskz_loadu_epi32(0xFFF, a));
    _mm512_storeu_si512(dst, _mm512_srai_epi32(_mm512_shuffle_epi8(v, _mm512_broadcast_i32x4(bytes)), 8));
}
void pack24(const Zpp32s* a, Zpp8u* dst) {
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 0, 0, 0, 0);
    const __m128i bytes = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    const __m512i bounded = _mm512_max_epi32(_mm512_min_epi32(rounded(a), _mm512_set1_epi32(8388607)),
                                             _mm512_set1_epi32(-8388608));
    const __m512i v = _mm512_shuffle_epi8(bounded, _mm512_broadcast_i32x4(bytes));
    _mm512_mask_storeu_epi32(dst, 0xFFF, _mm512_permutexvar_epi32(lanes, v));
}
void swap24(const Zpp8u* a, Zpp8u* dst) {  // 16 elements
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 0, 3, 4, 5, 0, 6, 7, 8, 0, 9, 10, 11, 0);
    const __m128i bytes = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, -1, -1, -1, -1);
    const __m512i back = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 0, 0, 0, 0);
    const __m512i v = _mm512_permutexvar_epi32(lanes, _mm512_maskz_loadu_epi32(0xFFF, a));
    const __m512i swapped = _mm512_shuffle_epi8(v, _mm512_broadcast_i32x4(bytes));
    _mm512_mask_storeu_epi32(dst, 0xFFF, _mm512_permutexvar_epi32(back, swapped));
}
void addScaled(const Zpp32s* a, const Zpp32s* b, Zpp32s* dst) {  // by 2^-5, of 64 bits
    const auto half = [](__m256i x, __m256i y) {
        const __m512i sum = _mm512_add_epi64(_mm512_cvtepi32_epi64(x), _mm512_cvtepi32_epi64(y));
        const __m512i odd = _mm512_and_si512(_mm512_srli_epi64(sum, 5), _mm512_set1_epi64(1));
        return _mm512_cvtsepi64_epi32(
            _mm512_srai_epi64(_mm512_add_epi64(sum, _mm512_add_epi64(odd, _mm512_set1_epi64(15))), 5));
    };
    const auto* x = reinterpret_cast<const __m256i*>(a);
    const auto* y = reinterpret_cast<const __m256i*>(b);
    auto* to = reinterpret_cast<__m256i*>(dst);
    for (int i : {0, 1})
        _mm256_storeu_si256(to + i, half(_mm256_loadu_si256(x + i), _mm256_loadu_si256(y + i)));
}
void multiplyScaled(const Zpp32s* a, const Zpp32s* b, Zpp32s* dst) {  // by 2^-20, every other product
    const auto scaled = [](__m512i product) {
        const __m512i odd = _mm512_and_si512(_mm512_srli_epi64(product, 20), _mm512_set1_epi64(1));
        const __m512i half = _mm512_add_epi64(odd, _mm512_set1_epi64((1 << 19) - 1));
        const __m512i y = _mm512_srai_epi64(_mm512_add_epi64(product, half), 20);
        return _mm512_max_epi64(_mm512_min_epi64(y, _mm512_set1_epi64(2147483647)),
                                _mm512_set1_epi64(-2147483648LL));
    };
    const __m512i x = _mm512_loadu_si512(a), y = _mm512_loadu_si512(b);
    const __m512i even = scaled(_mm512_mul_epi32(x, y));
    const __m512i odd = scaled(_mm512_mul_epi32(_mm512_srli_epi64(x, 32), _mm512_srli_epi64(y, 32)));
    _mm512_storeu_si512(dst, _mm512_mask_mov_epi32(even, 0xAAAA, _mm512_slli_epi64(odd, 32)));
}

template <class... S>
struct Registers {
    template <int kStep, auto kOp, class D>
    static constexpr auto to = timed<steps<kStep, kOp, D, S...>>;
};

[[maybe_unused]] const Peers peers(
    "simd512", {
                   {"Add_64f", Registers<double, double>::to<8, add, double>},
                   {"Convert_8u32f", Registers<Zpp8u>::to<16, bytesToSingles, float>},
                   {"Convert_16s32f", Registers<Zpp16s>::to<16, wordsToSingles, float>},
                   {"Convert_32s16s", Registers<Zpp32s>::to<16, intsToWords, Zpp16s>},
                   {"Convert_32s16s_Sfs", Registers<Zpp32s>::to<16, intsToWordsScaled, Zpp16s>},
                   {"Convert_32f8u_Sfs", Registers<float>::to<16, singlesToBytes, Zpp8u>},
                   {"Convert_32f16s_Sfs", Registers<float>::to<16, singlesToWords, Zpp16s>},
                   {"Convert_32f32s_Sfs", Registers<float>::to<16, singlesToInts, Zpp32s>},
                   {"Convert_64f32s_Sfs", Registers<double>::to<8, doublesToInts, Zpp32s>},
                   {"Convert_16f32f", Registers<Zpp16f>::to<16, halvesToSingles, float>},
                   {"Convert_32f16f", Registers<float>::to<16, singlesToHalves, Zpp16f>},
                   {"Convert_24s32s", timed<packedSteps<16, unpack24, 3, 1, Zpp8u, Zpp32s>>},
                   {"Convert_32s24s_Sfs", timed<packedSteps<16, pack24, 1, 3, Zpp32s, Zpp8u>>},
                   {"SwapBytes_24u", timed<packedSteps<16, swap24, 3, 3, Zpp8u, Zpp8u>>},
                   {"Add_32s_Sfs", Registers<Zpp32s, Zpp32s>::to<16, addScaled, Zpp32s>},
                   {"Mul_32s_Sfs", Registers<Zpp32s, Zpp32s>::to<16, multiplyScaled, Zpp32s>},
               });

}  // namespace
}  // namespace zpp::bench
#endif
