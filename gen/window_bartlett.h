// The triangle, of weights that are sums of equal steps.
#pragma once

#include "gen/window.h"

namespace zpp::ZPP_ISA {

// The least power of two above a, or of two normal numbers the smaller one.
inline double powerAbove(double a) {
    return bitCast<double>((bitCast<uint64_t>(a) & 0x7FF0000000000000) + 0x0010000000000000);
}

// w + step, w + step + step, ...: each sum is rounded. Those that follow a first one up to the next power of
// two are a constant apart: all are multiples of the same unit, and of a step in the middle of two of them
// the first sum is even, as then are all others. So their differences can be added without an error, to a
// register at once; of wide registers what is beyond the power of two is overwritten.
class BartlettWindow {
  public:
    static constexpr size_t kBlock = 512, kGroup = 4;

    explicit BartlettWindow(int len) : step_(quotient(2.0, len - 1)) {}

    static bool hasGroups() { return true; }
    static bool endsWeighNothing() { return false; }
    static bool zeroEnds() { return true; }

    ZPP_INLINE auto weights(size_t first) const {
        return [p = weights_ + first % kBlock](size_t k)
                   ZPP_INLINE_LAMBDA { return load<Vec<double>>(p + k); };
    }

    [[gnu::noinline]] void prepare(size_t, size_t count) {
        using V = Vec<double>;
        constexpr size_t lanes = kLanes<double>;
        double w = weight_;
        for (size_t i = 0; i < count;) {
            const double limit = powerAbove(w);
            weights_[i++] = w;
            w = stored(w + step_);
            const double difference = stored(w + step_) - w, stride = lanes * difference;
            const V ahead = countedFrom<V>(0) * difference;
            for (; i + lanes <= count && w + stride <= limit; i += lanes, w += stride)
                store(weights_ + i, ahead + w);
            if (lanes <= 4 || i >= count || w > limit) continue;  // a few sums are as fast
            const V rest = ahead + w;
            store(weights_ + i, rest);
            const size_t within =
                static_cast<size_t>(__builtin_ctzll(laneBits(rest > limit) | uint64_t{1} << lanes));
            i += within < count - i ? within : count - i;
            w = stored(weights_[i - 1] + step_);
        }
        weight_ = w;
    }

  private:
    const double step_;
    double weight_ = 0;
    alignas(64) double weights_[kBlock + kLanes<double>];
};

}  // namespace zpp::ZPP_ISA
