/* Transforms and spectra. */
#if !defined(ZPP_TRANSFORM_H) || defined(ZPP_LIST)
#define ZPP_TRANSFORM_H
#include "export.h"

/* FFT specification
 *
 * A specification holds the tables for transforms of one length N = 2^order. It is of one kind: complex
 * interleaved (_C_64fc), complex in two arrays (_C_64f) or real (_R_64f). Once made it is never written, so
 * any number of threads may use it at once, each with its own work buffer. */

/* Make a specification, to be released by the Free function of its kind. order: 0 to 30. hint is kept and has
 * no effect. flag: which direction multiplies its result by what:
 *     8  neither            1  forward, by 1 / N
 *     2  inverse, by 1 / N  4  both, by 1 / sqrt(N)
 * Returned, in this order of checks: -8 ppSpec null; -15 order out of range; -9 memory short for it; -16
 * another flag; -9 memory short to compute its tables, which the orders 0 to 3 do not have. After an error
 * *ppSpec is as it was, and nothing stays allocated. */
ZPP_EXPORT(ZppStatus, zppsFFTInitAlloc_C_64fc, (ZppsFFTSpec** ppSpec, int order, int flag, int hint))
ZPP_EXPORT(ZppStatus, zppsFFTInitAlloc_C_64f, (ZppsFFTSpec** ppSpec, int order, int flag, int hint))
ZPP_EXPORT(ZppStatus, zppsFFTInitAlloc_R_64f, (ZppsFFTSpec** ppSpec, int order, int flag, int hint))

/* Release a specification.
 * Returned: -8 pSpec null; -17 not a specification of this kind, nothing is released. */
ZPP_EXPORT(ZppStatus, zppsFFTFree_C_64fc, (ZppsFFTSpec* pSpec))
ZPP_EXPORT(ZppStatus, zppsFFTFree_C_64f, (ZppsFFTSpec* pSpec))
ZPP_EXPORT(ZppStatus, zppsFFTFree_R_64f, (ZppsFFTSpec* pSpec))

/* *pSize = bytes of work buffer that a transform needs, whatever its address; 0 (none) for complex orders up
 * to 9 and real orders up to 10.
 * Returned: -8 a null pointer; -17 not a specification of this kind. */
ZPP_EXPORT(ZppStatus, zppsFFTGetBufSize_C_64fc, (const ZppsFFTSpec* pSpec, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFFTGetBufSize_C_64f, (const ZppsFFTSpec* pSpec, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFFTGetBufSize_R_64f, (const ZppsFFTSpec* pSpec, int* pSize))

/* FFT transforms
 *
 *     forward: X[k] = sum over n of x[n] exp(-2 pi i k n / N)
 *     inverse: x[n] = sum over k of X[k] exp(+2 pi i k n / N)
 *
 * multiplied by the factor that the flag of pSpec sets for the direction, if any. pBuffer is a work
 * buffer of the size that zppsFFTGetBufSize gives, at any address, or null: then, where one is needed, it is
 * allocated for the call. Source and destination may be the same array (for two arrays: both the same), with
 * the same result. The results differ a little between the columns, and not with the state of the x87 unit.
 *
 * Where nothing overflows or becomes subnormal, the error of each result is below (1 + order) 2^-52 of the
 * largest exact result: about a third of it is met where all results are of one magnitude and random phase or
 * sign, less for impulses, a tenth for random signals. The root mean square of the errors is about
 * 0.65 sqrt(order) 2^-53 of that of the results.
 *
 * Returned, in this order of checks: -8 pSpec null; -17 a specification of another kind; -8 a null data
 * pointer; -9 no memory for the work buffer. */

/* Complex numbers, interleaved or in two arrays. */
ZPP_EXPORT(ZppStatus, zppsFFTFwd_CToC_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTFwd_CToC_64f,
           (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstRe, Zpp64f* pDstIm,
            const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTInv_CToC_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTInv_CToC_64f,
           (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstRe, Zpp64f* pDstIm,
            const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))

/* Real signals. Of their spectra, X[N-k] = conj(X[k]), only X[0] .. X[N/2] are kept, with Rk and Ik the real
 * and imaginary part of X[k], in one of three layouts:
 *     Pack  R0, R1, I1, ..., R(N/2-1), I(N/2-1), R(N/2)    N numbers
 *     Perm  R0, R(N/2), R1, I1, ..., R(N/2-1), I(N/2-1)    N numbers
 *     CCS   R0, 0, R1, I1, ..., R(N/2), 0                  N + 2 numbers
 * and for odd N: Pack and Perm R0, R1, I1, ... (N numbers), CCS R0, 0, R1, I1, ... (N + 1 numbers). The
 * inverse transforms do not look at the zeros of CCS. */
ZPP_EXPORT(ZppStatus, zppsFFTFwd_RToPack_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTFwd_RToPerm_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTFwd_RToCCS_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTInv_PackToR_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTInv_PermToR_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFFTInv_CCSToR_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer))

/* Packed-spectrum arithmetic
 *
 * For spectra of N = len elements in the layouts above, len being any positive number, even or odd. The
 * results are the same bits in all columns: each operation of the formulas is rounded to double.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. */

/* Products of two spectra: Dst[k] = Src1[k] Src2[k]; in place SrcDst[k] = Src[k] SrcDst[k]. With a and b the
 * factors in this order: (a.re b.re - a.im b.im, a.re b.im + a.im b.re). */
ZPP_EXPORT(ZppStatus, zppsMulPack_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMulPack_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsMulPerm_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMulPerm_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))

/* SrcDst[k] = Src[k] conj(SrcDst[k]), Pack layout. */
ZPP_EXPORT(ZppStatus, zppsMulPackConj_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))

