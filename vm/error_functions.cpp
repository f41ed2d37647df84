// The error function and its complement.
#include "vm/driver.h"
#include "vm/erf.h"
#include "vm/erfc.h"
#include "vm/exports.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsErf_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Erf(), {{pSrc}, {pDst}}, len);
}
ZppStatus zppsErfc_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Erfc(), {{pSrc}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
