// Floating-point elementwise arithmetic.
#include "arith/exports.h"
#include "core/elementwise.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto add = [](auto a, auto b) { return a + b; };
constexpr auto subtract = [](auto a, auto b) { return a - b; };
constexpr auto subtractFrom = [](auto a, auto b) { return b - a; };
constexpr auto multiply = [](auto a, auto b) { return product(a, b); };
constexpr auto addProduct = [](auto a, auto b, auto sum) { return sum + product(a, b); };

// The quotient of a zero divisor, by the sign of the dividend.
template <class V>
ZPP_INLINE V signedInfinity(V a) {
    const V infinity = broadcast<V>(__builtin_inf());
    return select(a > 0, infinity, select(a < 0, -infinity, quietNan<V>()));
}

// The inverse of the squared norm, each operation rounded to double.
inline double inverseNorm(Zpp64fc val) {
    const DoublePrecision precision;
    return stored(quotient(1.0, squaredNorm(Complex<double>{stored(val.re), stored(val.im)})));
}

struct Divide {
    bool* zeroMet;

    template <class V>
    ZPP_INLINE V operator()(V divisor, V dividend) const {
        const auto zero = zeroOrNan(divisor);
        if (!any(zero)) [[likely]]
            return quotient(dividend, divisor);
        *zeroMet = true;
        return select(zero, signedInfinity(dividend), quotient(dividend, oneWhere(zero, divisor)));
    }

    template <class V>
    ZPP_INLINE Complex<V> operator()(Complex<V> divisor, Complex<V> dividend) const {
        const V norm = squaredNorm(divisor);
        const auto zero = zeroOrNan(norm);
        const Complex<V> numerator = productConj(dividend, divisor);
        if (!any(zero)) [[likely]]
            return product(numerator, quotient(broadcast<V>(1.0), norm));
        *zeroMet = true;
        const Complex<V> divided = product(numerator, quotient(broadcast<V>(1.0), oneWhere(zero, norm)));
        return {select(zero, signedInfinity(dividend.re), divided.re),
                select(zero, signedInfinity(dividend.im), divided.im)};
    }
};

inline ZppStatus divide(const Zpp64f* pDivisor, const Zpp64f* pDividend, Zpp64f* pDst, int len) {
    return withWarning(zppStatusDivByZero, [=](bool* zeroMet) {
        return elementwise(Divide{zeroMet}, pDst, len, pDivisor, pDividend);
    });
}

inline ZppStatus divide(const Zpp64fc* pDivisor, const Zpp64fc* pDividend, Zpp64fc* pDst, int len) {
    return withWarning(zppStatusDivByZero, [=](bool* zeroMet) {
        return elementwiseComplex(Divide{zeroMet}, pDst, len, pDivisor, pDividend);
    });
}

}  // namespace

ZppStatus zppsAdd_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return elementwise(add, pDst, len, pSrc1, pSrc2);
}
ZppStatus zppsAdd_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return elementwise(add, pSrcDst, len, pSrc, pSrcDst);
}
ZppStatus zppsAdd_64fc(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len) {
    return elementwise(add, pDst, len, pSrc1, pSrc2);
}
ZppStatus zppsAdd_64fc_I(const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len) {
    return elementwise(add, pSrcDst, len, pSrc, pSrcDst);
}

ZppStatus zppsSub_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return elementwise(subtractFrom, pDst, len, pSrc1, pSrc2);
}
ZppStatus zppsSub_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return elementwise(subtractFrom, pSrcDst, len, pSrc, pSrcDst);
}
ZppStatus zppsSub_64fc(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len) {
    return elementwise(subtractFrom, pDst, len, pSrc1, pSrc2);
}
ZppStatus zppsSub_64fc_I(const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len) {
    return elementwise(subtractFrom, pSrcDst, len, pSrc, pSrcDst);
}

ZppStatus zppsMul_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return elementwise(multiply, pDst, len, pSrc1, pSrc2);
}
ZppStatus zppsMul_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return elementwise(multiply, pSrcDst, len, pSrc, pSrcDst);
}
ZppStatus zppsMul_64fc(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len) {
    return elementwise(multiply, pDst, len, pSrc1, pSrc2);
}
ZppStatus zppsMul_64fc_I(const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len) {
    return elementwise(multiply, pSrcDst, len, pSrc, pSrcDst);
}

ZppStatus zppsDiv_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return divide(pSrc1, pSrc2, pDst, len);
}
ZppStatus zppsDiv_64f_I(const Zpp64f* pSrc, Zpp64f* pSrcDst, int len) {
    return divide(pSrc, pSrcDst, pSrcDst, len);
}
ZppStatus zppsDiv_64fc(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len) {
    return divide(pSrc1, pSrc2, pDst, len);
}
ZppStatus zppsDiv_64fc_I(const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len) {
    return divide(pSrc, pSrcDst, pSrcDst, len);
}

