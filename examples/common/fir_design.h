#pragma once

#include <vector>

namespace examples {

// How many taps the window method takes for a stop band `transition` away from the pass band, as a part of
// the sample rate: an odd number, so that the filter delays by whole samples.
double tapsFor(double transition, double attenuationDb);

// The taps of a linear-phase band-pass filter, by the window method: the ideal response between `low` and
// `high` (as parts of the sample rate, below 1/2) under a Kaiser window, with gain 1 in the middle of the
// band. Pass band and stop band are about (attenuation - 8) / (14.36 * (tapCount - 1)) parts of the sample
// rate apart.
std::vector<double> designBandPass(int tapCount, double low, double high, double attenuationDb);

// The same for a band from 0 to `high`, with gain 1 at 0.
std::vector<double> designLowPass(int tapCount, double high, double attenuationDb);

}  // namespace examples
