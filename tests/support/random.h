// Random data from one printed seed: ZPP_SEED in the environment replays a run. The sequences are made here,
// so that they are the same with every standard library.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "zpp/types.h"

namespace zpp::test {

std::uint64_t seed();

// SplitMix64 (Steele, Lea, Flood 2014).
class Random {
  public:
    explicit Random(std::uint64_t stream = 0) : state_(seed() + stream * 0x9E3779B97F4A7C15u) {}

    std::uint64_t bits() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        return z ^ z >> 31;
    }
    // In [0, n).
    std::uint64_t below(std::uint64_t n) { return bits() % n; }
    // In [low, high).
    double uniform(double low = -1, double high = 1) {
        return low + (high - low) * (static_cast<double>(bits() >> 11) * 0x1p-53);
    }

    std::vector<double> reals(std::size_t n, double low = -1, double high = 1) {
        std::vector<double> values(n);
        for (double& x : values) x = uniform(low, high);
        return values;
    }
    // Any bit patterns.
    template <class T>
    std::vector<T> patterns(std::size_t n) {
        std::vector<T> values(n);
        auto* bytes = reinterpret_cast<unsigned char*>(values.data());
        for (std::size_t i = 0; i < n * sizeof(T); ++i) bytes[i] = static_cast<unsigned char>(bits());
        return values;
    }

  private:
    std::uint64_t state_;
};

}  // namespace zpp::test
