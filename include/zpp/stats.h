/* Statistics: reductions of vectors to a number or a few, and sorting. */
#if !defined(ZPP_STATS_H) || defined(ZPP_LIST)
#define ZPP_STATS_H
#include "export.h"

/* Sums, means and deviations
 *
 * Vectors hold len elements, results one. Sums are formed in double, in one order of additions, which depends
 * on len alone: the bits of a result are the same on every processor and for every alignment, a NaN apart.
 * The error of a sum is below (len / 32 + 6) * 2^-53 times the sum of the magnitudes of its terms, of a part of a
 * complex sum (len / 16 + 6) times. Overflow and cancellation are those of the formulas.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1. */

/* *pSum = the sum of all elements; complex: of each part. */
ZPP_EXPORT(ZppStatus, zppsSum_64f, (const Zpp64f* pSrc, int len, Zpp64f* pSum))
ZPP_EXPORT(ZppStatus, zppsSum_64fc, (const Zpp64fc* pSrc, int len, Zpp64fc* pSum))

/* *pSum = the exact sum of all elements times 2^-scaleFactor, rounded to nearest, ties to even, and
 * saturated. */
ZPP_EXPORT(ZppStatus, zppsSum_32s_Sfs, (const Zpp32s* pSrc, int len, Zpp32s* pSum, int scaleFactor))

/* *pMean = the sum of all elements, divided by len. */
ZPP_EXPORT(ZppStatus, zppsMean_64f, (const Zpp64f* pSrc, int len, Zpp64f* pMean))
ZPP_EXPORT(ZppStatus, zppsMean_64fc, (const Zpp64fc* pSrc, int len, Zpp64fc* pMean))

/* *pStdDev = the standard deviation of a sample: the square root of D / ((n - 1) * n), where n is len and D
 * is n times the sum of the squares less the square of the sum. Where D is not above 0, which is so where
 * cancellation leaves nothing of it, and for data with a NaN or an infinity, the result is 0.0.
 * Returned: -8 for a null pointer; -6 for len < 2. */
ZPP_EXPORT(ZppStatus, zppsStdDev_64f, (const Zpp64f* pSrc, int len, Zpp64f* pStdDev))

/* Extremes
 *
 * Vectors hold len elements, results one. An extreme is an element of the vector, to the bit: of equal ones the
 * first, -0 and +0 being equal; its index counts from 0. As comparisons with a NaN do not hold, one at
 * element 0 is the result and others are passed over, but for the minimum where both extremes are asked for.
 *
 * Returned, unless it is said otherwise, in this order of checks: -8 for a null pointer; -6 for len < 1. */

/* The largest and the smallest element, and where they are. pIndx may be null: no index is written then. */
ZPP_EXPORT(ZppStatus, zppsMax_64f, (const Zpp64f* pSrc, int len, Zpp64f* pMax))
ZPP_EXPORT(ZppStatus, zppsMin_64f, (const Zpp64f* pSrc, int len, Zpp64f* pMin))
ZPP_EXPORT(ZppStatus, zppsMaxIndx_64f, (const Zpp64f* pSrc, int len, Zpp64f* pMax, int* pIndx))
ZPP_EXPORT(ZppStatus, zppsMinIndx_64f, (const Zpp64f* pSrc, int len, Zpp64f* pMin, int* pIndx))

/* Both. Here a NaN replaces the minimum before it, and the element behind a NaN replaces the NaN: the minimum is
 * that of the elements behind the last NaN, or the NaN itself if none is. The source of zppsMinMax_32s need not be
 * aligned to its elements. */
ZPP_EXPORT(ZppStatus, zppsMinMax_64f, (const Zpp64f* pSrc, int len, Zpp64f* pMin, Zpp64f* pMax))
ZPP_EXPORT(ZppStatus, zppsMinMax_32s, (const Zpp32s* pSrc, int len, Zpp32s* pMin, Zpp32s* pMax))
ZPP_EXPORT(ZppStatus, zppsMinMaxIndx_64f,
           (const Zpp64f* pSrc, int len, Zpp64f* pMin, int* pMinIndx, Zpp64f* pMax, int* pMaxIndx))
ZPP_EXPORT(ZppStatus, zppsMinMaxIndx_32s,
           (const Zpp32s* pSrc, int len, Zpp32s* pMin, int* pMinIndx, Zpp32s* pMax, int* pMaxIndx))

/* pSrcDst[i] = the larger of pSrc[i] and pSrcDst[i]. The vectors may be one array, but not overlap in part. */
ZPP_EXPORT(ZppStatus, zppsMaxEvery_32s_I, (const Zpp32s* pSrc, Zpp32s* pSrcDst, int len))

/* *pOrder = how many bits the largest magnitude has: 0 if all elements are 0, 32 for -2147483648.
 * Returned: -6 for len < 1; then -8 for a null pointer. */
ZPP_EXPORT(ZppStatus, zppsMaxOrder_32s, (const Zpp32s* pSrc, int len, int* pOrder))

/* *pOrder = the exponent e of the largest magnitude f * 2^e, 0.5 <= f < 1, of the finite elements: 0 if there is
 * none but 0, and -1022 if all are below the smallest normal number, 2.2250738585072014e-308.
 * Returned: -6 for len < 1; then -8 for a null pointer; warning 9, with the result written, for an infinite element
 * or a NaN, and wherever the order -1022 is that of such a subnormal number. */
