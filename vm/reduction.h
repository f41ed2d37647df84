// Angles of any size in steps of a part of a turn.
//
// |x| = m 2^e with a whole m of 53 bits. Of x / (2 pi) only the fraction matters, and so of 2^e / (2 pi) only
// what is behind the point: its first 192 bits times m are the fraction to 2^-139. (Payne and Hanek, "Radian
// reduction for trigonometric functions", 1983.) The nearest a double comes to a multiple of pi / 64 leaves
// more than 2^-70 of a turn, and of that more than 60 bits.
#pragma once

#include "core/simd.h"
#include "vm/reduction_tables.h"

namespace zpp::ZPP_ISA {

struct Wide {
    uint64_t high, low;
};
inline Wide wideProduct(uint64_t a, uint64_t b) {
#ifdef __SIZEOF_INT128__
    const auto product = static_cast<unsigned __int128>(a) * b;
    return {static_cast<uint64_t>(product >> 64), static_cast<uint64_t>(product)};
#else
    const uint64_t mask = 0xFFFFFFFF, aLow = a & mask, aHigh = a >> 32, bLow = b & mask, bHigh = b >> 32;
    const uint64_t low = aLow * bLow, first = aHigh * bLow + (low >> 32),
                   second = aLow * bHigh + (first & mask);
    return {aHigh * bHigh + (first >> 32) + (second >> 32), second << 32 | (low & mask)};
#endif
}

// 64 bits of 1 / (2 pi) from a place on; 64 zeros are before it.
inline uint64_t bitsOfInverseTurn(unsigned place) {
    const unsigned word = place / 64, shift = place % 64;
    const uint64_t first = kInverseTurn[word] << shift;
    return shift == 0 ? first : first | kInverseTurn[word + 1] >> (64 - shift);
}

inline void shiftLeft(uint64_t& high, uint64_t& low, uint64_t& rest, int count) {
    high = high << count | low >> (64 - count);
    low = low << count | rest >> (64 - count);
    rest <<= count;
}

// Compilers for 32 bits convert in the x87 unit, as the caller has set it.
inline double toDouble(uint64_t x) {
    const double high = bitCast<double>(x >> 32 | 0x4530000000000000),
                 low = bitCast<double>((x & 0xFFFFFFFF) | 0x4330000000000000);
    return (high - 0x1p84) + (low - 0x1p52);
}

// x = (steps + rest) 2 pi / 2^kBits, steps modulo 2^kBits, |rest| <= 1/2 as the sum of two numbers.
struct ReducedAngle {
    int64_t steps;
    double high, low;
};
template <int kBits>
inline ReducedAngle reducedAngle(double x) {
    const uint64_t bits = bitCast<uint64_t>(x), mantissa = (bits & 0xFFFFFFFFFFFFF) | 0x10000000000000;
    const unsigned place = static_cast<unsigned>((bits >> 52 & 0x7FF) - 1075 + 64);
    const Wide top = wideProduct(mantissa, bitsOfInverseTurn(place)),
               middle = wideProduct(mantissa, bitsOfInverseTurn(place + 64)),
               last = wideProduct(mantissa, bitsOfInverseTurn(place + 128));
    uint64_t rest = last.low, low = middle.low + last.high;
    uint64_t high = top.low + middle.high + (low < last.high ? 1 : 0);
    uint64_t steps = high >> (64 - kBits);
    shiftLeft(high, low, rest, kBits);
    // Above half a step: to the next one. The complement lacks one unit of the last bits.
    const uint64_t above = high >> 63, flip = 0 - above;
    steps += above;
    high ^= flip, low ^= flip, rest ^= flip;
    const int zeros = high != 0 ? __builtin_clzll(high) : 63;
    if (zeros > 0) shiftLeft(high, low, rest, zeros);
    const uint64_t negative = bits >> 63;
    const double scale =
        bitCast<double>((above ^ negative) << 63 | static_cast<uint64_t>(1023 - 64 - zeros) << 52);
    return {static_cast<int64_t>(negative != 0 ? 0 - steps : steps),
            toDouble(high & ~uint64_t{0x7FF}) * scale,
            (toDouble(high & 0x7FF) + toDouble(low) * 0x1p-64) * scale};
}

}  // namespace zpp::ZPP_ISA
