/* Filters. */
#if !defined(ZPP_FILTER_H) || defined(ZPP_LIST)
#define ZPP_FILTER_H
#include "export.h"
/* The order of these headers is the order of the Dispatch table. */
/* clang-format off */
#include "filter/fir.h"
#include "filter/iir.h"
/* clang-format on */

/* Up- and down-sampling
 *
 * The sampling rate changes by a whole factor, without filtering. A phase from 0 to factor - 1 says where the samples
 * stand, so that a long signal may be processed in blocks of any lengths. Samples keep their bits. Positions are
 * computed in 64 bits; any factor is valid. The state of a signal is its phase, in the caller's memory: threads may
 * share sources.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for srcLen < 1; -31 for factor < 1; -30 for *pPhase < 0
 * or *pPhase >= factor; then, up-sampling, -6 where factor srcLen does not fit an int. After an error nothing is
 * written. */

/* pDst[k factor + *pPhase] = pSrc[k]; the other elements are 0. *pDstLen = factor srcLen, the elements of pDst. The
 * phase is not changed. pDst must not overlap pSrc. */
ZPP_EXPORT(ZppStatus, zppsSampleUp_64f,
           (const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int* pDstLen, int factor, int* pPhase))
ZPP_EXPORT(ZppStatus, zppsSampleUp_64fc,
           (const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int* pDstLen, int factor, int* pPhase))

/* pDst[k] = pSrc[*pPhase + k factor] for all of these that pSrc has; *pDstLen is how many they are, from 0 to
 * (srcLen + factor - 1) / factor. *pPhase becomes where the first one of the next block stands. pDst may be the same
 * array as pSrc, but not overlap it otherwise. Nothing is read behind the last sample that is kept. */
ZPP_EXPORT(ZppStatus, zppsSampleDown_64f,
           (const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int* pDstLen, int factor, int* pPhase))
ZPP_EXPORT(ZppStatus, zppsSampleDown_64fc,
           (const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int* pDstLen, int factor, int* pPhase))

/* Median filter
 *
 * pDst[n] is the median of the maskSize samples centred on n; beyond an end of the vector its end sample repeats. An
 * even maskSize stands for maskSize - 1, and the call returns warning 5. The mask may be longer than the vector. The
 * time of a sample grows with the logarithm of maskSize.
 *
 * Results are samples, to the bit the same everywhere. In the order that the median is the middle of, -0 comes before
 * +0, and NaNs behind all numbers: first those without a sign, by rising payload, then those with, by falling payload.
 *
 * pDst must not overlap pSrc; _I gives the same results in place. Returned, in this order of checks: -8 for a null
 * pointer; -6 for len < 1; -33 for maskSize < 1; -9 where memory is short, for masks above 9. After an error nothing
 * is written. Threads may share sources. */
ZPP_EXPORT(ZppStatus, zppsFilterMedian_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, int maskSize))
ZPP_EXPORT(ZppStatus, zppsFilterMedian_64f_I, (Zpp64f* pSrcDst, int len, int maskSize))
ZPP_EXPORT(ZppStatus, zppsFilterMedian_32s, (const Zpp32s* pSrc, Zpp32s* pDst, int len, int maskSize))
ZPP_EXPORT(ZppStatus, zppsFilterMedian_32s_I, (Zpp32s* pSrcDst, int len, int maskSize))

/* Convolution and correlation
 *
 * Short vectors are summed directly, long ones through the FFT, a short with a long one block by block; which of it is
 * done follows from the type and the lengths alone. A sum is then within
 *     3 * 2^-53 (log2(n1 + n2) + 2 + sqrt(the shorter length)) * norm of src1 * norm of src2
 * of the exact one, and is 0 where the vectors do not overlap. Through the FFT an infinity or a NaN reaches all results
 * of its block. The type 32f64f widens its sources exactly; everything is computed in double.
 *
 * pDst must not overlap a source; the sources may be one vector. Returned, in this order of checks: -8 for a null
 * pointer; -6 for a length < 1; -9 where memory is short. After an error nothing is written. Threads may share
 * sources. */

/* pDst[n] = sum over k of pSrc1[k] pSrc2[n-k], n = 0 .. lenSrc1+lenSrc2-2. */
ZPP_EXPORT(ZppStatus, zppsConv_64f,
           (const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2, Zpp64f* pDst))

/* pDst[n] = sum over i of conj(x[i]) x[i+n], n = 0 .. dstLen-1, where x is pSrc, and 0 beyond its ends. NormA divides
 * by srcLen, NormB by srcLen - n (from n = srcLen on results are 0): the sum is rounded once more. */
ZPP_EXPORT(ZppStatus, zppsAutoCorr_64f, (const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_64fc, (const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_32f64f, (const Zpp32f* pSrc, int srcLen, Zpp64f* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_NormA_64f, (const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_NormA_64fc, (const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_NormA_32f64f, (const Zpp32f* pSrc, int srcLen, Zpp64f* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_NormB_64f, (const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_NormB_64fc, (const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int dstLen))
ZPP_EXPORT(ZppStatus, zppsAutoCorr_NormB_32f64f, (const Zpp32f* pSrc, int srcLen, Zpp64f* pDst, int dstLen))

/* pDst[k] = sum over i of conj(x1[i]) x2[i+lag], lag = lowLag + k, k = 0 .. dstLen-1, where x1 and x2 are pSrc1 and
 * pSrc2, and 0 beyond their ends. lowLag may be any number; only the lags asked for are computed. NormA divides by
 * M = max(lenSrc1, lenSrc2), NormB by M - |lag| (from |lag| = M on results are 0): the sum is rounded once more. */
ZPP_EXPORT(ZppStatus, zppsCrossCorr_64f,
           (const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2, Zpp64f* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_64fc,
           (const Zpp64fc* pSrc1, int lenSrc1, const Zpp64fc* pSrc2, int lenSrc2, Zpp64fc* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_32f64f,
           (const Zpp32f* pSrc1, int lenSrc1, const Zpp32f* pSrc2, int lenSrc2, Zpp64f* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_NormA_64f,
           (const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2, Zpp64f* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_NormA_64fc,
           (const Zpp64fc* pSrc1, int lenSrc1, const Zpp64fc* pSrc2, int lenSrc2, Zpp64fc* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_NormA_32f64f,
           (const Zpp32f* pSrc1, int lenSrc1, const Zpp32f* pSrc2, int lenSrc2, Zpp64f* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_NormB_64f,
           (const Zpp64f* pSrc1, int lenSrc1, const Zpp64f* pSrc2, int lenSrc2, Zpp64f* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_NormB_64fc,
           (const Zpp64fc* pSrc1, int lenSrc1, const Zpp64fc* pSrc2, int lenSrc2, Zpp64fc* pDst, int dstLen,
            int lowLag))
ZPP_EXPORT(ZppStatus, zppsCrossCorr_NormB_32f64f,
           (const Zpp32f* pSrc1, int lenSrc1, const Zpp32f* pSrc2, int lenSrc2, Zpp64f* pDst, int dstLen,
            int lowLag))

#endif
