/* Vector mathematics. */
#if !defined(ZPP_VM_H) || defined(ZPP_LIST)
#define ZPP_VM_H
#include "export.h"

/* Elementary functions
 *
 * pDst[i] is the function of pSrc[i], for len elements. A destination may be any of the sources, otherwise they do not
 * overlap. Results are within .55 units in the last place of the exact ones, over the whole domain, subnormal arguments and
 * results too; where it is said so within .7 or correctly rounded. On processors with fused multiply-adds (AVX2, AVX-512)
 * they have the same bits; others may differ from these in the last one.
 *
 * Special values are those of C (ISO/IEC 9899, Annex F); a NaN has any payload unless it is said otherwise. The caller's
 * rounding mode, its flushing of results and the precision of the x87 unit do not matter, and come back; denormal operands
 * are zeros where the caller has asked for that. No exception traps, exception flags may be raised.
 *
 * Returned, in this order of checks: -6 for len < 1 (before pointers are looked at); -8 for a null source; -8 for a null
 * destination. Then all elements are written, and the warning of the last element that has one is returned: 12
 * (zppStatusOverflow), 17 (zppStatusUnderflow), 18 (zppStatusSingularity) or 19 (zppStatusDomain). NaNs have none, nor have
 * the infinities but where it is said so. Any number of threads may call at a time. */

/* 1 / x, correctly rounded. 18 for a zero, whose inverse is an infinity of its sign. */
ZPP_EXPORT(ZppStatus, zppsInv_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* The square root, correctly rounded. 19 below 0 (not for -0), -infinity too, whose root is the NaN with the bits
 * 0x7FF8A5A55A5A5A5A. Another NaN stays what it is, but quiet. */
ZPP_EXPORT(ZppStatus, zppsSqrt_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* 1 / sqrt(x), the cube root, and 1 / cbrt(x). No warnings: the inverse root of an element below 0 is a NaN, of -0 it is
 * -infinity. */
ZPP_EXPORT(ZppStatus, zppsInvSqrt_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsCbrt_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsInvCbrt_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* e^x. 12 above 709.782712893384, with infinity; 17 below -745.1332191019411, with 0. A NaN stays what it is, but quiet. */
ZPP_EXPORT(ZppStatus, zppsExp_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* The natural and the decimal logarithm; the latter of a power of ten is a whole number. 18 for a zero, with -infinity; 19
 * below 0, -infinity too, with a NaN. */
ZPP_EXPORT(ZppStatus, zppsLn_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsLog10_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* Cosine, sine, and tangent (within .7), x in radians, of any size: it is reduced exactly. 19 for the infinities, with a
 * NaN. */
ZPP_EXPORT(ZppStatus, zppsCos_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSin_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsTan_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* Arccosine and arcsine; 19 beyond -1 .. 1, with a NaN. The arctangent has no warnings. */
ZPP_EXPORT(ZppStatus, zppsAcos_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAsin_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAtan_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* Hyperbolic cosine and sine, within .7: 12 where the result of a number is infinite. Hyperbolic tangent: no warnings. */
ZPP_EXPORT(ZppStatus, zppsCosh_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSinh_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsTanh_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* Their inverses, within .7. Acosh: 19 below 1, with a NaN. Asinh: no warnings. Atanh: 18 for 1 and -1, with an infinity of
 * that sign; 19 beyond, with a NaN. */
ZPP_EXPORT(ZppStatus, zppsAcosh_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAsinh_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAtanh_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* The error function, without warnings; and its complement 1 - erf(x), within .7: 17 where it is 0 of a number. */
ZPP_EXPORT(ZppStatus, zppsErf_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsErfc_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
/* pDst[i] = pSrc1[i] / pSrc2[i], correctly rounded. 18 where pSrc2[i] is a zero and pSrc1[i] no NaN; 0 / 0 is a NaN. */
ZPP_EXPORT(ZppStatus, zppsDiv_64f_A53, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
/* pDst[i] = pSrc1[i] to the power pSrc2[i], within .7. 18 for a zero with an exponent below 0, -infinity too, with an
 * infinity; 19 for a number below 0 with a number for exponent that is not whole, with a NaN. Results that are too large or
 * too small are infinities and zeros, without a warning. */
ZPP_EXPORT(ZppStatus, zppsPow_64f_A53, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
/* pDst[i] = the angle of the point with y = pSrc1[i], x = pSrc2[i], -pi .. pi. No warnings. */
ZPP_EXPORT(ZppStatus, zppsAtan2_64f_A53, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
/* pDst1[i] = sin(pSrc[i]), pDst2[i] = cos(pSrc[i]): two vectors, with the warnings of both. */
ZPP_EXPORT(ZppStatus, zppsSinCos_64f_A53, (const Zpp64f* pSrc, Zpp64f* pDst1, Zpp64f* pDst2, int len))
/* pDst[i] = pSrc[i] to the power val: as zppsPow_64f_A53. */
ZPP_EXPORT(ZppStatus, zppsPowx_64f_A53, (const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len))

#endif
