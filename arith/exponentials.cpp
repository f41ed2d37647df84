// Exponentials of real numbers.
#include "arith/exports.h"
#include "core/precision.h"
#include "vm/driver.h"
#include "vm/exp.h"

namespace zpp::ZPP_ISA {
namespace {

// Between the bounds a single is neither infinite nor 0; subnormal ones are rounded once more, from the
// double.
struct ExpToSingle {
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kUpper = 88.7, kLower = -103.9;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        y[0] = expOrdinary(x[0]);
        return whereNot(x[0] >= kLower, x[0] <= kUpper);
    }

    static ZppStatus special(const double* x, double* y) {
        const ZppStatus ofDouble = Exp::special(x, y);
        const bool finite = magnitude(*x) <= kMostFinite;
        const float single = stored(static_cast<float>(*y));
        if (finite && single > 0x1.fffffep127F) return zppStatusOverflow;
        return finite && isZero(double{single}) ? zppStatusUnderflow : ofDouble;
    }
};

template <class S, class D>
ZppStatus exponentials(const S* pSrc, D* pDst, int len) {
    using F = std::conditional_t<std::is_same_v<D, float>, ExpToSingle, Exp>;
    return evaluateElements<LastWarning>(F(), Vectors{{pSrc}, {pDst}}, len);
}

}  // namespace

ZppStatus zppsExp_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) { return exponentials(pSrc, pDst, len); }
ZppStatus zppsExp_64f_I(Zpp64f* pSrcDst, int len) { return exponentials(pSrcDst, pSrcDst, len); }
ZppStatus zppsExp_32f64f(const Zpp32f* pSrc, Zpp64f* pDst, int len) { return exponentials(pSrc, pDst, len); }
ZppStatus zppsExp_64f32f(const Zpp64f* pSrc, Zpp32f* pDst, int len) { return exponentials(pSrc, pDst, len); }

}  // namespace zpp::ZPP_ISA
