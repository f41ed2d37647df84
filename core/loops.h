// Element loops: they take the operation as a generic callable, which is applied to registers of several
// elements and, for what is too short for one, to single elements. core/elementwise.h puts checks before
// them.
//
// A step is what a loop takes at once. A full step fills a register of every operand (kStep, kStep32
// elements); of a vector that is shorter than that, each step takes one element. A loop is unrolled by hand
// in two cases: to keep an array of registers in registers, for which its indices must be constants (#pragma
// GCC unroll); and here, where it lessens the cost of counting, and lets loads and stores go in groups.
//
// A lambda is a ZPP_INLINE_LAMBDA where it is called for every step and its body is more than an operator or
// two: a call would cost more than the step. What is called once for a vector is left to the compiler.
#pragma once

#include "core/complex.h"

namespace zpp::ZPP_ISA {

// How many elements of T a step takes: as many as fill a register. Complex integers come with their parts
// beside each other in one register, or, single ones, as Halves.
template <class T>
inline constexpr int kStep = kLanes<T>;
template <>
inline constexpr int kStep<Zpp64fc> = kVectorBytes == 0 ? 1 : kLanes<double> / 2;
template <>
inline constexpr int kStep<Zpp32sc> = kLanes<int64_t>;

template <int N, class T>
ZPP_INLINE auto loadElements(const T* p) {
    if constexpr (std::is_same_v<T, Zpp64fc>)
        return loadPairs<N>(&p->re);
    else if constexpr (std::is_same_v<T, Zpp32sc> && N == 1)
        return halves(p->re, p->im);
    else if constexpr (std::is_same_v<T, Zpp32sc>)
        return load<Vec<int32_t, 2 * N>>(p);
    else
        return load<Vec<T, N>>(p);
}

template <class T, class V>
ZPP_INLINE void storeElements(T* p, V v) {
    if constexpr (std::is_same_v<T, Zpp64fc>)
        storePairs(&p->re, v);
    else
        store(p, v);
}

template <class T, class V>
ZPP_INLINE void streamElements(T* p, V v) {
    if constexpr (std::is_same_v<T, Zpp64fc>)
        streamPairs(&p->re, v);
    else
        stream(p, v);
}

// One element as an operand for registers of type V.
template <class V>
ZPP_INLINE double inRegister(double val) {
    return val;
}
template <class V>
ZPP_INLINE Complex<double> inRegister(Zpp64fc val) {
    return {val.re, val.im};
}
template <class V>
ZPP_INLINE V inRegister(Zpp32s val) {
    return broadcast<V>(val);
}
template <class V>
ZPP_INLINE V inRegister(Zpp32sc val) {
    if constexpr (kIsHalves<V>)
        return {val.re, val.im};
    else
        return bitCast<V>(broadcast<Vec<uint64_t, sizeof(V) / sizeof(val)>>(
            uint64_t{static_cast<uint32_t>(val.im)} << 32 | static_cast<uint32_t>(val.re)));
}

template <int N>
using Lanes = std::integral_constant<int, N>;

// The steps from i on, while they begin before `end`. An operation that leaves registers free takes them four
// at once, computed before they are put.
template <int N, bool kFourAtOnce, class Compute, class Put>
ZPP_INLINE void takeSteps(size_t i, size_t end, Compute compute, Put put) {
    constexpr Lanes<N> lanes;
    if constexpr (kFourAtOnce) {
        if (end >= 3 * N)
            for (const size_t endOfFours = end - 3 * N; i <= endOfFours; i += 4 * N) {
                i = opaque(i);
                const auto a = compute(lanes, i), b = compute(lanes, i + N);
                const auto c = compute(lanes, i + 2 * N), d = compute(lanes, i + 3 * N);
                put(lanes, i, a);
                keepStoreOrder();
                put(lanes, i + N, b);
                keepStoreOrder();
                put(lanes, i + 2 * N, c);
                keepStoreOrder();
                put(lanes, i + 3 * N, d);
            }
        for (; i < end; i += N) {
            i = opaque(i);
            put(lanes, i, compute(lanes, i));
        }
    } else {
#pragma GCC unroll 2
        for (; i < end; i += N) put(lanes, i, compute(lanes, i));
    }
}

// Covers the elements 0 .. len-1 by steps of N: put(lanes, i, compute(lanes, i)) for the `lanes` elements
// from i on, with lanes = N, or 1 when len < N.
//
// The first and the last step may share elements with their neighbours, so that the steps between begin where
// `dst` is aligned and no element is left over. Their values are computed before anything is put and put
// after all else, which makes this right in place as well.
template <int N, bool kFourAtOnce = false, class Compute, class Put>
ZPP_INLINE void forEachStep(size_t len, const void* dst, size_t elementSize, Compute compute, Put put) {
    const DoublePrecision precision;
    constexpr Lanes<N> lanes;
    using Value = decltype(compute(lanes, 0));
    if constexpr (N > 1 || (kVectorBytes > 0 && sizeof(Value) == kVectorBytes)) {
        if (len >= N) [[likely]] {
            const Value first = compute(lanes, 0);
            if (len == N) return put(lanes, 0, first);
            const Value last = compute(lanes, len - N);
            const size_t aligned = N - reinterpret_cast<uintptr_t>(dst) / elementSize % N;
            takeSteps<N, kFourAtOnce>(aligned, len - N, compute, put);
            put(lanes, 0, first);
            put(lanes, len - N, last);
            return;
        }
    }
    for (size_t i = 0; i < len; ++i) put(Lanes<1>{}, i, compute(Lanes<1>{}, i));
}

// Results of so many bytes are stored past the caches, unless they are put where a source is: they would not
// stay there until they are read, and each line of them would first be read from memory.
inline constexpr size_t kStreamedBytes = size_t{16} << 20;

template <class... S>
ZPP_INLINE bool isStreamed([[maybe_unused]] const void* dst, size_t bytes, const S*... src) {
    return kVectorBytes > 0 && bytes >= kStreamedBytes && (... && (src != dst));
}

// Integers have longer operations, for which four registers are too many.
template <class D>
inline constexpr bool kTakesFour = std::is_same_v<D, double> || std::is_same_v<D, Zpp64fc>;

// dst[i] = op(src[i]...) for i = 0 .. len-1.
template <class Op, class D, class... S>
ZPP_INLINE void map(D* dst, size_t len, Op op, const S*... src) {
    forEachStep<kStep<D>, kTakesFour<D>>(
        len, dst, sizeof(D),
        [=](auto lanes, size_t i) { return op(loadElements<decltype(lanes)::value>(src + i)...); },
        [=](auto, size_t i, auto v) { storeElements(dst + i, v); });
}

// The same for a result that is streamed. Not inlined, and with the status of the whole call, so that it is
// jumped to: a short call would pay for what is kept on the stack.
template <class Op, class D, class... S>
[[gnu::noinline]] ZppStatus mapStreamed(D* dst, size_t len, Op op, const S*... src) {
    forEachStep<kStep<D>, kTakesFour<D>>(
        len, dst, sizeof(D),
        [=](auto lanes, size_t i) { return op(loadElements<decltype(lanes)::value>(src + i)...); },
        [=](auto, size_t i, auto v) { streamElements(dst + i, v); });
    streamFence();
    return zppStatusOk;
}

// How many elements of T a step takes that writes to two vectors: a cache line of each, if the registers hold
// it. Stores that change between the vectors within a line take up to two and a half times as long.
template <class T>
inline constexpr int kLineStep = kVectorBytes == 0 ? 1
                                                   : clamp(kRegisters / 4 * kVectorBytes, kVectorBytes, 64) /
                                                         static_cast<int>(sizeof(T));

// How a step of a result goes to memory: write(p, v) of a register, or of several that follow each other.
template <bool kStreamed>
struct Write {
    template <class T, class V>
    ZPP_INLINE void operator()(T* p, V v) const {
        if constexpr (kIsHalves<V> && sizeof(V) > sizeof(T)) {
            (*this)(p, v.low);
            (*this)(p + sizeof(v.low) / sizeof(T), v.high);
        } else if constexpr (kStreamed) {
            streamElements(p, v);
        } else {
            storeElements(p, v);
        }
    }
};

template <int N, bool kFourAtOnce, class Compute, class Put>
[[gnu::noinline]] ZppStatus streamSteps(size_t len, const void* dst, size_t elementSize, Compute compute,
                                        Put put) {
    forEachStep<N, kFourAtOnce>(len, dst, elementSize, compute,
                                [=](auto, size_t i, auto v) { put(Write<true>(), i, v); });
    streamFence();
    return zppStatusOk;
}

// forEachStep with loads and stores of the caller's own, put(write, i, v), and a result of elements of
// elementSize bytes, which is streamed where it is long. Where there are fewer than N, a step takes Short.
template <int N, bool kFourAtOnce = false, int Short = N, class Compute, class Put>
ZPP_INLINE ZppStatus writeSteps(size_t len, const void* dst, size_t elementSize, Compute compute, Put put) {
    const auto store = [=](auto, size_t i, auto v) ZPP_INLINE_LAMBDA { put(Write<false>(), i, v); };
    if (isStreamed(dst, len * elementSize)) [[unlikely]]
        return streamSteps<N, kFourAtOnce>(len, dst, elementSize, compute, put);
    if (N > Short && len < N)
        forEachStep<Short>(len, dst, elementSize, compute, store);
    else
        forEachStep<N, kFourAtOnce>(len, dst, elementSize, compute, store);
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
