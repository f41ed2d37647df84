/* IIR filters. */
#if !defined(ZPP_IIR_H) || defined(ZPP_LIST)
#define ZPP_IIR_H
#include "../export.h"

/* IIR filter state
 *
 * A state holds the taps and the delay line of one recursive filter, in one of two shapes:
 *
 * arbitrary order: the 2 (order + 1) taps b0 .. b(order), a0 .. a(order) of
 *     a0 y(n) = b0 x(n) + ... + b(order) x(n-order) - a1 y(n-1) - ... - a(order) y(n-order)
 * _BiQuad_: a cascade of numBq sections of order 2, with six taps b0, b1, b2, a0, a1, a2 each, section after
 * section;
 *     the output of one is the input of the next.
 *
 * The type pairs are those of the FIR filters:
 *
 *     suffix       taps and delay line    signal
 *     _64f         Zpp64f                 Zpp64f
 *     _64fc        Zpp64fc                Zpp64fc
 *     64f_32f      Zpp64f                 Zpp32f
 *     64fc_32fc    Zpp64fc                Zpp32fc
 *
 * Taps are divided by a0 when they are set: A(i) = k a(i), B(i) = k b(i) with k = 1 / a0, each rounded once
 * (complex ones as products of complex numbers rounded by parts; k is conj(a0) / |a0|^2, computed so that it
 * over- or underflows only where it does itself). The filter has transposed direct form II, with a delay line
 * of `order` elements d(i) for one of arbitrary order,
 *     y = B(0) x + d(0),  then d(i) = B(i+1) x - A(i+1) y + d(i+1) for i = 0, 1, ..., where d(order) is 0,
 * and of two for each section of a cascade. An order of 0 is the gain b0 / a0. A null pDlyLine stands for
 * zeros where a delay line is read.
 *
 * A state belongs to one type pair; the functions of another refuse it with -17. Those without BiQuad in
 * their name take both shapes. It is written by every filtering call: use it from one thread at a time. */

