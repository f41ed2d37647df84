// Medians of few samples: each lane of a register is the window of one output.
//
// Neighbouring windows share what is sorted: a pass sorts every two or three samples that follow each other,
// and a window takes what begins at its samples, in order already.
#pragma once

#include "filter/median_keys.h"

namespace zpp::ZPP_ISA {

template <class V>
ZPP_INLINE V medianOf(V a, V b, V c) {
    return max(min(a, b), min(max(a, b), c));
}
// The same where a <= b is known.
template <class V>
ZPP_INLINE V between(V a, V b, V c) {
    return max(a, min(b, c));
}

inline constexpr int kMaxNetworkRadius = 4;
inline constexpr size_t kNetworkBlock = 512;

// Windows of 2 kRadius + 1 keys, up to kNetworkBlock of them. As many more keys as a register has lanes are
// read behind the last one, and results written.
template <class V, int kRadius>
class MedianNetwork {
    using Key = Lane<V>;
    static constexpr size_t kLanesOfV = sizeof(V) / sizeof(Key);
    static constexpr size_t kRun = kRadius <= 2 ? 2 : 3;  // sorted together

  public:
    void run(const Key* x, Key* y, size_t count) {
        if constexpr (kRadius > 1) sortRuns(x, count + 2 * kRadius + 1 - kRun);
        for (size_t i = 0; i < count; i += kLanesOfV) store(y + i, median(x + i, i));
    }

  private:
    void sortRuns(const Key* x, size_t count) {
        for (size_t i = 0; i < count; i += kLanesOfV) {
            V a = load<V>(x + i), b = load<V>(x + i + 1);
            putInOrder(a, b);
            if constexpr (kRun == 3) {
                V c = load<V>(x + i + 2);
                putInOrder(b, c);
                putInOrder(a, b);
                store(sorted_[2] + i, c);
            }
            store(sorted_[0] + i, a);
            store(sorted_[1] + i, b);
        }
    }

    ZPP_INLINE V run(size_t rank, size_t i) const { return load<V>(sorted_[rank] + i); }

    ZPP_INLINE V median(const Key* x, size_t i) const {
        if constexpr (kRadius == 1)
            return medianOf(load<V>(x), load<V>(x + 1), load<V>(x + 2));
        else if constexpr (kRadius == 2)
            return medianOf(max(run(0, i), run(0, i + 2)), min(run(1, i), run(1, i + 2)), load<V>(x + 4));
        else if constexpr (kRadius == 3)
            return ofTwoRunsAndOne(i, load<V>(x + 6));
        else
            return medianOf(max(max(run(0, i), run(0, i + 3)), run(0, i + 6)),
                            medianOf(run(1, i), run(1, i + 3), run(1, i + 6)),
                            min(min(run(2, i), run(2, i + 3)), run(2, i + 6)));
    }

    // The median is the third or the fourth of the six in both runs, or the seventh key between these two.
    ZPP_INLINE V ofTwoRunsAndOne(size_t i, V last) const {
        const V a0 = run(0, i), a1 = run(1, i), a2 = run(2, i);
        const V b0 = run(0, i + 3), b1 = run(1, i + 3), b2 = run(2, i + 3);
        const V third = min(min(a2, b2), min(max(a1, b0), max(a0, b1)));
        const V fourth = max(max(a0, b0), max(min(a1, b2), min(a2, b1)));
        return between(third, fourth, last);
    }

    Key sorted_[kRun][kNetworkBlock + 2 * kMaxNetworkRadius + 2 * kLanesOfV];
};

}  // namespace zpp::ZPP_ISA
