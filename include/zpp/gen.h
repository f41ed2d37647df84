/* Generators and windows. */
#if !defined(ZPP_GEN_H) || defined(ZPP_LIST)
#define ZPP_GEN_H
#include "export.h"

/* Tones and triangles
 *
 * pDst has len samples of a periodic signal of magnitude magn and of rFreq cycles a sample, 0 <= rFreq < 0.5, that
 * begins at the phase *pPhase, in radians, 0 <= *pPhase < 6.283185307179586. The phase of the next sample is written
 * back, so that calls one after the other make one signal: *pPhase + 2 pi rFreq len less whole turns of 2 pi, where pi
 * is the real number; the sum is right to 2^-100 before it is rounded. That is the only rounding of a call, of at most
 * 4.5e-16: the phase behind k calls is within 4.5e-16 k of the exact one. Threads need a phase each.
 *
 * After an error nothing is written, and a NaN is refused with the status of its parameter. */

/* pDst[n] = magn cos(2 pi rFreq n + *pPhase); complex: and magn sin(...) as the imaginary part. Each part is within
 * 2^-46 magn of the exact value for the phase that the call was given, whatever len is (the largest error measured is
 * 5.9e-15 magn); where len <= 32, within 2^-49 magn. A phase that is rounded to 6.283185307179586 is written back as 0.
 * Returned, in this order of checks: -8 for a null pPhase; -46 unless magn > 0; -45 unless 0 <= rFreq < 0.5; -44 unless
 * 0 <= *pPhase < 6.283185307179586; -8 for a null pDst; -6 for len < 1. */
ZPP_EXPORT(ZppStatus, zppsTone_Direct_64f, (Zpp64f* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f* pPhase))
ZPP_EXPORT(ZppStatus, zppsTone_Direct_64fc, (Zpp64fc* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f* pPhase))

/* From magn at phase 0 the signal falls to -magn at phase A = pi + asym, along a straight line, and rises to magn at
 * 2 pi, where B = pi - asym; pi is 3.141592653589793 here. The imaginary part is the same signal a quarter of a period
 * behind, as the sine is behind the cosine. No sample is above magn or below -magn.
 *
 * Samples do not depend on those before them: each is within 2^-48 pi / min(A, B) of magn of the exact signal for the
 * phase that the call was given, however long the vector is. To add slopes sample by sample, and fold what is above
 * magn or below -magn, gives the same up to the roundings of these sums. With asym = -3.141592653589793, A = 0, the
 * signal is a rising sawtooth, and the sums are formed: 2 magn rFreq is added to each sample, and 2 magn taken off
 * where the sum is above magn.
 *
 * A phase that is rounded to 6.283185307179586 is written back as that, which the next call refuses.
 * Returned, in this order of checks: -8 for a null pPhase; -43 unless magn > 0; -42 unless 0 <= rFreq < 0.5; -40 unless
 * -3.141592653589793 <= asym < 3.141592653589793; -41 unless 0 <= *pPhase < 6.283185307179586; -8 for a null pDst;
 * -6 for len < 1. */
ZPP_EXPORT(ZppStatus, zppsTriangle_Direct_64f,
           (Zpp64f* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f asym, Zpp64f* pPhase))
ZPP_EXPORT(ZppStatus, zppsTriangle_Direct_64fc,
           (Zpp64fc* pDst, int len, Zpp64f magn, Zpp64f rFreq, Zpp64f asym, Zpp64f* pPhase))

/* Release a generator's state. No function of the library makes one: it begins with two 32-bit words, the identifier
 * 0x4C4D535A, and 1 where the state is in a block of zppsMalloc_*, which is then released and its identifier cleared.
 * Returned: -8 for a null pointer; -17 for another identifier. */
ZPP_EXPORT(ZppStatus, zppsToneFree, (ZppsToneState* pState))
ZPP_EXPORT(ZppStatus, zppsTriangleFree, (ZppsTriangleState* pState))

/* Jaehne's signal and ramps
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1; then what is said. */

/* pDst[n] = magn sin(n (pi / 2 / len) n), n = 0 .. len-1: the argument is computed in double from the left to the
 * right, its sine is within .56 units in the last place, its product with magn rounded, 32s: to the nearest integer,
 * ties to even. Of len = 1 the sample is 0. Returned besides: -38 for magn < 0 or a NaN. */
ZPP_EXPORT(ZppStatus, zppsVectorJaehne_64f, (Zpp64f* pDst, int len, Zpp64f magn))
ZPP_EXPORT(ZppStatus, zppsVectorJaehne_32s, (Zpp32s* pDst, int len, Zpp32s magn))

