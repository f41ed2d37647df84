#include "common/resampler.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>

#include "common/fir_design.h"

namespace examples {
namespace {

// The formula for the number of taps is right to about 1 dB.
constexpr double kAttenuationDb = 102;
constexpr double kPassBand = 0.9;  // of half the lower rate
constexpr double kOneStageTaps = 1 << 17, kMostTaps = 1 << 24;
constexpr size_t kBlockValues = 1 << 17;

std::vector<RateStage::Plan> planStages(int64_t in, int64_t out) {
    if (in == out) return {};
    const double nyquist = static_cast<double>(std::min(in, out)) / 2;
    const auto ratio = [](int64_t from, int64_t to, double pass, double stop) {
        const int64_t common = std::gcd(from, to);
        return RateStage::Plan{to / common, from / common, pass, stop};
    };
    const RateStage::Plan whole = ratio(in, out, kPassBand * nyquist, nyquist);
    if (whole.tapCount(static_cast<double>(in)) <= kOneStageTaps) return {whole};
    // At twice the lower rate the band is a half of what the rate can hold: what falls onto it from another
    // is three times as high.
    if (in < out) return {ratio(1, 2, whole.pass, whole.stop), ratio(2 * in, out, nyquist, 3 * nyquist)};
    return {ratio(in, 2 * out, nyquist, 3 * nyquist), ratio(2, 1, whole.pass, whole.stop)};
}

// part * up / down to the nearest integer.
int64_t scaled(int64_t part, int64_t up, int64_t down) {
    return part / down * up + (2 * (part % down) * up + down) / (2 * down);
}

}  // namespace

double RateStage::Plan::tapCount(double rate) const {
    return tapsFor((stop - pass) / (rate * static_cast<double>(up)), kAttenuationDb);
}

RateStage::RateStage(const Plan& plan, double rate, int channels)
    : up_(static_cast<size_t>(plan.up)), down_(static_cast<size_t>(plan.down)) {
    const double highRate = rate * static_cast<double>(plan.up);
    const int tapCount = static_cast<int>(plan.tapCount(rate));
    std::vector<double> taps =
        designLowPass(tapCount, (plan.pass + plan.stop) / 2 / highRate, kAttenuationDb);
    // Of the high rate only every up-th sample is not zero.
    for (double& tap : taps) tap *= static_cast<double>(up_);
    const size_t delay = static_cast<size_t>(tapCount) / 2;
    ZppsFIRState* created = nullptr;
    check(zppsFIRMRInitAlloc_64f(&created, taps.data(), tapCount, static_cast<int>(up_), 0,
                                 static_cast<int>(down_), static_cast<int>(delay % down_), nullptr),
          "Preparing the filter");
    state_.reset(created);
    const size_t delayLine = (taps.size() + up_ - 1) / up_;
    channels_.assign(static_cast<size_t>(channels), {{}, std::vector<double>(delayLine), delay / down_});
}

void RateStage::convert(size_t channel, const std::vector<double>& source, std::vector<double>& destination) {
    auto& [waiting, delayLine, toDrop] = channels_[channel];
    waiting.insert(waiting.end(), source.begin(), source.end());
    const size_t blocks = waiting.size() / down_;
    destination.resize(blocks * up_);
    if (blocks == 0) return;

    check(zppsFIRSetDlyLine_64f(state_.get(), delayLine.data()), "Filtering");
    check(zppsFIR_64f(waiting.data(), destination.data(), static_cast<int>(blocks), state_.get()),
          "Filtering");
    check(zppsFIRGetDlyLine_64f(state_.get(), delayLine.data()), "Filtering");
    waiting.erase(waiting.begin(), waiting.begin() + static_cast<ptrdiff_t>(blocks * down_));
    const size_t dropped = std::min(toDrop, destination.size());
    destination.erase(destination.begin(), destination.begin() + static_cast<ptrdiff_t>(dropped));
    toDrop -= dropped;
}

Resampler::Resampler(int inRate, int outRate, int channels)
    : inRate_(inRate / std::gcd(inRate, outRate)),
      outRate_(outRate / std::gcd(inRate, outRate)),
      channels_(static_cast<size_t>(channels)) {
    double rate = inRate;
    for (const RateStage::Plan& plan : planStages(inRate, outRate)) {
        if (plan.tapCount(rate) > kMostTaps)
            throw std::runtime_error("From " + std::to_string(inRate) + " to " + std::to_string(outRate) +
                                     " samples a second is a ratio of " + std::to_string(outRate_) + " / " +
                                     std::to_string(inRate_) + ", whose filter would have more than " +
                                     std::to_string(static_cast<int>(kMostTaps)) + " taps");
        stages_.emplace_back(plan, rate, channels);
        rate = rate * static_cast<double>(plan.up) / static_cast<double>(plan.down);
    }
    const double growth = std::max(1.0, static_cast<double>(outRate) / inRate);
    blockFrames_ = std::max<size_t>(1, static_cast<size_t>(kBlockValues / growth) / channels_);
    silence_.resize(blockFrames_ * channels_);
}

void Resampler::run(const double* interleaved, size_t frames) {
    interleaved_.clear();
    for (size_t channel = 0; channel < channels_; ++channel) {
        source_.resize(frames);
        for (size_t i = 0; i < frames; ++i) source_[i] = interleaved[i * channels_ + channel];
        for (RateStage& stage : stages_) {
            stage.convert(channel, source_, destination_);
            source_.swap(destination_);
        }
        interleaved_.resize(source_.size() * channels_);
        for (size_t i = 0; i < source_.size(); ++i) interleaved_[i * channels_ + channel] = source_[i];
    }
    written_ += static_cast<int64_t>(source_.size());
}

const std::vector<double>& Resampler::convert(const double* interleaved, size_t frames) {
    read_ += static_cast<int64_t>(frames);
    run(interleaved, frames);
    return interleaved_;
}

// The filters are emptied by silence.
const std::vector<double>& Resampler::finish() {
    const int64_t wanted = scaled(read_, outRate_, inRate_);
    interleaved_.clear();
    while (interleaved_.empty() && written_ < wanted) run(silence_.data(), blockFrames_);
    if (written_ > wanted) {
        const auto excess = static_cast<size_t>(written_ - wanted) * channels_;
        interleaved_.resize(interleaved_.size() - std::min(excess, interleaved_.size()));
        written_ = wanted;
    }
    return interleaved_;
}

}  // namespace examples
