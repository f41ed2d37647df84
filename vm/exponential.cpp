// Exponentials.
#include "vm/driver.h"
#include "vm/exp.h"
#include "vm/exports.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsExp_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Exp(), {{pSrc}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
