// Convolution through the FFT: blocks of outputs, parts of the first operand, one cyclic convolution for
// each of both.
#pragma once

#include "filter/convolution_kernel.h"
#include "filter/fir_state.h"

namespace zpp::ZPP_ISA {

// How a convolution is made: directly, or by cyclic convolutions of the length N = 2^order. In each of these
// `part` elements of the first operand meet a window of N of the second one, and give `block` outputs that
// nothing wraps around to.
enum class Way {
    kDirect,
    kBlocks,  // the first operand whole and blocks of outputs, or parts of it and all outputs in one block
    kWhole,   // one transform as long as the result: what wraps around is zero, or not asked for
    kParts,   // parts and blocks of N / 2: each part and each window is transformed once
};
struct ConvolutionPlan {
    Way way = Way::kDirect;
    int order = 0;
    int64_t block = 0, part = 0;
    double cost = 0;
};

template <class T>
inline constexpr int kMaxConvolutionOrder = std::is_same_v<T, Zpp64f> ? 30 : 29;

// Times in units of a product of a direct convolution with AVX-512 (0.04 ns), as measured beside each other
// on the builds from SSE2 on. Of such a product, and where one of the vectors begins or ends, at which fewer
// are in a row:
constexpr double kDirectTime = kLanes<double> >= 8 ? 1 : kLanes<double> >= 4 ? 1.25 : 2.6;
constexpr double kRampTime = 1.35 * kDirectTime;
// Of a real transform of 2^order elements, for each element:
constexpr double kTransformTimes[] = {100, 100, 100, 100, 100, 64,  45,  30,  26,  24,  22,
                                      26,  32,  35,  45,  47,  55,  80,  110, 120, 130, 150,
                                      190, 200, 200, 200, 200, 200, 200, 200, 200};
// To multiply two spectra, and to read or write an operand, for each element.
constexpr double kProductTime = 6;
// Of making the tables: those of orders above 16 are made as they are needed.
constexpr double tablesTime(int order) {
    const double n = static_cast<double>(int64_t{1} << order);
    return order <= 16 ? 4000 + 32 * n : 1e6 + n;
}

// The times of a transform, of a product of spectra and of the tables, for real or complex elements. A
// complex transform takes as long as a real one of twice the length; a complex product as long as six real
// ones.
template <class T>
struct FftTimes {
    double transform, product, tables;

    explicit FftTimes(int order) {
        constexpr bool isComplex = std::is_same_v<T, Zpp64fc>;
        const double n = static_cast<double>(int64_t{1} << order), share = isComplex ? 1.0 / 3 : 1;
        transform = share * n * (kTransformTimes[order] + kProductTime);
        product = share * n * kProductTime;
        tables = (isComplex ? 1.0 / 6 : 1) * tablesTime(order);
    }
};

// Of a direct convolution of a and b, not shorter than a, in outputs 0 .. n-1.
inline double directTime(double a, double b, double n) {
    const double head = n < a ? n : a, tail = n > b ? n - b : 0;
    const double ramps = head * head / 2 + a * tail - tail * tail / 2;
    return kDirectTime * a * (n - head - tail) + kRampTime * ramps;
}

inline int64_t ceiling(int64_t a, int64_t b) { return (a + b - 1) / b; }

// Of the windows of kParts those that b reaches into: window w begins at (w - 1) q + from.
struct Windows {
    int64_t parts, blocks, first, end;

