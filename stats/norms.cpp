// Norms of vectors and of differences of vectors.
#include "core/reduce.h"
#include "stats/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto root = [](double x) { return squareRoot(x); };

// Of numbers, real or complex.
constexpr auto absolute = [](auto x) ZPP_INLINE_LAMBDA { return magnitude(x); };
constexpr auto square = [](auto x) ZPP_INLINE_LAMBDA { return product(x, x); };
constexpr auto squaredMagnitude = [](auto x) ZPP_INLINE_LAMBDA { return squaredNorm(x); };

// op of the difference of two.
template <class Op>
constexpr auto ofDifference(Op op) {
    return [=](auto x, auto y) ZPP_INLINE_LAMBDA { return op(stored(x - y)); };
}

}  // namespace

ZppStatus zppsNorm_Inf_64f(const Zpp64f* pSrc, int len, Zpp64f* pNorm) {
    return largestOf(absolute, itself, pNorm, len, pSrc);
}
ZppStatus zppsNorm_L1_64f(const Zpp64f* pSrc, int len, Zpp64f* pNorm) {
    return sumOf(absolute, itself, pNorm, len, pSrc);
}
ZppStatus zppsNorm_L2_64f(const Zpp64f* pSrc, int len, Zpp64f* pNorm) {
    return sumOf(square, root, pNorm, len, pSrc);
}

// The largest root is the root of the largest, as roots are rounded monotonously.
ZppStatus zppsNorm_Inf_64fc64f(const Zpp64fc* pSrc, int len, Zpp64f* pNorm) {
    return largestOfComplex(squaredMagnitude, root, pNorm, len, pSrc);
}
ZppStatus zppsNorm_L1_64fc64f(const Zpp64fc* pSrc, int len, Zpp64f* pNorm) {
    return sumOfComplex(absolute, itself, pNorm, len, pSrc);
}
ZppStatus zppsNorm_L2_64fc64f(const Zpp64fc* pSrc, int len, Zpp64f* pNorm) {
    return sumOf(square, root, pNorm, len, pSrc);
}
ZppStatus zppsNorm_L1_32fc64f(const Zpp32fc* pSrc, int len, Zpp64f* pNorm) {
    return sumOfComplex(absolute, itself, pNorm, len, pSrc);
}
ZppStatus zppsNorm_L2_32fc64f(const Zpp32fc* pSrc, int len, Zpp64f* pNorm) {
    return sumOf(square, root, pNorm, len, pSrc);
}

ZppStatus zppsNormDiff_Inf_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pNorm) {
    return largestOf(ofDifference(absolute), itself, pNorm, len, pSrc1, pSrc2);
}
ZppStatus zppsNormDiff_L1_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pNorm) {
    return sumOf(ofDifference(absolute), itself, pNorm, len, pSrc1, pSrc2);
}
ZppStatus zppsNormDiff_L2_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pNorm) {
    return sumOf(ofDifference(square), root, pNorm, len, pSrc1, pSrc2);
}

ZppStatus zppsNormDiff_Inf_64fc64f(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64f* pNorm) {
    return largestOfComplex(ofDifference(squaredMagnitude), root, pNorm, len, pSrc1, pSrc2);
}
ZppStatus zppsNormDiff_L1_64fc64f(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64f* pNorm) {
    return sumOfComplex(ofDifference(absolute), itself, pNorm, len, pSrc1, pSrc2);
}
ZppStatus zppsNormDiff_L2_64fc64f(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64f* pNorm) {
    return sumOf(ofDifference(square), root, pNorm, len, pSrc1, pSrc2);
}
ZppStatus zppsNormDiff_L1_32fc64f(const Zpp32fc* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64f* pNorm) {
    return sumOfComplex(ofDifference(absolute), itself, pNorm, len, pSrc1, pSrc2);
}
ZppStatus zppsNormDiff_L2_32fc64f(const Zpp32fc* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64f* pNorm) {
    return sumOf(ofDifference(square), root, pNorm, len, pSrc1, pSrc2);
}

}  // namespace zpp::ZPP_ISA
