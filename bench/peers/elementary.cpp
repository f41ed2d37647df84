#include "bench/peers/elementary.h"

#include <cmath>

#ifdef ZPP_HAVE_SLEEF
#include <sleef.h>
#endif

namespace zpp::bench {
namespace {

// SLEEF's are declared as functions without effects, which is another type.
template <auto f>
[[maybe_unused]] double one(double x) {
    return f(x);
}
template <auto f>
[[maybe_unused]] double two(double x, double y) {
    return f(x, y);
}

const ElementaryPeer kPeers[] = {
    {"libm", "Cbrt", cbrt},
    {"libm", "Exp", exp},
    {"libm", "Ln", log},
    {"libm", "Log10", log10},
    {"libm", "Cos", cos},
    {"libm", "Sin", sin},
    {"libm", "Tan", tan},
    {"libm", "Acos", acos},
    {"libm", "Asin", asin},
    {"libm", "Atan", atan},
    {"libm", "Cosh", cosh},
    {"libm", "Sinh", sinh},
    {"libm", "Tanh", tanh},
    {"libm", "Acosh", acosh},
    {"libm", "Asinh", asinh},
    {"libm", "Atanh", atanh},
    {"libm", "Erf", erf},
    {"libm", "Erfc", erfc},
    {"libm", "Pow", nullptr, pow},
    {"libm", "Atan2", nullptr, atan2},
#ifdef ZPP_HAVE_SLEEF
    {"SLEEF", "Cbrt", one<Sleef_cbrt_u10>},
    {"SLEEF", "Exp", one<Sleef_exp_u10>},
    {"SLEEF", "Ln", one<Sleef_log_u10>},
    {"SLEEF", "Log10", one<Sleef_log10_u10>},
    {"SLEEF", "Cos", one<Sleef_cos_u10>},
    {"SLEEF", "Sin", one<Sleef_sin_u10>},
    {"SLEEF", "Tan", one<Sleef_tan_u10>},
    {"SLEEF", "Acos", one<Sleef_acos_u10>},
    {"SLEEF", "Asin", one<Sleef_asin_u10>},
    {"SLEEF", "Atan", one<Sleef_atan_u10>},
    {"SLEEF", "Cosh", one<Sleef_cosh_u10>},
    {"SLEEF", "Sinh", one<Sleef_sinh_u10>},
    {"SLEEF", "Tanh", one<Sleef_tanh_u10>},
    {"SLEEF", "Acosh", one<Sleef_acosh_u10>},
    {"SLEEF", "Asinh", one<Sleef_asinh_u10>},
    {"SLEEF", "Atanh", one<Sleef_atanh_u10>},
    {"SLEEF", "Erf", one<Sleef_erf_u10>},
    {"SLEEF", "Erfc", one<Sleef_erfc_u15>},
    {"SLEEF", "Pow", nullptr, two<Sleef_pow_u10>},
    {"SLEEF", "Atan2", nullptr, two<Sleef_atan2_u10>},
#endif
};

}  // namespace

std::span<const ElementaryPeer> elementaryPeers() { return kPeers; }

}  // namespace zpp::bench
