// The C library's functions in loops. With -ffast-math GCC makes calls of its vector functions of them, whose
// errors are up to 4 units in the last place: these are shown, and only the power's, of 1 unit, is one to be
// judged by.
#include <cmath>

#include "bench/elementary.h"
#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

#ifdef __FAST_MATH__
constexpr const char* kOthers = ZPP_WHO "-coarse";
#else
constexpr const char* kOthers = kWho;
#endif

template <JobName kJob, auto kOp>
constexpr auto one = timedInRange<kJob, mapLoop<kOp, double, double>>;
template <JobName kJob, auto kOp>
constexpr auto two = timedInRange<kJob, mapLoop<kOp, double, double, double>>;

[[maybe_unused]] const Peers elementary(
    kOthers, {
                 {"Inv_A53", one<"Inv", [](double x) { return 1 / x; }>},
                 {"Sqrt_A53", one<"Sqrt", [](double x) { return std::sqrt(x); }>},
                 {"InvSqrt_A53", one<"InvSqrt", [](double x) { return 1 / std::sqrt(x); }>},
                 {"Cbrt_A53", one<"Cbrt", [](double x) { return std::cbrt(x); }>},
                 {"Exp_A53", one<"Exp", [](double x) { return std::exp(x); }>},
                 {"Ln_A53", one<"Ln", [](double x) { return std::log(x); }>},
                 {"Log10_A53", one<"Log10", [](double x) { return std::log10(x); }>},
                 {"Cos_A53", one<"Cos", [](double x) { return std::cos(x); }>},
                 {"Sin_A53", one<"Sin", [](double x) { return std::sin(x); }>},
                 {"Tan_A53", one<"Tan", [](double x) { return std::tan(x); }>},
                 {"Acos_A53", one<"Acos", [](double x) { return std::acos(x); }>},
                 {"Asin_A53", one<"Asin", [](double x) { return std::asin(x); }>},
                 {"Atan_A53", one<"Atan", [](double x) { return std::atan(x); }>},
                 {"Cosh_A53", one<"Cosh", [](double x) { return std::cosh(x); }>},
                 {"Sinh_A53", one<"Sinh", [](double x) { return std::sinh(x); }>},
                 {"Tanh_A53", one<"Tanh", [](double x) { return std::tanh(x); }>},
                 {"Acosh_A53", one<"Acosh", [](double x) { return std::acosh(x); }>},
                 {"Asinh_A53", one<"Asinh", [](double x) { return std::asinh(x); }>},
                 {"Atanh_A53", one<"Atanh", [](double x) { return std::atanh(x); }>},
                 {"Erf_A53", one<"Erf", [](double x) { return std::erf(x); }>},
                 {"Erfc_A53", one<"Erfc", [](double x) { return std::erfc(x); }>},
                 {"Div_A53", two<"Div", [](double x, double y) { return x / y; }>},
                 {"Atan2_A53", two<"Atan2", [](double y, double x) { return std::atan2(y, x); }>},
             });
[[maybe_unused]] const Peers powers(kWho, {{"Pow_A53",
                                            two<"Pow", [](double x, double y) { return std::pow(x, y); }>}});

}  // namespace
}  // namespace zpp::bench
