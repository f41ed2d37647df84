#pragma once

#include <filesystem>

#include "spectrogram.h"

namespace examples::speech {

// The columns of a panel: a spectrogram of more has details that would not be seen.
inline constexpr int kPanelWidth = 800;

struct Picture {
    const Spectrogram& before;
    const Spectrogram& after;
    double seconds;
    int sampleRate;
    Band band;
    int bandRate;  // the sample rate that the signal has had in between
};

// Draws the two spectrograms side by side as a PNG. Throws std::runtime_error where it cannot be written.
void drawPicture(const Picture& picture, const std::filesystem::path& file);

}  // namespace examples::speech
