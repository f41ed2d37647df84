// Dot products.
#include "core/reduce.h"
#include "core/scale.h"
#include "stats/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto multiply = [](auto a, auto b) ZPP_INLINE_LAMBDA { return product(a, b); };

template <class Finish, class A, class B, class D>
ZppStatus dotProduct(Finish finish, const A* pSrc1, const B* pSrc2, int len, D* pDp) {
    if constexpr (kParts<A> == 2 && kParts<B> == 2)
        return sumOfComplex(multiply, finish, pDp, len, pSrc1, pSrc2);
    else
        return sumOf(multiply, finish, pDp, len, pSrc1, pSrc2);
}

// sum * 2^-scaleFactor, saturated and rounded: half a unit is added, which is a rounding of its own, and the
// rest is cut off; what then is odd, and was not cut, comes from a tie and goes back.
template <class A, class B, class D>
ZppStatus scaledDotProduct(const A* pSrc1, const B* pSrc2, int len, D* pDp, int scaleFactor) {
    const double multiplier = powerOfTwo<double>(-clamp(scaleFactor, -31, 93));
    const auto scale = [=](double sum) -> Zpp32s {
        constexpr Range<int32_t> range = kRange<int32_t>;
        const double exact = product(sum, multiplier);
        if (exact > range.upper) return range.upper;
        if (exact < range.lower) return range.lower;
        const double moved = stored(exact >= 0 ? exact + 0.5 : exact - 0.5);
        const auto cut = static_cast<Zpp32s>(moved);
        if (cut % 2 != 0 && cut == moved) return cut > 0 ? cut - 1 : cut + 1;
        return cut;
    };
    return dotProduct(scale, pSrc1, pSrc2, len, pDp);
}

}  // namespace

ZppStatus zppsDotProd_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pDp) {
    return dotProduct(itself, pSrc1, pSrc2, len, pDp);
}
ZppStatus zppsDotProd_64fc(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64fc* pDp) {
    return dotProduct(itself, pSrc1, pSrc2, len, pDp);
}
ZppStatus zppsDotProd_64f64fc(const Zpp64f* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64fc* pDp) {
    return dotProduct(itself, pSrc1, pSrc2, len, pDp);
}
ZppStatus zppsDotProd_32f64f(const Zpp32f* pSrc1, const Zpp32f* pSrc2, int len, Zpp64f* pDp) {
    return dotProduct(itself, pSrc1, pSrc2, len, pDp);
}
ZppStatus zppsDotProd_32fc64fc(const Zpp32fc* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64fc* pDp) {
    return dotProduct(itself, pSrc1, pSrc2, len, pDp);
}
ZppStatus zppsDotProd_32f32fc64fc(const Zpp32f* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64fc* pDp) {
    return dotProduct(itself, pSrc1, pSrc2, len, pDp);
}

ZppStatus zppsDotProd_32s_Sfs(const Zpp32s* pSrc1, const Zpp32s* pSrc2, int len, Zpp32s* pDp,
                              int scaleFactor) {
    return scaledDotProduct(pSrc1, pSrc2, len, pDp, scaleFactor);
}
ZppStatus zppsDotProd_32sc_Sfs(const Zpp32sc* pSrc1, const Zpp32sc* pSrc2, int len, Zpp32sc* pDp,
                               int scaleFactor) {
    return scaledDotProduct(pSrc1, pSrc2, len, pDp, scaleFactor);
}
ZppStatus zppsDotProd_32s32sc_Sfs(const Zpp32s* pSrc1, const Zpp32sc* pSrc2, int len, Zpp32sc* pDp,
                                  int scaleFactor) {
    return scaledDotProduct(pSrc1, pSrc2, len, pDp, scaleFactor);
}

}  // namespace zpp::ZPP_ISA
