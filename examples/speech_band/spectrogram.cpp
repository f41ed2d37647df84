#include "spectrogram.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "common/check.h"

namespace examples::speech {
namespace {

constexpr double kWindowSeconds = 0.04;

// Within what makes sense whatever sample rate a file claims.
int orderFor(int sampleRate) {
    return std::clamp(static_cast<int>(std::lround(std::log2(kWindowSeconds * sampleRate))), 4, 16);
}

// Power spectra of windowed pieces of a signal.
class Analyser {
  public:
    explicit Analyser(int order) : length_(1 << order), piece_(size_t{1} << order) {
        ZppsFFTSpec* spec = nullptr;
        check(zppsFFTInitAlloc_R_64f(&spec, order, 8, 0), "Preparing the transform");
        spec_.reset(spec);
        int size = 0;
        check(zppsFFTGetBufSize_R_64f(spec, &size), "Preparing the transform");
        buffer_.resize(static_cast<size_t>(size));
        spectrum_.resize(piece_.size() + 2);
        power_.resize(piece_.size() / 2 + 1);
    }

    int length() const { return length_; }
    int bins() const { return length_ / 2 + 1; }

    // The power in each bin of the piece around `centre`; beyond its ends the signal is silent. A full-scale
    // sine has power 1 in all, spread over the few bins that the window is wide.
    const std::vector<double>& at(const std::vector<double>& samples, ptrdiff_t centre) {
        const ptrdiff_t begin = centre - length_ / 2;
        const ptrdiff_t from = std::max<ptrdiff_t>(begin, 0);
        const ptrdiff_t to = std::min<ptrdiff_t>(begin + length_, static_cast<ptrdiff_t>(samples.size()));
        std::fill(piece_.begin(), piece_.end(), 0.0);
        if (from < to)
            std::copy(samples.begin() + from, samples.begin() + to, piece_.begin() + (from - begin));

        check(zppsWinHann_64f_I(piece_.data(), length_), "Windowing");
        check(zppsFFTFwd_RToCCS_64f(piece_.data(), spectrum_.data(), spec_.get(),
                                    buffer_.empty() ? nullptr : buffer_.data()),
              "Transforming");

        // Sum of the window's squares: 3/8 of one less than its length. Every bin but the first and the last
        // stands for two.
        const double scale = 4 / (0.375 * (length_ - 1) * length_);
        for (size_t bin = 0; bin < power_.size(); ++bin) {
            const double re = spectrum_[2 * bin], im = spectrum_[2 * bin + 1];
            power_[bin] = scale * (re * re + im * im);
        }
        power_.front() /= 2;
        power_.back() /= 2;
        return power_;
    }

  private:
    int length_;
    std::vector<double> piece_, spectrum_, power_;
    Owned<ZppsFFTSpec, zppsFFTFree_R_64f> spec_;
    std::vector<Zpp8u> buffer_;
};

// Powers as decibels, -300 of silence.
void toLevels(std::vector<double>& powers) {
    const int count = static_cast<int>(powers.size());
    check(zppsThreshold_LT_64f_I(powers.data(), count, 1e-30), "Measuring levels");
    check(zppsLn_64f_I(powers.data(), count), "Measuring levels");
    check(zppsMulC_64f_I(10 / std::numbers::ln10, powers.data(), count), "Measuring levels");
}

}  // namespace

Spectrogram analyse(const Recording& recording, Band band, int maxColumns,
                    const std::function<void(double)>& progress) {
    Analyser analyser(orderFor(recording.sampleRate));
    const ptrdiff_t hop = analyser.length() / 4;
    const auto frames = static_cast<ptrdiff_t>(recording.samples.size()) / hop + 1;

    Spectrogram result;
    result.bins = analyser.bins();
    result.columns = static_cast<int>(std::min<ptrdiff_t>(frames, maxColumns));
    const auto bins = static_cast<size_t>(result.bins);
    result.levels.resize(bins * static_cast<size_t>(result.columns));
    std::vector<int> framesIn(static_cast<size_t>(result.columns));
    const auto bandBegin =
        static_cast<size_t>(std::ceil(band.low * analyser.length() / recording.sampleRate));
    const auto bandEnd =
        static_cast<size_t>(std::floor(band.high * analyser.length() / recording.sampleRate)) + 1;

    // Every sample lies under four windows: beside the frames to be drawn, whose centres lie within the
    // recording, those count for the mean power that reach into it from before and behind.
    for (ptrdiff_t frame = -1; frame < frames + 2; ++frame) {
        const std::vector<double>& power = analyser.at(recording.samples, frame * hop);
        const auto sum = [&](size_t begin, size_t end) {
            return std::accumulate(power.data() + begin, power.data() + end, 0.0);
        };
        result.inside += sum(bandBegin, bandEnd);
        result.outside += sum(0, bandBegin) + sum(bandEnd, bins);
        if (frame < 0 || frame >= frames) continue;
        const auto column = static_cast<size_t>(frame * result.columns / frames);
        ++framesIn[column];
        for (size_t bin = 0; bin < bins; ++bin) result.levels[column * bins + bin] += power[bin];
        progress(static_cast<double>(frame + 1) / static_cast<double>(frames));
    }
    for (size_t i = 0; i < result.levels.size(); ++i) result.levels[i] /= framesIn[i / bins];
    toLevels(result.levels);

    const double framesOfSignal = static_cast<double>(recording.samples.size()) / static_cast<double>(hop);
    result.inside /= framesOfSignal;
    result.outside /= framesOfSignal;
    return result;
}

}  // namespace examples::speech
