// Logarithms of integers, scaled.
#include "arith/exports.h"
#include "core/scale.h"
#include "vm/driver.h"
#include "vm/long_ln.h"

namespace zpp::ZPP_ISA {
namespace {

// The logarithm as a double is rounded, but where that is within its error of a half: the long one decides
// there. Of all arguments none is nearer than 2^-68 to a half at any scale factor, but for the powers of ten,
// whose decibels are integers.
template <bool kDecibels>
struct ScaledLogarithm {
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kError = kDecibels ? 0x1p-44 : 0x1p-47;

    // Beyond these factors all results are 0 or saturated.
    explicit ScaledLogarithm(int scaleFactor)
        : scale(powerOfTwo<double>(-clamp(scaleFactor, -34, 34))), limit(0.5 - kError * scale) {}

    template <class V>
    ZPP_INLINE auto run(const V (&x)[1], V (&y)[1]) const {
        const V value = lnOrdinary(x[0]) * (kDecibels ? scale * kLongDecibels[0][0] : scale);
        const V integer = (value + kToInteger) - kToInteger;
        y[0] = integer;
        return ((x[0] > 0) & (magnitude(value - integer) < limit)) == 0;
    }

    ZppStatus special(const double* x, double* y) const {
        *y = -0x1p31;
        if (*x < 0) return zppStatusLnNegativeArg;
        if (isZero(*x)) return zppStatusLnZeroArg;
        *y = rounded(scaled(logarithm(static_cast<int32_t>(*x)), scale));
        return zppStatusOk;
    }

  private:
    static Long logarithm(int32_t x) {
        const Long ln = longLn(x);
        if constexpr (!kDecibels) return ln;
        int64_t power = 1;
        double decibels = 0;
        for (; power < x; power *= 10) decibels += 10;
        if (power == x) return {decibels, 0};
        return ln * Long{kLongDecibels[0][0], kLongDecibels[0][1]};
    }

    double scale, limit;
};

template <bool kDecibels>
ZppStatus logarithms(const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    return evaluateElements<GreatestWarning>(ScaledLogarithm<kDecibels>(scaleFactor), Vectors{{pSrc}, {pDst}},
                                             len);
}

}  // namespace

ZppStatus zppsLn_32s_Sfs(const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    return logarithms<false>(pSrc, pDst, len, scaleFactor);
}
ZppStatus zppsLn_32s_ISfs(Zpp32s* pSrcDst, int len, int scaleFactor) {
    return logarithms<false>(pSrcDst, pSrcDst, len, scaleFactor);
}
ZppStatus zpps10Log10_32s_Sfs(const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    return logarithms<true>(pSrc, pDst, len, scaleFactor);
}
ZppStatus zpps10Log10_32s_ISfs(Zpp32s* pSrcDst, int len, int scaleFactor) {
    return logarithms<true>(pSrcDst, pSrcDst, len, scaleFactor);
}

}  // namespace zpp::ZPP_ISA
