// What the functions on registers of doubles have in common: the environment, blocks, special arguments and
// their warnings, between vectors of elements of any type.
//
// A function F has
//     kSources, kDestinations           of numbers; a complex element is two
//     run(const V (&x)[], V (&y)[])     the results in registers; returns a mask of the lanes that it leaves,
//                                       special arguments, which get any result
//     special(const double*, double*)   the results of one of these, and its warning or zppStatusOk
//     kName                             what the error hook is told, of the functions of vm/
//
// The functions of vm/ check the length first, then pointers, and call the hook:
//     evaluate(f, {{pSrc...}, {pDst...}}, len)
// Others check pointers first:
//     evaluateElements<LastWarning>(f, Vectors{{pSrc...}, {pDst...}}, len)
//
// Destinations may be any of the sources.
#pragma once

#include "core/checks.h"
#include "core/simd_interleave.h"
#include "core/simd_partial.h"
#include "frame/vm_hook.h"
#include "vm/environment.h"

namespace zpp::ZPP_ISA {

inline constexpr size_t kVmBlock = 64;

// A call's vectors, sources of one type and destinations of one: double, single, int32, or complex numbers of
// these.
template <class S, size_t kS, class D, size_t kD>
struct Vectors {
    const S* src[kS];
    D* dst[kD];

