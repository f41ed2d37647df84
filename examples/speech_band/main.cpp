// speech-band: puts a recording through the band of a telephone and shows what is left of it.
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "check.h"
#include "companding.h"
#include "fir_design.h"
#include "plot.h"
#include "progress.h"
#include "recording.h"
#include "spectrogram.h"

namespace speech {
namespace {

namespace fs = std::filesystem;

constexpr Band kTelephone = {300, 3400};
constexpr int kTaps = 255;
constexpr double kAttenuationDb = 50;
constexpr size_t kBlock = 8192;

constexpr char kUsage[] =
    "usage: speech-band [--output DIRECTORY] [RECORDING...]\n"
    "\n"
    "Filters recordings (WAV, FLAC, OGG, ...; several are joined) to the telephone band of 300 to 3400 Hz.\n"
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

// Filters block by block, as a program would that receives the signal bit by bit.
Recording filtered(const Recording& recording, ProgressBar& progress) {
    const double rate = recording.sampleRate;
    const std::vector<double> taps =
        designBandPass(kTaps, kTelephone.low / rate, kTelephone.high / rate, kAttenuationDb);
    ZppsFIRState* created = nullptr;
    check(zppsFIRInitAlloc_64f(&created, taps.data(), kTaps, nullptr), "Preparing the filter");
    const Owned<ZppsFIRState, zppsFIRFree_64f> state(created);

    // The filter delays by half its length: so much silence follows, and so much of the result is left out.
    constexpr size_t delay = (kTaps - 1) / 2;
    const std::vector<double> silence(delay);
    Recording result = {recording.sampleRate, std::vector<double>(recording.samples.size() + delay)};
    double* destination = result.samples.data();
    for (const std::vector<double>* source : {&recording.samples, &silence}) {
        for (size_t done = 0; done < source->size(); done += kBlock) {
            const size_t count = std::min(kBlock, source->size() - done);
            check(zppsFIR_64f(source->data() + done, destination, static_cast<int>(count), state.get()),
                  "Filtering");
            destination += count;
            progress.show("Filtering", static_cast<double>(destination - result.samples.data()) /
                                           static_cast<double>(result.samples.size()));
        }
    }
    result.samples.erase(result.samples.begin(), result.samples.begin() + delay);
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
    std::printf("filtered in          %s\n", speed(filtering, seconds).c_str());
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
    drawPicture({before, after, recording.seconds(), recording.sampleRate, kTelephone},
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
}  // namespace speech

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) return std::fputs(speech::kUsage, stdout) < 0;
    speech::Options options;
    if (!speech::parse(argc, argv, options)) return std::fputs(speech::kUsage, stderr), 2;
    try {
        speech::run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "speech-band: %s\n", error.what());
        return 1;
    }
    return 0;
}
