// Logarithms of real numbers.
#include "arith/exports.h"
#include "vm/driver.h"
#include "vm/ln.h"

namespace zpp::ZPP_ISA {
namespace {

// The vector-math function with warnings of its own.
struct LnWithWarnings : Ln {
    static ZppStatus special(const double* x, double* y) {
        const ZppStatus warning = Ln::special(x, y);
        return warning == zppStatusDomain        ? zppStatusLnNegativeArg
               : warning == zppStatusSingularity ? zppStatusLnZeroArg
                                                 : warning;
    }
};

template <class S, class D>
ZppStatus logarithms(const S* pSrc, D* pDst, int len) {
    return evaluateElements<GreatestWarning>(LnWithWarnings(), Vectors{{pSrc}, {pDst}}, len);
}

}  // namespace

ZppStatus zppsLn_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) { return logarithms(pSrc, pDst, len); }
ZppStatus zppsLn_64f_I(Zpp64f* pSrcDst, int len) { return logarithms(pSrcDst, pSrcDst, len); }
ZppStatus zppsLn_32f64f(const Zpp32f* pSrc, Zpp64f* pDst, int len) { return logarithms(pSrc, pDst, len); }
ZppStatus zppsLn_64f32f(const Zpp64f* pSrc, Zpp32f* pDst, int len) { return logarithms(pSrc, pDst, len); }

}  // namespace zpp::ZPP_ISA
