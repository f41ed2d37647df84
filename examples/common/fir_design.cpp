#include "common/fir_design.h"

#include <cmath>
#include <numbers>

namespace examples {
namespace {

using std::numbers::pi;

// The modified Bessel function I0, by its power series.
double bessel0(double x) {
    double sum = 1, term = 1;
    for (int k = 1; term > 1e-17 * sum; ++k) {
        term *= (x / (2 * k)) * (x / (2 * k));
        sum += term;
    }
    return sum;
}

// The impulse response of the ideal low-pass filter.
double ideal(double cutoff, double time) {
    return time == 0 ? 2 * cutoff : std::sin(2 * pi * cutoff * time) / (pi * time);
}

// The window's parameter for a stop-band attenuation (J. F. Kaiser, 1974).
double kaiserBeta(double attenuation) {
    if (attenuation > 50) return 0.1102 * (attenuation - 8.7);
    if (attenuation < 21) return 0;
    return 0.5842 * std::pow(attenuation - 21, 0.4) + 0.07886 * (attenuation - 21);
}

}  // namespace

double tapsFor(double transition, double attenuationDb) {
    return 2 * std::ceil((attenuationDb - 7.95) / (14.36 * transition) / 2) + 1;
}

std::vector<double> designBandPass(int tapCount, double low, double high, double attenuationDb) {
    const double beta = kaiserBeta(attenuationDb);
    const double middle = (tapCount - 1) / 2.0;
    std::vector<double> taps(static_cast<size_t>(tapCount));
    double gain = 0;
    for (size_t i = 0, mirrored = taps.size() - 1; i <= mirrored && mirrored < taps.size(); ++i, --mirrored) {
        const double time = static_cast<double>(i) - middle;
        const double place = middle > 0 ? time / middle : 0;
        const double tap =
            (ideal(high, time) - ideal(low, time)) * bessel0(beta * std::sqrt(1 - place * place));
        taps[i] = taps[mirrored] = tap;
        gain += (i < mirrored ? 2 : 1) * tap * std::cos(pi * (low + high) * time);
    }
    for (double& tap : taps) tap /= gain;
    return taps;
}

// Of a band that reaches as far below 0 the middle is 0.
std::vector<double> designLowPass(int tapCount, double high, double attenuationDb) {
    return designBandPass(tapCount, -high, high, attenuationDb);
}

}  // namespace examples
