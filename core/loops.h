// Element loops: they take the operation as a generic callable, which is applied to registers of several
// elements and, for what is too short for one, to single elements. core/elementwise.h puts checks before
// them.
//
// A step is what a loop takes at once: the elements that fill one register of each operand (kStep, kStep32).
// A loop is unrolled by hand (#pragma GCC unroll) in two cases: to keep an array of registers in registers,
// for which every index must be a constant; and, here, twice, to halve what counting costs where an operation
// is no more than loads and a store. More of it was not quicker, and the code is instantiated for every
// function and build.
//
// A lambda is a ZPP_INLINE_LAMBDA where it stands in the loop of a step and takes or returns registers, and
// its body is more than an operator or two: a compiler that calls it passes vectors in memory. What is called
// once per call is left to the compiler.
#pragma once

#include "core/elements.h"

namespace zpp::ZPP_ISA {

template <int N>
using Lanes = std::integral_constant<int, N>;

// Covers the elements 0 .. len-1 by steps of N: put(lanes, i, compute(lanes, i)) for the `lanes` elements
// from i on, with lanes = N, or 1 when len < N.
//
// The first and the last step may share elements with their neighbours, so that the steps between begin where
// `dst` is aligned and no element is left over. Their values are computed before anything is put and put
// after all else, which makes this right in place as well.
template <int N, class Compute, class Put>
ZPP_INLINE void forEachStep(size_t len, const void* dst, size_t elementSize, Compute compute, Put put) {
    const DoublePrecision precision;
    if constexpr (N > 1) {
        constexpr Lanes<N> lanes;
        if (len >= N) {
            const auto first = compute(lanes, 0);
            const auto last = compute(lanes, len - N);
            size_t i = N - reinterpret_cast<uintptr_t>(dst) / elementSize % N;
#pragma GCC unroll 2
            for (; i + N < len; i += N) put(lanes, i, compute(lanes, i));
            put(lanes, 0, first);
            put(lanes, len - N, last);
            return;
        }
    }
    for (size_t i = 0; i < len; ++i) put(Lanes<1>{}, i, compute(Lanes<1>{}, i));
}

// dst[i] = op(src[i]...) for i = 0 .. len-1.
template <class Op, class D, class... S>
ZPP_INLINE void map(D* dst, size_t len, Op op, const S*... src) {
    forEachStep<kStep<D>>(
        len, dst, sizeof(D),
        [=](auto lanes, size_t i) { return op(loadElements<decltype(lanes)::value>(src + i)...); },
        [=](auto, size_t i, auto v) { storeElements(dst + i, v); });
}

}  // namespace zpp::ZPP_ISA
