// SLEEF's functions of at most 1.0 units in the last place (the complement of the error function: 1.5).
#include <immintrin.h>
#include <sleef.h>

#include "bench/elementary.h"

namespace zpp::bench {
namespace {

template <auto kFunction, class V>
void each(const double* x, double* y, int len) {
    for (int i = 0; i < len; i += static_cast<int>(sizeof(V) / sizeof(double))) {
        V v;
        __builtin_memcpy(&v, x + i, sizeof v);
        v = kFunction(v);
        __builtin_memcpy(y + i, &v, sizeof v);
    }
}
template <auto kFunction, class V>
void eachPair(const double* x1, const double* x2, double* y, int len) {
    for (int i = 0; i < len; i += static_cast<int>(sizeof(V) / sizeof(double))) {
        V v, w;
        __builtin_memcpy(&v, x1 + i, sizeof v);
        __builtin_memcpy(&w, x2 + i, sizeof w);
        v = kFunction(v, w);
        __builtin_memcpy(y + i, &v, sizeof v);
    }
}
template <JobName kJob, auto kFunction, class V>
constexpr auto one = timedInRange<kJob, each<kFunction, V>>;
template <JobName kJob, auto kFunction, class V>
constexpr auto two = timedInRange<kJob, eachPair<kFunction, V>>;

#ifdef __AVX512F__
[[maybe_unused]] const Peers of8Lanes("sleef512",
                                      {
                                          {"Cbrt_A53", one<"Cbrt", Sleef_cbrtd8_u10avx512f, __m512d>},
                                          {"Exp_A53", one<"Exp", Sleef_expd8_u10avx512f, __m512d>},
                                          {"Ln_A53", one<"Ln", Sleef_logd8_u10avx512f, __m512d>},
                                          {"Log10_A53", one<"Log10", Sleef_log10d8_u10avx512f, __m512d>},
                                          {"Cos_A53", one<"Cos", Sleef_cosd8_u10avx512f, __m512d>},
                                          {"Sin_A53", one<"Sin", Sleef_sind8_u10avx512f, __m512d>},
                                          {"Tan_A53", one<"Tan", Sleef_tand8_u10avx512f, __m512d>},
                                          {"Acos_A53", one<"Acos", Sleef_acosd8_u10avx512f, __m512d>},
                                          {"Asin_A53", one<"Asin", Sleef_asind8_u10avx512f, __m512d>},
                                          {"Atan_A53", one<"Atan", Sleef_atand8_u10avx512f, __m512d>},
                                          {"Cosh_A53", one<"Cosh", Sleef_coshd8_u10avx512f, __m512d>},
                                          {"Sinh_A53", one<"Sinh", Sleef_sinhd8_u10avx512f, __m512d>},
                                          {"Tanh_A53", one<"Tanh", Sleef_tanhd8_u10avx512f, __m512d>},
                                          {"Acosh_A53", one<"Acosh", Sleef_acoshd8_u10avx512f, __m512d>},
                                          {"Asinh_A53", one<"Asinh", Sleef_asinhd8_u10avx512f, __m512d>},
                                          {"Atanh_A53", one<"Atanh", Sleef_atanhd8_u10avx512f, __m512d>},
                                          {"Erf_A53", one<"Erf", Sleef_erfd8_u10avx512f, __m512d>},
                                          {"Erfc_A53", one<"Erfc", Sleef_erfcd8_u15avx512f, __m512d>},
                                          {"Pow_A53", two<"Pow", Sleef_powd8_u10avx512f, __m512d>},
                                          {"Atan2_A53", two<"Atan2", Sleef_atan2d8_u10avx512f, __m512d>},
                                      });
#endif
#ifdef __AVX2__
[[maybe_unused]] const Peers of4Lanes("sleef-avx2",
                                      {
                                          {"Cbrt_A53", one<"Cbrt", Sleef_cbrtd4_u10avx2, __m256d>},
                                          {"Exp_A53", one<"Exp", Sleef_expd4_u10avx2, __m256d>},
                                          {"Ln_A53", one<"Ln", Sleef_logd4_u10avx2, __m256d>},
                                          {"Log10_A53", one<"Log10", Sleef_log10d4_u10avx2, __m256d>},
                                          {"Cos_A53", one<"Cos", Sleef_cosd4_u10avx2, __m256d>},
                                          {"Sin_A53", one<"Sin", Sleef_sind4_u10avx2, __m256d>},
                                          {"Tan_A53", one<"Tan", Sleef_tand4_u10avx2, __m256d>},
                                          {"Acos_A53", one<"Acos", Sleef_acosd4_u10avx2, __m256d>},
                                          {"Asin_A53", one<"Asin", Sleef_asind4_u10avx2, __m256d>},
                                          {"Atan_A53", one<"Atan", Sleef_atand4_u10avx2, __m256d>},
                                          {"Cosh_A53", one<"Cosh", Sleef_coshd4_u10avx2, __m256d>},
                                          {"Sinh_A53", one<"Sinh", Sleef_sinhd4_u10avx2, __m256d>},
                                          {"Tanh_A53", one<"Tanh", Sleef_tanhd4_u10avx2, __m256d>},
                                          {"Acosh_A53", one<"Acosh", Sleef_acoshd4_u10avx2, __m256d>},
                                          {"Asinh_A53", one<"Asinh", Sleef_asinhd4_u10avx2, __m256d>},
                                          {"Atanh_A53", one<"Atanh", Sleef_atanhd4_u10avx2, __m256d>},
                                          {"Erf_A53", one<"Erf", Sleef_erfd4_u10avx2, __m256d>},
                                          {"Erfc_A53", one<"Erfc", Sleef_erfcd4_u15avx2, __m256d>},
                                          {"Pow_A53", two<"Pow", Sleef_powd4_u10avx2, __m256d>},
                                          {"Atan2_A53", two<"Atan2", Sleef_atan2d4_u10avx2, __m256d>},
                                      });
#endif
[[maybe_unused]] const Peers of2Lanes("sleef-sse2",
                                      {
                                          {"Cbrt_A53", one<"Cbrt", Sleef_cbrtd2_u10sse2, __m128d>},
                                          {"Exp_A53", one<"Exp", Sleef_expd2_u10sse2, __m128d>},
                                          {"Ln_A53", one<"Ln", Sleef_logd2_u10sse2, __m128d>},
                                          {"Log10_A53", one<"Log10", Sleef_log10d2_u10sse2, __m128d>},
                                          {"Cos_A53", one<"Cos", Sleef_cosd2_u10sse2, __m128d>},
                                          {"Sin_A53", one<"Sin", Sleef_sind2_u10sse2, __m128d>},
                                          {"Tan_A53", one<"Tan", Sleef_tand2_u10sse2, __m128d>},
                                          {"Acos_A53", one<"Acos", Sleef_acosd2_u10sse2, __m128d>},
                                          {"Asin_A53", one<"Asin", Sleef_asind2_u10sse2, __m128d>},
                                          {"Atan_A53", one<"Atan", Sleef_atand2_u10sse2, __m128d>},
                                          {"Cosh_A53", one<"Cosh", Sleef_coshd2_u10sse2, __m128d>},
                                          {"Sinh_A53", one<"Sinh", Sleef_sinhd2_u10sse2, __m128d>},
                                          {"Tanh_A53", one<"Tanh", Sleef_tanhd2_u10sse2, __m128d>},
                                          {"Acosh_A53", one<"Acosh", Sleef_acoshd2_u10sse2, __m128d>},
                                          {"Asinh_A53", one<"Asinh", Sleef_asinhd2_u10sse2, __m128d>},
                                          {"Atanh_A53", one<"Atanh", Sleef_atanhd2_u10sse2, __m128d>},
                                          {"Erf_A53", one<"Erf", Sleef_erfd2_u10sse2, __m128d>},
                                          {"Erfc_A53", one<"Erfc", Sleef_erfcd2_u15sse2, __m128d>},
                                          {"Pow_A53", two<"Pow", Sleef_powd2_u10sse2, __m128d>},
                                          {"Atan2_A53", two<"Atan2", Sleef_atan2d2_u10sse2, __m128d>},
                                      });

}  // namespace
}  // namespace zpp::bench
