#include <cmath>

#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

using C = Zpp64fc;

constexpr C times(C a, C b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
void addProduct(const double* __restrict a, const double* __restrict b, double* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] += a[i] * b[i];
}
void addProductComplex(const C* __restrict a, const C* __restrict b, C* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const C p = times(a[i], b[i]);
        dst[i] = {dst[i].re + p.re, dst[i].im + p.im};
    }
}
void addTo(const double* __restrict a, double* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] += a[i];
}
template <auto kOp, class T>
void constantLoop(const T* __restrict a, T val, T* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = kOp(a[i], val);
}
template <class T, auto kOp>
constexpr auto withConstant = timed<constantLoop<kOp, T>>;

void divideInts(const Zpp32s* __restrict a, const Zpp32s* __restrict b, Zpp32s* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {  // by way of a double, which is not always right
        const double y = 32.0 * b[i] / a[i];
        dst[i] = static_cast<Zpp32s>(std::rint(y < -2147483648.0  ? -2147483648.0
                                               : 2147483647.0 < y ? 2147483647.0
                                                                  : y));
    }
}

[[maybe_unused]] const Peers integers(
    kWho, {
              {"Add_32s_Sfs", map<[](Zpp32s a, Zpp32s b) { return scaled<5>(0LL + a + b); }>},
              {"Add_32s_Sfs_saturated", map<[](Zpp32s a, Zpp32s b) { return scaled<0>(0LL + a + b); }>},
              {"Mul_32s_Sfs", map<[](Zpp32s a, Zpp32s b) { return scaled<20>(1LL * a * b); }>},
              {"MulC_32s_Sfs",
               withConstant<Zpp32s, [](Zpp32s a, Zpp32s val) { return scaled<20>(1LL * a * val); }>},
              {"Div_32s_Sfs", timed<divideInts>},
              {"Mul_32sc_Sfs", map<[](Zpp32sc a, Zpp32sc b) {
                   return Zpp32sc{scaled<20>(1LL * a.re * b.re - 1LL * a.im * b.im),
                                  scaled<20>(1LL * a.re * b.im + 1LL * a.im * b.re)};
               }>},
          });

[[maybe_unused]] const Peers floating(
    kWho, {
              {"Add_64f", map<[](double a, double b) { return a + b; }>},
              {"Sub_64f", map<[](double a, double b) { return b - a; }>},
              {"Mul_64f", map<[](double a, double b) { return a * b; }>},
              {"Div_64f", map<[](double a, double b) { return b / a; }>},
              {"AddProduct_64f", timed<addProduct>},
              {"Add_64f_I", timed<addTo>},
              {"AddC_64f", withConstant<double, [](double a, double val) { return a + val; }>},
              {"MulC_64f", withConstant<double, [](double a, double val) { return a * val; }>},
              {"SubCRev_64f", withConstant<double, [](double a, double val) { return val - a; }>},
              {"Add_64fc", map<[](C a, C b) {
                   return C{a.re + b.re, a.im + b.im};
               }>},
              {"Mul_64fc", map<[](C a, C b) { return times(a, b); }>},
              {"Div_64fc", map<[](C a, C b) {
                   const double inverse = 1.0 / (a.re * a.re + a.im * a.im);
                   return C{(b.re * a.re + b.im * a.im) * inverse, (b.im * a.re - b.re * a.im) * inverse};
               }>},
              {"AddProduct_64fc", timed<addProductComplex>},
              {"MulC_64fc", withConstant<C, [](C a, C val) { return times(a, val); }>},
          });

C complexRoot(C z) {
    const double a = z.re * 0.5, b = z.im * 0.5, r = std::sqrt(a * a + b * b);
    if (a < 0) {
        const double t = b < 0 ? -std::sqrt(r - a) : std::sqrt(r - a);
        return {b / t, t};
    }
    const double s = std::sqrt(r + a);
    return {s, b / s};
}

[[maybe_unused]] const Peers roots(kWho, {
                                             {"Abs_32s", map<[](Zpp32s x) { return x < 0 ? -x : x; }>},
                                             {"Sqr_64fc", map<[](C z) {
                                                  return C{(z.re + z.im) * (z.re - z.im), z.re * z.im * 2};
                                              }>},
                                             {"Sqrt_64f", map<[](double x) { return std::sqrt(x); }>},
                                             {"Arctan_64f", map<[](double x) { return std::atan(x); }>},
                                             {"Sqrt_64fc", map<[](C z) { return complexRoot(z); }>},
                                         });

Zpp32s scaledDouble(double x) {  // not always rounded right
    return static_cast<Zpp32s>(std::rint(2147483647.0 < x ? 2147483647.0 : x));
}

[[maybe_unused]] const Peers elementary(
    kWho,
    {
        {"Exp_64f", map<[](double x) { return std::exp(x); }>},
        {"Exp_64fc", map<[](C z) {
             const double size = std::exp(z.re);
             return C{size * std::cos(z.im), size * std::sin(z.im)};
         }>},
        {"Exp_32s_Sfs", map<[](Zpp32s x) { return scaledDouble(std::exp(x) * 0.25); }>},
        {"Ln_64f", mapPositive<[](double x) { return std::log(x); }>},
        {"Ln_64fc", map<[](C z) {
             return C{0.5 * std::log(z.re * z.re + z.im * z.im), std::atan2(z.im, z.re)};
         }>},
        {"Ln_32s_Sfs", mapPositive<[](Zpp32s x) { return scaledDouble(std::log(x) * 1048576); }>},
        {"10Log10_32s_Sfs", mapPositive<[](Zpp32s x) { return scaledDouble(std::log10(x) * 10485760); }>},
    });

}  // namespace
}  // namespace zpp::bench
