// speech-band: puts a recording through the sample rate and the band of a telephone and shows what is left of
// it.
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>

#include "common/check.h"
#include "common/fir_design.h"
#include "common/progress.h"
#include "common/resampler.h"
#include "companding.h"
#include "plot.h"
#include "recording.h"
#include "spectrogram.h"

namespace examples::speech {
namespace {

namespace fs = std::filesystem;

constexpr Band kTelephone = {300, 3400};
constexpr int kTelephoneRate = 8000;
constexpr int kTaps = 43;
constexpr double kAttenuationDb = 50;
constexpr size_t kBlock = 8192;

constexpr char kUsage[] =
    "usage: speech-band [--output DIRECTORY] [RECORDING...]\n"
    "\n"
    "Takes recordings (WAV, FLAC, OGG, ...; several are joined) to the 8000 samples a second and the band\n"
    "of 300 to 3400 Hz of a telephone, and back to their own rate.\n"
    "Prints levels, speed, and the noise that A-law and mu-law (G.711) would add to the recordings.\n"
    "Writes speech-band.wav, the filtered recording, and speech-band.png, its spectrogram before and after,\n"
    "into DIRECTORY (default: the current one). Without a recording it takes the voice of\n"
    "Debian's alsa-utils.\n";

struct Options {
    fs::path output = ".";
    std::vector<fs::path> recordings;
};

// "Front left", "front centre", "front right": few enough words to tell them apart in the picture.
std::vector<fs::path> spokenRecordings() {
    const fs::path directory = "/usr/share/sounds/alsa";
    return {directory / "Front_Left.wav", directory / "Front_Center.wav", directory / "Front_Right.wav"};
}

// The samples at another rate, converted block by block, as a program would that receives the signal bit by
// bit.
std::vector<double> resampled(const std::vector<double>& samples, int from, int to,
                              const std::function<void(double)>& progress) {
    Resampler resampler(from, to, 1);
    std::vector<double> result;
    const auto append = [&](const std::vector<double>& part) {
        result.insert(result.end(), part.begin(), part.end());
        return !part.empty();
    };
    for (size_t done = 0; done < samples.size(); done += resampler.blockFrames()) {
        append(resampler.convert(samples.data() + done,
                                 std::min(resampler.blockFrames(), samples.size() - done)));
        progress(static_cast<double>(done) / static_cast<double>(samples.size()));
    }
    while (append(resampler.finish())) continue;
    return result;
}

// What a telephone lets through, at its own rate.
std::vector<double> bandOf(std::vector<double> samples) {
    const std::vector<double> taps = designBandPass(kTaps, kTelephone.low / kTelephoneRate,
                                                    kTelephone.high / kTelephoneRate, kAttenuationDb);
    ZppsFIRState* created = nullptr;
    check(zppsFIRInitAlloc_64f(&created, taps.data(), kTaps, nullptr), "Preparing the filter");
    const Owned<ZppsFIRState, zppsFIRFree_64f> state(created);
    // The filter delays by half its length: so much silence follows, and so much of the result is left out.
    constexpr ptrdiff_t delay = (kTaps - 1) / 2;
    samples.insert(samples.end(), delay, 0.0);
    for (size_t done = 0; done < samples.size(); done += kBlock) {
        const size_t count = std::min(kBlock, samples.size() - done);
        check(zppsFIR_64f_I(samples.data() + done, static_cast<int>(count), state.get()), "Filtering");
    }
    samples.erase(samples.begin(), samples.begin() + delay);
    return samples;
}

// To the telephone's rate and back.
Recording filtered(const Recording& recording, ProgressBar& progress) {
    const int rate = recording.sampleRate;
    const auto part = [&](double begin) {
        return [&progress, begin](double done) { progress.show("Filtering", begin + done / 2); };
    };
    Recording result = {rate, resampled(bandOf(resampled(recording.samples, rate, kTelephoneRate, part(0))),
                                        kTelephoneRate, rate, part(0.5))};
    // Twice rounded to whole samples the length may differ by some.
    result.samples.resize(recording.samples.size());
    return result;
}

// Processor time: on a busy machine it is the program's own.
class Stopwatch {
  public:
    double seconds() const { return static_cast<double>(std::clock() - start_) / CLOCKS_PER_SEC; }

