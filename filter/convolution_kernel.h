// Convolution, the one operation behind zppsConv, zppsAutoCorr and zppsCrossCorr:
//     y[n] = sum over j of a[j] * b[n - j],   a and b zero outside their vectors,
// for a range of n. A correlation is one with its first operand in reverse order and conjugated.
#pragma once

#include "core/move.h"
#include "filter/exports.h"
#include "filter/fir_kernel.h"

namespace zpp::ZPP_ISA {

// A vector as an operand: elements of type S as T, in either order, conjugated or not.
template <class T, class S>
struct Operand {
    const S* p;
    int64_t len;
    bool reversed = false;
    bool conjugated = false;

    bool isPlain() const { return std::is_same_v<T, S> && !reversed && !conjugated; }

    // The elements from begin to end alone.
    Operand part(int64_t begin, int64_t end) const {
        return {reversed ? p + (len - end) : p + begin, end - begin, reversed, conjugated};
    }

    // `count` elements from `begin` on, all of which are in the vector.
    void read(int64_t begin, int64_t count, T* dst) const {
        const S* src = part(begin, begin + count).p;
        if (isPlain())
            memcpy(dst, src, static_cast<size_t>(count) * sizeof(T));
        else if (reversed)
            conjugated ? copy<true, true>(src, count, dst) : copy<true, false>(src, count, dst);
        else
            conjugated ? copy<false, true>(src, count, dst) : copy<false, false>(src, count, dst);
    }

    // The same with zeros outside the vector.
    void readPadded(int64_t begin, int64_t count, T* dst) const {
        const int64_t end = begin + count;
        const int64_t first = begin < 0 ? (end < 0 ? end : 0) : begin, last = end > len ? len : end;
        if (first >= last) return zeroElements(dst, static_cast<size_t>(count));
        zeroElements(dst, static_cast<size_t>(first - begin));
        read(first, last - first, dst + (first - begin));
        zeroElements(dst + (last - begin), static_cast<size_t>(end - last));
    }

  private:
    template <bool kReversed, bool kConjugated>
    static void copy(const S* src, int64_t count, T* dst) {
        const size_t len = static_cast<size_t>(count);
        forEachStep<kStep<T>>(
            len, dst, sizeof(T),
            [=](auto lanes, size_t i) ZPP_INLINE_LAMBDA {
                constexpr int n = decltype(lanes)::value;
                const S* p = kReversed ? src + (len - i - n) : src + i;
                if constexpr (std::is_same_v<T, Zpp64fc>) {
                    const auto v = loadPairs<n>(&p->re);
                    const auto w = kReversed ? reverseLanes(v) : v;
                    return kConjugated ? conjugate(w) : w;
                } else {
                    const auto v = loadAsDoubles<n>(p);
                    return kReversed ? reverseLanes(v) : v;
                }
            },
            [=](auto, size_t i, auto v) ZPP_INLINE_LAMBDA { storeElements(dst + i, v); });
    }
};

// Whether no element is infinite or a NaN.
template <class T>
inline bool allFinite(const T* p, size_t len) {
    constexpr size_t n = kLanes<double>;
    const auto* x = reinterpret_cast<const double*>(p);
    len *= sizeof(T) / sizeof(double);
    Vec<double> zeros{};
    size_t i = 0;
    for (; i + n <= len; i += n) zeros = zeros + load<Vec<double>>(x + i) * 0.0;
    double zero = 0;
    for (; i < len; ++i) zero = zero + x[i] * 0.0;
    return !any(zeros != zeros) && !(zero != zero);
}

// Direct convolution, by parts of a and blocks of outputs that fit the first-level cache. Where a block's
// windows go beyond an end of b they are filled up with zeros, and there the blocks are short, to waste few
// products; an element of a that is not finite would make NaNs of these, and gets windows of their own
// lengths.
//
// The sum of a part is within 40 + kDirectPart / 32 + 1 roundings (fir.h), the parts are added in turn.
template <class T>
class DirectConvolution {
  public:
    static constexpr int64_t kDirectPart = 512, kBlock = 512, kEdgeBlock = 32;

    // y[from] ... y[from + count - 1].
    template <class S>
    void run(const Operand<T, S>& a, const Operand<T, S>& b, int64_t from, int64_t count, T* dst) {
        for (int64_t begin = 0; begin < a.len; begin += kDirectPart) {
            takePart(a, begin);
            for (int64_t done = 0, n; done < count; done += n) {
                const int64_t place = from + done - begin;
                n = blockAt(place, count - done, b.len);
                takeBlock(b, place, n, dst + done, begin > 0);
            }
        }
    }

  private:
    // The part's elements, last one first: so they meet the windows.
    template <class S>
    void takePart(const Operand<T, S>& a, int64_t begin) {
        len_ = a.len - begin < kDirectPart ? a.len - begin : kDirectPart;
        Operand<T, S> mirrored = a.part(begin, begin + len_);
        mirrored.reversed = !mirrored.reversed;
        mirrored.read(0, len_, part_);
        edge_ = allFinite(part_, static_cast<size_t>(len_)) ? kEdgeBlock : 1;
    }

    // How many of `count` outputs of the part to take together, from the place on.
    int64_t blockAt(int64_t place, int64_t count, int64_t otherLen) const {
        const int64_t inside = otherLen - place;
        int64_t n = kBlock;
        if (place < len_ - 1)
            n = edge_;
        else if (inside < n)
            n = inside > 0 ? inside : edge_;
        return n < count ? n : count;
    }

    template <class S>
    void takeBlock(const Operand<T, S>& b, int64_t place, int64_t count, T* dst, bool add) {
        // The elements of the part that meet b in any of the outputs.
        const int64_t low = place >= b.len ? place - (b.len - 1) : 0;
        const int64_t high = place + count < len_ ? place + count - 1 : len_ - 1;
        if (low > high) {
            if (!add) zeroElements(dst, static_cast<size_t>(count));
            return;
        }
        const int64_t begin = place - high, size = count - 1 + high - low + 1;
        const T* window = window_;
        if (b.isPlain() && begin >= 0 && begin + size <= b.len)
            window = reinterpret_cast<const T*>(b.p + begin);
        else
            b.readPadded(begin, size, window_);
        T* out = add ? sums_ : dst;
        filterWindows(TapRow<T, false>{part_ + (len_ - 1 - high)}, static_cast<size_t>(high - low + 1),
                      window, out, static_cast<size_t>(count));
        if (add)
            map(
                dst, static_cast<size_t>(count), [](auto x, auto y) { return x + y; }, dst, sums_);
    }

    int64_t len_, edge_;
    T part_[kDirectPart];
    T window_[kDirectPart + kBlock];
    T sums_[kBlock];
};

}  // namespace zpp::ZPP_ISA
