// The FFT specification, what it holds, and the choices that tables and transforms must agree on.
#pragma once

#include "core/areas.h"
#include "core/complex.h"
#include "transform/exports.h"

// The body of a specification is the same type in all ISA builds, and so are its parts.
namespace zpp {

// Roots of unity exp(-2 pi i k / 2^order), made as they are needed (fft_large.h): the root of index
// k >> fineOrder in `coarse`, of four numbers (re, im, and what their rounding left), is turned by the fine
// angle of k % 2^fineOrder, whose root less 1 is the pair in `fine`. With fineOrder == order, `fine` holds
// the roots of the first quarter turn themselves.
struct SplitRoots {
    int order;
    int fineOrder;
    const double* fine;
    const double* coarse;
};

// Twiddle tables of one complex length.
struct FftTables {
    int order;                 // at most kMaxBufferOrder
    const double* first;       // of the first pass: for each of its vectors, W - 1 vectors of re and im
    const double* columns[2];  // of the later passes; of columns and rows in the four-step scheme
    SplitRoots roots;          // between the steps of the four-step scheme
    SplitRoots* huge;          // of the radix-2 steps to order + 1, ...
};

}  // namespace zpp

struct ZppsFFTSpec {
    int32_t id;  // a SpecKind; 0 once freed
    int32_t order;
    int32_t fwdNorm, invNorm;  // whether the direction multiplies by scale
    double scale;
    int32_t hint;
    int32_t bufSize;
    zpp::FftTables complex;
    zpp::SplitRoots real;  // of the recombination, real kind only
};

namespace zpp::ZPP_ISA {

enum SpecKind : int32_t { kComplexSpec = 7, kSplitSpec = 8, kRealSpec = 9 };

inline constexpr int kMaxOrder = 30;
// Up to this order the passes go over the whole data; above, the four-step scheme keeps to the cache.
inline constexpr int kMaxPlainOrder = 15;
// The largest order whose work buffer, one copy of the data, has a size that is an int. Above, the first
// passes run in place and leave parts of this order. A test that cannot have 2 GiB lowers it.
#ifndef ZPP_FFT_MAX_BUFFER_ORDER
#define ZPP_FFT_MAX_BUFFER_ORDER 26
#endif
inline constexpr int kMaxBufferOrder = ZPP_FFT_MAX_BUFFER_ORDER;
// Up to this order the recombination of the real transforms has its roots whole: 16 KiB.
inline constexpr int kMaxWholeOrder = 12;
// Up to this order the work buffer is on the stack: 8 KiB.
inline constexpr int kMaxStackOrder = 9;
// Passes over at least this many blocks have radix 8, others radix 4. With 16 registers radix 8 spills and is
// slower (by a tenth at 256 to 2048 elements).
inline constexpr size_t kRadix8From = kLanes<double> >= 8 ? 64 : SIZE_MAX;

// The vectors that a transform of an order runs in: the widest whose first pass fits the length.
constexpr int transformWidth(int order) {
    int width = kLanes<double>;
    while (width > 1 && (size_t{1} << order) < static_cast<size_t>(width) * static_cast<size_t>(width))
        width /= 2;
    return width;
}

// A null specification, then one of another kind.
inline ZppStatus checkSpec(const ZppsFFTSpec* spec, SpecKind kind) {
    if (spec == nullptr) return zppStatusNullPointer;
    return require(identifierOf(spec) == kind, zppStatusContextMismatch);
}

}  // namespace zpp::ZPP_ISA
