// Thresholds: elements on one side of a level are replaced.
#include "core/elementwise.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

// Which elements are replaced. A NaN is not below, and not above.
constexpr auto isBelow = [](auto x, auto level) { return x < level; };
constexpr auto isAbove = [](auto x, auto level) { return x > level; };
constexpr auto isBelowOrNan = [](auto x, auto level) { return (x >= level) == 0; };

template <class Chosen>
inline ZppStatus replace(Chosen chosen, const Zpp64f* pSrc, Zpp64f* pDst, int len, double level,
                         double value) {
    return elementwise([=](auto x) { return select(chosen(x, level), broadcast<decltype(x)>(value), x); },
                       pDst, len, pSrc);
}

// Where x is the level or not ordered with it, these give their second operand.
template <class T>
inline ZppStatus raise(const T* pSrc, T* pDst, int len, T level) {
    return elementwise([=](auto x) { return max(broadcast<decltype(x)>(level), x); }, pDst, len, pSrc);
}
inline ZppStatus lower(const Zpp64f* pSrc, Zpp64f* pDst, int len, double level) {
    return elementwise([=](auto x) { return min(broadcast<decltype(x)>(level), x); }, pDst, len, pSrc);
}

inline ZppStatus checkLevel(double level, int len, const void* pSrc, const void* pDst) {
    return firstError(checkVectors(len, pSrc, pDst), require(!(level < 0), zppStatusThresholdNegativeLevel));
}

// The square of a level, with which those of magnitudes are compared.
inline double squareOf(double level) {
    const DoublePrecision precision;
    return stored(product(level, level));
}

// with(z, norm) where the squared magnitude is chosen.
template <class Chosen, class With>
inline ZppStatus replaceComplex(Chosen chosen, With with, const Zpp64fc* pSrc, Zpp64fc* pDst, int len,
                                double level) {
    if (const ZppStatus error = checkLevel(level, len, pSrc, pDst)) return error;
    const double square = squareOf(level);
    return elementwiseComplex(
        [=](auto z) ZPP_INLINE_LAMBDA {
            const auto norm = squaredNorm(z);
            const auto replaced = chosen(norm, square);
            return any(replaced) ? select(replaced, with(z, norm), z) : z;
        },
        pDst, len, pSrc);
}

template <class Chosen>
inline ZppStatus clampMagnitude(Chosen chosen, const Zpp64fc* pSrc, Zpp64fc* pDst, int len, double level) {
    const double square = squareOf(level);
    const auto scaled = [=](auto z, auto norm) ZPP_INLINE_LAMBDA {
        using V = decltype(norm);
        const auto zero = norm == 0;
        const V ratio = quotient(broadcast<V>(square), oneWhere(zero, norm));
        const auto moved = product(z, stored(squareRoot(ratio)));
        if (!any(zero)) [[likely]]
            return moved;
        return select(zero, Complex<V>{broadcast<V>(level), V{}}, moved);
    };
    return replaceComplex(chosen, scaled, pSrc, pDst, len, level);
}

template <class Chosen>
inline ZppStatus replaceByValue(Chosen chosen, const Zpp64fc* pSrc, Zpp64fc* pDst, int len, double level,
                                Zpp64fc value) {
    const auto constant = [=](auto, auto norm) ZPP_INLINE_LAMBDA {
        using V = decltype(norm);
        return Complex<V>{broadcast<V>(value.re), broadcast<V>(value.im)};
    };
    return replaceComplex(chosen, constant, pSrc, pDst, len, level);
}

// 1 / x. A NaN counts as zero.
struct Invert {
    bool* zeroMet;

    template <class V>
    ZPP_INLINE V operator()(V x) const {
        const auto zero = zeroOrNan(x);
        const V inverse = quotient(broadcast<V>(1.0), oneWhere(zero, x));
        if (!any(zero)) [[likely]]
            return inverse;
        *zeroMet = true;
        return select(zero, broadcast<V>(__builtin_inf()), inverse);
    }
};

