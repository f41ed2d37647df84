// Sine, cosine and tangent.
#include "vm/driver.h"
#include "vm/exports.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsCos_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Cos(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsSin_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Sin(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsTan_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Tan(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsSinCos_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst1, Zpp64f* pDst2, int len) {
    return evaluate(SinCos(), {{pSrc}, {pDst1, pDst2}}, len);
}

}  // namespace zpp::ZPP_ISA
