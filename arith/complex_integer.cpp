// Scaled complex-integer arithmetic.
#include "arith/exports.h"
#include "core/scaled.h"

namespace zpp::ZPP_ISA {
namespace {

// The parts of a product are sums of two products, of which each is -2^62 + 2^31 ... 2^62: all are 2^31 away
// from the ends of 64 bits, but for an imaginary part of 2^63, where all four numbers are -2^31. In lanes
// that wrap around this is -2^63, which no other product gives, and 2^63 - 2^31 has the same result at every
// scale factor: below 32 it saturates, at 32 it is a tie that does, from there on it is a fourth or less
// below a power of two that 2^63 is scaled to, and at 64 both are 0.
constexpr auto multiply = [](auto a, auto b) ZPP_INLINE_LAMBDA {
    const auto straight = products(a, b), crossed = products(a, swapPairs32(b));
    const auto im = wrappingSum(crossed.low, crossed.high);
    const auto largest = broadcast<decltype(im)>(INT64_MAX - INT32_MAX);
    return halves(straight.low - straight.high, select(im == INT64_MIN, largest, im));
};

inline ZppStatus multiplyByReal(const Zpp32s* pReal, const Zpp32sc* pSrc, Zpp32sc* pDst, int len,
                                int scaleFactor) {
    return withScaledProduct<Lanes64::kProducts>(scaleFactor, [=](auto scale) ZPP_INLINE_LAMBDA {
        return elementwiseSteps<kStep<Zpp32sc>>(
            [=](auto lanes, const Zpp32s* real, const Zpp32sc* complex) ZPP_INLINE_LAMBDA {
                constexpr int n = decltype(lanes)::value;
                return scale(products(loadTwice<n>(real), loadElements<n>(complex)));
            },
            [](Zpp32sc* p, auto v) ZPP_INLINE_LAMBDA { storeElements(p, v); }, pDst, len, pReal, pSrc);
    });
}

}  // namespace

ZppStatus zppsMul_32sc_Sfs(const Zpp32sc* pSrc1, const Zpp32sc* pSrc2, Zpp32sc* pDst, int len,
                           int scaleFactor) {
    return scaledProduct<Lanes64::kPairs>(multiply, pDst, len, scaleFactor, pSrc1, pSrc2);
}
ZppStatus zppsMul_32sc_ISfs(const Zpp32sc* pSrc, Zpp32sc* pSrcDst, int len, int scaleFactor) {
    return zppsMul_32sc_Sfs(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}
ZppStatus zppsMul_32s32sc_Sfs(const Zpp32s* pSrc1, const Zpp32sc* pSrc2, Zpp32sc* pDst, int len,
                              int scaleFactor) {
    return multiplyByReal(pSrc1, pSrc2, pDst, len, scaleFactor);
}
ZppStatus zppsMul_32s32sc_ISfs(const Zpp32s* pSrc, Zpp32sc* pSrcDst, int len, int scaleFactor) {
    return zppsMul_32s32sc_Sfs(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}

ZppStatus zppsMulC_32sc_Sfs(const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor) {
    return scaledProductC<Lanes64::kPairs>(multiply, pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsMulC_32sc_ISfs(Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor) {
    return zppsMulC_32sc_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}

ZppStatus zppsAddC_32sc_Sfs(const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor) {
    return scaledSum<Sum>(pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsAddC_32sc_ISfs(Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor) {
    return zppsAddC_32sc_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}
ZppStatus zppsSubC_32sc_Sfs(const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor) {
    return scaledSum<Difference>(pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsSubC_32sc_ISfs(Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor) {
    return zppsSubC_32sc_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}
ZppStatus zppsSubCRev_32sc_Sfs(const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor) {
    return scaledSum<Reversed<Difference>>(pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsSubCRev_32sc_ISfs(Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor) {
    return zppsSubCRev_32sc_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}

}  // namespace zpp::ZPP_ISA
