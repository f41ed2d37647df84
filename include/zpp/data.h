/* Initialisation, movement and type conversion of vectors. */
#if !defined(ZPP_DATA_H) || defined(ZPP_LIST)
#define ZPP_DATA_H
#include "export.h"

/* Initialisation and movement
 *
 * Elements are moved as bytes, so every bit pattern arrives as it was. All vectors hold len elements.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. */

/* pDst[i] = pSrc[i], for vectors that do not overlap. */
ZPP_EXPORT(ZppStatus, zppsCopy_8u, (const Zpp8u* pSrc, Zpp8u* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCopy_16s, (const Zpp16s* pSrc, Zpp16s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCopy_16sc, (const Zpp16sc* pSrc, Zpp16sc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCopy_32f, (const Zpp32f* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCopy_32fc, (const Zpp32fc* pSrc, Zpp32fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCopy_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCopy_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))

/* pDst[i] = pSrc[i], right under any overlap. */
ZPP_EXPORT(ZppStatus, zppsMove_8u, (const Zpp8u* pSrc, Zpp8u* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMove_16s, (const Zpp16s* pSrc, Zpp16s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMove_16sc, (const Zpp16sc* pSrc, Zpp16sc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMove_32f, (const Zpp32f* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMove_32fc, (const Zpp32fc* pSrc, Zpp32fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMove_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMove_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))

/* pDst[i] = val. */
ZPP_EXPORT(ZppStatus, zppsSet_32s, (Zpp32s val, Zpp32s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSet_32sc, (Zpp32sc val, Zpp32sc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSet_64f, (Zpp64f val, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSet_64fc, (Zpp64fc val, Zpp64fc* pDst, int len))

/* pDst[i] = +0. */
ZPP_EXPORT(ZppStatus, zppsZero_64f, (Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsZero_64fc, (Zpp64fc* pDst, int len))

/* pDst[len-1-i] = pSrc[i], for vectors that do not overlap; _I reverses in place. */
ZPP_EXPORT(ZppStatus, zppsFlip_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsFlip_64f_I, (Zpp64f* pSrcDst, int len))

/* Type conversion
 *
 * The names say the types of source and destination; 24s and 24u are packed three-byte integers (types.h).
 * All vectors hold len elements and do not overlap, unless a function works in place. Returned, in this order
 * of checks: -8 for a null pointer; -6 for len <= 0. Saturation is silent, and every scaleFactor and rndMode
 * is valid: rndMode is zppRoundNear (to nearest, ties to even), anything else means toward zero. The results
 * are the same to the bit in every column; the processor is expected to round to nearest, as it does by
 * default, and the treatment of subnormal numbers is the caller's setting. */

/* Integers as wider integers: the same value. */
ZPP_EXPORT(ZppStatus, zppsConvert_8s16s, (const Zpp8s* pSrc, Zpp16s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_16s32s, (const Zpp16s* pSrc, Zpp32s* pDst, int len))

/* Saturated to [-32768, 32767]. */
ZPP_EXPORT(ZppStatus, zppsConvert_32s16s, (const Zpp32s* pSrc, Zpp16s* pDst, int len))

/* Integers as floating numbers: the same value; that of 32s32f is rounded to nearest, ties to even. */
ZPP_EXPORT(ZppStatus, zppsConvert_8s32f, (const Zpp8s* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_8u32f, (const Zpp8u* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_16s32f, (const Zpp16s* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_16u32f, (const Zpp16u* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_32s32f, (const Zpp32s* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_32s64f, (const Zpp32s* pSrc, Zpp64f* pDst, int len))

/* Between single and double precision; to single rounded to nearest, ties to even, infinite on overflow. A
 * NaN stays one, keeps its sign and the upper bits of its payload, and becomes quiet. */
ZPP_EXPORT(ZppStatus, zppsConvert_32f64f, (const Zpp32f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_64f32f, (const Zpp64f* pSrc, Zpp32f* pDst, int len))

/* Packed integers as wider ones or as floating numbers: the same value. */
ZPP_EXPORT(ZppStatus, zppsConvert_24s32s, (const Zpp8u* pSrc, Zpp32s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_24u32u, (const Zpp8u* pSrc, Zpp32u* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_24s32f, (const Zpp8u* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConvert_24u32f, (const Zpp8u* pSrc, Zpp32f* pDst, int len))

/* pDst[i] = pSrc[i] * 2^-scaleFactor, rounded once to nearest, ties to even: gradually to 0 (of the sign of
 * pSrc[i]) when it is small, infinite when it is large. 0 gives +0. */
ZPP_EXPORT(ZppStatus, zppsConvert_16s32f_Sfs, (const Zpp16s* pSrc, Zpp32f* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_16s64f_Sfs, (const Zpp16s* pSrc, Zpp64f* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32s32f_Sfs, (const Zpp32s* pSrc, Zpp32f* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32s64f_Sfs, (const Zpp32s* pSrc, Zpp64f* pDst, int len, int scaleFactor))

/* pDst[i] = pSrc[i] * 2^-scaleFactor, rounded to nearest, ties to even, and saturated to the range of the
 * destination. A scaleFactor above 31 works as 31; one below -15 (to 16s) or -31 (to 24s and 24u) as these: it
 * saturates all but 0. One exception: -1 to 24s gives 0 from -24 down, where the three bytes that are stored are
 * those of -1 * 2^-scaleFactor. */
ZPP_EXPORT(ZppStatus, zppsConvert_32s16s_Sfs, (const Zpp32s* pSrc, Zpp16s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32s24s_Sfs, (const Zpp32s* pSrc, Zpp8u* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32u24u_Sfs, (const Zpp32u* pSrc, Zpp8u* pDst, int len, int scaleFactor))

/* pDst[i] = pSrc[i] * 2^-scaleFactor, rounded by rndMode, saturated to the range of the destination. A NaN
 * gives its lower bound. The multiplier has the precision of the source: where 2^-scaleFactor is beyond that,
 * it is infinite (scaleFactor <= -128 for 32f, <= -1024 for 64f) or 0 (>= 150, >= 1075), and the product of
 * infinity and 0 is a NaN. */
ZPP_EXPORT(ZppStatus, zppsConvert_32f8s_Sfs,
           (const Zpp32f* pSrc, Zpp8s* pDst, int len, ZppRoundMode rndMode, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32f8u_Sfs,
           (const Zpp32f* pSrc, Zpp8u* pDst, int len, ZppRoundMode rndMode, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32f16s_Sfs,
           (const Zpp32f* pSrc, Zpp16s* pDst, int len, ZppRoundMode rndMode, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32f16u_Sfs,
           (const Zpp32f* pSrc, Zpp16u* pDst, int len, ZppRoundMode rndMode, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32f32s_Sfs,
           (const Zpp32f* pSrc, Zpp32s* pDst, int len, ZppRoundMode rndMode, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_64f32s_Sfs,
           (const Zpp64f* pSrc, Zpp32s* pDst, int len, ZppRoundMode rndMode, int scaleFactor))

/* The same to packed integers, always to nearest, ties to even; but a scaleFactor below -127 works as -127,
 * and the multiplier is 0 for one of 127 and above. */
ZPP_EXPORT(ZppStatus, zppsConvert_32f24s_Sfs, (const Zpp32f* pSrc, Zpp8u* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsConvert_32f24u_Sfs, (const Zpp32f* pSrc, Zpp8u* pDst, int len, int scaleFactor))

/* Integers as half precision, rounded by rndMode. */
ZPP_EXPORT(ZppStatus, zppsConvert_16s16f, (const Zpp16s* pSrc, Zpp16f* pDst, int len, ZppRoundMode rndMode))

/* Half precision as integers: pSrc[i] * 2^-scaleFactor, rounded by rndMode and saturated, without a limit to
 * scaleFactor. Infinities give the bounds, 0 gives 0 and a NaN gives -32768 whatever scaleFactor is. */
ZPP_EXPORT(ZppStatus, zppsConvert_16f16s_Sfs,
           (const Zpp16f* pSrc, Zpp16s* pDst, int len, ZppRoundMode rndMode, int scaleFactor))

/* Half precision as single: the same value, or a NaN of the same sign and payload, not made quiet. */
ZPP_EXPORT(ZppStatus, zppsConvert_16f32f, (const Zpp16f* pSrc, Zpp32f* pDst, int len))

/* Single precision as half, rounded by rndMode. A NaN gives 0x7DFF with its sign. To nearest, magnitudes of
 * 65520 and above give infinity, and a tie goes to even but for the one at 2^-25, which gives 2^-24. Toward
 * zero, magnitudes of 65536 and above, finite or not, give infinity. */
ZPP_EXPORT(ZppStatus, zppsConvert_32f16f, (const Zpp32f* pSrc, Zpp16f* pDst, int len, ZppRoundMode rndMode))

/* The bytes of every packed element in reverse order; _I in place. */
ZPP_EXPORT(ZppStatus, zppsSwapBytes_24u, (const Zpp8u* pSrc, Zpp8u* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSwapBytes_24u_I, (Zpp8u* pSrcDst, int len))

/* Companding
 *
 * Between linear numbers and the codes of eight bits of ITU-T G.711: A-law with its even bits inverted, mu-law with all
 * bits inverted. All vectors hold len elements and do not overlap; pDst may be the same array as pSrc between the laws.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. Saturation is silent; the results are the
 * same to the bit in every column. Calls in several threads may share sources. */

/* Linear numbers of 16 bits, of which the laws look at the upper 13 (A) and 14 (mu): the code of the interval that
 * these fall into. Negative numbers have the code of their complement ~x, with the other sign. */
ZPP_EXPORT(ZppStatus, zppsLinToALaw_16s8u, (const Zpp16s* pSrc, Zpp8u* pDst, int len))

/* Full scale is 1: the code of pSrc[i] * 32768, rounded to the nearest integer, ties away from zero, and saturated to
 * [-32768, 32767]. A NaN counts as -32768. */
ZPP_EXPORT(ZppStatus, zppsLinToALaw_32f8u, (const Zpp32f* pSrc, Zpp8u* pDst, int len))

/* The same in mu-law. */
ZPP_EXPORT(ZppStatus, zppsLinToMuLaw_16s8u, (const Zpp16s* pSrc, Zpp8u* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsLinToMuLaw_32f8u, (const Zpp32f* pSrc, Zpp8u* pDst, int len))

/* The value of the code, the middle of its interval, as a number of 16 bits: 8 times the values of G.711 in A-law, 4
 * times those in mu-law, of which both zeros give 0. As 32f it is divided by 32768 (0 is +0). */
ZPP_EXPORT(ZppStatus, zppsALawToLin_8u16s, (const Zpp8u* pSrc, Zpp16s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMuLawToLin_8u16s, (const Zpp8u* pSrc, Zpp16s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsALawToLin_8u32f, (const Zpp8u* pSrc, Zpp32f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMuLawToLin_8u32f, (const Zpp8u* pSrc, Zpp32f* pDst, int len))

/* Codes of one law as those of the other by tables 4 and 3 of G.711, which is not to decode and to encode again. */
ZPP_EXPORT(ZppStatus, zppsALawToMuLaw_8u, (const Zpp8u* pSrc, Zpp8u* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMuLawToALaw_8u, (const Zpp8u* pSrc, Zpp8u* pDst, int len))

/* Thresholds
 *
 * Elements on one side of a level are replaced, the others copied. All vectors hold len elements; pDst may be the same
 * array as pSrc, but not overlap it in part, and a form in place gives the results of the one out of place. Complex
 * numbers are compared by their magnitude: n = im im + re re with the square of the level, L = level level; a NaN n is on
 * neither side. Each operation is rounded to double.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0; then, of complex members and LTInv, -19
 * for level < 0. Calls in several threads may share sources. */

/* level instead of x < level (less; a NaN is kept) or of x > level (greater). Complex: z * sqrt(L / n) instead of z,
 * which has the magnitude `level` and the same direction, where n < L or n > L; where n is 0, (level, 0). */
ZPP_EXPORT(ZppStatus, zppsThreshold_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level, ZppCmpOp relOp))
ZPP_EXPORT(ZppStatus, zppsThreshold_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f level, ZppCmpOp relOp))
ZPP_EXPORT(ZppStatus, zppsThreshold_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level, ZppCmpOp relOp))
ZPP_EXPORT(ZppStatus, zppsThreshold_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f level, ZppCmpOp relOp))
ZPP_EXPORT(ZppStatus, zppsThreshold_LT_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LT_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_GT_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_GT_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LT_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LT_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_GT_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_GT_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LT_32s, (const Zpp32s* pSrc, Zpp32s* pDst, int len, Zpp32s level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LT_32s_I, (Zpp32s* pSrcDst, int len, Zpp32s level))

/* value instead of x < level, which counts a NaN in (LT), or of x > level (GT); complex: where n < L, or n > L. */
ZPP_EXPORT(ZppStatus, zppsThreshold_LTVal_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level, Zpp64f value))
ZPP_EXPORT(ZppStatus, zppsThreshold_LTVal_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f level, Zpp64f value))
ZPP_EXPORT(ZppStatus, zppsThreshold_GTVal_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level, Zpp64f value))
ZPP_EXPORT(ZppStatus, zppsThreshold_GTVal_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f level, Zpp64f value))
ZPP_EXPORT(ZppStatus, zppsThreshold_LTVal_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level, Zpp64fc value))
ZPP_EXPORT(ZppStatus, zppsThreshold_LTVal_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f level, Zpp64fc value))
ZPP_EXPORT(ZppStatus, zppsThreshold_GTVal_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level, Zpp64fc value))
ZPP_EXPORT(ZppStatus, zppsThreshold_GTVal_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f level, Zpp64fc value))

/* valueLT instead of x < levelLT, which counts a NaN in, else valueGT instead of x > levelGT. Returned also, after the
 * others: -18 for levelGT < levelLT. */
ZPP_EXPORT(ZppStatus, zppsThreshold_LTValGTVal_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f levelLT, Zpp64f valueLT, Zpp64f levelGT, Zpp64f valueGT))
ZPP_EXPORT(ZppStatus, zppsThreshold_LTValGTVal_64f_I,
           (Zpp64f* pSrcDst, int len, Zpp64f levelLT, Zpp64f valueLT, Zpp64f levelGT, Zpp64f valueGT))

/* 1 / x, correctly rounded, but of no larger magnitude than 1 / level: where |x| <= level it is -1 / level for x < 0,
 * else +1 / level. With level 0 a zero of either sign gives +Inf, and warning 4 at the end. A NaN counts as zero. */
ZPP_EXPORT(ZppStatus, zppsThreshold_LTInv_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LTInv_64f_I, (Zpp64f* pSrcDst, int len, Zpp64f level))

/* (re / n, -im / n); where n < L, (re / d, -im / d) with d = sqrt(n) * level; where n is 0, (1 / level, 0). If L is 0,
 * as it is of a level below 1.5e-162 too, n = 0 gives (+Inf, 0), and warning 4 at the end. A NaN n counts as zero. */
ZPP_EXPORT(ZppStatus, zppsThreshold_LTInv_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f level))
ZPP_EXPORT(ZppStatus, zppsThreshold_LTInv_64fc_I, (Zpp64fc* pSrcDst, int len, Zpp64f level))

/* Complex and polar
 *
 * Complex vectors taken apart, put together and measured. All vectors hold len elements; pDst may be the same array as
 * a source of its own type, but not overlap it in part, nor any source of another type. A form in place gives the
 * results of the one out of place. But for phases and what is made of them, each operation is rounded to double, without
 * care for what leaves the range on the way: a magnitude whose square overflows is infinite.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. Calls in several threads may share
 * sources. */

/* (re, -im) */
ZPP_EXPORT(ZppStatus, zppsConj_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsConj_64fc_I, (Zpp64fc* pSrcDst, int len))

/* pDst[len - 1 - i] = (re, -im) of pSrc[i]. The vectors do not overlap. */
ZPP_EXPORT(ZppStatus, zppsConjFlip_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))

/* One part of each element, or both, into vectors that do not overlap; every bit is kept, of a NaN too. */
ZPP_EXPORT(ZppStatus, zppsReal_64fc, (const Zpp64fc* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsImag_64fc, (const Zpp64fc* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCplxToReal_64fc, (const Zpp64fc* pSrc, Zpp64f* pDstRe, Zpp64f* pDstIm, int len))

/* (pSrcRe[i], pSrcIm[i]), with every bit. One of the sources may be null: that part is 0 in all elements. Returned, in
 * this order of checks: -8 for a null pDst; -6 for len <= 0; -8 if both sources are null. */
ZPP_EXPORT(ZppStatus, zppsRealToCplx_64f, (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64fc* pDst, int len))

/* sqrt(re re + im im) */
ZPP_EXPORT(ZppStatus, zppsMagnitude_64fc, (const Zpp64fc* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMagnitude_64f, (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len))

/* sqrt(re re + im im) * 2^-scaleFactor + 0.5, the result of each operation rounded to double, without what is behind
 * the point: a tie goes up. Saturated; for every scaleFactor. */
ZPP_EXPORT(ZppStatus, zppsMagnitude_32sc_Sfs, (const Zpp32sc* pSrc, Zpp32s* pDst, int len, int scaleFactor))

/* (re re + im im) * 2^-scaleFactor, exact, then rounded to nearest, ties to even, and saturated; for every
 * scaleFactor. */
ZPP_EXPORT(ZppStatus, zppsMagSquared_32sc32s_Sfs, (const Zpp32sc* pSrc, Zpp32s* pDst, int len, int scaleFactor))

/* The angle of (re, im), -pi .. pi, within 0.55 units in the last place: as atan2(im, re) of C, of zeros and infinities
 * too. */
ZPP_EXPORT(ZppStatus, zppsPhase_64fc, (const Zpp64fc* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsPhase_64f, (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len))

/* The angle of (re, im) * 2^-scaleFactor, exact, then rounded to nearest and saturated, for every scaleFactor. That of
 * (0, 0) is 0; no other one is a half. */
ZPP_EXPORT(ZppStatus, zppsPhase_32sc_Sfs, (const Zpp32sc* pSrc, Zpp32s* pDst, int len, int scaleFactor))

/* What zppsMagnitude and zppsPhase give. */
ZPP_EXPORT(ZppStatus, zppsCartToPolar_64fc, (const Zpp64fc* pSrc, Zpp64f* pDstMagn, Zpp64f* pDstPhase, int len))
ZPP_EXPORT(ZppStatus, zppsCartToPolar_64f,
           (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstMagn, Zpp64f* pDstPhase, int len))

/* (m cos p, m sin p) of a magnitude and a phase of any size, each within 2 units in the last place; an infinite phase
 * gives NaN. */
ZPP_EXPORT(ZppStatus, zppsPolarToCart_64fc,
           (const Zpp64f* pSrcMagn, const Zpp64f* pSrcPhase, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsPolarToCart_64f,
           (const Zpp64f* pSrcMagn, const Zpp64f* pSrcPhase, Zpp64f* pDstRe, Zpp64f* pDstIm, int len))

/* re re + im im */
ZPP_EXPORT(ZppStatus, zppsPowerSpectr_64fc, (const Zpp64fc* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsPowerSpectr_64f, (const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len))

/* (pSrc[i] - vsub) * (1 / vdiv), with the reciprocal formed once, of both parts alike. Returned also, after the others:
 * -10 for |vdiv| < 2^-1022, which zeros and subnormal numbers are; a NaN is no error. */
ZPP_EXPORT(ZppStatus, zppsNormalize_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f vsub, Zpp64f vdiv))
ZPP_EXPORT(ZppStatus, zppsNormalize_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64fc vsub, Zpp64f vdiv))

#endif