    static constexpr size_t kSources = kS * kParts<S>, kDestinations = kD * kParts<D>;
};
template <class S, size_t kS, class D, size_t kD>
Vectors(const S* const (&)[kS], D* const (&)[kD]) -> Vectors<S, kS, D, kD>;

// N elements from memory as registers of numbers.
template <int N, class S, size_t kS>
ZPP_INLINE void loadNumbers(const S* const (&src)[kS], size_t i, Vec<double, N> (&x)[kS * kParts<S>]) {
    for (size_t k = 0; k < kS; ++k) {
        const auto* const p = partsOf(src[k] + i);
        if constexpr (kParts<S> == 1) {
            x[k] = pinned(loadAsDoubles<N>(p));  // else GCC 12 copies a block at a time, which takes longer
        } else if constexpr (N == 1) {
            x[2 * k] = loadAsDoubles<1>(p), x[2 * k + 1] = loadAsDoubles<1>(p + 1);
        } else {
            const auto z = deinterleaved(loadAsDoubles<N>(p), loadAsDoubles<N>(p + N));
            x[2 * k] = z.low, x[2 * k + 1] = z.high;
        }
    }
}

// And back: to the nearest singles or integers, saturated.
template <class D, class V>
ZPP_INLINE void storeNumbers(D* p, V v) {
    if constexpr (std::is_same_v<D, int32_t>)
        storeAsInts<Rounding::kNearest>(p, v);
    else
        storeFromDoubles(p, v);
}
template <class V, class D, size_t kD>
ZPP_INLINE void storeNumbers(D* const (&dst)[kD], size_t i, const V (&y)[kD * kParts<D>]) {
    for (size_t k = 0; k < kD; ++k) {
        auto* const p = partsOf(dst[k] + i);
        if constexpr (kParts<D> == 1) {
            storeNumbers(p, y[k]);
        } else {
            const Halves<V> z = interleaved(Halves<V>{y[2 * k], y[2 * k + 1]});
            storeNumbers(p, z.low), storeNumbers(p + sizeof(V) / sizeof(double), z.high);
        }
    }
}

// The arguments of a block under the bits of a mask. Of its own, so that the kernel has all registers.
template <class F, class VectorsOfCall, class Warned>
[[gnu::noinline]] void evaluateSpecial(uint64_t which, const F& f,
                                       const double (&x)[VectorsOfCall::kSources][kVmBlock],
                                       const VectorsOfCall& v, size_t begin, Warned& warned) {
    for (; which != 0; which &= which - 1) {
        const size_t i = static_cast<size_t>(__builtin_ctzll(which));
        double arguments[VectorsOfCall::kSources], results[VectorsOfCall::kDestinations];
        for (size_t k = 0; k < VectorsOfCall::kSources; ++k) arguments[k] = x[k][i];
        const ZppStatus warning = f.special(arguments, results);
        storeNumbers(v.dst, begin + i, results);
        if (warning != zppStatusOk) warned(warning, begin + i);
    }
}

// The results of a block of whole registers, from arguments that are kept: they may be overwritten by
// results.
template <class F, class S, size_t kS, class D, size_t kD>
ZPP_INLINE uint64_t evaluateVectors(const F& f, size_t count, const S* const (&src)[kS],
                                    double (&x)[kS * kParts<S>][kVmBlock], D* const (&dst)[kD]) {
    using V = Vec<double>;
    constexpr size_t lanes = sizeof(V) / sizeof(double);
    uint64_t special = 0;
    for (size_t i = 0; i < count; i += lanes) {
        V in[kS * kParts<S>], out[kD * kParts<D>];
        loadNumbers<kLanes<double>>(src, i, in);
        for (size_t k = 0; k < kS * kParts<S>; ++k) store(x[k] + i, in[k]);
        special |= laneBits(f.run(in, out)) << i;
        storeNumbers(dst, i, out);
    }
    return special;
}

// The same of the last elements, fewer than a block, through memory that has more.
template <class F, class S, size_t kS, class D, size_t kD>
[[gnu::noinline]] uint64_t evaluateRest(const F& f, const Vectors<S, kS, D, kD>& v, size_t begin,
                                        size_t count, double (&x)[kS * kParts<S>][kVmBlock]) {
    constexpr size_t lanes = static_cast<size_t>(kLanes<double>);
    const size_t whole = (count + lanes - 1) / lanes * lanes;
    S in[kS][kVmBlock];
    D out[kD][kVmBlock];
    const S* src[kS];
    D* dst[kD];
    for (size_t k = 0; k < kS; ++k) {
        memcpy(in[k], v.src[k] + begin, count * sizeof(S));
        memset(in[k] + count, 0, (whole - count) * sizeof(S));
        src[k] = in[k];
    }
    for (size_t k = 0; k < kD; ++k) dst[k] = out[k];
    const uint64_t special = evaluateVectors(f, whole, src, x, dst);
    for (size_t k = 0; k < kD; ++k) memcpy(v.dst[k] + begin, out[k], count * sizeof(D));
    return special & ((uint64_t{1} << count) - 1);
}

template <class F, class Warned, class S, size_t kS, class D, size_t kD>
ZPP_INLINE void evaluateBlocks(const F& f, const Vectors<S, kS, D, kD>& v, int len, Warned& warned) {
    static_assert(F::kSources == kS * kParts<S> && F::kDestinations == kD * kParts<D>);
    const Environment environment;
    double x[kS * kParts<S>][kVmBlock];
    const size_t n = static_cast<size_t>(len);
    for (size_t i = 0; i < n; i += kVmBlock) {
        uint64_t special;
        const S* src[kS];
        D* dst[kD];
        if (n - i >= kVmBlock) {
            for (size_t k = 0; k < kS; ++k) src[k] = v.src[k] + i;
            for (size_t k = 0; k < kD; ++k) dst[k] = v.dst[k] + i;
            special = evaluateVectors(f, kVmBlock, src, x, dst);
        } else {
            special = evaluateRest(f, v, i, n - i, x);
        }
        if (special != 0) [[unlikely]]
            evaluateSpecial(special, f, x, v, i, warned);
    }
}

// What a call makes of the warnings of its elements, in their order.
struct LastWarning {
    ZppStatus status = zppStatusOk;
    void operator()(ZppStatus warning, size_t) { status = warning; }
};
struct GreatestWarning {
    ZppStatus status = zppStatusOk;
    void operator()(ZppStatus warning, size_t) { status = warning > status ? warning : status; }
};
template <class F, class VectorsOfCall>
struct ReportedWarnings {
    const VectorsOfCall& v;
    ZppStatus status = zppStatusOk;
    void operator()(ZppStatus warning, size_t i) {
        status = warning;
        const FloatingState state;
        vmErrorHook(warning, static_cast<int>(i), v.src[0], v.src[F::kSources - 1], v.dst[0],
                    v.dst[F::kDestinations - 1], F::kName);
        state.restore();
    }
};

template <size_t N, class T>
ZPP_INLINE ZppStatus checkAll(T* const (&pointers)[N]) {
    bool null = false;
    for (T* p : pointers) null = null || p == nullptr;
    return require(!null, zppStatusNullPointer);
}

template <class F>
using VmVectors = Vectors<double, F::kSources, double, F::kDestinations>;

template <class F>
ZppStatus evaluate(const F& f, const VmVectors<F>& v, int len) {
    if (const ZppStatus error = firstError(checkLength(len), checkAll(v.src), checkAll(v.dst))) return error;
    ReportedWarnings<F, VmVectors<F>> warned{v};
    evaluateBlocks(f, v, len, warned);
    return warned.status;
}

template <class Warned, class F, class VectorsOfCall>
ZppStatus evaluateElements(const F& f, const VectorsOfCall& v, int len) {
    if (const ZppStatus error = firstError(checkAll(v.src), checkAll(v.dst), checkLength(len))) return error;
    Warned warned;
    evaluateBlocks(f, v, len, warned);
    return warned.status;
}

}  // namespace zpp::ZPP_ISA
