// The conversion loop: what all conversions have in common is here, so that each is a few lines.
#pragma once

#include "core/checks.h"
#include "core/loops.h"
#include "core/simd_half.h"
#include "core/simd_packed24.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {

// A vector of three-byte elements, which the interface passes as bytes.
template <class T>
inline const T* elements(const Zpp8u* p) {
    return reinterpret_cast<const T*>(p);
}
template <class T>
inline T* elements(Zpp8u* p) {
    return reinterpret_cast<T*>(p);
}

// N elements in registers of 32-bit lanes: integers for integers, singles for singles and halves.
template <int N, class S>
ZPP_INLINE auto loadElements32(const S* p) {
    if constexpr (std::is_same_v<S, Half>)
        return loadAsFloats<N>(p);
    else if constexpr (N > kLanes<int32_t>)
        return halves(loadElements32<N / 2>(p), loadElements32<N / 2>(p + N / 2));
    else if constexpr (kIsPacked24<S>)
        return loadPacked24<N>(p);
    else if constexpr (std::is_same_v<S, float> || std::is_same_v<S, uint32_t>)
        return load<Vec<S, N>>(p);
    else
        return loadAsInts<N>(p);
}

template <class D, class V>
ZPP_INLINE void storeElements32(D* p, V v) {
    if constexpr (kIsPacked24<D>)
        storePacked24(p, mapRegisters([](auto lanes) ZPP_INLINE_LAMBDA { return asSigned(lanes); }, v));
    else if constexpr (sizeof(D) == 4)
        store(p, v);
    else
        storeSaturated(p, v);
}

// pDst = put(compute(pSrc)) behind the usual checks, N elements at a time, or Short where there are fewer.
// compute(lanes, p) makes registers of the elements from p on, put(p, registers) writes them.
template <int N, int Short = (N < kLanes<int32_t> ? N : kLanes<int32_t>), class S, class D, class Compute,
          class Put>
ZPP_INLINE ZppStatus convertSteps(const S* pSrc, D* pDst, int len, Compute compute, Put put) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    const size_t count = static_cast<size_t>(len);
    const auto computeStep = [=](auto lanes, size_t i) ZPP_INLINE_LAMBDA { return compute(lanes, pSrc + i); };
    const auto putStep = [=](auto, size_t i, auto v) ZPP_INLINE_LAMBDA { put(pDst + i, v); };
    if constexpr (N > Short) {
        if (count < N) {
            forEachStep<Short>(count, pDst, sizeof(D), computeStep, putStep);
            return zppStatusOk;
        }
    }
    forEachStep<N>(count, pDst, sizeof(D), computeStep, putStep);
    return zppStatusOk;
}

// pDst[i] = op(pSrc[i]) in lanes of 32 bits; storing saturates to integers of 8 and 16 bits.
template <class S, class D, class Op>
ZPP_INLINE ZppStatus convert(const S* pSrc, D* pDst, int len, Op op) {
    return convertSteps<kLanes<int32_t> * kPackedRegisters<D>>(
        pSrc, pDst, len,
        [=](auto lanes, const S* p)
            ZPP_INLINE_LAMBDA { return mapRegisters(op, loadElements32<decltype(lanes)::value>(p)); },
        [](D* p, auto v) ZPP_INLINE_LAMBDA { storeElements32(p, v); });
}

// Calls run with the rounding that a mode stands for, as a constant.
template <class Run>
inline ZppStatus withRounding(ZppRoundMode mode, Run run) {
    return mode == zppRoundNear ? run(std::integral_constant<Rounding, Rounding::kNearest>{})
                                : run(std::integral_constant<Rounding, Rounding::kZero>{});
}

}  // namespace zpp::ZPP_ISA
