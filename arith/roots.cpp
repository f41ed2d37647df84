// Absolute values, squares and square roots.
#include "arith/exports.h"
#include "core/elementwise.h"
#include "core/simd_fold.h"

namespace zpp::ZPP_ISA {
namespace {

// That of -2^31, which has no room, is one less.
constexpr auto saturatedMagnitude = [](auto x) ZPP_INLINE_LAMBDA {
    const auto wrapped = bitCast<decltype(x)>(magnitudeOfInts(asUnsigned(x)));
    return wrapped ^ wrapped >> 31;
};

struct SquareRoot {
    bool* negativeMet;

    template <class V>
    ZPP_INLINE V operator()(V x) const {
        const auto negative = (x >= 0) == 0;
        if (!any(negative)) [[likely]]
            return squareRoot(x);
        *negativeMet = true;
        return select(negative, quietNan<V>(), squareRoot(select(negative, V{}, x)));
    }
};

inline ZppStatus root(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return withWarning(zppStatusSqrtNegative,
                       [=](bool* met) { return elementwise(SquareRoot{met}, pDst, len, pSrc); });
}

constexpr auto square = [](auto x) { return product(x, x); };
constexpr auto complexSquare = [](auto z) ZPP_INLINE_LAMBDA {
    const auto half = product(z.re, z.im);
    return decltype(z){product(stored(z.re + z.im), stored(z.re - z.im)), stored(half + half)};
};

// With a and b the halves of the parts, and s = sqrt(sqrt(a a + b b) + |a|), the parts of the root are s and
// b / s, or, where a is below 0, |b / s| and s with the sign of b. Where a is 0 both are sqrt(|b|), but for
// the sign. A b of -0.0 has no sign in this.
constexpr auto complexRoot = [](auto z) ZPP_INLINE_LAMBDA {
    using V = decltype(z.re);
    const V a = product(z.re, 0.5), b = product(z.im, 0.5);
    const auto belowZero = b < 0, turned = a < 0, straight = a == 0;
    const auto withSign = [=](V x) ZPP_INLINE_LAMBDA { return select(belowZero, -x, x); };
    const V norm = stored(squareRoot(stored(product(a, a) + product(b, b))));
    const V s = stored(squareRoot(select(straight, withSign(b), stored(norm + magnitude(a)))));
    const V other = quotient(b, s);
    return decltype(z){select(turned, withSign(other), s), select(turned | straight, withSign(s), other)};
};

}  // namespace

ZppStatus zppsAbs_32s(const Zpp32s* pSrc, Zpp32s* pDst, int len) {
    return elementwise(saturatedMagnitude, pDst, len, pSrc);
}
ZppStatus zppsAbs_32s_I(Zpp32s* pSrcDst, int len) { return zppsAbs_32s(pSrcDst, pSrcDst, len); }
ZppStatus zppsAbs_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return elementwise([](auto x) { return magnitude(x); }, pDst, len, pSrc);
}
ZppStatus zppsAbs_64f_I(Zpp64f* pSrcDst, int len) { return zppsAbs_64f(pSrcDst, pSrcDst, len); }

ZppStatus zppsSqr_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return elementwise(square, pDst, len, pSrc);
}
ZppStatus zppsSqr_64f_I(Zpp64f* pSrcDst, int len) { return zppsSqr_64f(pSrcDst, pSrcDst, len); }
ZppStatus zppsSqr_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return elementwiseComplex(complexSquare, pDst, len, pSrc);
}
ZppStatus zppsSqr_64fc_I(Zpp64fc* pSrcDst, int len) { return zppsSqr_64fc(pSrcDst, pSrcDst, len); }

ZppStatus zppsSqrt_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) { return root(pSrc, pDst, len); }
ZppStatus zppsSqrt_64f_I(Zpp64f* pSrcDst, int len) { return root(pSrcDst, pSrcDst, len); }
ZppStatus zppsSqrt_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return elementwiseComplex(complexRoot, pDst, len, pSrc);
}
ZppStatus zppsSqrt_64fc_I(Zpp64fc* pSrcDst, int len) { return zppsSqrt_64fc(pSrcDst, pSrcDst, len); }

}  // namespace zpp::ZPP_ISA
