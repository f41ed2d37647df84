// The scaling rule of the integer forms: x * 2^-scaleFactor, rounded to nearest with ties to even, saturated.
// withScale picks its case once per call, for lanes of any integer type.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

template <class T>
struct Range {
    T lower, upper;
};

// The range of an integer type that fits into lanes of 32 bits.
template <class T>
inline constexpr Range<int32_t> kRange{};
template <>
inline constexpr Range<int32_t> kRange<int8_t> = {-128, 127};
template <>
inline constexpr Range<int32_t> kRange<uint8_t> = {0, 255};
template <>
inline constexpr Range<int32_t> kRange<int16_t> = {-32768, 32767};
template <>
inline constexpr Range<int32_t> kRange<uint16_t> = {0, 65535};
template <>
inline constexpr Range<int32_t> kRange<int32_t> = {-0x7FFFFFFF - 1, 0x7FFFFFFF};

inline constexpr int clamp(int x, int lower, int upper) { return x < lower ? lower : x > upper ? upper : x; }

template <class T, class V>
ZPP_INLINE V saturate(V v, Range<T> range) {
    return min(max(v, broadcast<V>(range.lower)), broadcast<V>(range.upper));
}

// One more in the lanes where the comparison held.
template <class V, class M>
ZPP_INLINE V addWhere(M condition, V v) {
    if constexpr (std::is_arithmetic_v<V>)
        return v + condition;
    else if constexpr (sizeof(V) == 64)
        return select(condition, bitCast<V>(asUnsigned(v) + 1), v);  // one instruction
    else
        return v - bitCast<V>(condition);  // a mask is -1
}

// (v + constant) * 2^-count, rounded down, where the sum fits; 0 <= count < the width of the lanes.
template <class V, class T>
ZPP_INLINE V sumShiftedRight(V v, T constant, int count) {
    if constexpr (std::is_same_v<V, Vec<int64_t>> && !kShiftsSigned64) {
        // The shift of unsigned numbers, of which 2^63 is taken away again.
        const uint64_t bias = uint64_t{1} << 63;
        const auto sum = bitCast<Vec<uint64_t>>(v) + (static_cast<uint64_t>(constant) + bias);
        return bitCast<V>(shiftRight(sum, count) - (bias >> count));
    } else {
        return shiftRight(v + constant, count);
    }
}

template <class V>
ZPP_INLINE auto asSigned(V v) {
    if constexpr (std::is_arithmetic_v<V>)
        return static_cast<std::make_signed_t<V>>(v);
    else
        return bitCast<decltype(v > v)>(v);
}

// One more in the lanes where a > b, of numbers the difference of which has no more bits than they have.
template <class V>
ZPP_INLINE V addWhereGreater(V a, V b, V v) {
    if constexpr (std::is_same_v<V, Vec<int64_t>> && !kCompares64)
        return v + bitCast<V>(bitCast<Vec<uint64_t>>(b - a) >> 63);
    else
        return addWhere(asSigned(a) > asSigned(b), v);
}

// v * 2^-count to nearest, ties to even. T is the type of the lanes, 1 <= count < their width.
template <class T>
class RoundedShiftRight {
  public:
    explicit RoundedShiftRight(int count) : count_(count) {}

    // If the lowest bit of `more` is set, v has lost bits below its own last one.
    template <class V>
    ZPP_INLINE V operator()(V v, V more = V{}) const {
        const V quotient = sumShiftedRight(v, T{0}, count_);
        const V rest = v & static_cast<T>(~(~std::make_unsigned_t<T>{0} << count_));
        // Up where the rest is above one half, or is one half with more behind it or an odd quotient before
        // it. Nothing reaches the sign.
        const V limit = (T{1} << (count_ - 1)) - ((quotient | more) & 1);
        return addWhereGreater(rest, limit, quotient);
    }

  private:
    int count_;
};

// The same for numbers which have room for the half that is added to them, as the products of two integers of
// 32 bits have below a count of 63.
template <class T>
class RoundedShiftRightOfSmall {
  public:
    explicit RoundedShiftRightOfSmall(int count) : count_(count) {}

    template <class V>
    ZPP_INLINE V operator()(V v) const {
        const V odd = bitCast<V>(shiftRight(asUnsigned(v), count_)) & 1;
        return sumShiftedRight(v + odd, (T{1} << (count_ - 1)) - 1, count_);
    }

  private:
    int count_;
};

// v * 2^count, saturated to a range that holds 0. T is the type of the lanes, 0 <= count < their width.
template <class T>
class SaturatedShiftLeft {
  public:
    SaturatedShiftLeft(int count, Range<T> range) : count_(count), range_(range) {}

    template <class V>
    ZPP_INLINE V operator()(V v) const {
        const V lower = broadcast<V>(range_.lower), upper = broadcast<V>(range_.upper);
        const V bounded = select(v > (range_.upper >> count_), upper, shiftLeft(v, count_));
        if constexpr (std::is_signed_v<T>)
            return select(v < (range_.lower >> count_), lower, bounded);
        else
            return bounded;
    }

  private:
    int count_;
    Range<T> range_;
};

// The bits of a range behind the sign: as many places to the left take all numbers but 0 and -1 out of it.
template <class T>
inline int bitsOf(Range<T> range) {
    int bits = 0;
    while (range.upper >> bits > 0) ++bits;
    return bits;
}

// run(scale), where scale(v) is v * 2^-scaleFactor for signed lanes of T, rounded and saturated to a range.
// It is exact for every scaleFactor, unless a larger shift to the left is allowed than the range has bits: -1
// then leaves the range.
template <class T, class Run>
ZPP_INLINE ZppStatus withScale(int scaleFactor, Range<T> range, int mostLeft, Run run) {
    constexpr int width = 8 * sizeof(T);
    if (scaleFactor <= 0) return run(SaturatedShiftLeft<T>(-clamp(scaleFactor, -mostLeft, 0), range));
    if (scaleFactor >= width) return run([](auto v) ZPP_INLINE_LAMBDA { return v - v; });  // at most a half
    const RoundedShiftRight<T> shift(scaleFactor);
    return run([=](auto v) ZPP_INLINE_LAMBDA { return saturate(shift(v), range); });
}
template <class T, class Run>
ZPP_INLINE ZppStatus withScale(int scaleFactor, Range<T> range, Run run) {
    return withScale(scaleFactor, range, bitsOf(range), run);
}

// 2^exponent in the precision of T: infinite above its range, gradually 0 below.
template <class T>
inline T powerOfTwo(int exponent) {
    using Bits = std::conditional_t<sizeof(T) == 8, uint64_t, uint32_t>;
    constexpr int fraction = sizeof(T) == 8 ? 52 : 23;
    constexpr int bias = sizeof(T) == 8 ? 1023 : 127;
    const int field = clamp(exponent, -bias - fraction - 1, bias + 1) + bias;
    if (field > 0) return bitCast<T>(static_cast<Bits>(field) << fraction);
    return bitCast<T>(field + fraction > 0 ? Bits{1} << (field + fraction - 1) : Bits{0});
}

// 2^-scaleFactor in the precision of T, for every scaleFactor.
template <class T>
inline T scaleMultiplier(int scaleFactor) {
    return powerOfTwo<T>(-clamp(scaleFactor, -2000, 2000));
}

}  // namespace zpp::ZPP_ISA
