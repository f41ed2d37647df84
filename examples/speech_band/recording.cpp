#include "recording.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "common/check.h"

namespace examples::speech {
namespace {

constexpr int kBlockFrames = 4096;

using SoundFile = Owned<SNDFILE, sf_close>;

std::runtime_error failure(const std::filesystem::path& file, const std::string& reason) {
    return std::runtime_error(file.string() + ": " + reason);
}

// Appends the mean of the channels of each frame.
void appendMixed(const double* interleaved, sf_count_t frames, int channels, std::vector<double>& samples) {
    for (sf_count_t frame = 0; frame < frames; ++frame) {
        double sum = 0;
        for (int channel = 0; channel < channels; ++channel) sum += *interleaved++;
        samples.push_back(sum / channels);
    }
}

// Reads all frames as T and appends them, converted to full scale 1 by convert(source, destination, count).
template <class T, class Convert>
void readAs(sf_count_t (*readFrames)(SNDFILE*, T*, sf_count_t), SNDFILE* file, int channels, Convert convert,
            std::vector<double>& samples) {
    std::vector<T> raw(static_cast<size_t>(kBlockFrames * channels));
    std::vector<double> converted(raw.size());
    while (const sf_count_t frames = readFrames(file, raw.data(), kBlockFrames)) {
        convert(raw.data(), converted.data(), static_cast<int>(frames) * channels);
        appendMixed(converted.data(), frames, channels, samples);
    }
}

// A floating-point file may hold anything: what is not a number becomes silence, and what is far beyond full
// scale is cut, so that its power remains a number.
void copyFinite(const double* source, double* destination, int count) {
    constexpr double limit = 1e6;
    for (int i = 0; i < count; ++i)
        destination[i] = std::isnan(source[i]) ? 0 : std::clamp(source[i], -limit, limit);
}

// Each format in the type that holds it: 16 bits are the rule.
void readSamples(SNDFILE* file, const SF_INFO& info, std::vector<double>& samples) {
    switch (info.format & SF_FORMAT_SUBMASK) {
        case SF_FORMAT_FLOAT:
        case SF_FORMAT_DOUBLE:
            readAs<double>(sf_readf_double, file, info.channels, copyFinite, samples);
            break;
        case SF_FORMAT_PCM_24:
        case SF_FORMAT_PCM_32:
            readAs<int>(
                sf_readf_int, file, info.channels,
                [](const int* source, double* destination, int count) {
                    check(zppsConvert_32s64f_Sfs(source, destination, count, 31), "Converting");
                },
                samples);
            break;
        default:
            readAs<short>(
                sf_readf_short, file, info.channels,
                [](const short* source, double* destination, int count) {
                    check(zppsConvert_16s64f_Sfs(source, destination, count, 15), "Converting");
                },
                samples);
    }
}

void appendFile(const std::filesystem::path& path, Recording& recording) {
    SF_INFO info = {};
    const SoundFile file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file) throw failure(path, std::string("cannot be read: ") + sf_strerror(nullptr));
    if (recording.sampleRate == 0) recording.sampleRate = info.samplerate;
    if (info.samplerate != recording.sampleRate)
        throw failure(path, "has " + std::to_string(info.samplerate) +
                                " samples a second, but the one before " +
                                std::to_string(recording.sampleRate));
    const size_t before = recording.samples.size();
    readSamples(file.get(), info, recording.samples);
    if (sf_error(file.get()) != SF_ERR_NO_ERROR) throw failure(path, sf_strerror(file.get()));
    if (recording.samples.size() == before) throw failure(path, "holds no samples");
}

}  // namespace

Recording readRecordings(const std::vector<std::filesystem::path>& files) {
    Recording recording;
    for (const auto& file : files) appendFile(file, recording);
    return recording;
}

void writeRecording(const std::filesystem::path& path, const Recording& recording) {
    SF_INFO info = {};
    info.samplerate = recording.sampleRate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SoundFile file(sf_open(path.c_str(), SFM_WRITE, &info));
    if (!file) throw failure(path, std::string("cannot be written: ") + sf_strerror(nullptr));
    sf_command(file.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    const auto count = static_cast<sf_count_t>(recording.samples.size());
    const bool written = sf_write_double(file.get(), recording.samples.data(), count) == count;
    if (!written || sf_close(file.release()) != 0) throw failure(path, "cannot be written in full");
}

}  // namespace examples::speech
