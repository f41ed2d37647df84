// Convolution through the FFT: blocks of outputs, parts of the first operand, one cyclic convolution for
// each of both.
#pragma once

#include "filter/convolution_kernel.h"
#include "filter/fir_state.h"

namespace zpp::ZPP_ISA {

// How a convolution is made. A transform of the length N = 2^order gives `block` outputs from `part` elements
// of the first operand: of its results those that nothing wraps around to. Where the transform is as long as
// the whole result, what wraps around is zero, or not asked for.
struct ConvolutionPlan {
    int order = 0;  // 0: direct
    int64_t block = 0, part = 0;
    bool whole = false;
    double cost = 0;  // in products of a direct convolution
};

template <class T>
inline constexpr int kMaxConvolutionOrder = std::is_same_v<T, Zpp64f> ? 30 : 29;

// The time of a transform of 2^order elements, in products of a direct convolution of the same type.
template <class T>
inline double transformCost(int order) {
    const double perStep = std::is_same_v<T, Zpp64f> ? 1.5 : 1.0;
    return static_cast<double>(int64_t{1} << order) * perStep * (order + 4);
}

// The products of a direct convolution of a and b, not shorter than a, in outputs 0 .. n-1.
inline double directCost(double a, double b, double n) {
    const double head = n < a ? n : a, tail = n > b ? n - b : 0;
    return a * n - a * head + head * head / 2 - tail * tail / 2;
}

// The best plan for outputs from .. to-1 of operands of lengths a <= b.
template <class T>
ConvolutionPlan planOf(int64_t a, int64_t b, int64_t from, int64_t to) {
    const int64_t count = to - from;
    ConvolutionPlan best;
    best.cost = directCost(static_cast<double>(a), static_cast<double>(b), static_cast<double>(to)) -
                directCost(static_cast<double>(a), static_cast<double>(b), static_cast<double>(from));
    const bool moreOutputs = a < count;
    const int64_t small = moreOutputs ? a : count, large = moreOutputs ? count : a;
    const int64_t all = to > a + b - 1 - from ? to : a + b - 1 - from;
    for (int order = 4; order <= kMaxConvolutionOrder<T>; ++order) {
        const int64_t n = int64_t{1} << order;
        const double once = transformCost<T>(order);
        const bool whole = n >= all;
        if (!whole && n < 2 * small) continue;
        const int64_t each = n - small + 1;
        const double times = whole ? 1 : static_cast<double>((large + each - 1) / each);
        const double cost = 4 * once + once * 2 * times;  // one operand's, and the tables
        if (cost < best.cost)
            best = {order, whole || !moreOutputs ? count : each, whole || moreOutputs ? a : each, whole,
                    cost};
        if (whole) break;
    }
    return best;
}

// The transform of a plan and its memory.
template <class T>
class ConvolutionFft {
    using F = std::conditional_t<std::is_same_v<T, Zpp64f>, Fir64f, Fir64fc>;

  public:
    explicit ConvolutionFft(const ConvolutionPlan& plan) : plan_(plan), len_(int64_t{1} << plan.order) {
        constexpr int kDivideInverse = 2;
        int bufSize = 0;
        if (F::initFft(&spec_, plan.order, kDivideInverse, 0) != zppStatusOk ||
            F::fftBufSize(spec_, &bufSize) != zppStatusOk)
            return;
        const auto layOut = [&](Areas& areas) {
            first_ = areas.take<T>(static_cast<uint64_t>(len_));
            second_ = areas.take<T>(static_cast<uint64_t>(len_));
            sum_ = areas.take<T>(static_cast<uint64_t>(len_));
            buffer_ = areas.take<Zpp8u>(static_cast<uint64_t>(bufSize));
        };
        Areas counted(kBlockAlignment);
        layOut(counted);
        memory_ = allocateAligned(counted.bytes());
        if (memory_ == nullptr) return;
        Areas areas(kBlockAlignment, memory_);
        layOut(areas);
    }
    ~ConvolutionFft() {
        if (memory_ != nullptr) freeAligned(memory_);
        if (spec_ != nullptr) F::freeFft(spec_);
    }
    ConvolutionFft(const ConvolutionFft&) = delete;
    ConvolutionFft& operator=(const ConvolutionFft&) = delete;

