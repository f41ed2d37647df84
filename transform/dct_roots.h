// Roots of unity of any length, in extended precision, to which the x87 unit must be set.
#pragma once

#include <math.h>

#include "transform/fft_roots.h"

namespace zpp::ZPP_ISA {

// exp(-2 pi i k / n) as the product of two table entries, about sqrt(n) of which there are.
class RootsOfAny {
  public:
    explicit RootsOfAny(uint64_t n) : n_(n), step_(1) {
        while (step_ * step_ < n) step_ *= 2;
        coarse_ = n / step_ + 1;
        table_ = static_cast<Complex<long double>*>(
            allocateAligned((coarse_ + step_) * sizeof(Complex<long double>)));
        if (table_ == nullptr) return;
        for (uint64_t i = 0; i < coarse_; ++i) table_[i] = entry(i * step_);
        for (uint64_t i = 0; i < step_; ++i) table_[coarse_ + i] = entry(i);
    }
    ~RootsOfAny() { freeAligned(table_); }
    RootsOfAny(const RootsOfAny&) = delete;
    RootsOfAny& operator=(const RootsOfAny&) = delete;

    bool allocated() const { return table_ != nullptr; }

    Complex<long double> exact(uint64_t k) const {
        k %= n_;
        const Complex<long double> a = table_[k / step_], b = table_[coarse_ + k % step_];
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }

  private:
    Complex<long double> entry(uint64_t k) const {
        const long double angle = kTurn * static_cast<long double>(k) / static_cast<long double>(n_);
        return {cosl(angle), -sinl(angle)};
    }

    uint64_t n_, step_, coarse_;
    Complex<long double>* table_;  // the coarse entries, then the fine ones
};

}  // namespace zpp::ZPP_ISA
