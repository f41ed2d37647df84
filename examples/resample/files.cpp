#include "files.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "formats.h"

namespace examples::resample {
namespace {

std::runtime_error failure(const std::filesystem::path& file, const std::string& reason) {
    return std::runtime_error(file.string() + ": " + reason);
}

// The samples' bytes in a file, of codings that are not compressed; 0 for the others.
int sampleBytes(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
        case SF_FORMAT_ULAW:
        case SF_FORMAT_ALAW:
            return 1;
        case SF_FORMAT_PCM_16:
            return 2;
        case SF_FORMAT_PCM_24:
            return 3;
        case SF_FORMAT_PCM_32:
        case SF_FORMAT_FLOAT:
            return 4;
        case SF_FORMAT_DOUBLE:
            return 8;
        default:
            return 0;
    }
}

bool has32BitSizes(int format) {
    const int container = format & SF_FORMAT_TYPEMASK;
    return container == SF_FORMAT_WAV || container == SF_FORMAT_AIFF;
}

// The coding of the source, but for a name that asks for one itself.
int codingFor(const std::filesystem::path& path, const SF_INFO& source) {
    return path.extension() == ".opus" ? SF_FORMAT_OPUS : source.format & SF_FORMAT_SUBMASK;
}

}  // namespace

Reader::Reader(const std::filesystem::path& path)
    : path_(path), file_(sf_open(path.c_str(), SFM_READ, &info_)) {
    if (!file_) throw failure(path, std::string("cannot be read: ") + sf_strerror(nullptr));
}

const std::vector<double>& Reader::read(size_t frames) {
    values_.resize(frames * static_cast<size_t>(info_.channels));
    const sf_count_t got = sf_readf_double(file_.get(), values_.data(), static_cast<sf_count_t>(frames));
    if (sf_error(file_.get()) != SF_ERR_NO_ERROR)
        throw failure(path_, std::string("cannot be read: ") + sf_strerror(file_.get()));
    framesRead_ += got;
    if (got == 0 && framesRead_ < info_.frames)
        throw failure(path_, "ends after " + std::to_string(framesRead_) + " of " +
                                 std::to_string(info_.frames) + " frames");
    values_.resize(static_cast<size_t>(got) * static_cast<size_t>(info_.channels));
    for (double& value : values_) {
        if (std::isfinite(value)) continue;
        value = 0;
        ++notFinite_;
    }
    return values_;
}

Writer::Writer(const std::filesystem::path& path, const std::filesystem::path& sourcePath,
               const Reader& source, int rate, sf_count_t frames)
    : path_(path) {
    std::error_code ignored;
    if (std::filesystem::equivalent(path, sourcePath, ignored))
        throw failure(path, "is the file to be read; write to another");
    const int container = containerFor(path);
    if (container == 0) throw failure(path, "cannot be written: its extension is that of no known format");
    info_.samplerate = rate;
    info_.channels = source.info().channels;
    info_.format = closestFormat(container, codingFor(path, source.info()), info_.channels, rate);
    if (info_.format == 0)
        throw failure(path, "cannot be written: the format does not take " + std::to_string(info_.channels) +
                                " channels of " + std::to_string(rate) + " samples a second");
    const double bytes = static_cast<double>(frames) * info_.channels * sampleBytes(info_.format);
    if (has32BitSizes(info_.format) && bytes > 0xffff0000)
        throw failure(path, "cannot be written: the format ends at 4 GB (w64, rf64 and caf do not)");

    const bool existed = std::filesystem::exists(path, ignored);
    file_.reset(sf_open(path.c_str(), SFM_WRITE, &info_));
    if (!file_) {
        const std::string reason = sf_strerror(nullptr);
        if (!existed) std::filesystem::remove(path, ignored);
        throw failure(path, "cannot be written: " + reason);
    }
    for (int kind = SF_STR_FIRST; kind <= SF_STR_LAST; ++kind)
        if (const char* const text = sf_get_string(source.file(), kind))
            sf_set_string(file_.get(), kind, text);
}

Writer::~Writer() {
    if (complete_) return;
    file_.reset();
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path_, ignored)) std::filesystem::remove(path_, ignored);
}

void Writer::write(const std::vector<double>& interleaved) {
    const auto count = static_cast<sf_count_t>(interleaved.size());
    if (count == 0) return;
    const int bits = integerBits(info_.format);
    bool written;
    if (bits == 0) {
        written = sf_write_double(file_.get(), interleaved.data(), count) == count;
    } else {
        const double full = std::ldexp(1, bits - 1);
        scaled_.resize(interleaved.size());
        for (size_t i = 0; i < scaled_.size(); ++i) {
            const double value = interleaved[i] * full;
            clipped_ += value >= full - 0.5 || value < -full - 0.5;
            scaled_[i] = std::clamp(value, -full, full - 1);
        }
        integers_.resize(interleaved.size());
        check(zppsConvert_64f32s_Sfs(scaled_.data(), integers_.data(), static_cast<int>(count), zppRoundNear,
                                     0),
              "Rounding");
        // sf_write_int takes the upper bits.
        check(zppsLShiftC_32s_I(32 - bits, integers_.data(), static_cast<int>(count)), "Rounding");
        written = sf_write_int(file_.get(), integers_.data(), count) == count;
    }
    if (!written) throw failure(path_, std::string("cannot be written in full: ") + sf_strerror(file_.get()));
}

void Writer::close() {
    sf_write_sync(file_.get());
    const bool failed = sf_error(file_.get()) != SF_ERR_NO_ERROR;
    if (sf_close(file_.release()) != 0 || failed) throw failure(path_, "cannot be written in full");
    complete_ = true;
}

}  // namespace examples::resample