    bool allocated() const { return memory_ != nullptr; }

    template <class S>
    void run(const Operand<T, S>& a, const Operand<T, S>& b, int64_t from, int64_t count, T* dst) {
        const int64_t block = plan_.block, part = plan_.part;
        for (int64_t done = 0; done < count; done += block) {
            const int64_t n = count - done < block ? count - done : block;
            int64_t place = 0;
            for (int64_t begin = 0; begin < a.len; begin += part) {
                const int64_t partLen = a.len - begin < part ? a.len - begin : part;
                if (done == 0 || part < a.len) transformPadded(a.part(begin, begin + partLen), 0, first_);
                const int64_t start = plan_.whole ? 0 : from + done - begin - (part - 1);
                place = from + done - begin - start;
                transformPadded(b, start, second_);
                F::multiply(first_, second_, static_cast<int>(len_));
                if (begin > 0)
                    map(
                        second_, static_cast<size_t>(len_), [](auto x, auto y) { return x + y; }, second_,
                        sum_);
                T* t = second_;
                second_ = sum_;
                sum_ = t;
            }
            F::inverse(sum_, sum_, spec_, buffer_);
            memcpy(dst + done, sum_ + place, static_cast<size_t>(n) * sizeof(T));
        }
    }

  private:
    template <class S>
    void transformPadded(const Operand<T, S>& x, int64_t begin, T* dst) {
        x.readPadded(begin, len_, dst);
        F::forward(dst, dst, spec_, buffer_);
    }

    ConvolutionPlan plan_;
    int64_t len_;
    ZppsFFTSpec* spec_ = nullptr;
    void* memory_ = nullptr;
    T *first_, *second_, *sum_;
    Zpp8u* buffer_;
};

// Leaves out of x what meets the other operand in none of the outputs first .. last-1, which become those of
// the rest.
template <class X>
inline void cutOperand(X& x, int64_t otherLen, int64_t& first, int64_t& last) {
    const int64_t begin = first > otherLen - 1 ? first - (otherLen - 1) : 0;
    x = x.part(begin, last < x.len ? last : x.len);
    first -= begin;
    last -= begin;
}

template <class T, class S>
ZppStatus convolveInside(Operand<T, S> a, Operand<T, S> b, int64_t first, int64_t last, T* dst) {
    cutOperand(b, a.len, first, last);
    cutOperand(a, b.len, first, last);
    if (a.len > b.len) {
        const auto t = a;
        a = b;
        b = t;
    }
    const ConvolutionPlan plan = planOf<T>(a.len, b.len, first, last);
    if (plan.order == 0) {
        DirectConvolution<T>().run(a, b, first, last - first, dst);
        return zppStatusOk;
    }
    ConvolutionFft<T> fft(plan);
    if (!fft.allocated()) return zppStatusAllocationFailed;
    fft.run(a, b, first, last - first, dst);
    return zppStatusOk;
}

// dst[i] = y[from + i], for count outputs of which some may be outside the result, where nothing meets.
template <class T, class S>
ZppStatus convolve(const Operand<T, S>& a, const Operand<T, S>& b, int64_t from, int64_t count, T* dst) {
    const DoublePrecision precision;
    const int64_t to = from + count, end = a.len + b.len - 1;
    const auto within = [=](int64_t n) { return n < 0 ? 0 : n < count ? n : count; };
    const int64_t before = within(-from), after = within(to - end);
    if (before + after < count) {
        const ZppStatus error = convolveInside(a, b, from + before, to - after, dst + before);
        if (error != zppStatusOk) return error;
    }
    zeroElements(dst, static_cast<size_t>(before));
    zeroElements(dst + (count - after), static_cast<size_t>(after));
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
