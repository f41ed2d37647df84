// Arctangents.
#include "vm/arctangent.h"

#include "arith/exports.h"
#include "vm/driver.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsArctan_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluateElements<LastWarning>(Atan(), Vectors{{pSrc}, {pDst}}, len);
}
ZppStatus zppsArctan_64f_I(Zpp64f* pSrcDst, int len) { return zppsArctan_64f(pSrcDst, pSrcDst, len); }

}  // namespace zpp::ZPP_ISA
