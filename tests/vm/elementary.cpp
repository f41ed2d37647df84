#include "tests/vm/elementary.h"

#include <quadmath.h>

#include <cfloat>
#include <cmath>
#include <numbers>

#include "zpp/vm.h"

namespace zpp::test {
namespace {

using OneToOne = ZppStatus(const Zpp64f*, Zpp64f*, int);
using TwoToOne = ZppStatus(const Zpp64f*, const Zpp64f*, Zpp64f*, int);

template <OneToOne f>
void one(const double* x, const double*, double* results, int n) {
    f(x, results, n);
}
template <TwoToOne f>
void two(const double* x, const double* y, double* results, int n) {
    f(x, y, results, n);
}
void powerWithConstant(const double* x, const double* y, double* results, int n) {
    for (int i = 0; i < n; ++i) zppsPowx_64f_A53(x + i, y[i], results + i, 1);
}
[[maybe_unused]] void sineOfBoth(const double* x, const double*, double* results, int n) {
    std::vector<double> cosines(static_cast<std::size_t>(n));
    zppsSinCos_64f_A53(x, results, cosines.data(), n);
}
[[maybe_unused]] void cosineOfBoth(const double* x, const double*, double* results, int n) {
    std::vector<double> sines(static_cast<std::size_t>(n));
    zppsSinCos_64f_A53(x, sines.data(), results, n);
}

template <Wide (*f)(Wide)>
Wide exact(Wide x, Wide) {
    return f(x);
}
template <Wide (*f)(Wide, Wide)>
Wide exactOfTwo(Wide x, Wide y) {
    return f(x, y);
}
template <long double (*f)(long double)>
long double near(long double x, long double) {
    return f(x);
}

constexpr double kMost = DBL_MAX, kLeast = 0x1p-1074, kMostHyperbolic = 0x1.633ce8fb9f87dp9;

Wide inverse(Wide x) { return 1 / x; }
Wide inverseRoot(Wide x) { return 1 / sqrtq(x); }
Wide inverseCubeRoot(Wide x) { return 1 / cbrtq(x); }
Wide quotientOf(Wide x, Wide y) { return x / y; }
long double nearInverse(long double x) { return 1 / x; }
long double nearInverseRoot(long double x) { return 1 / std::sqrt(x); }
long double nearInverseCubeRoot(long double x) { return 1 / std::cbrt(x); }
long double nearQuotient(long double x, long double y) { return x / y; }

// Such that the quotient of x and it may be any number.
double divisor(double x, Random& random) {
    const int exponent = std::ilogb(x), least = std::max(exponent - 1022, -1074),
              most = std::min(exponent + 1076, 1023);
    const int drawn = least + static_cast<int>(random.below(static_cast<std::uint64_t>(most - least + 1)));
    return std::ldexp(random.uniform(1, 2), drawn);
}

// As large as y but for some binades, or any; the angle is a number in all cases.
double besides(double y, Random& random) {
    const double x = std::ldexp(random.uniform(-2, 2), static_cast<int>(random.below(12)) - 6);
    const double other =
        random.below(8) != 0 ? y * x : std::ldexp(x, static_cast<int>(random.below(2100)) - 1050);
    return std::isfinite(other) ? other : x;
}
// An exponent with which the power is finite, and up to the smallest one; whole for negative bases.
double exponentFor(double x, Random& random) {
    const double logarithm = std::log(std::fabs(x)), y = random.uniform(-745.2, 709.7) / logarithm;
    const double modest = std::fabs(logarithm) > 1 ? y / 64 : std::remainder(y, 700);
    const double exponent = random.below(4) != 0 && logarithm != 0 ? y : logarithm != 0 ? modest : 3;
    return x < 0 ? std::trunc(exponent) : exponent;
}

const Elementary kFunctions[] = {
    {"Inv", one<zppsInv_64f_A53>, exact<inverse>, near<nearInverse>, .5, 0x1.0000000000004p-1024, kMost, .5,
     50, 1},
    {"Sqrt", one<zppsSqrt_64f_A53>, exact<sqrtq>, near<std::sqrt>, .5, kLeast, kMost, .5, 50, 1},
    {"InvSqrt", one<zppsInvSqrt_64f_A53>, exact<inverseRoot>, near<nearInverseRoot>, .55, kLeast, kMost, .5,
     50, 1. / 16},
    {"Cbrt", one<zppsCbrt_64f_A53>, exact<cbrtq>, near<std::cbrt>, .55, -kMost, kMost, -50, 50, 1. / 16},
    {"InvCbrt", one<zppsInvCbrt_64f_A53>, exact<inverseCubeRoot>, near<nearInverseCubeRoot>, .55, kLeast,
     kMost, .5, 50, 1. / 16},
    {"Exp", one<zppsExp_64f_A53>, exact<expq>, near<std::exp>, .55, -745, 709.78, -10, 10,
     0x1.62e42fefa39efp-7},
    {"Ln", one<zppsLn_64f_A53>, exact<logq>, near<std::log>, .55, kLeast, kMost, .25, 4, 1. / 128},
    {"Log10", one<zppsLog10_64f_A53>, exact<log10q>, near<std::log10>, .55, kLeast, kMost, .25, 4, 1. / 128},
    {"Cos", one<zppsCos_64f_A53>, exact<cosq>, near<std::cos>, .55, -kMost, kMost, -10, 10,
     std::numbers::pi / 64},
    {"Sin", one<zppsSin_64f_A53>, exact<sinq>, near<std::sin>, .55, -kMost, kMost, -10, 10,
     std::numbers::pi / 64},
    {"Tan", one<zppsTan_64f_A53>, exact<tanq>, near<std::tan>, .7, -kMost, kMost, -10, 10,
     std::numbers::pi / 64},
    {"Cosh", one<zppsCosh_64f_A53>, exact<coshq>, near<std::cosh>, .7, -kMostHyperbolic, kMostHyperbolic, -10,
     10, 0x1.62e42fefa39efp-6},
    {"Sinh", one<zppsSinh_64f_A53>, exact<sinhq>, near<std::sinh>, .7, -kMostHyperbolic, kMostHyperbolic, -10,
     10, 0x1.62e42fefa39efp-6},
    {"Tanh", one<zppsTanh_64f_A53>, exact<tanhq>, near<std::tanh>, .55, -kMost, kMost, -10, 10,
     0x1.62e42fefa39efp-7},
    {"Erf", one<zppsErf_64f_A53>, exact<erfq>, near<std::erf>, .55, -kMost, kMost, -6, 6, .25},
    {"Erfc", one<zppsErfc_64f_A53>, exact<erfcq>, near<std::erfc>, .7, -kMost, 0x1.b39dc41e48bfcp4, -6, 27,
     .5},
    {"Acosh", one<zppsAcosh_64f_A53>, exact<acoshq>, near<std::acosh>, .7, 1, kMost, 1, 10, 1. / 128},
    {"Asinh", one<zppsAsinh_64f_A53>, exact<asinhq>, near<std::asinh>, .7, -kMost, kMost, -10, 10, 1. / 128},
    {"Atanh", one<zppsAtanh_64f_A53>, exact<atanhq>, near<std::atanh>, .7, -1 + 0x1p-53, 1 - 0x1p-53, -1, 1,
     1. / 128},
    {"Div", two<zppsDiv_64f_A53>, quotientOf, nearQuotient, .5, kLeast, kMost, .5, 50, 1, divisor},
    {"Acos", one<zppsAcos_64f_A53>, exact<acosq>, near<std::acos>, .55, -1, 1, -1, 1, 1. / 64},
    {"Asin", one<zppsAsin_64f_A53>, exact<asinq>, near<std::asin>, .55, -1, 1, -1, 1, 1. / 64},
    {"Atan", one<zppsAtan_64f_A53>, exact<atanq>, near<std::atan>, .55, -kMost, kMost, -16, 16, 1. / 32},
    {"Atan2", two<zppsAtan2_64f_A53>, atan2q, std::atan2, .55, -kMost, kMost, -16, 16, 1. / 32, besides},
    {"Pow", two<zppsPow_64f_A53>, exactOfTwo<powq>, powl, .7, -kMost, kMost, .5, 2, 1. / 256, exponentFor},
    {"Powx", powerWithConstant, exactOfTwo<powq>, powl, .7, -kMost, kMost, .5, 2, 1. / 256, exponentFor},
    {"SinCos_sine", sineOfBoth, exact<sinq>, near<std::sin>, .55, -kMost, kMost, -10, 10,
     std::numbers::pi / 64},
    {"SinCos_cosine", cosineOfBoth, exact<cosq>, near<std::cos>, .55, -kMost, kMost, -10, 10,
     std::numbers::pi / 64},
};

// The places where exp and trigonometric functions come nearest to a number halfway between doubles, or to a
// multiple of pi / 2 (Lefevre, Muller, "Worst cases for correct rounding of the elementary functions in
// double precision", 2001; Muller, "Elementary functions", 2006), and what lies beside usual limits.
constexpr double kPlaces[] = {7.5417527749959590085206221e-10,
                              0x1.6ac5b262ca1ffp+849,
                              0x1p-1022,
                              0x1p-1074,
                              0x1.fffffffffffffp-1023,
                              0x1p-54,
                              0x1p-27,
                              0x1p-26,
                              0x1.fffffffffffffp-1,
                              1,
                              0x1.0000000000001p0,
                              .5,
                              0x1p20,
                              0x1p18,
                              708,
                              -708,
                              -708.3964185322642,
                              -745.1332191019411,
                              0x1p53,
                              DBL_MAX};

double neighbour(double x, Random& random) {
    for (std::uint64_t steps = random.below(4), up = random.below(2); steps > 0; --steps)
        x = std::nextafter(x, up != 0 ? HUGE_VAL : -HUGE_VAL);
    return x;
}

// With the exponent of any number of the domain.
double fromAnyBinade(const Elementary& f, double mantissa, Random& random) {
    const bool negative = f.least < 0 && (f.most <= 0 || random.below(2) != 0);
    const double largest = negative ? -f.least : f.most, smallest = f.least > 0 ? f.least : kLeast;
    const int top = std::ilogb(largest), bottom = std::ilogb(smallest);
    const int exponent =
        bottom + static_cast<int>(random.below(static_cast<std::uint64_t>(top - bottom + 1)));
    return std::ldexp(negative ? -mantissa : mantissa, exponent);
}

double drawArgument(const Elementary& f, std::size_t kind, Random& random) {
    switch (kind) {
        case 0:
            return random.uniform(f.low, f.high);
        case 1:
            return fromAnyBinade(f, random.uniform(1, 2), random);
        case 2: {
            const double count = std::floor((f.high - f.low) / f.step * 2) + 1;
            const double j = std::floor(f.low / f.step * 2) +
                             static_cast<double>(random.below(static_cast<std::uint64_t>(count)));
            return neighbour(j / 2 * f.step, random);
        }
        default: {
            const double mantissa = 1 + static_cast<double>(random.below(256)) / 256;
            const double near1 = std::ldexp(mantissa, static_cast<int>(random.below(16)) - 10);
            return neighbour(random.below(2) != 0                  ? fromAnyBinade(f, mantissa, random)
                             : f.least < 0 && random.below(2) != 0 ? -near1
                                                                   : near1,
                             random);
        }
    }
}

}  // namespace

std::span<const Elementary> elementaryFunctions() { return kFunctions; }

ElementaryArguments drawArguments(const Elementary& f, std::size_t count, Random& random) {
    ElementaryArguments arguments;
    const auto add = [&](double x) {
        if (!(x >= f.least && x <= f.most)) return;
        arguments.x.push_back(x);
        arguments.y.push_back(f.second == nullptr ? 0 : f.second(x, random));
    };
    while (arguments.x.size() < count) add(drawArgument(f, arguments.x.size() % 4, random));
    for (const double x : kPlaces) add(x), add(-x);
    add(f.least), add(f.most);
    return arguments;
}

}  // namespace zpp::test
