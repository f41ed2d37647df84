// Elementwise functions, behind their checks: a null pointer, then the length. Each takes any number of
// sources, all of which, and nothing else, may be the destination.
//
//     elementwise(op, pDst, len, pSrc...)                  op on registers of the elements' own type
//     elementwiseComplex(op, pDst, len, pSrc...)           op on real and imaginary parts apart
//     elementwise32(op, pDst, len, pSrc...)                op on lanes of 32 bits, whatever the types are
//     elementwiseSteps<N>(compute, put, pDst, len, pSrc...)    with loads and stores of the caller's own
//     withConstant(op, pSrc, val, pDst, len)               op(x, val), as elementwise
//     flipped(op, pDst, len, pSrc)                         op of the elements from the last to the first
//     withWarning(warning, run)                            the warning where run(&met) has set met
//     unchanged(pSrc, pDst, len)                           the elements as they are
//     zeroed(pSrc, pDst, len)                              zeros, whatever they are
#pragma once

#include "core/checks.h"
#include "core/elements32.h"
#include "core/loops.h"
#include "core/move.h"

namespace zpp::ZPP_ISA {

// compute(lanes, p...) makes registers of the `lanes` elements from p on, put(p, registers) writes them. A
// step takes N elements; where there are fewer, Short of them.
template <int N, bool kFourAtOnce = false, int Short = (N < kLanes<int32_t> ? N : kLanes<int32_t>),
          class Compute, class Put, class D, class... S>
ZPP_INLINE ZppStatus elementwiseSteps(Compute compute, Put put, D* pDst, int len, const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) return error;
    const size_t count = static_cast<size_t>(len);
    const auto computeStep = [=](auto lanes, size_t i)
                                 ZPP_INLINE_LAMBDA { return compute(lanes, pSrc + i...); };
    const auto putStep = [=](auto, size_t i, auto v) ZPP_INLINE_LAMBDA { put(pDst + i, v); };
    if constexpr (N > Short) {
        if (count < N) {
            forEachStep<Short>(count, pDst, sizeof(D), computeStep, putStep);
            return zppStatusOk;
        }
    }
    forEachStep<N, kFourAtOnce>(count, pDst, sizeof(D), computeStep, putStep);
    return zppStatusOk;
}

template <class Op, class D, class... S>
ZPP_INLINE ZppStatus elementwise(Op op, D* pDst, int len, const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) [[unlikely]]
        return error;
    const size_t count = static_cast<size_t>(len);
    if (isStreamed(pDst, count * sizeof(D), pSrc...)) [[unlikely]]
        return mapStreamed(pDst, count, op, pSrc...);
    map(pDst, count, op, pSrc...);
    return zppStatusOk;
}

template <class Op, class... S>
ZPP_INLINE ZppStatus elementwiseComplex(Op op, Zpp64fc* pDst, int len, const S*... pSrc) {
    return elementwiseSteps<kLanes<double>>(
        [=](auto lanes, const S*... p)
            ZPP_INLINE_LAMBDA { return op(loadComplex<decltype(lanes)::value>(&p->re)...); },
        [](Zpp64fc* p, auto v) ZPP_INLINE_LAMBDA { storeComplex(&p->re, v); }, pDst, len, pSrc...);
}

// Loads widen, and storing saturates to integers of 8 and 16 bits.
template <class Op, class D, class... S>
ZPP_INLINE ZppStatus elementwise32(Op op, D* pDst, int len, const S*... pSrc) {
    // Four at once pay for registers of 256 bits: wider ones hide the counting, narrower ones take longer to
    // widen.
    constexpr int n = kStep32<D>;
    return elementwiseSteps<n, kVectorBytes == 32 && n == kLanes<int32_t>>(
        [=](auto lanes, const S*... p)
            ZPP_INLINE_LAMBDA { return mapRegisters(op, loadElements32<decltype(lanes)::value>(p)...); },
        [](D* p, auto v) ZPP_INLINE_LAMBDA { storeElements32(p, v); }, pDst, len, pSrc...);
}

template <class Op, class T>
ZPP_INLINE ZppStatus withConstant(Op op, const T* pSrc, T val, T* pDst, int len) {
    return elementwise([=](auto x) { return op(x, inRegister<decltype(x)>(val)); }, pDst, len, pSrc);
}

// op gets registers of elements in their own order, which it reverses. The vectors do not overlap.
template <class Op, class T>
ZPP_INLINE ZppStatus flipped(Op op, T* pDst, int len, const T* pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    const size_t count = static_cast<size_t>(len);
    const uintptr_t end = reinterpret_cast<uintptr_t>(pSrc + count);
    forEachStep<kStep<T>, true>(
        count, pDst, sizeof(T),
        [=](auto lanes, size_t i) {
            constexpr size_t n = decltype(lanes)::value;
            return op(loadElements<n>(reinterpret_cast<const T*>(end - (i + n) * sizeof(T))));
        },
        [=](auto, size_t i, auto v) { storeElements(pDst + i, v); });
    return zppStatusOk;
}

// run(&met), and the warning instead of its status where an element has set it.
template <class Run>
ZPP_INLINE ZppStatus withWarning(ZppStatus warning, Run run) {
    bool met = false;
    const ZppStatus error = run(&met);
    return met ? warning : error;
}

// Not inlined: the calls in it would cost the functions that it is a rare case of a frame on the stack.
template <class T>
[[gnu::noinline]] ZppStatus unchanged(const T* pSrc, T* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    copyElements(pSrc, pDst, static_cast<size_t>(len));
    return zppStatusOk;
}
template <class T>
[[gnu::noinline]] ZppStatus zeroed(const T* pSrc, T* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    zeroElements(pDst, static_cast<size_t>(len));
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
