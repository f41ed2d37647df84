// What G.711, the coding of digital telephone lines, leaves of a recording.
#pragma once

#include "recording.h"

namespace examples::speech {

struct SignalToNoise {
    double aLaw, muLaw;  // in dB
};

// Takes the recording through each law and back, and sets its power against that of the difference. What is
// beyond full scale is clipped on the way, which counts as noise.
SignalToNoise compandingNoise(const Recording& recording);

}  // namespace examples::speech
