// Packed spectra, written out.
#pragma once

#include <vector>

#include "zpp/transform.h"

namespace zpp::test {

enum Layout { kPack, kPerm, kCcs, kFull /* not packed */ };

// Where the parts of X[k] are in a packed spectrum of n elements; -1 for a part that is left out.
struct Place {
    int re, im;
};
inline Place placeOf(Layout layout, int k, int n) {
    const bool real = k == 0 || 2 * k == n;
    if (layout == kCcs) return {2 * k, 2 * k + 1};
    if (layout == kPerm && n % 2 == 0) return real ? Place{k == 0 ? 0 : 1, -1} : Place{2 * k, 2 * k + 1};
    return {k == 0 ? 0 : 2 * k - 1, real ? -1 : 2 * k};
}

inline std::size_t packedSize(Layout layout, std::size_t n) { return layout == kCcs ? (n / 2 + 1) * 2 : n; }

inline std::vector<double> packed(Layout layout, const std::vector<Zpp64fc>& spectrum) {
    std::vector<double> result(packedSize(layout, spectrum.size()));
    for (std::size_t k = 0; k <= spectrum.size() / 2; ++k) {
        const Place at = placeOf(layout, static_cast<int>(k), static_cast<int>(spectrum.size()));
        result[static_cast<std::size_t>(at.re)] = spectrum[k].re;
        if (at.im >= 0) result[static_cast<std::size_t>(at.im)] = spectrum[k].im;
    }
    return result;
}

inline std::vector<Zpp64fc> unpacked(Layout layout, const double* numbers, std::size_t n) {
    std::vector<Zpp64fc> result(n);
    for (std::size_t k = n / 2 + 1; k-- > 0;) {
        const Place at = placeOf(layout, static_cast<int>(k), static_cast<int>(n));
        const Zpp64fc x = {numbers[at.re], at.im < 0 ? 0.0 : numbers[at.im]};
        result[(n - k) % n] = {x.re, -x.im};
        result[k] = x;
    }
    return result;
}

}  // namespace zpp::test
