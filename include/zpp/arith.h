/* Elementwise vector arithmetic. */
#if !defined(ZPP_ARITH_H) || defined(ZPP_LIST)
#define ZPP_ARITH_H
#include "export.h"

/* Scaled integers
 *
 * The exact result x is scaled: the destination holds x * 2^-scaleFactor, rounded to the nearest integer, ties to
 * even, and saturated to -2147483648 ... 2147483647. Any scaleFactor will do: positive ones shift to the right,
 * negative ones to the left. Nothing is lost on the way: x has as many bits as it needs, and saturation makes no
 * warning.
 *
 * All vectors hold len elements. A destination may be the same array as a source, but not overlap one in part.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. Calls in several threads may share
 * sources. Note the operand order of Sub and Div: the second source is the minuend and the dividend. */

/* x = pSrc1[i] + pSrc2[i]; in place: pSrcDst[i] + pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsAdd_32s_Sfs,
           (const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsAdd_32s_ISfs, (const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrc2[i] - pSrc1[i]; in place: pSrcDst[i] - pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsSub_32s_Sfs,
           (const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsSub_32s_ISfs, (const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrc1[i] * pSrc2[i]; in place: pSrcDst[i] * pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsMul_32s_Sfs,
           (const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsMul_32s_ISfs, (const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrc2[i] / pSrc1[i], the rational number, so that it is rounded only once; in place: pSrcDst[i] / pSrc[i].
 * A divisor of zero gives, at every scaleFactor, 2147483647 for a positive dividend, -2147483648 for a negative one
 * and 0 for zero, and warning 6 at the end. The floating-point exception of a division by zero is not raised. */
