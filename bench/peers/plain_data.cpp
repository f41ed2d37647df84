#include <cmath>
#include <cstring>

#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

template <class T>
void copy(const T* __restrict src, T* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = src[i];
}
template <class T>
void set(T val, T* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = val;
}
void zero(double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = 0;
}
void flip(const double* __restrict src, double* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[len - 1 - i] = src[i];
}
void flipInPlace(double* a, int len) {
    for (int i = 0; i < len / 2; ++i) {
        const double kept = a[i];
        a[i] = a[len - 1 - i];
        a[len - 1 - i] = kept;
    }
}

[[maybe_unused]] const Peers movement(kWho, {
                                                {"Copy_8u", timed<copy<Zpp8u>>},
                                                {"Copy_64f", timed<copy<double>>},
                                                {"Set_32s", timed<set<Zpp32s>>},
                                                {"Set_64f", timed<set<double>>},
                                                {"Set_64fc", timed<set<Zpp64fc>>},
                                                {"Zero_64f", timed<zero>},
                                                {"Flip_64f", timed<flip>},
                                                {"Flip_64f_I", timed<flipInPlace>},
                                            });
// Rounded and saturated.
template <class D, class S>
inline D toInteger(S y, S lower, S upper) {
    return static_cast<D>(y < upper ? y > lower ? std::rint(y) : lower : upper);
}
inline int scaled(int x, int factor, int lower, int upper) {
    const long long half = (1LL << (factor - 1)) - 1;
    const long long y = (x + half + (x >> factor & 1)) >> factor;
    return static_cast<int>(y < lower ? lower : y > upper ? upper : y);
}
inline int unpacked(const Zpp8u* p) { return static_cast<int>(p[0] | p[1] << 8 | p[2] << 16) << 8 >> 8; }
inline void pack(int y, Zpp8u* p) {
    for (int k = 0; k < 3; ++k) p[k] = static_cast<Zpp8u>(y >> 8 * k);
}
template <class D>
void unpack24(const Zpp8u* __restrict src, D* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<D>(unpacked(src + 3 * i));
}
void packInts(const Zpp32s* __restrict src, Zpp8u* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) pack(scaled(src[i], 3, -8388608, 8388607), dst + 3 * i);
}
void packFloats(const Zpp32f* __restrict src, Zpp8u* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) pack(toInteger<int>(src[i] * 32, -8388608.F, 8388607.F), dst + 3 * i);
}
void swapBytes(const Zpp8u* __restrict src, Zpp8u* __restrict dst, int len) {
    for (int i = 0; i < 3 * len; i += 3) {
        dst[i] = src[i + 2];
        dst[i + 1] = src[i + 1];
        dst[i + 2] = src[i];
    }
}
#ifdef __FLT16_MAX__  // with the compiler's own half type
void fromHalves(const Zpp16f* __restrict src, float* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<float>(__builtin_bit_cast(_Float16, src[i]));
}
void toHalves(const float* __restrict src, Zpp16f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = __builtin_bit_cast(Zpp16f, static_cast<_Float16>(src[i]));
}
[[maybe_unused]] const Peers halves(kWho, {{"Convert_16f32f", timed<fromHalves>},
                                           {"Convert_32f16f", timed<toHalves>}});
#endif

inline Zpp32s toWholeRange(float x) {
    const float y = x * 32, beyond = 2147483648.F;
    return y < beyond ? y > -beyond ? static_cast<Zpp32s>(std::rint(y)) : -2147483647 - 1 : 2147483647;
}

[[maybe_unused]] const Peers conversions(
    kWho,
    {
        {"Convert_8s16s", map<[](Zpp8s x) -> Zpp16s { return x; }>},
        {"Convert_16s32s", map<[](Zpp16s x) -> Zpp32s { return x; }>},
        {"Convert_32s16s",
         map<[](Zpp32s x) { return static_cast<Zpp16s>(x < -32768  ? -32768
                                                       : x > 32767 ? 32767
                                                                   : x); }>},
        {"Convert_8u32f", map<[](Zpp8u x) { return static_cast<float>(x); }>},
        {"Convert_16s32f", map<[](Zpp16s x) { return static_cast<float>(x); }>},
        {"Convert_32s32f", map<[](Zpp32s x) { return static_cast<float>(x); }>},
        {"Convert_32s64f", map<[](Zpp32s x) -> double { return x; }>},
        {"Convert_32f64f", map<[](float x) -> double { return x; }>},
        {"Convert_64f32f", map<[](double x) { return static_cast<float>(x); }>},
        {"Convert_16s32f_Sfs", map<[](Zpp16s x) { return static_cast<float>(x) * 0.125F; }>},
        {"Convert_16s64f_Sfs", map<[](Zpp16s x) { return x * 0.125; }>},
        {"Convert_32s16s_Sfs",
         map<[](Zpp32s x) { return static_cast<Zpp16s>(scaled(x, 3, -32768, 32767)); }>},
        {"Convert_32f8u_Sfs", map<[](float x) { return toInteger<Zpp8u>(x * 32, 0.F, 255.F); }>},
        {"Convert_32f16s_Sfs", map<[](float x) { return toInteger<Zpp16s>(x * 32, -32768.F, 32767.F); }>},
        {"Convert_32f32s_Sfs", map<toWholeRange>},
        {"Convert_64f32s_Sfs",
         map<[](double x) { return toInteger<Zpp32s>(x * 32, -2147483648.0, 2147483647.0); }>},
        {"Convert_24s32s", timed<unpack24<Zpp32s>>},
        {"Convert_24s32f", timed<unpack24<Zpp32f>>},
        {"Convert_32s24s_Sfs", timed<packInts>},
        {"Convert_32f24s_Sfs", timed<packFloats>},
        {"SwapBytes_24u", timed<swapBytes>},
    });

