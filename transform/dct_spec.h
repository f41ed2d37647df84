// The DCT specification, and the choices that tables and transforms must agree on.
#pragma once

#include "transform/fft_spec.h"

// The body of a specification is the same type in all ISA builds.
struct ZppsDCTSpec {
    int32_t id;  // a DctKind; 0 once freed
    int32_t len;
    int32_t hint;
    int32_t bufSize;
    double c0, c;       // sqrt(1 / len), sqrt(2 / len); 0 where `small`
    int32_t small;      // 1, 2, 4 or 8: fixed kernels
    int32_t pow2;       // any other power of two: an FFT of half the length
    int32_t pow2Large;  // one whose FFT takes memory of its own
    int32_t large;      // above kMaxDirect and no power of two: a convolution
    int32_t reserved[2];
    double* cosTable;       // direct method: cos(2 pi i / (4 len)), i < 4 len
    double* pow2Table;      // power-of-two method: between spectrum and cosine transform
    double* matrices;       // direct method: of the even and of the odd results
    double* twiddles;       // large method: between spectrum and cosine transform
    double* thirds;         // of the first step of a convolution of three powers of two
    double* chirp;          // convolution: exp(-pi i j^2 / n), n the length of the transform that it makes
    double* chirpSpectrum;  // of its conjugate, over the length of the convolution
    void* fft;  // FftTables of the power-of-two method; the FFT of the large one, in a block of its own
};
static_assert(sizeof(ZppsDCTSpec) == (sizeof(void*) == 4 ? 88 : 120));

namespace zpp::ZPP_ISA {

enum DctKind : int32_t { kForwardDct = 23, kInverseDct = 24 };

inline constexpr int kMaxSmall = 8;
inline constexpr int kMaxDirect = 100;
// Of the work buffer of the methods but the last.
inline constexpr int kDctAlignment = 16;

// log2 of a power of two.
inline int orderOf(int len) { return 31 - __builtin_clz(static_cast<unsigned>(len)); }

// The lengths of the large method.
struct ChirpLengths {
    uint64_t inputs;   // of the convolution: complex numbers of half the length where that is even
    uint64_t outputs;  // as many as are needed of the other side
    int order;         // of the FFT that it is computed with ...
    uint64_t parts;    // ... in so many parts, 1 or 3
    uint64_t length;   // all in all
};
inline ChirpLengths chirpLengths(int len) {
    ChirpLengths c;
    const uint64_t n = static_cast<uint64_t>(len);
    c.inputs = n % 2 == 0 ? n / 2 : n;
    c.outputs = n % 2 == 0 ? n / 2 : n / 2 + 1;
    c.order = 0;
    while (uint64_t{4} << c.order < c.inputs + c.outputs - 1) ++c.order;
    c.parts = uint64_t{3} << c.order < c.inputs + c.outputs - 1 ? 1 : 3;
    if (c.parts == 1) c.order += 2;
    c.length = c.parts << c.order;
    return c;
}

// A null specification, then one of another kind.
inline ZppStatus checkSpec(const ZppsDCTSpec* spec, DctKind kind) {
    if (spec == nullptr) return zppStatusNullPointer;
    return require(identifierOf(spec) == kind, zppStatusContextMismatch);
}

}  // namespace zpp::ZPP_ISA
