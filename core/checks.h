// Argument checks. Each gives a status, and firstError the first that is not zppStatusOk, so that
//     firstError(checkPointers(pSrc, pDst), checkLength(len))
// reads in the order in which the checks are made.
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

template <class... T>
inline ZppStatus checkPointers(const T*... pointers) {
    return (... || (pointers == nullptr)) ? zppStatusNullPointer : zppStatusOk;
}

// `status` unless the condition holds.
inline ZppStatus require(bool condition, ZppStatus status) { return condition ? zppStatusOk : status; }

inline ZppStatus checkLength(int len) { return require(len > 0, zppStatusSizeError); }

template <class... Status>
inline ZppStatus firstError(ZppStatus first, Status... others) {
    if constexpr (sizeof...(others) > 0)
        return first != zppStatusOk ? first : firstError(others...);
    else
        return first;
}

// The checks of most functions: null pointers, then the length.
template <class... T>
inline ZppStatus checkVectors(int len, const T*... pointers) {
    return firstError(checkPointers(pointers...), checkLength(len));
}

// The identifier word that every object begins with. What a caller gives need not be an object, nor aligned
// as one.
inline int32_t identifierOf(const void* object) {
    int32_t id;
    memcpy(&id, object, sizeof id);
    return id;
}

// A comparison with a NaN counts as equal.
inline bool isZero(double x) { return !(x < 0 || x > 0); }
inline bool isOne(double x) { return !(x < 1 || x > 1); }

}  // namespace zpp::ZPP_ISA