ZppStatus zppsAddC_64f(const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len) {
    if (isZero(val)) return unchanged(pSrc, pDst, len);
    return withConstant(add, pSrc, val, pDst, len);
}
ZppStatus zppsAddC_64f_I(Zpp64f val, Zpp64f* pSrcDst, int len) {
    return zppsAddC_64f(pSrcDst, val, pSrcDst, len);
}
ZppStatus zppsAddC_64fc(const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len) {
    return withConstant(add, pSrc, val, pDst, len);
}
ZppStatus zppsAddC_64fc_I(Zpp64fc val, Zpp64fc* pSrcDst, int len) {
    return zppsAddC_64fc(pSrcDst, val, pSrcDst, len);
}

ZppStatus zppsSubC_64f(const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len) {
    if (isZero(val)) return unchanged(pSrc, pDst, len);
    return withConstant(subtract, pSrc, val, pDst, len);
}
ZppStatus zppsSubC_64f_I(Zpp64f val, Zpp64f* pSrcDst, int len) {
    return zppsSubC_64f(pSrcDst, val, pSrcDst, len);
}
ZppStatus zppsSubC_64fc(const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len) {
    return withConstant(subtract, pSrc, val, pDst, len);
}
ZppStatus zppsSubC_64fc_I(Zpp64fc val, Zpp64fc* pSrcDst, int len) {
    return zppsSubC_64fc(pSrcDst, val, pSrcDst, len);
}

ZppStatus zppsSubCRev_64f(const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len) {
    return withConstant(subtractFrom, pSrc, val, pDst, len);
}
ZppStatus zppsSubCRev_64f_I(Zpp64f val, Zpp64f* pSrcDst, int len) {
    return zppsSubCRev_64f(pSrcDst, val, pSrcDst, len);
}
ZppStatus zppsSubCRev_64fc(const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len) {
    return withConstant(subtractFrom, pSrc, val, pDst, len);
}
ZppStatus zppsSubCRev_64fc_I(Zpp64fc val, Zpp64fc* pSrcDst, int len) {
    return zppsSubCRev_64fc(pSrcDst, val, pSrcDst, len);
}

ZppStatus zppsMulC_64f(const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len) {
    if (isOne(val)) return unchanged(pSrc, pDst, len);
    if (val == 0) return zeroed(pSrc, pDst, len);
    return withConstant(multiply, pSrc, val, pDst, len);
}
ZppStatus zppsMulC_64f_I(Zpp64f val, Zpp64f* pSrcDst, int len) {
    return zppsMulC_64f(pSrcDst, val, pSrcDst, len);
}
ZppStatus zppsMulC_64fc(const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len) {
    return withConstant(multiply, pSrc, val, pDst, len);
}
ZppStatus zppsMulC_64fc_I(Zpp64fc val, Zpp64fc* pSrcDst, int len) {
    return zppsMulC_64fc(pSrcDst, val, pSrcDst, len);
}

ZppStatus zppsDivC_64f(const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len) {
    if (isZero(val)) return zppStatusDivideByZeroError;
    return zppsMulC_64f(pSrc, reciprocal(val), pDst, len);
}
ZppStatus zppsDivC_64f_I(Zpp64f val, Zpp64f* pSrcDst, int len) {
    return zppsDivC_64f(pSrcDst, val, pSrcDst, len);
}
ZppStatus zppsDivC_64fc(const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len) {
    const ZppStatus zero = require(!isZero(val.re) || !isZero(val.im), zppStatusDivideByZeroError);
    if (const ZppStatus error = firstError(checkVectors(len, pSrc, pDst), zero)) return error;
    const double inverse = inverseNorm(val);
    const auto divideBy = [=](auto x, auto y) { return product(productConj(x, y), inverse); };
    return withConstant(divideBy, pSrc, val, pDst, len);
}
ZppStatus zppsDivC_64fc_I(Zpp64fc val, Zpp64fc* pSrcDst, int len) {
    return zppsDivC_64fc(pSrcDst, val, pSrcDst, len);
}

ZppStatus zppsAddProduct_64f(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pSrcDst, int len) {
    return elementwise(addProduct, pSrcDst, len, pSrc1, pSrc2, pSrcDst);
}
ZppStatus zppsAddProduct_64fc(const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pSrcDst, int len) {
    return elementwise(addProduct, pSrcDst, len, pSrc1, pSrc2, pSrcDst);
}

}  // namespace zpp::ZPP_ISA
