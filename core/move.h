// Block copies and fills.
#pragma once

#include "core/loops.h"

namespace zpp::ZPP_ISA {

// Nothing is written where source and destination are the same.
template <class T>
inline void copyElements(const T* src, T* dst, size_t len) {
    if (src != dst) memcpy(dst, src, len * sizeof(T));
}

template <class T>
inline void zeroElements(T* dst, size_t len) {
    memset(static_cast<void*>(dst), 0, len * sizeof(T));
}

// Every element = val, by its bytes: as vectors that hold val as often as they can.
template <class T>
inline void fillElements(T val, T* dst, size_t len) {
    constexpr int n = kVectorBytes / sizeof(T) > 1 ? kVectorBytes / sizeof(T) : 1;
    struct Pattern {
        T elements[n];
    } pattern;
    for (T& element : pattern.elements) memcpy(&element, &val, sizeof val);
    forEachStep<n>(
        len, dst, sizeof(T), [](auto, size_t) { return 0; },
        [&](auto lanes, size_t i, int) { memcpy(dst + i, &pattern, decltype(lanes)::value * sizeof(T)); });
}

}  // namespace zpp::ZPP_ISA
