// zpp-resample: converts a sound file to another sample rate.
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/progress.h"
#include "common/resampler.h"
#include "files.h"

namespace examples::resample {
namespace {

constexpr char kUsage[] =
    "usage: zpp-resample IN OUT RATE\n"
    "\n"
    "Converts the sound file IN to RATE samples a second and writes it to OUT. Any format that libsndfile\n"
    "knows can be read and, by its extension, written (wav, flac, ogg, opus, aiff, au, caf, w64, rf64, "
    "...);\n"
    "samples keep their coding where the format of OUT has it. The pass band, even to 0.001 dB, reaches to\n"
    "0.9 of half the lower rate; what would be aliased is 100 dB down. OUT is as long as IN and begins at "
    "the\n"
    "same time.\n";

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int) { interrupted = 1; }

// 0 for what is no positive number.
int parseRate(const char* text) {
    int rate = 0;
    const char* const end = text + std::strlen(text);
    const auto [parsed, error] = std::from_chars(text, end, rate);
    return parsed == end && error == std::errc() && rate > 0 ? rate : 0;
}

void report(int64_t count, const char* what) {
    if (count > 0) std::fprintf(stderr, "zpp-resample: %lld %s\n", static_cast<long long>(count), what);
}

void run(const char* in, const char* out, int rate) {
    Reader reader(in);
    const SF_INFO& info = reader.info();
    if (info.samplerate == rate)
        throw std::runtime_error(std::string(in) + ": has " + std::to_string(rate) +
                                 " samples a second already");
    Resampler resampler(info.samplerate, rate, info.channels);
    Writer writer(out, in, reader, rate,
                  std::llround(static_cast<double>(info.frames) * rate / info.samplerate));

    {
        ProgressBar progress(isatty(STDERR_FILENO));
        const auto channels = static_cast<size_t>(info.channels);
        double done = 0;
        while (true) {
            if (interrupted) throw std::runtime_error("interrupted");
            const std::vector<double>& values = reader.read(resampler.blockFrames());
            if (values.empty()) break;
            const size_t frames = values.size() / channels;
            writer.write(resampler.convert(values.data(), frames));
            done += static_cast<double>(frames);
            progress.show("Resampling", std::min(1.0, done / static_cast<double>(info.frames)));
        }
        while (true) {
            const std::vector<double>& values = resampler.finish();
            if (values.empty()) break;
            writer.write(values);
        }
        writer.close();
    }
    report(writer.clipped(), "values were beyond full scale and have been clipped");
    report(reader.notFinite(), "values were infinite or no numbers and have been read as 0");
}

}  // namespace
}  // namespace examples::resample

int main(int argc, char** argv) {
    using namespace examples::resample;
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) return std::fputs(kUsage, stdout) < 0;
    if (argc != 4) return std::fputs(kUsage, stderr), 2;
    const int rate = parseRate(argv[3]);
    if (rate == 0) {
        std::fprintf(stderr, "zpp-resample: %s: is no positive number of samples a second\n", argv[3]);
        return 2;
    }
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, interrupt);
    try {
        run(argv[1], argv[2], rate);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zpp-resample: %s\n", error.what());
        return 1;
    }
    return 0;
}
