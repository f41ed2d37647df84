// Convolution.
#include "core/checks.h"
#include "filter/convolution_fft.h"

namespace zpp::ZPP_ISA {

ZppStatus zppsConv_64f(const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2, Zpp64f* pDst) {
    if (const ZppStatus error =
            firstError(checkPointers(pSrc1, pSrc2, pDst), checkLength(lenSrc1), checkLength(lenSrc2)))
        return error;
    return convolve<Zpp64f, Zpp64f>({pSrc1, lenSrc1}, {pSrc2, lenSrc2}, 0, int64_t{lenSrc1} + lenSrc2 - 1,
                                    pDst);
}

}  // namespace zpp::ZPP_ISA