// The same of no larger magnitude than 1 / level.
struct InvertBounded {
    double level;

    template <class V>
    ZPP_INLINE V operator()(V x) const {
        const V bound = select(x < 0, broadcast<V>(-level), broadcast<V>(level));
        return quotient(broadcast<V>(1.0), select(magnitude(x) > level, x, bound));
    }
};

// Of complex numbers (re, -im) / d, where d is the squared magnitude, or less of the small ones.
struct InvertComplex {
    double level, square;
    bool* zeroMet;

    template <class V>
    ZPP_INLINE Complex<V> operator()(Complex<V> z) const {
        const V norm = squaredNorm(z);
        const auto zero = zeroOrNan(norm);
        V divisor = norm;
        if (square != 0) {
            const auto small = (norm >= square) == 0;
            if (any(small)) divisor = select(small, product(stored(squareRoot(norm)), level), norm);
        }
        if (!any(zero)) [[likely]]
            return {quotient(z.re, divisor), quotient(-z.im, divisor)};
        if (square == 0) *zeroMet = true;
        const double largest = square == 0 ? __builtin_inf() : reciprocal(level);
        divisor = oneWhere(zero, divisor);
        const Complex<V> inverse = {quotient(z.re, divisor), quotient(-z.im, divisor)};
        return select(zero, Complex<V>{broadcast<V>(largest), V{}}, inverse);
    }
};

}  // namespace

ZppStatus zppsThreshold_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level, ZppCmpOp relOp) {
    return relOp == zppCmpGreater ? lower(pSrc, pDst, len, level) : raise(pSrc, pDst, len, level);
}
ZppStatus zppsThreshold_64f_I(Zpp64f* pSrcDst, int len, Zpp64f level, ZppCmpOp relOp) {
    return zppsThreshold_64f(pSrcDst, pSrcDst, len, level, relOp);
}
ZppStatus zppsThreshold_LT_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level) {
    return zppsThreshold_64f(pSrc, pDst, len, level, zppCmpLess);
}
ZppStatus zppsThreshold_LT_64f_I(Zpp64f* pSrcDst, int len, Zpp64f level) {
    return zppsThreshold_64f(pSrcDst, pSrcDst, len, level, zppCmpLess);
}
ZppStatus zppsThreshold_GT_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level) {
    return zppsThreshold_64f(pSrc, pDst, len, level, zppCmpGreater);
}
ZppStatus zppsThreshold_GT_64f_I(Zpp64f* pSrcDst, int len, Zpp64f level) {
    return zppsThreshold_64f(pSrcDst, pSrcDst, len, level, zppCmpGreater);
}

ZppStatus zppsThreshold_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level, ZppCmpOp relOp) {
    return relOp == zppCmpGreater ? clampMagnitude(isAbove, pSrc, pDst, len, level)
                                  : clampMagnitude(isBelow, pSrc, pDst, len, level);
}
ZppStatus zppsThreshold_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f level, ZppCmpOp relOp) {
    return zppsThreshold_64fc(pSrcDst, pSrcDst, len, level, relOp);
}
ZppStatus zppsThreshold_LT_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level) {
    return zppsThreshold_64fc(pSrc, pDst, len, level, zppCmpLess);
}
ZppStatus zppsThreshold_LT_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f level) {
    return zppsThreshold_64fc(pSrcDst, pSrcDst, len, level, zppCmpLess);
}
ZppStatus zppsThreshold_GT_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level) {
    return zppsThreshold_64fc(pSrc, pDst, len, level, zppCmpGreater);
}
ZppStatus zppsThreshold_GT_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f level) {
    return zppsThreshold_64fc(pSrcDst, pSrcDst, len, level, zppCmpGreater);
}

ZppStatus zppsThreshold_LT_32s(const Zpp32s* pSrc, Zpp32s* pDst, int len, Zpp32s level) {
    return raise(pSrc, pDst, len, level);
}
ZppStatus zppsThreshold_LT_32s_I(Zpp32s* pSrcDst, int len, Zpp32s level) {
    return zppsThreshold_LT_32s(pSrcDst, pSrcDst, len, level);
}

