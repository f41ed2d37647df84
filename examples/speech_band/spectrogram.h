// Short-time spectra: what a signal holds at which time and frequency.
#pragma once

#include <functional>
#include <vector>

#include "recording.h"

namespace examples::speech {

struct Band {
    double low, high;  // Hz
};

struct Spectrogram {
    int bins = 0;     // of each column: 0 Hz to half the sample rate
    int columns = 0;  // equally spaced over the recording
    std::vector<double>
        levels;         // columns x bins: mean power in a bin, in dB of that of a full-scale sine there
    double inside = 0;  // mean power within the band and outside of it, 1 for a full-scale sine
    double outside = 0;

    double at(int column, int bin) const {
        return levels[static_cast<size_t>(column) * static_cast<size_t>(bins) + static_cast<size_t>(bin)];
    }
};

// Hann-windowed spectra of about 40 ms, each a quarter of the window after the one before, averaged to at
// most `maxColumns` columns. Calls progress(part done).
Spectrogram analyse(const Recording& recording, Band band, int maxColumns,
                    const std::function<void(double)>& progress);

}  // namespace examples::speech
