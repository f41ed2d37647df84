// Elements of every type in lanes of 32 bits: loads widen, stores saturate.
#pragma once

#include "core/simd_half.h"
#include "core/simd_packed24.h"

namespace zpp::ZPP_ISA {

// How many elements of D a step takes in lanes of 32 bits: one register of lanes, or as many as are stored
// together.
template <class D>
inline constexpr int kStep32 = kLanes<int32_t>* kPackedRegisters<D>;

// N elements in registers of 32-bit lanes: integers for integers, singles for singles and halves.
template <int N, class S>
ZPP_INLINE auto loadElements32(const S* p) {
    if constexpr (std::is_same_v<S, Half>)
        return loadAsFloats<N>(p);
    else if constexpr (N > kLanes<int32_t>)
        return halves(loadElements32<N / 2>(p), loadElements32<N / 2>(p + N / 2));
    else if constexpr (kIsPacked24<S>)
        return unpack24<S>(loadPacked<N>(p->bytes));
    else if constexpr (std::is_same_v<S, float> || std::is_same_v<S, uint32_t>)
        return load<Vec<S, N>>(p);
    else
        return loadAsInts<N>(p);
}

// Integers are saturated to 8 and 16 bits.
template <class D, class V>
ZPP_INLINE void storeElements32(D* p, V v) {
    if constexpr (kIsPacked24<D>)
        storePacked(p->bytes,
                    mapRegisters([](auto lanes) ZPP_INLINE_LAMBDA { return pack24(asSigned(lanes)); }, v));
    else if constexpr (sizeof(D) == 4)
        store(p, v);
    else
        storeSaturated(p, v);
}

// A vector of three-byte elements, which the interface passes as bytes.
template <class T>
inline const T* elements(const Zpp8u* p) {
    return reinterpret_cast<const T*>(p);
}
template <class T>
inline T* elements(Zpp8u* p) {
    return reinterpret_cast<T*>(p);
}

}  // namespace zpp::ZPP_ISA
