// Elements of filters, between the precision of a signal and that of a state.
#pragma once

#include "core/loops.h"
#include "core/move.h"
#include "core/simd_convert.h"

namespace zpp::ZPP_ISA {

// One element from the precision of the signal to that of the state, and back, rounded to nearest.
inline Zpp64f widened(Zpp32f x) { return x; }
inline Zpp64fc widened(Zpp32fc x) { return {x.re, x.im}; }
inline Zpp32f narrowed(Zpp64f x) { return static_cast<Zpp32f>(x); }
inline Zpp32fc narrowed(Zpp64fc x) { return {narrowed(x.re), narrowed(x.im)}; }

template <class To, class From>
inline void convertElement(const From& from, To& to) {
    if constexpr (std::is_same_v<To, From>)
        memcpy(&to, &from, sizeof to);  // also a signalling NaN, which the x87 unit would change
    else if constexpr (sizeof(To) > sizeof(From))
        to = widened(from);
    else
        to = narrowed(from);
}

// The scalars of a vector of elements.
template <class T>
inline auto* scalars(T* p) {
    if constexpr (std::is_floating_point_v<T>)
        return p;
    else
        return &p->re;
}

// dst[i] = src[i], from the precision of the signal to that of the state or back.
template <class To, class From>
void convertElements(const From* src, To* dst, size_t len) {
    if constexpr (std::is_same_v<To, From>) {
        copyElements(src, dst, len);
    } else {
        const auto* from = scalars(src);
        auto* to = scalars(dst);
        using Scalar = std::remove_reference_t<decltype(*to)>;
        forEachStep<kLanes<double>>(
            len * (sizeof(To) / sizeof(Scalar)), to, sizeof(Scalar),
            [=](auto lanes, size_t i) { return loadAsDoubles<decltype(lanes)::value>(from + i); },
            [=](auto, size_t i, auto v) { storeFromDoubles(to + i, v); });
    }
}

}  // namespace zpp::ZPP_ISA
