// Correlation: a convolution with the first vector in reverse order, conjugated.
#include "core/checks.h"
#include "filter/convolution_fft.h"

namespace zpp::ZPP_ISA {
namespace {

// By what the sum of a lag is divided.
enum class Norm { kNone, kA, kB };

inline void divide(Zpp64f& x, double divisor) { x = quotient(x, divisor); }
inline void divide(Zpp64fc& x, double divisor) {
    divide(x.re, divisor);
    divide(x.im, divisor);
}

// The sums of the lags from lowLag on, divided by what the norm says. Lags of terms or more have no sum.
template <Norm kNorm, class T>
void normalise(T* dst, int64_t count, int64_t lowLag, int64_t terms) {
    if constexpr (kNorm == Norm::kNone) return;
    const int64_t first = lowLag > -terms ? lowLag : 1 - terms;
    const int64_t end = lowLag + count < terms ? lowLag + count : terms;
    for (int64_t lag = first; lag < end; ++lag) {
        const int64_t distance = lag < 0 ? -lag : lag;
        divide(dst[lag - lowLag], static_cast<double>(kNorm == Norm::kA ? terms : terms - distance));
    }
}

template <Norm kNorm, class T, class S>
ZppStatus correlate(const S* pSrc1, int len1, const S* pSrc2, int len2, T* pDst, int dstLen, int lowLag) {
    if (const ZppStatus error = firstError(checkPointers(pSrc1, pSrc2, pDst), checkLength(len1),
                                           checkLength(len2), checkLength(dstLen)))
        return error;
    const Operand<T, S> first{pSrc1, len1, true, std::is_same_v<T, Zpp64fc>};
    const ZppStatus error = convolve<T, S>(first, {pSrc2, len2}, int64_t{lowLag} + len1 - 1, dstLen, pDst);
    if (error != zppStatusOk) return error;
    const DoublePrecision precision;
    normalise<kNorm>(pDst, dstLen, lowLag, len1 > len2 ? len1 : len2);
    return zppStatusOk;
}

template <Norm kNorm, class T, class S>
ZppStatus autoCorrelate(const S* pSrc, int srcLen, T* pDst, int dstLen) {
    return correlate<kNorm>(pSrc, srcLen, pSrc, srcLen, pDst, dstLen, 0);
}

}  // namespace

ZppStatus zppsAutoCorr_64f(const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int dstLen) {
    return autoCorrelate<Norm::kNone>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_64fc(const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int dstLen) {
    return autoCorrelate<Norm::kNone>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_32f64f(const Zpp32f* pSrc, int srcLen, Zpp64f* pDst, int dstLen) {
    return autoCorrelate<Norm::kNone>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_NormA_64f(const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int dstLen) {
    return autoCorrelate<Norm::kA>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_NormA_64fc(const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int dstLen) {
    return autoCorrelate<Norm::kA>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_NormA_32f64f(const Zpp32f* pSrc, int srcLen, Zpp64f* pDst, int dstLen) {
    return autoCorrelate<Norm::kA>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_NormB_64f(const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int dstLen) {
    return autoCorrelate<Norm::kB>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_NormB_64fc(const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int dstLen) {
    return autoCorrelate<Norm::kB>(pSrc, srcLen, pDst, dstLen);
}
ZppStatus zppsAutoCorr_NormB_32f64f(const Zpp32f* pSrc, int srcLen, Zpp64f* pDst, int dstLen) {
    return autoCorrelate<Norm::kB>(pSrc, srcLen, pDst, dstLen);
}

ZppStatus zppsCrossCorr_64f(const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2, Zpp64f* pDst,
                            int dstLen, int lowLag) {
    return correlate<Norm::kNone>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_64fc(const Zpp64fc* pSrc1, int lenSrc1, const Zpp64fc* pSrc2, int lenSrc2,
                             Zpp64fc* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kNone>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_32f64f(const Zpp32f* pSrc1, int lenSrc1, const Zpp32f* pSrc2, int lenSrc2,
                               Zpp64f* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kNone>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_NormA_64f(const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2,
                                  Zpp64f* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kA>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_NormA_64fc(const Zpp64fc* pSrc1, int lenSrc1, const Zpp64fc* pSrc2, int lenSrc2,
                                   Zpp64fc* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kA>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_NormA_32f64f(const Zpp32f* pSrc1, int lenSrc1, const Zpp32f* pSrc2, int lenSrc2,
                                     Zpp64f* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kA>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_NormB_64f(const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2,
                                  Zpp64f* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kB>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_NormB_64fc(const Zpp64fc* pSrc1, int lenSrc1, const Zpp64fc* pSrc2, int lenSrc2,
                                   Zpp64fc* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kB>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}
ZppStatus zppsCrossCorr_NormB_32f64f(const Zpp32f* pSrc1, int lenSrc1, const Zpp32f* pSrc2, int lenSrc2,
                                     Zpp64f* pDst, int dstLen, int lowLag) {
    return correlate<Norm::kB>(pSrc1, lenSrc1, pSrc2, lenSrc2, pDst, dstLen, lowLag);
}

}  // namespace zpp::ZPP_ISA
