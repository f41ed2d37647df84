// Another sample rate for a signal of any number of channels that comes bit by bit.
#pragma once

#include <zpp.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/check.h"

namespace examples {

// The rate times up / down, through a low-pass filter whose delay is removed.
class RateStage {
  public:
    // Pass band and stop band in Hz.
    struct Plan {
        int64_t up, down;
        double pass, stop;
        double tapCount(double rate) const;
    };
    RateStage(const Plan& plan, double rate, int channels);

    // Filters as many blocks of `down` samples as there are; the others wait for the next call. The channels
    // take turns with one state, of which only the delay line is their own: the taps may be many.
    void convert(size_t channel, const std::vector<double>& source, std::vector<double>& destination);

  private:
    struct Channel {
        std::vector<double> waiting, delayLine;
        size_t toDrop;  // outputs from before the signal
    };

    size_t up_, down_;
    Owned<ZppsFIRState, zppsFIRFree_64f> state_;
    std::vector<Channel> channels_;
};

// Keeps what is below 0.9 of half the lower rate within 0.001 dB, and lets nothing into the output, by more
// than 1e-5 of its amplitude (100 dB), that is above half the output's rate. Input and output begin at the
// same time.
//
// With the rates' ratio U / D in lowest terms one stage takes 128 max(U, D) taps. Where these would not fit
// into a cache, there are two: one by 2 / 1 (or 1 / 2) at the lower rate does the steep filtering, after (or
// before) which a tenth of the taps is enough for the ratio that is left. More than 2^24 taps are refused.
class Resampler {
  public:
    // Throws std::runtime_error for a ratio that takes too many taps.
    Resampler(int inRate, int outRate, int channels);

    // Frames to pass at once, for blocks of some 100,000 values on both sides.
    size_t blockFrames() const { return blockFrames_; }

    // Both return interleaved frames that have become ready, in memory that the next call reuses. After all
    // convert(), finish() is to be called until it returns none: in all there are then as many frames as
    // there were inputs, times the ratio, to the nearest.
    const std::vector<double>& convert(const double* interleaved, size_t frames);
    const std::vector<double>& finish();

  private:
    void run(const double* interleaved, size_t frames);

    int64_t inRate_, outRate_;  // in lowest terms
    size_t channels_, blockFrames_;
    std::vector<RateStage> stages_;
    int64_t read_ = 0, written_ = 0;  // frames
    std::vector<double> source_, destination_, interleaved_, silence_;
};

}  // namespace examples
