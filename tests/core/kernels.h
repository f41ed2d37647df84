// Functions on pieces of core/ and of families, which kernels.cpp defines once for each ISA build.
#pragma once

#include <cstdint>

#include "zpp/status.h"
#include "zpp/types.h"

namespace zpp::test {

enum class Pivots { kAsChosen, kLeast, kGreatest };

struct CoreKernels {
    // Lanes of 64 bits, scaled to the range of 32.
    ZppStatus (*scale64)(const std::int64_t*, std::int64_t*, int, int scaleFactor);
    // The scaled sum of two vectors, in lanes of 32 bits that are packed to 16.
    ZppStatus (*addScaled)(const Zpp16s*, const Zpp16s*, Zpp16s*, int, int scaleFactor);
    // Complex numbers of other types as doubles, and back.
    ZppStatus (*fromSingles)(const Zpp32fc*, Zpp64fc*, int);
    ZppStatus (*fromInts)(const Zpp32sc*, Zpp64fc*, int);
    ZppStatus (*fromWords)(const Zpp16sc*, Zpp64fc*, int);
    ZppStatus (*toSingles)(const Zpp64fc*, Zpp32fc*, int);
    // (im, re ^ x) for (re, im) and x, in registers of one part each.
    ZppStatus (*exchangeInts)(const Zpp32sc*, const Zpp32s*, Zpp32sc*, int);
    ZppStatus (*exchangeDoubles)(const Zpp64fc*, const Zpp64f*, Zpp64fc*, int);
    // Sort, and give how many pivots that took.
    int (*sortInts)(Zpp32s*, int, Pivots);
    int (*sortReals)(Zpp64f*, int, Pivots);
};

}  // namespace zpp::test
