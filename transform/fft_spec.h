// The FFT specification, what it holds, and the choices that tables and transforms must agree on.
#pragma once

#include "core/checks.h"
#include "core/complex.h"
#include "transform/exports.h"

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
// Up to this order the work buffer is on the stack: 8 KiB.
inline constexpr int kMaxStackOrder = 9;
// Passes over at least this many blocks have radix 8, others radix 4. With 16 registers radix 8 spills and is
// slower (by a tenth at 256 to 2048 elements).
inline constexpr size_t kRadix8From = kLanes<double> >= 8 ? 64 : SIZE_MAX;
// Work buffers are used from a multiple of this on.
inline constexpr size_t kBufferAlignment = 64;

// The vectors that a transform of an order runs in: the widest whose first pass fits the length.
constexpr int transformWidth(int order) {
    int width = kLanes<double>;
    while (width > 1 && (size_t{1} << order) < static_cast<size_t>(width) * static_cast<size_t>(width))
        width /= 2;
    return width;
}

// Roots of unity exp(-2 pi i k / 2^order) as products of two table entries: fine[k % 2^fineOrder] and
// coarse[k >> fineOrder], pairs (re, im).
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
    SplitRoots huge[kMaxOrder - kMaxBufferOrder];  // of the radix-2 steps to order + 1, ...
};

}  // namespace zpp::ZPP_ISA

struct ZppsFFTSpec {
    int32_t id;  // a SpecKind; 0 once freed
    int32_t order;
    int32_t fwdNorm, invNorm;  // whether the direction multiplies by scale
    double scale;
    int32_t hint;
    int32_t bufSize;
    void* memory;  // of all tables
    zpp::ZPP_ISA::FftTables complex;
    zpp::ZPP_ISA::SplitRoots real;  // of the recombination, real kind only
};

namespace zpp::ZPP_ISA {

// A null specification, then one of another kind.
inline ZppStatus checkSpec(const ZppsFFTSpec* spec, SpecKind kind) {
    if (spec == nullptr) return zppStatusNullPointer;
    return require(identifierOf(spec) == kind, zppStatusContextMismatch);
}

// The first address from `block` on that is a multiple of `alignment`.
inline double* alignedTo(void* block, size_t alignment) {
    const uintptr_t misaligned = reinterpret_cast<uintptr_t>(block) & (alignment - 1);
    char* start = static_cast<char*>(block);
    return reinterpret_cast<double*>(misaligned != 0 ? start + (alignment - misaligned) : start);
}

}  // namespace zpp::ZPP_ISA
