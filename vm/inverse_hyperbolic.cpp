// Inverse hyperbolic functions.
#include "vm/inverse_hyperbolic.h"

#include "vm/driver.h"
#include "vm/exports.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsAcosh_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Acosh(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsAsinh_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Asinh(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsAtanh_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Atanh(), {{pSrc}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
