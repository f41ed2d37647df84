// Windows that are functions of the Hann window h(n) = sin^2(pi n / (len - 1)).
//
// Of an angle a = 2 pi n / (len - 1) at every 4th to 32nd element (a mark) and x from there to another
// element
//     h(a + x) = h(a) + sin a (sin x) / 2 + cos a h(x),
// where nothing cancels while cos a is positive, and h is above 1/2 from there on. For the marks sines and
// cosines come from polynomials of angles up to pi / 4, which have a low part as well; the terms of x, up to
// pi / 4, from shorter sums. A short window has one mark, at 0, and exact terms of all x. The terms of a mark
// have the factor of the window in them.
//
// Error of h, in units of 2^-53: .5 of a mark and of each sum, and .4 of the small terms; 2.1 found. A
// Blackman window with alpha from -.5 to .5 makes three times as much of it at most, so the small terms are
// added up first there; 3.8 found, and 3.1 for the usual ones.
#pragma once

#include "gen/window.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {

// h and half of the sine of an angle.
template <class V>
struct HannValue {
    V hann, sine;
};

// Angles 2 pi n / last.
class HannAngle {
  public:
    explicit HannAngle(int len) : last_(len - 1) {
        constexpr double pi = 3.14159265358979323846, piLow = 0x1.1a62633145c07p-53;
        const double inverse = 1 / last_;
        // Of 21 bits, so that the product with 2 n is exact.
        high_ = bitCast<double>(bitCast<uint64_t>(pi * inverse) & ~uint64_t{0xFFFFFFFF});
        low_ = ((pi - high_ * last_) + piLow) * inverse;
    }

    // h rounded once, but for 2^-58.
    template <class V>
    ZPP_INLINE HannValue<V> at(V n) const {
        const V other = last_ * 0.5 - n;
        const auto isMirrored = n > other;
        const V nearer = select(isMirrored, other, n);
        const Sum<V> half = sumOf(nearer * high_, nearer * low_);
        const V square = half.high * half.high;
        const Sum<V> sine =
            sumOf(half.high, mulAdd(half.high * square, polynomial(kWideSinePolynomial, square), half.low));
        const V cosine =
            mulAdd(square, mulAdd(square, polynomial(kWideCosinePolynomial, square), broadcast<V>(-0.5)),
                   broadcast<V>(1.0));
        const Sum<V> h = squareOf(sine.high), mirrored = sumOf(broadcast<V>(1.0), -h.high);
        const V low = mulAdd(sine.high * 2.0, sine.low, h.low);
        return {select(isMirrored, mirrored.high + (mirrored.low - low), h.high + low), sine.high * cosine};
    }

    // Of angles up to pi / 4, within a unit in the last place or two.
    template <class V>
    ZPP_INLINE HannValue<V> ofSmall(V n) const {
        const V half = mulAdd(n, broadcast<V>(high_), n * low_), square = half * half * 4.0;
        const V cosine = mulAdd(square, polynomial(kWideCosinePolynomial, square), broadcast<V>(-0.5));
        return {cosine * square * -0.5, mulAdd(half * square, polynomial(kWideSinePolynomial, square), half)};
    }

  private:
    double last_, high_, low_;
};

// The terms of constant + factor h.
class HannTerms {
  public:
    static constexpr size_t kBlock = 512, kGroup = 4;

    HannTerms(int len, double constant, double factor) : angle_(len), constant_(constant), factor_(factor) {
        const int pairs = len / 2;
        hasMarks_ = pairs >= kFewestMarks << kFewestSteps;
        while (hasMarks_ && pairs >> logSteps_ < kFewestMarks) --logSteps_;
        fillTable(static_cast<size_t>(hasMarks_ ? 1 << logSteps_ : pairs));
    }

    bool hasGroups() const { return logSteps_ == kMostSteps; }

    [[gnu::noinline]] void prepare(size_t first, size_t count) {
        using V = Vec<double>;
        const V constant = broadcast<V>(constant_), factor = broadcast<V>(factor_);
        if (!hasMarks_) {
            at_[0] = constant_, sine_[0] = 0, cosine_[0] = factor_;
            return;
        }
        const double steps = 1 << logSteps_, begin = static_cast<int>(first);
        for (size_t i = 0; i << logSteps_ < count; i += kLanes<double>) {
            const auto mark = angle_.at(countedFrom<V>(i) * steps + begin);
            store(at_ + i, mulAdd(mark.hann, factor, constant));
            store(sine_ + i, mark.sine * factor * 2.0);
            store(cosine_ + i, mulAdd(mark.hann, -2 * factor, factor));
        }
    }