ZPP_EXPORT(ZppStatus, zppsDiv_32s_Sfs,
           (const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsDiv_32s_ISfs, (const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrc[i] + val. */
ZPP_EXPORT(ZppStatus, zppsAddC_32s_Sfs,
           (const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsAddC_32s_ISfs, (Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrc[i] - val. */
ZPP_EXPORT(ZppStatus, zppsSubC_32s_Sfs,
           (const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsSubC_32s_ISfs, (Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = val - pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsSubCRev_32s_Sfs,
           (const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsSubCRev_32s_ISfs, (Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrc[i] * val. */
ZPP_EXPORT(ZppStatus, zppsMulC_32s_Sfs,
           (const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsMulC_32s_ISfs, (Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor))

/* x = pSrcDst[i] + pSrc1[i] * pSrc2[i], the product not scaled before the sum. */
ZPP_EXPORT(ZppStatus, zppsAddProduct_32s_Sfs,
           (const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pSrcDst, int len, int scaleFactor))

/* Scaled complex integers: as above, with each part of the exact result scaled on its own. */

/* x = pSrc1[i] * pSrc2[i]: with a and b the factors (a.re b.re - a.im b.im, a.re b.im + a.im b.re); in place:
 * pSrcDst[i] * pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsMul_32sc_Sfs,
           (const Zpp32sc* pSrc1, const Zpp32sc* pSrc2, Zpp32sc* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsMul_32sc_ISfs, (const Zpp32sc* pSrc, Zpp32sc* pSrcDst, int len, int scaleFactor))

/* x = pSrc1[i] * pSrc2[i], of a real and a complex vector; in place: pSrcDst[i] * pSrc[i], the real one being
 * pSrc. pDst may be the same array as pSrc2 only. */
ZPP_EXPORT(ZppStatus, zppsMul_32s32sc_Sfs,
           (const Zpp32s* pSrc1, const Zpp32sc* pSrc2, Zpp32sc* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsMul_32s32sc_ISfs, (const Zpp32s* pSrc, Zpp32sc* pSrcDst, int len, int scaleFactor))

/* x = pSrc[i] * val. */
ZPP_EXPORT(ZppStatus, zppsMulC_32sc_Sfs,
           (const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsMulC_32sc_ISfs, (Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor))

/* x = pSrc[i] + val. */
ZPP_EXPORT(ZppStatus, zppsAddC_32sc_Sfs,
           (const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsAddC_32sc_ISfs, (Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor))

/* x = pSrc[i] - val. */
ZPP_EXPORT(ZppStatus, zppsSubC_32sc_Sfs,
           (const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsSubC_32sc_ISfs, (Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor))

/* x = val - pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsSubCRev_32sc_Sfs,
           (const Zpp32sc* pSrc, Zpp32sc val, Zpp32sc* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsSubCRev_32sc_ISfs, (Zpp32sc val, Zpp32sc* pSrcDst, int len, int scaleFactor))

/* Floating-point arithmetic
 *
 * All vectors hold len elements. A destination may be the same array as a source, but not overlap one in
 * part. Real results are the correctly rounded IEEE doubles; complex ones come from the formulas below, each
 * operation rounded to double.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. zppsDivC differs, see there.
 * Note the operand order of Sub and Div: the second source is the minuend and the dividend. */

/* pDst[i] = pSrc1[i] + pSrc2[i]; in place: pSrcDst[i] = pSrcDst[i] + pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsAdd_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAdd_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsAdd_64fc, (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAdd_64fc_I, (const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len))

/* pDst[i] = pSrc2[i] - pSrc1[i]; in place: pSrcDst[i] = pSrcDst[i] - pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsSub_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSub_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsSub_64fc, (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSub_64fc_I, (const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len))

/* pDst[i] = pSrc1[i] * pSrc2[i]; in place: pSrcDst[i] = pSrcDst[i] * pSrc[i].
 * Complex, with a and b the factors in this order: (a.re b.re - a.im b.im, a.re b.im + a.im b.re). */
ZPP_EXPORT(ZppStatus, zppsMul_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMul_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsMul_64fc, (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMul_64fc_I, (const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len))

/* pDst[i] = pSrc2[i] / pSrc1[i]; in place: pSrcDst[i] = pSrcDst[i] / pSrc[i].
 * Complex, with a the dividend, b the divisor and D = b.im b.im + b.re b.re:
 * ((a.re b.re + a.im b.im) * (1 / D), (a.im b.re - a.re b.im) * (1 / D)).
 * A divisor (complex: D) that is zero or NaN gives, by the sign of the dividend (complex: of each part),
 * +Inf, -Inf, or for zero and NaN the quiet NaN 0xFFF8000000000000, and warning 6 at the end. Division by zero,
 * the floating-point exception, is not raised; the others may be. */
ZPP_EXPORT(ZppStatus, zppsDiv_64f, (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsDiv_64f_I, (const Zpp64f* pSrc, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsDiv_64fc, (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsDiv_64fc_I, (const Zpp64fc* pSrc, Zpp64fc* pSrcDst, int len))

/* pDst[i] = pSrc[i] + val. Real, with val zero or NaN: the source is copied unchanged, in place nothing is
 * written. */
ZPP_EXPORT(ZppStatus, zppsAddC_64f, (const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAddC_64f_I, (Zpp64f val, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsAddC_64fc, (const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAddC_64fc_I, (Zpp64fc val, Zpp64fc* pSrcDst, int len))

/* pDst[i] = pSrc[i] - val, with the shortcut of zppsAddC. */
ZPP_EXPORT(ZppStatus, zppsSubC_64f, (const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSubC_64f_I, (Zpp64f val, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsSubC_64fc, (const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSubC_64fc_I, (Zpp64fc val, Zpp64fc* pSrcDst, int len))

/* pDst[i] = val - pSrc[i]. */
ZPP_EXPORT(ZppStatus, zppsSubCRev_64f, (const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSubCRev_64f_I, (Zpp64f val, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsSubCRev_64fc, (const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSubCRev_64fc_I, (Zpp64fc val, Zpp64fc* pSrcDst, int len))

/* pDst[i] = pSrc[i] * val. Real, with val one or NaN: the source is copied unchanged, in place nothing is
 * written; with val zero: the destination is filled with +0, also where the source holds Inf or NaN. */
ZPP_EXPORT(ZppStatus, zppsMulC_64f, (const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMulC_64f_I, (Zpp64f val, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsMulC_64fc, (const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsMulC_64fc_I, (Zpp64fc val, Zpp64fc* pSrcDst, int len))

/* Real: pDst[i] = pSrc[i] * (1 / val), computed by zppsMulC with 1 / val; it may differ in the last bit from
 * pSrc[i] / val. Complex: the formula of zppsDiv with b = val; where D is zero though val is not, 1 / D is Inf and
 * raises division by zero.
 * Returned, real: -10 for val zero or NaN, before anything else; then as zppsMulC.
 * Returned, complex: -8; -6; then -10 for a val of which each part is zero or NaN. */
ZPP_EXPORT(ZppStatus, zppsDivC_64f, (const Zpp64f* pSrc, Zpp64f val, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsDivC_64f_I, (Zpp64f val, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsDivC_64fc, (const Zpp64fc* pSrc, Zpp64fc val, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsDivC_64fc_I, (Zpp64fc val, Zpp64fc* pSrcDst, int len))

/* pSrcDst[i] = pSrcDst[i] + pSrc1[i] * pSrc2[i], the product rounded before the sum. */
ZPP_EXPORT(ZppStatus, zppsAddProduct_64f,
           (const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsAddProduct_64fc,
           (const Zpp64fc* pSrc1, const Zpp64fc* pSrc2, Zpp64fc* pSrcDst, int len))

/* Absolute values, squares and square roots
 *
 * All vectors hold len elements. pDst may be the same array as pSrc, but not overlap it in part; a form in place gives
 * the results of the one out of place. Real results are correctly rounded, complex ones come from the formulas below,
 * each operation rounded to double.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0. Calls in several threads may share
 * sources. */

/* pDst[i] = |pSrc[i]|; of integers that of -2147483648 is 2147483647. A NaN stays a NaN. */
ZPP_EXPORT(ZppStatus, zppsAbs_32s, (const Zpp32s* pSrc, Zpp32s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAbs_32s_I, (Zpp32s* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsAbs_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsAbs_64f_I, (Zpp64f* pSrcDst, int len))

/* pDst[i] = pSrc[i] * pSrc[i]. Complex: ((re + im) * (re - im), re * im * 2). */
ZPP_EXPORT(ZppStatus, zppsSqr_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSqr_64f_I, (Zpp64f* pSrcDst, int len))
ZPP_EXPORT(ZppStatus, zppsSqr_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSqr_64fc_I, (Zpp64fc* pSrcDst, int len))

/* The square root of pSrc[i]; that of -0.0 is -0.0. A number below zero and a NaN give the quiet NaN
 * 0xFFF8000000000000, and warning 3 at the end. */
ZPP_EXPORT(ZppStatus, zppsSqrt_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSqrt_64f_I, (Zpp64f* pSrcDst, int len))

/* The principal square root of pSrc[i], of which the real part is not below zero and the imaginary part has the sign
 * of pSrc[i].im. With a = re / 2, b = im / 2 and r = sqrt(a a + b b): for a > 0 (s, b / s) with s = sqrt(a + r); for
 * a < 0 (b / t, t) with t = sqrt(r - a), negated for b < 0; for a = 0 (s, s) with s = sqrt(b), or for b < 0 (s, -s)
 * with s = sqrt(-b). So -0.0 counts as not below zero: of (-4, -0.0) the root is (-0.0, 2), of (0, -0.0) it is
 * (-0.0, -0.0). Squares beyond the range of a double are infinite, or 0, as in the formulas. NaN parts make NaN. */
ZPP_EXPORT(ZppStatus, zppsSqrt_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsSqrt_64fc_I, (Zpp64fc* pSrcDst, int len))

/* Exponentials, logarithms, arctangents
 *
 * All vectors hold len elements. A destination may be the same array as a source, but not overlap one in part. Results
 * are within 1 unit in the last place of the exact value (0.6 where the destination is double, 0.51 where it is single; exceptions
 * are stated), under any rounding mode and any setting of the floating-point environment, which stays the caller's but
 * that denormal arguments are zeros where that is set. Builds for different processors may differ in the last place, those
 * for AVX2 and AVX-512 do not. Calls in several threads may share sources.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0; then the warnings below, with all results
 * written. */

/* pDst[i] = e^x for x = pSrc[i]. A finite x gives infinity and warning 12 where the result is above the range of the
 * destination, and +0 and warning 17 where it is below; the last such element decides. Subnormal results, infinities and
 * NaN make no warning. (In single: zppsExp_64f32f, below.) */
ZPP_EXPORT(ZppStatus, zppsExp_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsExp_64f_I, (Zpp64f* pSrcDst, int len))

/* pDst[i] = (e^re cos(im), e^re sin(im)), each part within 0.6 units in the last place: finite where it is, though e^re is
 * not, and subnormal ones rounded once. Special values are those of cexp in C. No warning. */
ZPP_EXPORT(ZppStatus, zppsExp_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsExp_64fc_I, (Zpp64fc* pSrcDst, int len))

/* pDst[i] = ln(pSrc[i]): of zero minus infinity, with warning 7, of a negative number the NaN with the bits
 * 0xFFF8000000000000 (in single 0xFFC00000), with warning 8, which outranks 7. */
ZPP_EXPORT(ZppStatus, zppsLn_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsLn_64f_I, (Zpp64f* pSrcDst, int len))

/* pDst[i] = (ln(abs(z)), the angle of z = pSrc[i] in -pi ... pi), for every size of its parts. Next to abs(z) = 1,
 * where nearly all of ln(abs(z)) cancels, its error is within the larger of 1 unit in the last place and 2^-105. The angle
 * has the sign of im. Zero gives (minus infinity, 0) and warning 7; other special values are those of clog in C. */
ZPP_EXPORT(ZppStatus, zppsLn_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsLn_64fc_I, (Zpp64fc* pSrcDst, int len))

/* As zppsExp_64f, computed in double and, where pDst is single, rounded to it. */
ZPP_EXPORT(ZppStatus, zppsExp_32f64f, (const Zpp32f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsExp_64f32f, (const Zpp64f* pSrc, Zpp32f* pDst, int len))

/* pDst[i] = e^pSrc[i] * 2^-scaleFactor, of which the exact value is rounded to nearest, ties to even, and saturated: for
 * every element and every factor, though e^pSrc[i] leaves the range of doubles. The bits are the same on every processor.
 * No warning. A call first computes the few values that are neither 0 nor saturated, which takes it as long as some
 * hundred elements do. */
ZPP_EXPORT(ZppStatus, zppsExp_32s_Sfs, (const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsExp_32s_ISfs, (Zpp32s* pSrcDst, int len, int scaleFactor))

/* As zppsLn_64f, computed in double and, where pDst is single, rounded to it. */
ZPP_EXPORT(ZppStatus, zppsLn_32f64f, (const Zpp32f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsLn_64f32f, (const Zpp64f* pSrc, Zpp32f* pDst, int len))

/* pDst[i] = ln(pSrc[i]) * 2^-scaleFactor, or 10 log10(pSrc[i]) * 2^-scaleFactor: the exact value rounded to nearest, ties to
 * even, and saturated, for every element and every factor. The bits are the same on every processor. Zero and negative
 * elements give -2147483648, with warning 7 or 8; 8 outranks 7. */
ZPP_EXPORT(ZppStatus, zppsLn_32s_Sfs, (const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zppsLn_32s_ISfs, (Zpp32s* pSrcDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zpps10Log10_32s_Sfs, (const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor))
ZPP_EXPORT(ZppStatus, zpps10Log10_32s_ISfs, (Zpp32s* pSrcDst, int len, int scaleFactor))

/* pDst[i] = the arctangent of pSrc[i], within 1 unit in the last place (0.55 are reached); that of an infinity is pi / 2
 * with its sign. No warning. */
ZPP_EXPORT(ZppStatus, zppsArctan_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsArctan_64f_I, (Zpp64f* pSrcDst, int len))

/* Shifts
 *
 * Vectors hold len elements. A destination may be the same array as a source, but not overlap one in part.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0; and then -32 is returned for val < 0. */

/* pDst[i] = the bits of pSrc[i], val places to the left: zeros enter, what leaves is lost. 0 for val > 31. */
ZPP_EXPORT(ZppStatus, zppsLShiftC_32s, (const Zpp32s* pSrc, int val, Zpp32s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsLShiftC_32s_I, (int val, Zpp32s* pSrcDst, int len))

/* pDst[i] = pSrc[i] * 2^-val, rounded towards minus infinity, for any val from 0 on. */
ZPP_EXPORT(ZppStatus, zppsRShiftC_32s, (const Zpp32s* pSrc, int val, Zpp32s* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsRShiftC_32s_I, (int val, Zpp32s* pSrcDst, int len))

#endif
