// Elementary functions, of arguments of ordinary ranges.
#include <cstring>
#include <map>
#include <random>
#include <string>

#include "bench/elementary.h"

namespace zpp::bench {
namespace {

constexpr struct {
    const char* job;
    double low, high;
    double secondLow = 0, secondHigh = 0;
} kRanges[] = {
    {"Inv", -10, 10},
    {"Sqrt", .01, 100},
    {"InvSqrt", .01, 100},
    {"Cbrt", -100, 100},
    {"InvCbrt", -100, 100},
    {"Exp", -10, 10},
    {"Ln", .01, 100},
    {"Log10", .01, 100},
    {"Cos", -10, 10},
    {"Sin", -10, 10},
    {"Tan", -10, 10},
    {"Acos", -1, 1},
    {"Asin", -1, 1},
    {"Atan", -10, 10},
    {"Cosh", -5, 5},
    {"Sinh", -5, 5},
    {"Tanh", -5, 5},
    {"Acosh", 1, 100},
    {"Asinh", -10, 10},
    {"Atanh", -1, 1},
    {"Erf", -4, 4},
    {"Erfc", -4, 4},
    {"Div", -10, 10, 1, 10},
    {"Pow", .01, 100, -10, 10},
    {"Atan2", -10, 10, -10, 10},
    {"SinCos", -10, 10},
    {"Powx", .01, 100, 2, 3},
};

[[maybe_unused]] const Jobs elementary = {
    {"Inv_A53", 16, timedInRange<"Inv", zppsInv_64f_A53>},
    {"Sqrt_A53", 16, timedInRange<"Sqrt", zppsSqrt_64f_A53>},
    {"InvSqrt_A53", 16, timedInRange<"InvSqrt", zppsInvSqrt_64f_A53>},
    {"Cbrt_A53", 16, timedInRange<"Cbrt", zppsCbrt_64f_A53>},
    {"InvCbrt_A53", 16, timedInRange<"InvCbrt", zppsInvCbrt_64f_A53>},
    {"Exp_A53", 16, timedInRange<"Exp", zppsExp_64f_A53>},
    {"Ln_A53", 16, timedInRange<"Ln", zppsLn_64f_A53>},
    {"Log10_A53", 16, timedInRange<"Log10", zppsLog10_64f_A53>},
    {"Cos_A53", 16, timedInRange<"Cos", zppsCos_64f_A53>},
    {"Sin_A53", 16, timedInRange<"Sin", zppsSin_64f_A53>},
    {"Tan_A53", 16, timedInRange<"Tan", zppsTan_64f_A53>},
    {"Acos_A53", 16, timedInRange<"Acos", zppsAcos_64f_A53>},
    {"Asin_A53", 16, timedInRange<"Asin", zppsAsin_64f_A53>},
    {"Atan_A53", 16, timedInRange<"Atan", zppsAtan_64f_A53>},
    {"Cosh_A53", 16, timedInRange<"Cosh", zppsCosh_64f_A53>},
    {"Sinh_A53", 16, timedInRange<"Sinh", zppsSinh_64f_A53>},
    {"Tanh_A53", 16, timedInRange<"Tanh", zppsTanh_64f_A53>},
    {"Acosh_A53", 16, timedInRange<"Acosh", zppsAcosh_64f_A53>},
    {"Asinh_A53", 16, timedInRange<"Asinh", zppsAsinh_64f_A53>},
    {"Atanh_A53", 16, timedInRange<"Atanh", zppsAtanh_64f_A53>},
    {"Erf_A53", 16, timedInRange<"Erf", zppsErf_64f_A53>},
    {"Erfc_A53", 16, timedInRange<"Erfc", zppsErfc_64f_A53>},
    {"Div_A53", 24, timedInRange<"Div", zppsDiv_64f_A53>},
    {"Pow_A53", 24, timedInRange<"Pow", zppsPow_64f_A53>},
    {"Atan2_A53", 24, timedInRange<"Atan2", zppsAtan2_64f_A53>},
    {"SinCos_A53", 24, timedInRange<"SinCos", zppsSinCos_64f_A53>},
    {"Powx_A53", 16, timedInRange<"Powx", zppsPowx_64f_A53>},
};

}  // namespace

const double* argumentsOf(const char* job, int which) {
    static std::map<std::pair<std::string, int>, std::vector<double>> all;
    std::vector<double>& arguments = all[{job, which}];
    if (!arguments.empty()) return arguments.data();
    const auto* const range = std::find_if(std::begin(kRanges), std::end(kRanges),
                                           [=](const auto& r) { return std::strcmp(r.job, job) == 0; });
    std::mt19937_64 random(static_cast<unsigned>(which + 1));
    std::uniform_real_distribution<double> draw(which == 0 ? range->low : range->secondLow,
                                                which == 0 ? range->high : range->secondHigh);
    for (int i = 0; i < kLargest; ++i) arguments.push_back(draw(random));
    return arguments.data();
}

}  // namespace zpp::bench
