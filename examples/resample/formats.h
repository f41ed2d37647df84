// Which of libsndfile's formats is to be written.
#pragma once

#include <sndfile.h>

#include <filesystem>

namespace examples::resample {

// The container that goes with the file's extension, or 0.
int containerFor(const std::filesystem::path& path);

// The format with this container that is closest to the coding of samples in `coding`, for these channels and
// this rate, or 0.
int closestFormat(int container, int coding, int channels, int rate);

// The bits of a sample that is to be rounded to an integer; 0 where floating point is written, or a coding
// that takes it.
int integerBits(int format);

}  // namespace examples::resample
