// Roots of unity, rounded once from extended precision: the source of all twiddle tables. The x87 unit must
// be set to it (ExtendedPrecision) while roots are made and asked for.
#pragma once

#include "core/complex.h"
#include "frame/memory.h"

namespace zpp::ZPP_ISA {

struct CosineSine {
    long double cosine, sine;
};

inline constexpr long double kTurn = 6.283185307179586476925286766559005768L;

// Both of an angle of up to an eighth of a turn, by their power series: the error is below 2^-63.
constexpr CosineSine cosineAndSine(long double angle) {
    const long double square = angle * angle;
    CosineSine e{1, 1};
    for (int i = 24; i > 0; i -= 2) {
        e.cosine = 1 - square * e.cosine / (i * (i - 1));
        e.sine = 1 - square * e.sine / (i * (i + 1));
    }
    return {e.cosine, angle * e.sine};
}

// The products of a coarse and a fine entry are the cosines and sines of the first octant of 2^order angles:
// the coarse entries, then the fine ones.
struct OctantFactors {
    int order, fineOrder;

    constexpr size_t coarse() const { return (size_t{1} << (order - 3 - fineOrder)) + 1; }
    constexpr size_t count() const { return coarse() + (size_t{1} << fineOrder); }
    constexpr void fill(CosineSine* entries) const {
        const long double step = kTurn / static_cast<long double>(uint64_t{1} << order);
        for (size_t i = 0; i < count(); ++i) {
            const size_t k = i < coarse() ? i << fineOrder : i - coarse();
            entries[i] = cosineAndSine(step * static_cast<long double>(k));
        }
    }
};

// Those of the orders up to this one are made by the compiler: 8 KiB, and no products up to order 11.
inline constexpr OctantFactors kGivenFactors{13, 2};
struct GivenEntries {
    CosineSine entries[kGivenFactors.count()];

    constexpr GivenEntries() : entries() { kGivenFactors.fill(entries); }
};
inline constexpr GivenEntries kGivenEntries;

inline Complex<double> rounded(Complex<long double> w) {
    return {static_cast<double>(w.re), static_cast<double>(w.im)};
}

// Roots of unity by their cosines over a turn and a quarter: the imaginary part of one is the cosine of a
// quarter turn more.
struct RoundedRoots {
    const double* cosines;
    size_t turn;
    int shift;

    Complex<double> operator[](size_t k) const {
        const size_t i = (k << shift) & (turn - 1);
        return {cosines[i], cosines[i + turn / 4]};
    }
};

// exp(-2 pi i k / 2^order). The angle is reduced to the first octant, where the root is a product of two
// table entries in extended precision: its error before the one rounding to double is below 2^-62. Those up
// to `roundedOrder`, 2 or more, are rounded in advance: tables ask for them many times.
class Roots {
  public:
    Roots(int order, int roundedOrder)
        : factors_(order > kGivenFactors.order ? OctantFactors{order, (order - 3) / 2} : kGivenFactors),
          roundedOrder_(roundedOrder) {
        const bool given = factors_.order == kGivenFactors.order;
        const size_t count = given ? 0 : factors_.count(), quarter = (size_t{1} << roundedOrder) / 4;
        memory_ = static_cast<CosineSine*>(
            allocateAligned(count * sizeof(CosineSine) + 5 * quarter * sizeof(double)));
        if (memory_ == nullptr) return;
        if (!given) factors_.fill(memory_);
        entries_ = given ? kGivenEntries.entries : memory_;
        cosines_ = reinterpret_cast<double*>(memory_ + count);
        fillCosines(quarter);
    }
    ~Roots() { freeAligned(memory_); }
    Roots(const Roots&) = delete;
    Roots& operator=(const Roots&) = delete;

    bool allocated() const { return memory_ != nullptr; }

    // exp(-2 pi i k / 2^length), for length not above the order.
    Complex<double> at(uint64_t k, int length) const { return rounded(exact(k, length)); }
    // The same for length not above `roundedOrder`.
    RoundedRoots all(int length) const {
        return {cosines_, size_t{1} << roundedOrder_, roundedOrder_ - length};
    }
    // What at() differs from the root by.
    Complex<double> rest(uint64_t k, int length) const {
        const Complex<long double> w = exact(k, length);
        const Complex<double> v = rounded(w);
        return rounded({w.re - v.re, w.im - v.im});
    }
    // The root less 1, as exact where k is small.
    Complex<double> lessOne(uint64_t k, int length) const {
        const Complex<long double> w = exact(k, length);
        return rounded({-w.im * w.im / (1 + w.re), w.im});
    }

    // Before it is rounded.
    Complex<long double> exact(uint64_t k, int length) const {
        const uint64_t quarter = uint64_t{1} << (factors_.order - 2);
        const uint64_t turn = (k << (factors_.order - length)) & (4 * quarter - 1);
        const uint64_t inQuadrant = turn & (quarter - 1);
        const bool mirrored = inQuadrant > quarter / 2;
        CosineSine e = octant(static_cast<size_t>(mirrored ? quarter - inQuadrant : inQuadrant));
        if (mirrored) e = {e.sine, e.cosine};
        switch (turn / quarter) {
            case 0:
                return {e.cosine, -e.sine};
            case 1:
                return {-e.sine, -e.cosine};
            case 2:
                return {-e.cosine, e.sine};
            default:
                return {e.sine, e.cosine};
        }
    }

  private:
    void fillCosines(size_t quarter) {
        double* c = cosines_;
        for (size_t i = 0; i <= quarter / 2; ++i) {
            const CosineSine e = octant(i << (factors_.order - roundedOrder_));
            c[i] = static_cast<double>(e.cosine);
            c[quarter - i] = static_cast<double>(e.sine);
        }
        for (size_t i = 1; i <= quarter; ++i) c[2 * quarter - i] = -c[i];
        for (size_t i = 0; i < 2 * quarter; ++i) c[2 * quarter + i] = -c[i];
        for (size_t i = 0; i < quarter; ++i) c[4 * quarter + i] = c[i];
    }

    CosineSine octant(size_t k) const {
        const CosineSine a = entries_[k >> factors_.fineOrder];
        const size_t rest = k & ((size_t{1} << factors_.fineOrder) - 1);
        if (rest == 0) return a;
        const CosineSine b = entries_[factors_.coarse() + rest];
        return {a.cosine * b.cosine - a.sine * b.sine, a.sine * b.cosine + a.cosine * b.sine};
    }

    OctantFactors factors_;
    int roundedOrder_;
    const CosineSine* entries_;
    CosineSine* memory_;
    double* cosines_;
};

}  // namespace zpp::ZPP_ISA