template <auto kOp, class T>
void levelLoop(const T* __restrict src, T* __restrict dst, int len, double level) {
    for (int i = 0; i < len; ++i) dst[i] = kOp(src[i], level);
}
Zpp64fc clamped(Zpp64fc z, double level) {
    const double norm = z.re * z.re + z.im * z.im, square = level * level;
    const double scale = norm > square ? std::sqrt(square / norm) : 1;
    return {z.re * scale, z.im * scale};
}
double inverted(double x, double level) {
    if (std::fabs(x) <= level) x = std::copysign(level, x);
    return 1 / x;
}

[[maybe_unused]] const Peers thresholds(
    kWho, {
              {"Threshold_LT_64f",
               timed<levelLoop<[](double x, double level) { return x < level ? level : x; }, double>>},
              {"Threshold_GT_64fc",
               timed<levelLoop<[](Zpp64fc z, double level) { return clamped(z, level); }, Zpp64fc>>},
              {"Threshold_LTInv_64f",
               timed<levelLoop<[](double x, double level) { return inverted(x, level); }, double>>},
          });

void conjugateReversed(const Zpp64fc* __restrict src, Zpp64fc* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[len - 1 - i] = {src[i].re, -src[i].im};
}
void takeApart(const Zpp64fc* __restrict src, double* __restrict re, double* __restrict im, int len) {
    for (int i = 0; i < len; ++i) {
        re[i] = src[i].re;
        im[i] = src[i].im;
    }
}
inline double power(double re, double im) { return re * re + im * im; }
inline int magnitude(Zpp32sc z) {
    const double y = std::sqrt(power(z.re, z.im)) * 0.5 + 0.5;
    return y > 2147483647.0 ? 2147483647 : static_cast<int>(y);
}
inline int squared(Zpp32sc z) {
    // Of 64 bits without a sign: 2^63 is one of the sums.
    const auto square = [](long long x) { return static_cast<unsigned long long>(x * x); };
    const unsigned long long sum = square(z.re) + square(z.im);
    const unsigned long long y = (sum + 0x7FFFFFFF + (sum >> 32 & 1)) >> 32;
    return y > 2147483647 ? 2147483647 : static_cast<int>(y);
}
template <class T, class Less>
void normalize(const T* __restrict src, T* __restrict dst, int len, Less less, double vdiv) {
    const double scale = 1 / vdiv;
    for (int i = 0; i < len; ++i) {
        if constexpr (std::is_same_v<T, double>)
            dst[i] = (src[i] - less) * scale;
        else
            dst[i] = {(src[i].re - less.re) * scale, (src[i].im - less.im) * scale};
    }
}

[[maybe_unused]] const Peers complexVectors(
    kWho, {
              {"Conj_64fc", map<[](Zpp64fc z) {
                   return Zpp64fc{z.re, -z.im};
               }>},
              {"ConjFlip_64fc", timed<conjugateReversed>},
              {"Real_64fc", map<[](Zpp64fc z) { return z.re; }>},
              {"CplxToReal_64fc", timed<takeApart>},
              {"RealToCplx_64f", map<[](double re, double im) {
                   return Zpp64fc{re, im};
               }>},
              {"Magnitude_64fc", map<[](Zpp64fc z) { return std::sqrt(power(z.re, z.im)); }>},
              {"Magnitude_64f", map<[](double re, double im) { return std::sqrt(power(re, im)); }>},
              {"Magnitude_32sc_Sfs", map<magnitude>},
              {"MagSquared_32sc32s_Sfs", map<squared>},
              {"Phase_64fc", map<[](Zpp64fc z) { return std::atan2(z.im, z.re); }>},
              {"Phase_64f", map<[](double re, double im) { return std::atan2(im, re); }>},
              {"PolarToCart_64fc", map<[](double m, double p) {
                   return Zpp64fc{m * std::cos(p), m * std::sin(p)};
               }>},
              {"PowerSpectr_64fc", map<[](Zpp64fc z) { return power(z.re, z.im); }>},
              {"PowerSpectr_64f", map<power>},
              {"Normalize_64f", timed<normalize<double, double>>},
              {"Normalize_64fc", timed<normalize<Zpp64fc, Zpp64fc>>},
          });

}  // namespace
}  // namespace zpp::bench
