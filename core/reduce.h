// Sums over vectors, behind their checks: a null pointer, then the length. Every build, target and alignment
// adds in one order, so that the bits are the same everywhere: of kRunning values, all +0 at first, double i
// is added to value i mod kRunning, and at the end each half is added to the one before it until one element
// is left. No product is fused with its sum.
//
//     sumOf(term, pDst, len, pSrc...)    the sum of term(src...), of registers or single doubles
//
// Complex numbers are two doubles each, so term sees parts, and the last fold is left out.
#pragma once

#include "core/checks.h"
#include "core/precision.h"

namespace zpp::ZPP_ISA {

// As many as hide the latency of an addition in the widest registers; narrower builds keep some in memory.
inline constexpr int kRunning = 32;

template <class Term, class... S>
ZPP_INLINE void addToRunning(double (&values)[kRunning], size_t count, Term term, const S*... src) {
    using V = Vec<double>;
    constexpr int n = kLanes<double>, registers = kRunning / n;
    V sums[registers] = {};
    size_t i = 0;
    for (; i + kRunning <= count; i += kRunning)
#pragma GCC unroll 32
        for (int r = 0; r < registers; ++r) sums[r] = stored(sums[r] + term(load<V>(src + i + r * n)...));
#pragma GCC unroll 32
    for (int r = 0; r < registers; ++r) store(values + r * n, sums[r]);
    for (; i < count; ++i) values[i % kRunning] = stored(values[i % kRunning] + term(src[i]...));
}

template <class Term, class D, class... S>
inline ZppStatus sumOf(Term term, D* pDst, int len, const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) return error;
    const DoublePrecision precision;
    constexpr size_t parts = sizeof(D) / sizeof(double);
    double values[kRunning];
    addToRunning(values, parts * static_cast<size_t>(len), term, reinterpret_cast<const double*>(pSrc)...);
    for (size_t half = kRunning / 2; half >= parts; half /= 2)
        for (size_t i = 0; i < half; ++i) values[i] = stored(values[i] + values[i + half]);
    memcpy(pDst, values, sizeof(D));
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
