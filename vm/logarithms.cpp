// Logarithms.
#include "vm/driver.h"
#include "vm/exports.h"
#include "vm/ln.h"
#include "vm/log10.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsLn_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Ln(), {{pSrc}, {pDst}}, len);
}

ZppStatus zppsLog10_64f_A53(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return evaluate(Log10(), {{pSrc}, {pDst}}, len);
}

}  // namespace zpp::ZPP_ISA
