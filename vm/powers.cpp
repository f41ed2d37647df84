// Powers.
#include "vm/driver.h"
#include "vm/exports.h"
#include "vm/pow.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsPow_64f_A53(const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len) {
    return evaluate(Pow(), {{pSrc1, pSrc2}, {pDst}}, len);
}

ZppStatus zppsPowx_64f_A53(const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len) {
    return evaluate(Powx(val), {{pSrc}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