/* pDst[n] = n slope + offset, n = 0 .. len-1: product and sum in double, each rounded. 32s: with -0.5 added where that
 * is not above 0, and 0.5 elsewhere, then cut to an integer and saturated (a half is rounded away from zero); a NaN is
 * -2147483648. The bits of a result are the same on every processor. */
ZPP_EXPORT(ZppStatus, zppsVectorRamp_64f, (Zpp64f* pDst, int len, Zpp32f offset, Zpp32f slope))
ZPP_EXPORT(ZppStatus, zppsVectorRamp_32s, (Zpp32s* pDst, int len, Zpp32f offset, Zpp32f slope))

/* Windows
 *
 * pDst[n] = w(n) * pSrc[n], n = 0 .. N-1, N = len: vectors are multiplied by a symmetric window of their length, complex
 * elements part by part by the real weight. pDst may be pSrc, but not overlap it in part; the _I forms work in place. The
 * weights of n and N-1-n are the same to the bit, and those of every form. The element in the middle of an odd N has
 * weight 1: it is copied. Weights of 0 are multiplied with the element, where not stated otherwise: of an infinity or a
 * NaN they make a NaN. All is computed rounding to nearest, whatever the caller has set.
 *
 * Returned, unless it is said otherwise, in this order of checks: -8 for a null pointer; -6 for len < 3. */

/* Bartlett: w = 0, s, s + s, s + s + s, ... up to the middle, s = 2 / (N-1), each sum rounded to double: the bits of a
 * result are the same on every processor. Both end elements are set to 0, whatever they are. */
ZPP_EXPORT(ZppStatus, zppsWinBartlett_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBartlett_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBartlett_64f_I, (Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBartlett_64fc_I, (Zpp64fc* pSrcDst, int len))

/* Hann: w(n) = 0.5 - 0.5 cos(2 pi n / (N-1)), within 2.5 * 2^-53, and within 4 units in the last place where it is small. */
ZPP_EXPORT(ZppStatus, zppsWinHann_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinHann_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinHann_64f_I, (Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinHann_64fc_I, (Zpp64fc* pSrcDst, int len))

/* Hamming: w(n) = 0.54 - 0.46 cos(2 pi n / (N-1)), within 3 * 2^-53; 0.08 at the ends. */
ZPP_EXPORT(ZppStatus, zppsWinHamming_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinHamming_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinHamming_64f_I, (Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinHamming_64fc_I, (Zpp64fc* pSrcDst, int len))

/* Blackman: w(n) = (1 + alpha) / 2 - 0.5 cos(2 pi n / (N-1)) - alpha / 2 cos(4 pi n / (N-1)), within 4 * 2^-53, and for
 * |alpha| above 0.5 within 8 |alpha| * 2^-53; 0 at the ends, for any alpha. For len 3 both end elements are set to 0,
 * whatever they are. An infinite alpha, or a NaN, makes NaNs of all elements between the ends but the middle one of an
 * odd len. Std: alpha = -0.16. Opt: alpha = -0.25 / cos(pi / (N-1))^2, with which the weights of n = 1 are 0 too, to
 * rounding; those of len 4 are all exactly 0. Opt returns -6 for len < 4, before -8. */
ZPP_EXPORT(ZppStatus, zppsWinBlackman_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f alpha))
ZPP_EXPORT(ZppStatus, zppsWinBlackman_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f alpha))
ZPP_EXPORT(ZppStatus, zppsWinBlackman_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f alpha))
ZPP_EXPORT(ZppStatus, zppsWinBlackman_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f alpha))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanStd_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanStd_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanStd_64f_I, (Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanStd_64fc_I, (Zpp64fc* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanOpt_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanOpt_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanOpt_64f_I, (Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsWinBlackmanOpt_64fc_I, (Zpp64fc* pSrcDst, int len))

/* Kaiser: w(n) = I0(alpha sqrt(n (N-1-n))) / I0(alpha (N-1) / 2). I0 is the modified Bessel function of order 0, by two
 * polynomials that are right to 2e-7: below 4 one of (x / 4)^2, from there on one of 4 / x times e^x / sqrt(x). Error
 * beside these: 4 units in the last place, and x more, x being alpha sqrt(n (N-1-n)). An alpha that is a NaN makes NaNs of
 * all elements but the middle one.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1; -39 for |alpha| (N-1) / 2 > 308; then the
 * element of len 1 is copied. */
ZPP_EXPORT(ZppStatus, zppsWinKaiser_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp32f alpha))
ZPP_EXPORT(ZppStatus, zppsWinKaiser_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp32f alpha))
ZPP_EXPORT(ZppStatus, zppsWinKaiser_64f_I, (Zpp64f* pSrcDst, int len, Zpp32f alpha))
ZPP_EXPORT(ZppStatus, zppsWinKaiser_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp32f alpha))

#endif
