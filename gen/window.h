// The loop of all windows: a register of weights is applied to elements at the front and, in reverse order,
// to their images at the back. These are apart, but for the last register, of which only the weights of the
// front half are taken, one by one.
//
// A window is what has
//     kBlock                        elements that are prepared together, a multiple of a group of registers
//     kGroup, hasGroups()           how many registers take their weights from the same source
//     prepare(first, count)         called for one block of elements behind the other
//     weights(first)                a function: of k, from 0 on within a group, it gives a register of the
//                                   weights of the element first + k and those behind it
//     endsWeighNothing()            whether the end elements have the weight 0, whatever weights() says
//     zeroEnds()                    whether they become 0, whatever they are
#pragma once

#include "core/loops.h"
#include "core/move.h"
#include "vm/environment.h"

namespace zpp::ZPP_ISA {

// first, first + 1, ... in the lanes.
template <class V>
ZPP_INLINE V countedFrom(size_t first) {
    static constexpr double kCount[] = {0, 1, 2, 3, 4, 5, 6, 7};
    return load<V>(kCount) + static_cast<double>(static_cast<int>(first));
}

// As opaque(), of a pointer: an instruction with an operand at an index takes two operations, which GCC does
// not count where it makes indices of pointers.
template <class T>
ZPP_INLINE T* opaque(T* p) {
    __asm__("" : "+r"(p));
    return p;
}

// dst[k] = weights[k] src[k] for the lanes.
template <class V>
ZPP_INLINE void putWeighted(const double* src, double* dst, V weights) {
    store(dst, product(load<V>(src), weights));
}
template <class V>
ZPP_INLINE void putWeighted(const Zpp64fc* src, Zpp64fc* dst, V weights) {
    if constexpr (std::is_same_v<V, double>) {
        *dst = {product(src->re, weights), product(src->im, weights)};
    } else {
        constexpr int lanes = kLanes<double>;
        const V low = load<V>(src) * eachTwice<lanes>(lowHalf(weights)),
                high = load<V>(src + lanes / 2) * eachTwice<lanes>(highHalf(weights));
        store(dst, low);
        store(dst + lanes / 2, high);
    }
}

// Of elements i .. end-1 of `len` and their images.
template <class Window, class T>
ZPP_INLINE void applyBlock(const Window& window, size_t i, size_t end, size_t len, const T* src, T* dst) {
    constexpr size_t lanes = kLanes<double>, group = Window::kGroup * lanes;
    const auto apply = [=](size_t first, auto weights) ZPP_INLINE_LAMBDA {
        const size_t image = len - first - sizeof weights / sizeof(double);
        putWeighted(src + first, dst + first, weights);
        putWeighted(src + image, dst + image, reverseLanes(weights));
    };
    if (window.hasGroups()) {
        const T *front = src + i, *back = src + (len - i);
        T *frontTo = dst + i, *backTo = dst + (len - i);
        for (; i + group <= end; i += group) {
            const auto weights = window.weights(i);
            back = opaque(back - group), backTo = opaque(backTo - group);
#pragma GCC unroll 4
            for (size_t k = 0; k < group; k += lanes) {
                const auto w = weights(k);
                putWeighted(front + k, frontTo + k, w);
                const size_t image = group - lanes - k;
                putWeighted(back + image, backTo + image, reverseLanes(w));
            }
            front = opaque(front + group), frontTo = opaque(frontTo + group);
        }
    }
    for (; i + lanes <= end; i += lanes) apply(i, window.weights(i)(0));
    if (i >= end) return;
    double rest[lanes];
    store(rest, window.weights(i)(0));
    for (size_t k = 0; i < end; ++i, ++k) apply(i, rest[k]);
}

// In the environment of the kernels.
template <class Window, class T>
ZPP_INLINE ZppStatus applyWindow(Window&& window, const T* src, T* dst, int count) {
    const size_t len = static_cast<size_t>(count), pairs = len / 2;
    const T first = src[0], last = src[len - 1];
    for (size_t i = 0, end; i < pairs; i = end) {
        end = pairs - i < window.kBlock ? pairs : i + window.kBlock;
        window.prepare(i, end - i);
        applyBlock(window, i, end, len, src, dst);
    }
    if (len % 2 != 0) copyElements(src + pairs, dst + pairs, 1);
    if (window.endsWeighNothing()) {
        putWeighted(&first, dst, 0.0);
        putWeighted(&last, dst + len - 1, 0.0);
    }
    if (window.zeroEnds()) {
        zeroElements(dst, 1);
        zeroElements(dst + len - 1, 1);
    }
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