ZppStatus zppsThreshold_LTVal_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level, Zpp64f value) {
    return replace(isBelowOrNan, pSrc, pDst, len, level, value);
}
ZppStatus zppsThreshold_LTVal_64f_I(Zpp64f* pSrcDst, int len, Zpp64f level, Zpp64f value) {
    return zppsThreshold_LTVal_64f(pSrcDst, pSrcDst, len, level, value);
}
ZppStatus zppsThreshold_GTVal_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level, Zpp64f value) {
    return replace(isAbove, pSrc, pDst, len, level, value);
}
ZppStatus zppsThreshold_GTVal_64f_I(Zpp64f* pSrcDst, int len, Zpp64f level, Zpp64f value) {
    return zppsThreshold_GTVal_64f(pSrcDst, pSrcDst, len, level, value);
}
ZppStatus zppsThreshold_LTVal_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level, Zpp64fc value) {
    return replaceByValue(isBelow, pSrc, pDst, len, level, value);
}
ZppStatus zppsThreshold_LTVal_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f level, Zpp64fc value) {
    return zppsThreshold_LTVal_64fc(pSrcDst, pSrcDst, len, level, value);
}
ZppStatus zppsThreshold_GTVal_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level, Zpp64fc value) {
    return replaceByValue(isAbove, pSrc, pDst, len, level, value);
}
ZppStatus zppsThreshold_GTVal_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f level, Zpp64fc value) {
    return zppsThreshold_GTVal_64fc(pSrcDst, pSrcDst, len, level, value);
}

ZppStatus zppsThreshold_LTValGTVal_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f levelLT,
                                       Zpp64f valueLT, Zpp64f levelGT, Zpp64f valueGT) {
    const ZppStatus error =
        firstError(checkVectors(len, pSrc, pDst), require(!(levelGT < levelLT), zppStatusThresholdBounds));
    if (error != zppStatusOk) return error;
    return elementwise(
        [=](auto x) ZPP_INLINE_LAMBDA {
            using V = decltype(x);
            const V upper = select(isAbove(x, levelGT), broadcast<V>(valueGT), x);
            return select(isBelowOrNan(x, levelLT), broadcast<V>(valueLT), upper);
        },
        pDst, len, pSrc);
}
ZppStatus zppsThreshold_LTValGTVal_64f_I(Zpp64f* pSrcDst, int len, Zpp64f levelLT, Zpp64f valueLT,
                                         Zpp64f levelGT, Zpp64f valueGT) {
    return zppsThreshold_LTValGTVal_64f(pSrcDst, pSrcDst, len, levelLT, valueLT, levelGT, valueGT);
}

ZppStatus zppsThreshold_LTInv_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level) {
    if (const ZppStatus error = checkLevel(level, len, pSrc, pDst)) return error;
    if (!(level == 0)) return elementwise(InvertBounded{level}, pDst, len, pSrc);
    return withWarning(zppStatusInvZero,
                       [=](bool* zeroMet) { return elementwise(Invert{zeroMet}, pDst, len, pSrc); });
}
ZppStatus zppsThreshold_LTInv_64f_I(Zpp64f* pSrcDst, int len, Zpp64f level) {
    return zppsThreshold_LTInv_64f(pSrcDst, pSrcDst, len, level);
}
ZppStatus zppsThreshold_LTInv_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level) {
    if (const ZppStatus error = checkLevel(level, len, pSrc, pDst)) return error;
    return withWarning(zppStatusInvZero, [=](bool* zeroMet) {
        return elementwiseComplex(InvertComplex{level, squareOf(level), zeroMet}, pDst, len, pSrc);
    });
}
ZppStatus zppsThreshold_LTInv_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f level) {
    return zppsThreshold_LTInv_64fc(pSrcDst, pSrcDst, len, level);
}

}  // namespace zpp::ZPP_ISA
