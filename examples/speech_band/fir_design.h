#pragma once

#include <vector>

namespace speech {

// The taps of a linear-phase band-pass filter, by the window method: the ideal response between `low` and
// `high` (as parts of the sample rate, below 1/2) under a Kaiser window, with gain 1 in the middle of the
// band. Between pass band and stop band lie about (attenuation - 8) / (14.4 * tapCount) parts of the sample
// rate.
std::vector<double> designBandPass(int tapCount, double low, double high, double attenuationDb);

}  // namespace speech
