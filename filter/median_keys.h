// What a median filter compares: keys, of which no two differ that are equal, in registers of several
// windows' elements.
//
// Integers are their own keys, and so are doubles among which there is neither a NaN nor -0. Others take the
// integers that are in the order of the doubles: of negative ones all bits but the sign are turned over, and
// what is then below -Inf, NaNs with a sign, goes round to the end.
#pragma once

#include "core/precision.h"
#include "stats/sort_kernel.h"

namespace zpp::ZPP_ISA {

inline constexpr int64_t kBelowInfinity = 0x000FFFFFFFFFFFFF;

template <class V>
ZPP_INLINE V turnedOver(V bits) {
    if constexpr (kShiftsSigned64 || std::is_arithmetic_v<V>)
        return bits ^ ((bits >> 63) & INT64_MAX);
    else
        return bits ^ ((bits < 0) & INT64_MAX);
}

// Elements of type T are held as lanes of V.
template <class T, class V>
struct Keys {
    using Key = Lane<V>;
    static constexpr int kCount = sizeof(V) / sizeof(Key);
    static constexpr bool kAreElements = std::is_same_v<T, Key>;
    static constexpr Key kFirst = kLeast<Key>;
    static constexpr Key kLast = static_cast<Key>(-1 - kFirst);

    ZPP_INLINE static V load(const T* p) {
        const V v = zpp::ZPP_ISA::load<V>(p);
        if constexpr (kAreElements)
            return v;
        else
            return bitCast<V>(asUnsigned(turnedOver(v)) - static_cast<uint64_t>(kBelowInfinity));
    }
    ZPP_INLINE static void store(T* p, V v) {
        if constexpr (!kAreElements)
            v = turnedOver(bitCast<V>(asUnsigned(v) + static_cast<uint64_t>(kBelowInfinity)));
        zpp::ZPP_ISA::store(p, v);
    }
};

}  // namespace zpp::ZPP_ISA
