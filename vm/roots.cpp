// Inverses, quotients and roots.
#include "vm/roots.h"

#include "vm/cbrt.h"
#include "vm/driver.h"
#include "vm/exports.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsInv_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Inv(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsSqrt_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Sqrt(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsInvSqrt_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(InvSqrt(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsCbrt_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Cbrt(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsInvCbrt_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(InvCbrt(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsDiv_64f_A53(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return evaluate(Div(), {{pSrc1, pSrc2}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
