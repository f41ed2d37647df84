// Packed-spectrum arithmetic.
#include "core/checks.h"
#include "core/loops.h"
#include "transform/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto straight = [](auto a, auto b) { return product(a, b); };
constexpr auto conjugated = [](auto a, auto b) { return productConj(a, b); };

// Where the pairs of a packed spectrum begin, the first being that of X1, and where R(N / 2) is if N is even.
struct Packing {
    size_t pairs;
    size_t nyquist;
};

inline Packing packLayout(size_t n) { return {1, n - 1}; }
inline Packing permLayout(size_t n) { return n % 2 == 0 ? Packing{2, 1} : packLayout(n); }
inline Packing ccsLayout(size_t n) { return {2, n}; }

inline const Zpp64fc* pairsAt(const Zpp64f* p) { return reinterpret_cast<const Zpp64fc*>(p); }

// dst = op(src1, src2) for each element of the spectrum; the real ones are multiplied.
template <class Op>
inline ZppStatus multiply(Op op, const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len,
                          Packing (*layout)(size_t)) {
    if (const ZppStatus error = checkVectors(len, pSrc1, pSrc2, pDst)) return error;
    const size_t n = static_cast<size_t>(len);
    const Packing at = layout(n);
    map(pDst, 1, straight, pSrc1, pSrc2);
    if (n % 2 == 0) map(pDst + at.nyquist, 1, straight, pSrc1 + at.nyquist, pSrc2 + at.nyquist);
    map(reinterpret_cast<Zpp64fc*>(pDst + at.pairs), (n - 1) / 2, op, pairsAt(pSrc1 + at.pairs),
        pairsAt(pSrc2 + at.pairs));
    return zppStatusOk;
}

// Pairs count .. 1 of `pairs` to dst[k] and, conjugated, to dst[n - k]. From the highest down, and each read
// before it is written, for a source at the start of dst.
inline void expandPairs(const Zpp64f* pairs, Zpp64fc* dst, size_t n, size_t count) {
    for (size_t k = count; k > 0; --k) {
        const Zpp64f re = pairs[2 * k - 2], im = pairs[2 * k - 1];
        dst[k] = {re, im};
        dst[n - k] = {re, -im};
    }
}

// The full spectrum of a packed one, which may stand at the start of pDst.
inline ZppStatus expand(const Zpp64f* pSrc, Zpp64fc* pDst, int len, Packing (*layout)(size_t),
                        bool storesImaginary) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    const size_t n = static_cast<size_t>(len);
    const Packing at = layout(n);
    const Zpp64fc first = {pSrc[0], storesImaginary ? pSrc[1] : 0};
    Zpp64fc nyquist = {0, 0};
    if (n % 2 == 0) nyquist = {pSrc[at.nyquist], storesImaginary ? pSrc[at.nyquist + 1] : 0};
    expandPairs(pSrc + at.pairs, pDst, n, (n - 1) / 2);
    if (n % 2 == 0) pDst[n / 2] = nyquist;
    pDst[0] = first;
    return zppStatusOk;
}

inline const Zpp64f* packedIn(const Zpp64fc* p) { return reinterpret_cast<const Zpp64f*>(p); }

}  // namespace

ZppStatus zppsMulPack_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return multiply(straight, pSrc1, pSrc2, pDst, len, packLayout);
}
ZppStatus zppsMulPack_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return multiply(straight, pSrc, pSrcDst, pSrcDst, len, packLayout);
}
ZppStatus zppsMulPerm_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return multiply(straight, pSrc1, pSrc2, pDst, len, permLayout);
}
ZppStatus zppsMulPerm_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return multiply(straight, pSrc, pSrcDst, pSrcDst, len, permLayout);
}
ZppStatus zppsMulPackConj_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return multiply(conjugated, pSrc, pSrcDst, pSrcDst, len, packLayout);
}

ZppStatus zppsConjPack_64fc(const Zpp64f* pSrc, Zpp64fc* pDst, int len) {
    return expand(pSrc, pDst, len, packLayout, false);
}
ZppStatus zppsConjPack_64fc_I(Zpp64fc* pSrcDst, int len) {
    return zppsConjPack_64fc(packedIn(pSrcDst), pSrcDst, len);
}
ZppStatus zppsConjPerm_64fc(const Zpp64f* pSrc, Zpp64fc* pDst, int len) {
    return expand(pSrc, pDst, len, permLayout, false);
}
ZppStatus zppsConjPerm_64fc_I(Zpp64fc* pSrcDst, int len) {
    return zppsConjPerm_64fc(packedIn(pSrcDst), pSrcDst, len);
}
ZppStatus zppsConjCcs_64fc(const Zpp64f* pSrc, Zpp64fc* pDst, int len) {
    return expand(pSrc, pDst, len, ccsLayout, true);
}
ZppStatus zppsConjCcs_64fc_I(Zpp64fc* pSrcDst, int len) {
    return zppsConjCcs_64fc(packedIn(pSrcDst), pSrcDst, len);
}

}  // namespace zpp::ZPP_ISA