  private:
    std::clock_t start_ = std::clock();
};

// "2.53 ms, 1755 times real time"
std::string speed(double taken, double length) {
    char text[64];
    const int end = std::snprintf(text, sizeof text, "%.2f ms", 1e3 * taken);
    if (taken > 0)
        std::snprintf(text + end, sizeof text - static_cast<size_t>(end), ", %.0f times real time",
                      length / taken);
    return text;
}

std::string level(double power) {
    if (power < 1e-20) return "silent";
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", 10 * std::log10(power));
    return text;
}

// Nothing has a ratio to silence.
std::string ratio(double decibels) {
    if (!std::isfinite(decibels)) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", decibels);
    return text;
}

void printTable(const Recording& recording, const Spectrogram& before, const Spectrogram& after,
                const SignalToNoise& companded, double filtering, double analysing) {
    const double seconds = recording.seconds();
    std::printf("samples              %zu (%d a second)\n", recording.samples.size(), recording.sampleRate);
    std::printf("length               %.2f s\n", seconds);
    std::printf("to 8 kHz and back in %s\n", speed(filtering, seconds).c_str());
    std::printf("spectra in           %s\n", speed(analysing, seconds).c_str());
    std::printf("column bound         %s\n\n", zppsGetLibVersion()->targetCpu);
    std::printf("level, dB (0: full-scale sine)   before    after\n");
    std::printf("inside  %.0f-%.0f Hz          %12s %8s\n", kTelephone.low, kTelephone.high,
                level(before.inside).c_str(), level(after.inside).c_str());
    std::printf("outside %.0f-%.0f Hz          %12s %8s\n", kTelephone.low, kTelephone.high,
                level(before.outside).c_str(), level(after.outside).c_str());
    std::printf("\nsignal to noise, dB               A-law   mu-law\n");
    std::printf("G.711 and back         %16s %8s\n", ratio(companded.aLaw).c_str(),
                ratio(companded.muLaw).c_str());
}

void run(const Options& options) {
    const Recording recording = readRecordings(options.recordings);
    if (recording.sampleRate <= 2 * kTelephone.high)
        throw std::runtime_error(
            "A recording of " + std::to_string(recording.sampleRate) +
            " samples a second cannot hold the band up to 3400 Hz: it takes more than 6800");
    std::error_code error;
    fs::create_directories(options.output, error);
    if (error)
        throw std::runtime_error(options.output.string() +
                                 ": is no directory to write to: " + error.message());

    Recording result;
    Spectrogram before, after;
    double filtering = 0, analysing = 0;
    {
        ProgressBar progress(recording.seconds() > 5 && isatty(STDERR_FILENO));
        Stopwatch watch;
        result = filtered(recording, progress);
        filtering = watch.seconds();

        watch = {};
        before = analyse(recording, kTelephone, kPanelWidth,
                         [&](double part) { progress.show("Spectra", part / 2); });
        after = analyse(result, kTelephone, kPanelWidth,
                        [&](double part) { progress.show("Spectra", (1 + part) / 2); });
        analysing = watch.seconds();
    }
    writeRecording(options.output / "speech-band.wav", result);
    drawPicture({before, after, recording.seconds(), recording.sampleRate, kTelephone, kTelephoneRate},
                options.output / "speech-band.png");
    printTable(recording, before, after, compandingNoise(recording), filtering, analysing);
    std::printf("\nWritten: %s, %s\n", (options.output / "speech-band.wav").c_str(),
                (options.output / "speech-band.png").c_str());
}

// False for arguments that make no sense.
bool parse(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--output") == 0) {
            if (++i == argc) return false;
            options.output = argv[i];
        } else if (argv[i][0] == '-') {
            return false;
        } else {
            options.recordings.emplace_back(argv[i]);
        }
    }
    if (options.recordings.empty()) options.recordings = spokenRecordings();
    return true;
}

}  // namespace
}  // namespace examples::speech

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0)
        return std::fputs(examples::speech::kUsage, stdout) < 0;
    examples::speech::Options options;
    if (!examples::speech::parse(argc, argv, options)) return std::fputs(examples::speech::kUsage, stderr), 2;
    try {
        examples::speech::run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "speech-band: %s\n", error.what());
        return 1;
    }
    return 0;
}