/* The bytes that the buffer of zppsIIRInit must have, the same for all processors. With r16 rounding up to a
 * multiple of 16:
 *     arbitrary, real    r16(8 order + 8) + r16(16 order + 8) + 64      complex   48 order + 96
 *     cascade, real      16 numBq + r16(40 numBq) + 48                  complex   112 numBq + 64
 * pBuffer may have any alignment, but for a real cascade: its size has no room to move the state to a
 * multiple of 16, so its buffer must begin on one, as those of zppsMalloc do.
 * Returned, in this order of checks: -8 for a null pointer; -25 for order < 0 or numBq <= 0; -6 where the
 * size is beyond an int (about 89 million real or 44 million complex orders, 38 and 19 million sections). */
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize_64f, (int order, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize_64fc, (int order, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize64f_32f, (int order, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize64fc_32fc, (int order, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize_BiQuad_64f, (int numBq, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize_BiQuad_64fc, (int numBq, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize64f_BiQuad_32f, (int numBq, int* pSize))
ZPP_EXPORT(ZppStatus, zppsIIRGetStateSize64fc_BiQuad_32fc, (int numBq, int* pSize))

/* Build a state inside pBuffer, which must have the size of zppsIIRGetStateSize and stay where it is for the
 * life of the state, and put its address into *ppState. Taps and delay line are copied.
 * Returned, in this order of checks: -8 for a null pointer other than pDlyLine; -25; -6 as above; -10 for
 * taps that zppsIIRSetTaps refuses. After an error *ppState is unchanged; after -10 there is no state in
 * pBuffer, but it was written to. */
ZPP_EXPORT(ZppStatus, zppsIIRInit_64f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int order, const Zpp64f* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit_64fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int order, const Zpp64fc* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit64f_32f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int order, const Zpp64f* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit64fc_32fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int order, const Zpp64fc* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit_BiQuad_64f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq, const Zpp64f* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit_BiQuad_64fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq, const Zpp64fc* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit64f_BiQuad_32f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq, const Zpp64f* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsIIRInit64fc_BiQuad_32fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq, const Zpp64fc* pDlyLine, Zpp8u* pBuffer))

/* Allocate a state, to be released by zppsIIRFree.
 * Returned, in this order of checks: -8 for a null pointer other than pDlyLine; -25; -6 as above; -9 where
 * memory is short; -10. After an error *ppState is unchanged and nothing stays allocated. */
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc_64f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int order, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc_64fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int order, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc64f_32f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int order, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc64fc_32fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int order, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc_BiQuad_64f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc_BiQuad_64fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc64f_BiQuad_32f,
           (ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRInitAlloc64fc_BiQuad_32fc,
           (ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq, const Zpp64fc* pDlyLine))

/* Releases a state of zppsIIRInitAlloc; does nothing with one of zppsIIRInit.
 * Returned, in this order of checks: -8; -17 for a state of another kind or type pair. */
ZPP_EXPORT(ZppStatus, zppsIIRFree_64f, (ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIRFree_64fc, (ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIRFree64f_32f, (ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIRFree64fc_32fc, (ZppsIIRState* pState))

/* Replaces the taps, as many as the state was made with; the delay line stays.
 * Returned, in this order of checks: -8; -17; -10 for a zero a0, or one with a NaN; of a section of a cascade
 * also for such a b0. A complex number is zero where both parts are. After -10 a filter of arbitrary order
 * has the taps that it had, and in a cascade the sections before the refused one have their new taps, it and
 * those behind it the ones that they had. */
ZPP_EXPORT(ZppStatus, zppsIIRSetTaps_64f, (const Zpp64f* pTaps, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIRSetTaps_64fc, (const Zpp64fc* pTaps, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIRSetTaps64f_32f, (const Zpp64f* pTaps, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIRSetTaps64fc_32fc, (const Zpp64fc* pTaps, ZppsIIRState* pState))

/* Copies the delay line out, `order` elements, or 2 numBq in the order of the sections. Errors: -8; -17. */
ZPP_EXPORT(ZppStatus, zppsIIRGetDlyLine_64f, (const ZppsIIRState* pState, Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRGetDlyLine_64fc, (const ZppsIIRState* pState, Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRGetDlyLine64f_32f, (const ZppsIIRState* pState, Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRGetDlyLine64fc_32fc, (const ZppsIIRState* pState, Zpp64fc* pDlyLine))

/* Replaces the delay line. Errors: -8 for a null pState; -17. */
ZPP_EXPORT(ZppStatus, zppsIIRSetDlyLine_64f, (ZppsIIRState* pState, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRSetDlyLine_64fc, (ZppsIIRState* pState, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRSetDlyLine64f_32f, (ZppsIIRState* pState, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsIIRSetDlyLine64fc_32fc, (ZppsIIRState* pState, const Zpp64fc* pDlyLine))

/* IIR filtering
 *
 * Consecutive calls of any lengths filter one continuous signal: however it is split into blocks and single
 * samples, the outputs and the delay line have the same bits, in place or not. All arithmetic is double,
 * fused where the processor can (so another processor may give others). Cascades, and orders up to 8, are
 * computed with y written out,
 *     d(i) = C(i+1) x - A(i+1) d(0) + d(i+1),  C(i) = B(i) - A(i) B(0),
 * which has fewer operations between an output and the next one. The 32-bit signals are widened exactly, and
 * each output is rounded once. Source and destination may be the same vector, but not overlap in part.
 *
 * The poles decide how large the errors are; they are those of the recursion in doubles as it stands above. The
 * root of the mean square for noise of a second at 48 kHz, as a part of the largest output, here with and
 * without a fused multiply-add, and by a plain loop without:
 *     Butterworth low-pass of order 20 at 0.001 of the rate    3e-13, 5e-13; 6e-13
 *     two poles at 1 - 1e-6 (of 60 seconds)                    6e-11, 6e-11; 8e-11
 *
 * For orders from 1 on, products, sums and delays below 2^-1022 in magnitude become zeros: a filter whose
 * signal has ended would otherwise compute with subnormal numbers for long, at a fiftieth of its speed on some
 * processors. The caller's SSE control register is after the call as it was. Without SSE2, where there is no
 * such switch, subnormal numbers are kept, and take up to 25 times as long. */

/* len inputs in, len outputs out; _I in place.
 * Returned, in this order of checks: -8 for a null pointer; -6 for len <= 0; -17 for a state of another kind
 * or type pair. */
ZPP_EXPORT(ZppStatus, zppsIIR_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR64f_32f, (const Zpp32f* pSrc, Zpp32f* pDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR64fc_32fc, (const Zpp32fc* pSrc, Zpp32fc* pDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR_64f_I, (Zpp64f* pSrcDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR_64fc_I, (Zpp64fc* pSrcDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR64f_32f_I, (Zpp32f* pSrcDst, int len, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIR64fc_32fc_I, (Zpp32fc* pSrcDst, int len, ZppsIIRState* pState))

/* One input in, one output to *pDstVal: to the bit that of a block of one. Errors: -8 for a null pointer;
 * -17. */
ZPP_EXPORT(ZppStatus, zppsIIROne_64f, (Zpp64f src, Zpp64f* pDstVal, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIROne_64fc, (Zpp64fc src, Zpp64fc* pDstVal, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIROne64f_32f, (Zpp32f src, Zpp32f* pDstVal, ZppsIIRState* pState))
ZPP_EXPORT(ZppStatus, zppsIIROne64fc_32fc, (Zpp32fc src, Zpp32fc* pDstVal, ZppsIIRState* pState))

#endif
