// Signals and spectra in the arrays that functions take them in.
#pragma once

#include <vector>

#include "zpp/transform.h"

namespace zpp::test {

// Packed spectra; then complex elements, in pairs or in two arrays, and real ones.
enum Layout { kPack, kPerm, kCcs, kPairs, kTwoArrays, kReal };

inline bool isPacked(Layout layout) { return layout <= kCcs; }

inline std::size_t sizeIn(Layout layout, std::size_t n) {
    return layout == kCcs ? (n / 2 + 1) * 2 : layout == kPairs ? 2 * n : n;
}

// Where the parts of element k are in an array of n elements; -1 for a part that is left out.
struct Place {
    int re, im;
};
inline Place placeOf(Layout layout, int k, int n) {
    const bool real = k == 0 || 2 * k == n;
    if (layout == kTwoArrays || layout == kReal) return {k, -1};
    if (layout == kCcs || layout == kPairs) return {2 * k, 2 * k + 1};
    if (layout == kPerm && n % 2 == 0) return real ? Place{k == 0 ? 0 : 1, -1} : Place{2 * k, 2 * k + 1};
    return {k == 0 ? 0 : 2 * k - 1, real ? -1 : 2 * k};
}

inline std::vector<double> packed(Layout layout, const std::vector<Zpp64fc>& elements) {
    std::vector<double> result(sizeIn(layout, elements.size()));
    for (std::size_t k = 0; k < (isPacked(layout) ? elements.size() / 2 + 1 : elements.size()); ++k) {
        const Place at = placeOf(layout, static_cast<int>(k), static_cast<int>(elements.size()));
        result[static_cast<std::size_t>(at.re)] = elements[k].re;
        if (at.im >= 0) result[static_cast<std::size_t>(at.im)] = elements[k].im;
    }
    return result;
}

inline std::vector<Zpp64fc> unpacked(Layout layout, const double* numbers, std::size_t n) {
    std::vector<Zpp64fc> result(n);
    for (std::size_t k = isPacked(layout) ? n / 2 + 1 : n; k-- > 0;) {
        const Place at = placeOf(layout, static_cast<int>(k), static_cast<int>(n));
        const Zpp64fc x = {numbers[at.re], at.im < 0 ? 0.0 : numbers[at.im]};
        if (isPacked(layout)) result[(n - k) % n] = {x.re, -x.im};
        result[k] = x;
    }
    return result;
}

}  // namespace zpp::test
