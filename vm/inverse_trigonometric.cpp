// Arccosine, arcsine and arctangents.
#include "vm/arcsine.h"
#include "vm/arctangent.h"
#include "vm/driver.h"
#include "vm/exports.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsAcos_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Acos(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsAsin_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Asin(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsAtan_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Atan(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsAtan2_64f_A53(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return evaluate(Atan2(), {{pSrc1, pSrc2}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