ZPP_EXPORT(ZppStatus, zppsMaxOrder_64f, (const Zpp64f* pSrc, int len, int* pOrder))

/* *pSum = the sum of the natural logarithms of all elements, as the logarithm of their product, which neither overflows nor
 * underflows. The error is below 2^-53 * (len + 8) and 2 units in the last place of the sum. Builds for different
 * processors may differ in the last place, those for AVX2 and AVX-512 do not; the settings of the floating-point
 * environment change nothing. A negative element makes the sum a NaN; a zero makes it minus infinity, unless an element is
 * plus infinity or a NaN, which count as in a sum.
 * Returned: -8 for a null pointer; -6 for len < 1; warning 8, with the result written, for a negative element, or else 7
 * for a zero. */
ZPP_EXPORT(ZppStatus, zppsSumLn_64f, (const Zpp64f* pSrc, int len, Zpp64f* pSum))
ZPP_EXPORT(ZppStatus, zppsSumLn_32f64f, (const Zpp32f* pSrc, int len, Zpp64f* pSum))

/* Norms and dot products
 *
 * Vectors hold len elements, results one. All is computed in double, every operation rounded, and summed as
 * above: the bits of a result are the same on every processor and for every alignment, a NaN apart. The
 * magnitude of a complex number is sqrt(re * re + im * im) as it stands: infinite where a square is, 0 where
 * both squares are.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1. */

/* *pNorm = the largest magnitude (Inf; NaN does not count), the sum of the magnitudes (L1), or the square
 * root of the sum of their squares (L2). */
ZPP_EXPORT(ZppStatus, zppsNorm_Inf_64f, (const Zpp64f* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_L1_64f, (const Zpp64f* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_L2_64f, (const Zpp64f* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_Inf_64fc64f, (const Zpp64fc* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_L1_64fc64f, (const Zpp64fc* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_L2_64fc64f, (const Zpp64fc* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_L1_32fc64f, (const Zpp32fc* pSrc, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNorm_L2_32fc64f, (const Zpp32fc* pSrc, int len, Zpp64f* pNorm))

/* The same of the difference of two vectors, each element of which is rounded. */
ZPP_EXPORT(ZppStatus, zppsNormDiff_Inf_64f,
           (const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_L1_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_L2_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_Inf_64fc64f,
           (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_L1_64fc64f,
           (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_L2_64fc64f,
           (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_L1_32fc64f,
           (const Zpp32fc* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64f* pNorm))
ZPP_EXPORT(ZppStatus, zppsNormDiff_L2_32fc64f,
           (const Zpp32fc* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64f* pNorm))

/* *pDp = the sum of pSrc1[i] * pSrc2[i], nothing conjugated. Elements are widened to double first; each part
 * of a complex product is rounded as in zppsMul_64fc, then added. */
ZPP_EXPORT(ZppStatus, zppsDotProd_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, int len, Zpp64f* pDp))
ZPP_EXPORT(ZppStatus, zppsDotProd_64fc, (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64fc* pDp))
ZPP_EXPORT(ZppStatus, zppsDotProd_64f64fc, (const Zpp64f* pSrc1, const Zpp64fc* pSrc2, int len, Zpp64fc* pDp))
ZPP_EXPORT(ZppStatus, zppsDotProd_32f64f, (const Zpp32f* pSrc1, const Zpp32f* pSrc2, int len, Zpp64f* pDp))
ZPP_EXPORT(ZppStatus, zppsDotProd_32fc64fc, (const Zpp32fc* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64fc* pDp))
ZPP_EXPORT(ZppStatus, zppsDotProd_32f32fc64fc, (const Zpp32f* pSrc1, const Zpp32fc* pSrc2, int len, Zpp64fc* pDp))

/* The same of integers, summed in double too; the sum (each part of it) is multiplied by 2^-scaleFactor,
 * where factors below -31 count as -31 and those above 93 as 93, rounded to nearest, ties to even, and
 * saturated. It is exact while products and sums are below 2^53. */
ZPP_EXPORT(ZppStatus, zppsDotProd_32s_Sfs,
           (const Zpp32s* pSrc1, const Zpp32s* pSrc2, int len, Zpp32s* pDp, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsDotProd_32sc_Sfs,
           (const Zpp32sc* pSrc1, const Zpp32sc* pSrc2, int len, Zpp32sc* pDp, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsDotProd_32s32sc_Sfs,
           (const Zpp32s* pSrc1, const Zpp32sc* pSrc2, int len, Zpp32sc* pDp, int scaleFactor))

/* Sorting
 *
 * Sorts pSrcDst[0 .. len - 1] in place. No memory is allocated, and no order of the elements makes the time grow faster
 * than len * log(len).
 *
 * Of doubles, NaNs go to the end, whichever the direction, in the order in which they were found and with their bits.
 * -0.0 counts as less than +0.0, and subnormal numbers as what they are, even where denormals-are-zero is set. The bits
 * of a result are the same on every processor.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1. */

/* pSrcDst[0] becomes the least element. */
ZPP_EXPORT(ZppStatus, zppsSortAscend_32s_I, (Zpp32s* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsSortAscend_64f_I, (Zpp64f* pSrcDst, int len))
/* pSrcDst[0] becomes the greatest element. */
ZPP_EXPORT(ZppStatus, zppsSortDescend_32s_I, (Zpp32s* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsSortDescend_64f_I, (Zpp64f* pSrcDst, int len))

#endif