/* The full spectrum of len complex numbers, pDst[len - k] = conj(pDst[k]). X[0] and X[len/2] are (Rk, 0), of
 * CCS (Rk, Ik) as stored. In place the packed spectrum stands at the start of pSrcDst. */
ZPP_EXPORT(ZppStatus, zppsConjPack_64fc, (const Zpp64f* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConjPack_64fc_I, (Zpp64fc* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsConjPerm_64fc, (const Zpp64f* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConjPerm_64fc_I, (Zpp64fc* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsConjCcs_64fc, (const Zpp64f* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConjCcs_64fc_I, (Zpp64fc* pSrcDst, int len))

/* Discrete cosine transform (DCT)
 *
 *     forward (DCT-II):   y[k] = c(k) sum over n of x[n] cos(pi (2n + 1) k / (2N)),
 *     inverse (DCT-III):  x[n] = sum over k of c(k) y[k] cos(pi (2n + 1) k / (2N)),
 *
 * of any length N, with c(0) = sqrt(1 / N) and c(k) = sqrt(2 / N) for k > 0, so that each undoes the other. A
 * specification holds the tables for one length and one direction. Once made it is never written, so any number of
 * threads may use it at once, each with its own work buffer. */

/* Make a specification for transforms of len elements, to be released by the Free function of its direction. hint is
 * kept and has no effect.
 * Returned, in this order of checks: -8 ppDCTSpec null; -6 len < 1, or so large that the bytes of the work buffer are
 * not an int (powers of two from 2^28 on, other even lengths above 3 2^24, odd ones above 2^25); -9 memory short for it
 * or for what its tables are made from. After an error *ppDCTSpec is as it was, and nothing stays allocated. */
ZPP_EXPORT(ZppStatus, zppsDCTFwdInitAlloc_64f, (ZppsDCTSpec** ppDCTSpec, int len, int hint))

/* Release a specification.
 * Returned: -8 pDCTSpec null; -17 not a specification of this direction, nothing is released. */
ZPP_EXPORT(ZppStatus, zppsDCTFwdFree_64f, (ZppsDCTSpec* pDCTSpec))

/* *pSize = bytes of work buffer that a transform needs, whatever its address: 0 (none) for N = 1, 2, 4 and 8,
 * 8 N + 16 for other powers of two and for N up to 100, up to about 100 N for the rest.
 * Returned: -8 a null pointer; -17 not a specification of this direction. */
ZPP_EXPORT(ZppStatus, zppsDCTFwdGetBufSize_64f, (const ZppsDCTSpec* pDCTSpec, int* pSize))

/* The transform. pBuffer is a work buffer of the size that GetBufSize gives, at any address, or null: then, where one
 * is needed, it is allocated for the call. Powers of two from 2^17 on allocate a little more for the call in any case.
 * pSrc and pDst may be the same array, with the same result. The results differ a little between the columns, and not
 * with the state of the x87 unit.
 *
 * Where nothing overflows or becomes subnormal, the error of each result is below (2 + log2 N) 2^-52 of the largest
 * exact result. For random signals the root mean square of the errors is about 0.6 sqrt(log2 N) 2^-53 of that of the
 * results for powers of two, and up to 1.3 sqrt(log2 N) 2^-53 for other lengths.
 *
 * Returned, in this order of checks: -8 pDCTSpec null; -17 a specification of another direction or kind; -8 a null
 * data pointer; -9 no memory to work in. */
ZPP_EXPORT(ZppStatus, zppsDCTFwd_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsDCTSpec* pDCTSpec, Zpp8u* pBuffer))

/* The inverse transform, in the same way. */
ZPP_EXPORT(ZppStatus, zppsDCTInvInitAlloc_64f, (ZppsDCTSpec** ppDCTSpec, int len, int hint))
ZPP_EXPORT(ZppStatus, zppsDCTInvFree_64f, (ZppsDCTSpec* pDCTSpec))
ZPP_EXPORT(ZppStatus, zppsDCTInvGetBufSize_64f, (const ZppsDCTSpec* pDCTSpec, int* pSize))
ZPP_EXPORT(ZppStatus, zppsDCTInv_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, const ZppsDCTSpec* pDCTSpec, Zpp8u* pBuffer))

/* Haar wavelet
 *
 * One level: pairs of samples a = x[2i], b = x[2i+1] of a signal of len samples to a low band of (len + 1) / 2 samples
 * and a high band of len / 2, and back. An odd last sample goes to the low band alone. The results are the same bits
 * in all columns. No destination may overlap a source or the other destination.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1. Calls in several threads may share
 * sources. */

/* pDstHigh[i] = (b - a) 0.5; pDstLow[i] = a + pDstHigh[i], each operation rounded to double. The odd last sample is
 * copied. */
ZPP_EXPORT(ZppStatus, zppsWTHaarFwd_64f, (const Zpp64f* pSrc, int len, Zpp64f* pDstLow, Zpp64f* pDstHigh))

/* pDstLow[i] = (a + b) / 2; pDstHigh[i] = (b - a) / 2, exact and then rounded to nearest, ties to even. One exception:
 * where a is -2147483648 or -2147483647 and b 2147483646 or 2147483647, the low one is 0 and the high one 2147483647.
 * The odd last sample is copied. */
ZPP_EXPORT(ZppStatus, zppsWTHaarFwd_32s, (const Zpp32s* pSrc, int len, Zpp32s* pDstLow, Zpp32s* pDstHigh))

/* The same with (a + b) 2^-(scaleFactor + 1), (b - a) 2^-(scaleFactor + 1) and the odd last sample times
 * 2^-scaleFactor: exact, rounded to nearest, ties to even, and saturated, without the exception unless scaleFactor is 0.
 * Any scaleFactor is valid. */
ZPP_EXPORT(ZppStatus, zppsWTHaarFwd_32s_Sfs,
           (const Zpp32s* pSrc, int len, Zpp32s* pDstLow, Zpp32s* pDstHigh, int scaleFactor))

/* pDst[2i] = l - h; pDst[2i+1] = l + h, with l = pSrcLow[i] and h = pSrcHigh[i]; of integers saturated. The odd last
 * sample is copied. */
ZPP_EXPORT(ZppStatus, zppsWTHaarInv_64f, (const Zpp64f* pSrcLow, const Zpp64f* pSrcHigh, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsWTHaarInv_32s, (const Zpp32s* pSrcLow, const Zpp32s* pSrcHigh, Zpp32s* pDst, int len))

/* The same, all times 2^-scaleFactor, also the odd last sample: exact, rounded to nearest, ties to even, and saturated.
 * Any scaleFactor is valid. As every scale factor divides, the inverse of the forward form with s takes -s. */
ZPP_EXPORT(ZppStatus, zppsWTHaarInv_32s_Sfs,
           (const Zpp32s* pSrcLow, const Zpp32s* pSrcHigh, Zpp32s* pDst, int len, int scaleFactor))

/* Goertzel
 *
 * One value of a spectrum, at the frequency rFreq, a fraction of the sampling rate:
 *
 *     *pVal = exp(2 pi i rFreq len) sum over n of pSrc[n] exp(-2 pi i rFreq n),
 *
 * which is element m of the discrete Fourier transform for rFreq = m / len. It is computed by the recurrence
 * s[n] = (2 cos(w) s[n-1] - s[n-2]) + pSrc[n] with w = 2 pi rFreq: below 128 samples in one, from then on in four
 * segments of L = len / 4 samples, the first with what is left over, whose values are put together by the phase
 * between them. The error is below
 *
 *     8 * 2^-53 * L * (2 + min(L, 1 / |sin w|)) * (sum of |pSrc[n]|),      L = len below 128 samples,
 *
 * also for frequencies near 0 and 1 / 2, where the minimum is L and the error grows with the square of it. The results
 * differ a little between the columns, and not with the state of the x87 unit.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1; -27 for a frequency that is not
 * 0 <= rFreq < 1, a NaN too. Calls in several threads may share sources. */
ZPP_EXPORT(ZppStatus, zppsGoertz_64fc, (const Zpp64fc* pSrc, int len, Zpp64fc* pVal, Zpp64f rFreq))

/* The values at two frequencies, to the bits of two calls. pVal and rFreq have two elements. */
ZPP_EXPORT(ZppStatus, zppsGoertzTwo_64fc, (const Zpp64fc* pSrc, int len, Zpp64fc* pVal, const Zpp64f* rFreq))

#endif
