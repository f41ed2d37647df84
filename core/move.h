// Block copies and fills.
#pragma once

#include "core/loops.h"

namespace zpp::ZPP_ISA {

// Nothing is written where source and destination are the same.
template <class T>
inline void copyElements(const T* src, T* dst, size_t len) {
    if (src != dst) memcpy(dst, src, len * sizeof(T));
}

// The same for vectors that may overlap.
template <class T>
inline void moveElements(const T* src, T* dst, size_t len) {
    if (src != dst) memmove(dst, src, len * sizeof(T));
}

template <class T>
inline void zeroElements(T* dst, size_t len) {
    memset(static_cast<void*>(dst), 0, len * sizeof(T));
}

// Every element = val, by its bytes: as vectors that hold val as often as they can. The value comes by
// reference, and its copies are integers, so that it never passes through a floating register, where x87
// would quieten a NaN.
template <class T>
inline void fillElements(const T& val, T* dst, size_t len) {
    constexpr int words = sizeof(T) / sizeof(uint32_t);
    constexpr int n = kLanes < uint32_t >> words ? kLanes<uint32_t> / words : 1;
    uint32_t pattern[n * words];
    for (int i = 0; i < n; ++i) memcpy(pattern + i * words, &val, sizeof val);
    forEachStep<n>(
        len, dst, sizeof(T),
        [&](auto lanes, size_t) { return load<Vec<uint32_t, decltype(lanes)::value * words>>(pattern); },
        [=](auto, size_t i, auto v) { store(dst + i, v); });
}

}  // namespace zpp::ZPP_ISA
