// Sound files as libsndfile reads and writes them, by blocks of frames; what fails throws std::runtime_error
// with the file's name.
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <filesystem>
#include <vector>

#include "common/check.h"

namespace examples::resample {

using SoundFile = Owned<SNDFILE, sf_close>;

class Reader {
  public:
    explicit Reader(const std::filesystem::path& path);

    const SF_INFO& info() const { return info_; }
    SNDFILE* file() const { return file_.get(); }

    // The next frames, interleaved, full scale 1: at most `frames`, and none at the end. What is infinite or
    // no number is read as 0: it would spread over the length of the filter.
    const std::vector<double>& read(size_t frames);

    int64_t notFinite() const { return notFinite_; }

  private:
    std::filesystem::path path_;
    SF_INFO info_ = {};
    SoundFile file_;
    std::vector<double> values_;
    sf_count_t framesRead_ = 0;
    int64_t notFinite_ = 0;
};

class Writer {
  public:
    // The container is that of the path's extension. It keeps the coding of samples that the source has, or
    // takes the next best that it knows, and the source's title, artist, and so on. A file that already
    // exists is overwritten, but never the source.
    Writer(const std::filesystem::path& path, const std::filesystem::path& sourcePath, const Reader& source,
           int rate, sf_count_t frames);

    // Removes the file unless close() succeeded.
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void write(const std::vector<double>& interleaved);
    void close();

    // Values beyond the full scale of integers.
    int64_t clipped() const { return clipped_; }

  private:
    std::filesystem::path path_;
    SF_INFO info_ = {};
    SoundFile file_;
    std::vector<double> scaled_;
    std::vector<int> integers_;
    int64_t clipped_ = 0;
    bool complete_ = false;
};

}  // namespace examples::resample
