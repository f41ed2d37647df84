// Hyperbolic functions.
#include "vm/hyperbolic.h"
#include "vm/driver.h"
#include "vm/exports.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsCosh_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Cosh(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsSinh_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Sinh(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsTanh_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Tanh(), {{pSrc}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
