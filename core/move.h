// Block copies and fills.
#pragma once

#include "core/loops.h"

namespace zpp::ZPP_ISA {

// Nothing is written where source and destination are the same.
template <class T>
inline void copyElements(const T* src, T* dst, size_t len) {
    if (src == dst) return;
    const size_t bytes = len * sizeof(T);
    if (isStreamed(dst, bytes)) [[unlikely]]
        mapStreamed(reinterpret_cast<uint8_t*>(dst), bytes, itself, reinterpret_cast<const uint8_t*>(src));
    else
        memcpy(dst, src, bytes);
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

// The first N of len elements and the last N change places and order; they may be partly the same.
template <int N, class T>
ZPP_INLINE void exchangeEnds(T* p, size_t len) {
    using V = Vec<T, N>;
    const V first = load<V>(p), last = load<V>(p + len - N);
    store(p, reverseLanes(last));
    store(p + len - N, reverseLanes(first));
}

// The elements in reverse order.
template <class T>
inline void reverseElements(T* p, size_t len) {
    constexpr int n = kLanes<T>;
    if constexpr (n > 1)
        for (; len >= n; p += n, len = len > 2 * n ? len - 2 * n : 0) exchangeEnds<n>(p, len);
    for (; len > 1; ++p, len -= 2) exchangeEnds<1>(p, len);
}

// Every element = val, by its bytes. The value comes by reference, and its copies are integers, so that it
// never passes through a floating register, where x87 would quieten a NaN.
template <class T>
inline void fillElements(const T& val, T* dst, size_t len) {
    using Word = std::conditional_t<sizeof(T) == sizeof(uint32_t), uint32_t, uint64_t>;
    constexpr int words = sizeof(T) / sizeof(Word);
    constexpr int n = kLanes < Word >> words ? kLanes<Word> / words : 1;
    const auto one = load<Vec<Word, words>>(&val);
    auto filled = Vec<Word, n * words>{};
    if constexpr (words == 1)
        filled = pinned(broadcast<Vec<Word, n>>(one));
    else if constexpr (kVectorBytes > 0)
        filled = pinned(repeated<Vec<Word, n * words>>(Vec<Word, 2>{one[0], one[1]}));
    else
        filled = one;
    forEachStep<n, true>(
        len, dst, sizeof(T),
        [=](auto lanes, size_t) {
            if constexpr (decltype(lanes)::value == n)
                return filled;
            else
                return one;
        },
        [=](auto, size_t i, auto v) { store(dst + i, v); });
}

}  // namespace zpp::ZPP_ISA
