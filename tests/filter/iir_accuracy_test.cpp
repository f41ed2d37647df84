#include <algorithm>
#include <cmath>
#include <numbers>

#include "tests/filter/iir_support.h"
#include "tests/support/binding.h"
#include "tests/support/rounded.h"
#include "tests/support/x87.h"

namespace zpp::test {
namespace {

class IirAccuracy : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(IirAccuracy);

constexpr std::size_t kSecond = 48000;

// Seconds of noise in [-1, 1), the same in every run.
std::vector<double> noise(std::uint32_t seed) {
    std::vector<double> x(kSecond);
    std::uint32_t state = seed;
    for (double& sample : x) {
        state = state * 1664525 + 1013904223;  // Numerical Recipes
        sample = static_cast<double>(state) * 0x1p-31 - 1;
    }
    return x;
}

// Sections of b0, b1, b2, a0, a1, a2.
using Taps = std::vector<double>;

// The Butterworth low-pass of order 20 with its edge at a thousandth of the rate, by the bilinear transform.
Taps butterworth() {
    Taps taps;
    const double g = std::tan(std::numbers::pi * 0.001);
    for (int k = 0; k < 10; ++k) {
        const double c = 2 * g * std::cos(std::numbers::pi * (2 * k + 1) / 40);
        for (const double x : {g * g, 2 * g * g, g * g, 1 + c + g * g, 2 * (g * g - 1), 1 - c + g * g})
            taps.push_back(x);
    }
    return taps;
}
// Both poles at 1 - 1e-6.
Taps nearOne() {
    const double p = 1 - 1e-6;
    return {1e-12, 2e-12, 1e-12, 1, -2 * p, p * p};
}

// The recursion as stated, on the quotients that a state holds.
template <class T>
std::vector<T> cascade(const Taps& taps, const std::vector<double>& signal) {
    std::vector<T> y(signal.begin(), signal.end());
    for (std::size_t s = 0; s < taps.size(); s += 6) {
        const double k = quotient(1.0, taps[s + 3]);
        const auto ratio = [&](std::size_t i) -> T { return product(taps[s + i], k); };
        const T b0 = ratio(0), b1 = ratio(1), b2 = ratio(2), a1 = ratio(4), a2 = ratio(5);
        T d0 = 0, d1 = 0;
        for (T& x : y) {
            const T in = x;
            x = b0 * in + d0;
            d0 = b1 * in + d1 - a1 * x;
            d1 = b2 * in - a2 * x;
        }
    }
    return y;
}

// The mean square of the errors, as a part of the largest output.
double squareOf(const std::vector<double>& y, const std::vector<Wide>& exact) {
    double sum = 0, largest = 0;
    for (std::size_t n = 0; n < y.size(); ++n) {
        const double error = static_cast<double>(Wide{y[n]} - exact[n]);
        sum += error * error;
        largest = std::max(largest, std::fabs(static_cast<double>(exact[n])));
    }
    return sum / static_cast<double>(y.size()) / (largest * largest);
}

struct Case {
    const char* name;
    Taps taps;
    std::uint32_t seconds;
    double bound;  // of the root of the mean square
    std::vector<std::vector<Wide>> exact = {};
    double plain = 0;

    // Of what a plain loop in doubles makes of each second.
    Case(const char* n, Taps t, std::uint32_t s, double b)
        : name(n), taps(std::move(t)), seconds(s), bound(b) {
        for (std::uint32_t i = 0; i < seconds; ++i) {
            exact.push_back(cascade<Wide>(taps, noise(i)));
            const X87ControlWord doubles(0x27F);
            plain += squareOf(cascade<double>(taps, noise(i)), exact[i]);
        }
    }
};

// With poles so near to 1 the errors are added up twice: one second is a single draw of them, so several are
// taken.
TEST_P(IirAccuracy, IsThatOfThePlainLoop) {
    static const Case kCases[] = {{"Butterworth of order 20 at 0.001", butterworth(), 1, 1e-12},
                                  {"poles at 1 - 1e-6", nearOne(), 12, 2e-10}};
    for (const Case& c : kCases) {
        double square = 0;
        for (std::uint32_t i = 0; i < c.seconds; ++i) {
            ZppsIIRState* state = nullptr;
            const int sections = static_cast<int>(c.taps.size() / 6);
            ASSERT_EQ(zppsIIRInitAlloc_BiQuad_64f(&state, c.taps.data(), sections, nullptr), zppStatusOk);
            auto y = noise(i);
            EXPECT_EQ(zppsIIR_64f_I(y.data(), static_cast<int>(kSecond), state), zppStatusOk);
            EXPECT_EQ(zppsIIRFree_64f(state), zppStatusOk);
            square += squareOf(y, c.exact[i]);
        }
        EXPECT_LE(std::sqrt(square), 2 * std::sqrt(c.plain)) << c.name;
        EXPECT_LE(std::sqrt(square / c.seconds), c.bound) << c.name;
    }
}

}  // namespace
}  // namespace zpp::test