    Windows(int64_t a, int64_t b, int64_t from, int64_t count, int64_t q)
        : parts(ceiling(a, q)), blocks(ceiling(count, q)), first(1 - parts), end(blocks) {
        while (first < end && from + (first + 1) * q <= 0) ++first;
        while (end > first && from + (end - 2) * q >= b) --end;
    }
};

// More would take longer to count than to be of use.
inline constexpr int64_t kMostParts = 64;

// The quickest plan for outputs from .. to-1 of operands of lengths a <= b.
template <class T>
ConvolutionPlan planOf(int64_t a, int64_t b, int64_t from, int64_t to) {
    const int64_t count = to - from;
    ConvolutionPlan best;
    const double shorter = static_cast<double>(a), longer = static_cast<double>(b);
    best.cost = directTime(shorter, longer, static_cast<double>(to)) -
                directTime(shorter, longer, static_cast<double>(from));
    const auto consider = [&](Way way, int order, int64_t block, int64_t part, double cost) {
        if (cost < best.cost) best = {way, order, block, part, cost};
    };
    const int64_t all = to > a + b - 1 - from ? to : a + b - 1 - from;
    for (int order = 5; order <= kMaxConvolutionOrder<T>; ++order) {
        const int64_t n = int64_t{1} << order;
        const FftTimes<T> time(order);
        if (time.tables > best.cost) break;
        const auto cost = [=](int64_t transforms, int64_t products) {
            return time.tables + time.transform * static_cast<double>(transforms) +
                   time.product * static_cast<double>(products);
        };
        if (n >= all) {
            consider(Way::kWhole, order, count, a, cost(3, 1));
            break;
        }
        if (n > a && n / 2 < count) {
            const int64_t blocks = ceiling(count, n - a + 1);
            consider(Way::kBlocks, order, n - a + 1, a, cost(1 + 2 * blocks, blocks));
        } else if (n > count && n / 2 < a) {
            const int64_t parts = ceiling(a, n - count + 1);
            consider(Way::kBlocks, order, count, n - count + 1, cost(1 + 2 * parts, 2 * parts));
        }
        if (ceiling(a + count, n / 2) <= kMostParts) {
            const Windows w(a, b, from, count, n / 2);
            consider(Way::kParts, order, n / 2, n / 2,
                     cost(w.parts + (w.end - w.first) + w.blocks, 2 * w.parts * w.blocks));
        }
    }
    return best;
}

// The transform of a plan and its memory.
template <class T>
class ConvolutionFft {
    using F = std::conditional_t<std::is_same_v<T, Zpp64f>, Fir64f, Fir64fc>;

