// Angles of integers beside numbers that a double cannot tell them from.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

// Multiples of 2^-192 modulo 2^32, the whole part first. Products and quotients are of numbers that are not
// negative.
class LongFixed {
  public:
    explicit LongFixed(uint32_t whole = 0) : limbs_{whole} {}

    // n 2^exponent
    static LongFixed scaled(uint64_t n, int exponent) {
        LongFixed x;
        for (int place = exponent; n != 0; n >>= 1, ++place) {
            const int down = 31 - place;
            if ((n & 1) != 0) x.limbs_[down / 32] |= uint32_t{0x80000000} >> (down % 32);
        }
        return x;
    }

    friend LongFixed operator*(const LongFixed& a, const LongFixed& b) {
        LongFixed product;
        for (int i = kLimbs - 1; i >= 0; --i) {
            uint64_t carry = 0;
            for (int j = kLimbs - 1 - i; j >= 0; --j) {
                carry += uint64_t{a.limbs_[i]} * b.limbs_[j] + product.limbs_[i + j];
                product.limbs_[i + j] = static_cast<uint32_t>(carry);
                carry >>= 32;
            }
            if (i > 0) product.limbs_[i - 1] = static_cast<uint32_t>(carry);
        }
        return product;
    }
    LongFixed& operator/=(uint32_t divisor) {
        uint64_t rest = 0;
        for (uint32_t& limb : limbs_) {
            rest = rest << 32 | limb;
            limb = static_cast<uint32_t>(rest / divisor);
            rest %= divisor;
        }
        return *this;
    }
    LongFixed& operator+=(const LongFixed& other) {
        uint64_t carry = 0;
        for (int i = kLimbs - 1; i >= 0; --i) {
            carry += uint64_t{limbs_[i]} + other.limbs_[i];
            limbs_[i] = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        return *this;
    }
    LongFixed operator-() const {
        LongFixed x;
        for (int i = 0; i < kLimbs; ++i) x.limbs_[i] = ~limbs_[i];
        return x += scaled(1, -32 * (kLimbs - 1));
    }

    bool isZero() const {
        uint32_t bits = 0;
        for (const uint32_t limb : limbs_) bits |= limb;
        return bits == 0;
    }
    bool isNegative() const { return limbs_[0] >> 31 != 0; }

  private:
    static constexpr int kLimbs = 7;
    uint32_t limbs_[kLimbs];
};

// A whole number below 2^52. (For 32 bits compilers convert in the x87 unit.)
inline uint64_t integerOf(double x) { return bitCast<uint64_t>(x + 0x1p52) & 0xFFFFFFFFFFFFF; }

// Whether the angle of (re, im), im >= 0, is more than h = n 2^exponent, which it is next to. Multiplied by
// the radius, the sine of the difference is im cos h - re sin h: to 2^-150 by the series of both. It is never
// 0, as no angle of integers but 0 is rational; among all pairs of 32-bit integers and places of h the
// smallest difference is to be expected near 2^-100 of the angle, if they lie as if by chance.
inline bool isAngleAbove(double re, double im, uint64_t n, int exponent) {
    const LongFixed h = LongFixed::scaled(n, exponent);
    LongFixed sums[2], term(1);
    for (uint32_t k = 0; !term.isZero(); ++k) {
        sums[k % 2] += k % 4 < 2 ? term : -term;
        term = term * h;
        term /= k + 1;
    }
    const auto times = [](double x, const LongFixed& v) {
        const LongFixed product = LongFixed(static_cast<uint32_t>(integerOf(magnitude(x)))) * v;
        return x < 0 ? -product : product;
    };
    LongFixed difference = times(im, sums[0]);
    difference += times(-re, sums[1]);
    return !difference.isNegative() && !difference.isZero();
}

}  // namespace zpp::ZPP_ISA
