// Roots of unity, rounded once from extended precision: the source of all twiddle tables. The x87 unit must
// be set to it (ExtendedPrecision) while roots are made and asked for.
#pragma once

#include <math.h>

#include "core/complex.h"
#include "frame/memory.h"

namespace zpp::ZPP_ISA {

inline Complex<double> rounded(Complex<long double> w) {
    return {static_cast<double>(w.re), static_cast<double>(w.im)};
}

// exp(-2 pi i k / 2^order). The angle is reduced to the first octant, where the root is a product of two
// table entries in extended precision: its error before the one rounding to double is below 2^-62.
class Roots {
  public:
    explicit Roots(int order)
        : order_(order < 3 ? 3 : order),
          fineOrder_((order_ - 3) / 2),
          coarse_((size_t{1} << (order_ - 3 - fineOrder_)) + 1),
          table_(
              static_cast<Entry*>(allocateAligned((coarse_ + (size_t{1} << fineOrder_)) * sizeof(Entry)))) {
        if (table_ == nullptr) return;
        for (size_t i = 0; i < coarse_; ++i) table_[i] = entry(i << fineOrder_);
        for (size_t i = 0; i < size_t{1} << fineOrder_; ++i) table_[coarse_ + i] = entry(i);
    }
    ~Roots() { freeAligned(table_); }
    Roots(const Roots&) = delete;
    Roots& operator=(const Roots&) = delete;

    bool allocated() const { return table_ != nullptr; }

    // exp(-2 pi i k / 2^length), for length not above the order (or 3).
    Complex<double> at(uint64_t k, int length) const { return rounded(exact(k, length)); }
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
        const uint64_t quarter = uint64_t{1} << (order_ - 2);
        const uint64_t turn = (k << (order_ - length)) & (4 * quarter - 1);
        const uint64_t inQuadrant = turn & (quarter - 1);
        const bool mirrored = inQuadrant > quarter / 2;
        Entry e = octant(static_cast<size_t>(mirrored ? quarter - inQuadrant : inQuadrant));
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
    struct Entry {
        long double cosine, sine;
    };

    Entry entry(size_t k) const {
        const long double turn = 6.283185307179586476925286766559005768L;
        const long double angle =
            turn * static_cast<long double>(k) / static_cast<long double>(uint64_t{1} << order_);
        return {cosl(angle), sinl(angle)};
    }

    Entry octant(size_t k) const {
        const Entry a = table_[k >> fineOrder_];
        const size_t rest = k & ((size_t{1} << fineOrder_) - 1);
        if (rest == 0) return a;
        const Entry b = table_[coarse_ + rest];
        return {a.cosine * b.cosine - a.sine * b.sine, a.sine * b.cosine + a.cosine * b.sine};
    }

    int order_, fineOrder_;
    size_t coarse_;
    Entry* table_;  // the coarse entries, then the fine ones
};

}  // namespace zpp::ZPP_ISA