  public:
    // `spectra` of the operands are held at once.
    ConvolutionFft(const ConvolutionPlan& plan, int64_t spectra)
        : plan_(plan), len_(int64_t{1} << plan.order) {
        constexpr int kDivideInverse = 2;
        int bufSize = 0;
        if (F::initFft(&spec_, plan.order, kDivideInverse, 0) != zppStatusOk ||
            F::fftBufSize(spec_, &bufSize) != zppStatusOk)
            return;
        const auto layOut = [&](Areas& areas) {
            spectra_ = areas.take<T>(static_cast<uint64_t>(spectra * len_));
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

    // Way::kBlocks.
    template <class S>
    void runBlocks(const Operand<T, S>& a, const Operand<T, S>& b, int64_t from, int64_t count, T* dst) {
        const int64_t block = plan_.block, part = plan_.part;
        for (int64_t done = 0; done < count; done += block) {
            zeroElements(sum_, static_cast<size_t>(len_));
            for (int64_t begin = 0; begin < a.len; begin += part) {
                if (done == 0 || part < a.len) transformPart(a, begin, spectra_);
                transform(b, from + done - begin - (part - 1), spectra_ + len_);
                multiplyAdd(spectra_, spectra_ + len_);
            }
            invert(part - 1, count - done, dst + done);
        }
    }

    // Way::kWhole. An autocorrelation, of which b is the vector, is the inverse of its power spectrum.
    template <class S>
    void runWhole(const Operand<T, S>& a, const Operand<T, S>& b, int64_t from, int64_t count, T* dst,
                  bool isAutocorrelation) {
        transform(b, 0, sum_);
        if (isAutocorrelation) {
            multiplySum(sum_, [](auto x, auto y) { return productConj(x, y); });
        } else {
            transform(a, 0, spectra_);
            multiplySum(spectra_, [](auto x, auto y) { return product(x, y); });
        }
        invert(isAutocorrelation ? from - (a.len - 1) : from, count, dst);
    }

    // Way::kParts.
    template <class S>
    void runParts(const Operand<T, S>& a, const Operand<T, S>& b, int64_t from, int64_t count, T* dst) {
        const int64_t q = plan_.part;
        const Windows w(a.len, b.len, from, count, q);
        const auto window = [=, this](int64_t i) { return spectra_ + (w.parts + i - w.first) * len_; };
        for (int64_t i = 0; i < w.parts; ++i) transformPart(a, i * q, spectra_ + i * len_);
        for (int64_t i = w.first; i < w.end; ++i) transform(b, from + (i - 1) * q, window(i));
        for (int64_t block = 0; block < w.blocks; ++block) {
            zeroElements(sum_, static_cast<size_t>(len_));
            for (int64_t i = 0; i < w.parts; ++i)
                if (w.first <= block - i && block - i < w.end)
                    multiplyAdd(spectra_ + i * len_, window(block - i));
            invert(q, count - block * q, dst + block * q);
        }
    }

  private:
    // The spectrum of the elements from `begin` on.
    template <class S>
    void transform(const Operand<T, S>& x, int64_t begin, T* dst) {
        x.readPadded(begin, len_, dst);
        F::forward(dst, dst, spec_, buffer_);
    }
    template <class S>
    void transformPart(const Operand<T, S>& x, int64_t begin, T* dst) {
        const int64_t rest = x.len - begin;
        transform(x.part(begin, begin + (rest < plan_.part ? rest : plan_.part)), 0, dst);
    }

    // Up to `count` outputs from the sum, from a place on: those before its start are at its end.
    void invert(int64_t place, int64_t count, T* dst) {
        F::inverse(sum_, sum_, spec_, buffer_);
        const int64_t n = count < plan_.block ? count : plan_.block;
        const int64_t start = place < 0 ? place + len_ : place;
        const int64_t untilEnd = len_ - start < n ? len_ - start : n;
        copyElements(sum_ + start, dst, static_cast<size_t>(untilEnd));
        copyElements(sum_, dst + untilEnd, static_cast<size_t>(n - untilEnd));
    }

    // Applies op to the numbers of the spectra. The first two of a real one, of no and of the highest
    // frequency, are real, and change as `first` says.
    template <class Op, class First, class... Spectra>
    void apply(Op op, First first, const Spectra*... spectra) {
        const size_t elements = static_cast<size_t>(len_);
        if constexpr (std::is_same_v<T, Zpp64fc>) {
            map(sum_, elements, op, sum_, spectra...);
        } else {
            const double low = first(sum_[0], spectra[0]...), high = first(sum_[1], spectra[1]...);
            auto* numbers = reinterpret_cast<Zpp64fc*>(sum_);
            map(numbers, elements / 2, op, numbers, reinterpret_cast<const Zpp64fc*>(spectra)...);
            sum_[0] = low;
            sum_[1] = high;
        }
    }
    void multiplyAdd(const T* x, const T* y) {
        apply([](auto sum, auto a, auto b) { return sum + product(a, b); },
              [](auto sum, auto a, auto b) { return sum + a * b; }, x, y);
    }
    template <class Op>
    void multiplySum(const T* x, Op op) {
        apply(
            op, [](auto a, auto b) { return a * b; }, x);
    }

    ConvolutionPlan plan_;
    int64_t len_;
    ZppsFFTSpec* spec_ = nullptr;
    void* memory_ = nullptr;
    T *spectra_, *sum_;
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

// Whether b is a vector and a the same in reverse order, conjugated: an autocorrelation.
template <class T, class S>
inline bool isAutocorrelation(const Operand<T, S>& a, const Operand<T, S>& b) {
    return a.p == b.p && a.len == b.len && a.reversed && !b.reversed;
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
    const int64_t count = last - first;
    if (plan.way == Way::kDirect) {
        DirectConvolution<T>().run(a, b, first, count, dst);
        return zppStatusOk;
    }
    const bool parts = plan.way == Way::kParts;
    const Windows windows(a.len, b.len, first, parts ? count : 0, plan.part);
    const int64_t few = plan.way == Way::kWhole ? 1 : 2;
    ConvolutionFft<T> fft(plan, parts ? windows.parts + (windows.end - windows.first) : few);
    if (!fft.allocated()) return zppStatusAllocationFailed;
    if (parts)
        fft.runParts(a, b, first, count, dst);
    else if (plan.way == Way::kWhole)
        fft.runWhole(a, b, first, count, dst, isAutocorrelation(a, b));
    else
        fft.runBlocks(a, b, first, count, dst);
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
