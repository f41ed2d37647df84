// Recordings in files: whatever libsndfile reads (WAV, FLAC, OGG, ...), and WAV for output.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace examples::speech {

struct Recording {
    int sampleRate = 0;
    std::vector<double> samples;  // full scale is -1 to 1

    double seconds() const { return static_cast<double>(samples.size()) / sampleRate; }
};

// Reads the files one after the other as one signal; channels are mixed down to their mean. Throws
// std::runtime_error for a file that cannot be read or is empty, and for files of different sample rates.
Recording readRecordings(const std::vector<std::filesystem::path>& files);

// Writes 16-bit WAV; what exceeds full scale is clipped.
void writeRecording(const std::filesystem::path& file, const Recording& recording);

}  // namespace examples::speech