  protected:
    // Of elements from `first` on, up to the next mark.
    template <bool kSmallTermsFirst>
    ZPP_INLINE auto sums(size_t first) const {
        using V = Vec<double>;
        const size_t mark = (first % kBlock) >> logSteps_, x = first & ((size_t{1} << logSteps_) - 1);
        return [p = opaque(table_ + x), at = broadcast<V>(at_[mark]), sine = broadcast<V>(sine_[mark]),
                cosine = broadcast<V>(cosine_[mark])](size_t k) ZPP_INLINE_LAMBDA {
            const V hann = load<V>(p + k), sines = load<V>(p + kSines + k);
            if constexpr (kSmallTermsFirst)
                return at + mulAdd(sine, sines, cosine * hann);
            else
                return mulAdd(cosine, hann, mulAdd(sine, sines, at));
        };
    }

  private:
    // Elements between marks are a power of 2, and a register at least. A short window has one mark, at 0.
    static constexpr int kFewestSteps = kLanes<double> > 4 ? 3 : 2, kMostSteps = 5, kSines = 1 << kMostSteps;
    // x is below pi / 4 with four of them. Of eight the small terms are half as large: so is their error, of
    // three roundings where none are fused.
    static constexpr int kFewestMarks = kFuses ? 4 : 8, kMostMarks = kBlock >> kMostSteps;

    // Up to a register more than there are elements.
    [[gnu::noinline]] void fillTable(size_t count) {
        for (size_t i = 0; i < count; i += kLanes<double>) {
            const auto n = countedFrom<Vec<double>>(i);
            const auto value = hasMarks_ ? angle_.ofSmall(n) : angle_.at(n);
            store(table_ + i, value.hann);
            store(table_ + kSines + i, value.sine);
        }
    }

    const HannAngle angle_;
    const double constant_, factor_;
    int logSteps_ = kMostSteps;
    bool hasMarks_;
    alignas(64) double table_[2 * kSines];  // h, and halves of sines
    alignas(64) double at_[kMostMarks], sine_[kMostMarks], cosine_[kMostMarks];
};

// The weights kind(constant + factor h).
template <class Kind>
class CosineWindow : public HannTerms {
  public:
    CosineWindow(Kind kind, int len)
        : HannTerms(len, Kind::kConstant, Kind::kFactor), kind_(kind), len_(len) {}

    bool endsWeighNothing() const { return Kind::kZeroEnds; }
    bool zeroEnds() const { return Kind::kZeroEnds && len_ == 3; }

    ZPP_INLINE auto weights(size_t first) const {
        return [kind = kind_, sum = sums<Kind::kSmallTermsFirst>(first)](size_t k)
                   ZPP_INLINE_LAMBDA { return kind(sum(k)); };
    }

  private:
    const Kind kind_;
    const int len_;
};

// Of kConstant + kFactor h.
struct Hann {
    static constexpr bool kZeroEnds = false, kSmallTermsFirst = false;
    static constexpr double kConstant = 0, kFactor = 1;
    template <class V>
    ZPP_INLINE V operator()(V h) const {
        return h;
    }
};

struct Hamming : Hann {
    static constexpr double kConstant = 0.08, kFactor = 0.92;
};

// (1 + alpha) / 2 - cos(a) / 2 - alpha / 2 cos(2 a) = 4 h (1 / 4 + alpha - alpha / 4 4 h), exactly 0 at the
// end.
struct Blackman {
    static constexpr bool kZeroEnds = true, kSmallTermsFirst = true;
    static constexpr double kConstant = 0, kFactor = 4;
    double alpha;
    template <class V>
    ZPP_INLINE V operator()(V four) const {
        return four * mulSubFrom(four, broadcast<V>(0.25 * alpha), broadcast<V>(0.25 + alpha));
    }
};

// -1 / 4 cos^2(pi / (len - 1))
inline double optimalAlpha(int len) { return -0.25 / (1 - HannAngle(len).at(1.0).hann); }

}  // namespace zpp::ZPP_ISA
