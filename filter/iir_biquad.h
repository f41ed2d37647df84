// Cascades of second-order sections.
#pragma once

#include "filter/iir_kernel.h"
#include "filter/iir_state.h"

namespace zpp::ZPP_ISA {

// One section after the other.
template <class T>
void filterCascade(const T* taps, size_t sections, T* line, const T* src, T* dst, size_t len) {
    for (; sections-- > 0; taps += kSectionTaps, line += kSectionDelays, src = dst)
        filterSmall<2>(taps, line, src, dst, len);
}

}  // namespace zpp::ZPP_ISA
