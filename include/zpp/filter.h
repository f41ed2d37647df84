/* Filters. */
#if !defined(ZPP_FILTER_H) || defined(ZPP_LIST)
#define ZPP_FILTER_H
#include "export.h"

/* FIR filter state
 *
 * A state holds the taps h(0) .. h(tapsLen-1) and the delay line of one filter
 *     y(n) = h(0) x(n) + h(1) x(n-1) + ... + h(tapsLen-1) x(n-tapsLen+1)
 * in one of four type pairs:
 *
 *     suffix       taps      signal and delay line
 *     _64f         Zpp64f    Zpp64f
 *     _64fc        Zpp64fc   Zpp64fc
 *     64f_32f      Zpp64f    Zpp32f
 *     64fc_32fc    Zpp64fc   Zpp32fc
 *
 * All arithmetic is double, and so is the delay line inside the state. To the caller the delay line is
 * tapsLen elements, newest first: element 0 is x(-1), the last one x(-tapsLen), which no output uses any
 * more. A null pDlyLine stands for zeros where a delay line is read.
 *
 * A state belongs to one type pair; the functions of another refuse it with -17. It is written by every
 * filtering call: use it from one thread at a time. */

/* The bytes that the buffer of zppsFIRInit must have, at any alignment. With r16 rounding up to a multiple of
 * 16 and H the header, 112 bytes where pointers have 4 and 208 where they have 8:
 *     real:     r16(8 tapsLen) + r16(24 tapsLen + 32) + 32768 + H + 15
 *     complex:  16 tapsLen + (48 tapsLen + 64) + 65536 + H
 * that is 32975 and 65776 for one tap with 4-byte pointers, 33071 and 65872 with 8-byte ones.
 * Returned, in this order of checks: -8 for a null pointer; -26 for tapsLen <= 0; -6 where the size is beyond
 * an int (about 67 million real or 33 million complex taps). */
ZPP_EXPORT(ZppStatus, zppsFIRGetStateSize_64f, (int tapsLen, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFIRGetStateSize_64fc, (int tapsLen, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFIRGetStateSize64f_32f, (int tapsLen, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFIRGetStateSize64fc_32fc, (int tapsLen, int* pSize))

/* Build a state inside pBuffer, which must have the size of zppsFIRGetStateSize and stay where it is for the
 * life of the state, and put its address into *ppState. Taps and delay line are copied. Such a state filters
 * all blocks directly.
 * Returned, in this order of checks: -8 for a null pointer other than pDlyLine; -26; -6 as above. */
ZPP_EXPORT(ZppStatus, zppsFIRInit_64f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, const Zpp64f* pDlyLine,
            Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFIRInit_64fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, const Zpp64fc* pDlyLine,
            Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFIRInit64f_32f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, const Zpp32f* pDlyLine,
            Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFIRInit64fc_32fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, const Zpp32fc* pDlyLine,
            Zpp8u* pBuffer))

/* Allocate a state, to be released by zppsFIRFree. With 32 taps or more (complex: 16) it filters blocks
 * longer than N through the FFT, where N is twice the power of two above tapsLen.
 * Returned, in this order of checks: -8 for a null pointer other than pDlyLine; -26; -6 as above; -9 where
 * memory is short. After an error *ppState is unchanged and nothing stays allocated. */
ZPP_EXPORT(ZppStatus, zppsFIRInitAlloc_64f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRInitAlloc_64fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRInitAlloc64f_32f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, const Zpp32f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRInitAlloc64fc_32fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, const Zpp32fc* pDlyLine))

/* Releases a state of zppsFIRInitAlloc; does nothing with one of zppsFIRInit.
 * Returned, in this order of checks: -8; -17 for a state of another kind or type pair. */
ZPP_EXPORT(ZppStatus, zppsFIRFree_64f, (ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIRFree_64fc, (ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIRFree64f_32f, (ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIRFree64fc_32fc, (ZppsFIRState* pState))

/* Copies the taps out, tapsLen of them, as they were given. Errors: -8; -17. */
ZPP_EXPORT(ZppStatus, zppsFIRGetTaps_64f, (const ZppsFIRState* pState, Zpp64f* pTaps))
ZPP_EXPORT(ZppStatus, zppsFIRGetTaps_64fc, (const ZppsFIRState* pState, Zpp64fc* pTaps))
ZPP_EXPORT(ZppStatus, zppsFIRGetTaps64f_32f, (const ZppsFIRState* pState, Zpp64f* pTaps))
ZPP_EXPORT(ZppStatus, zppsFIRGetTaps64fc_32fc, (const ZppsFIRState* pState, Zpp64fc* pTaps))

/* Replaces the taps, tapsLen of them; the delay line stays. Errors: -8; -17; those of the FFT, after which
 * the taps are replaced and the state filters all blocks directly. */
ZPP_EXPORT(ZppStatus, zppsFIRSetTaps_64f, (const Zpp64f* pTaps, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIRSetTaps_64fc, (const Zpp64fc* pTaps, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIRSetTaps64f_32f, (const Zpp64f* pTaps, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIRSetTaps64fc_32fc, (const Zpp64fc* pTaps, ZppsFIRState* pState))

/* Copies the delay line out, newest first. Errors: -8; -17. */
ZPP_EXPORT(ZppStatus, zppsFIRGetDlyLine_64f, (const ZppsFIRState* pState, Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRGetDlyLine_64fc, (const ZppsFIRState* pState, Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRGetDlyLine64f_32f, (const ZppsFIRState* pState, Zpp32f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRGetDlyLine64fc_32fc, (const ZppsFIRState* pState, Zpp32fc* pDlyLine))

/* Replaces the delay line. Errors: -8 for a null pState; -17. */
ZPP_EXPORT(ZppStatus, zppsFIRSetDlyLine_64f, (ZppsFIRState* pState, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRSetDlyLine_64fc, (ZppsFIRState* pState, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRSetDlyLine64f_32f, (ZppsFIRState* pState, const Zpp32f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRSetDlyLine64fc_32fc, (ZppsFIRState* pState, const Zpp32fc* pDlyLine))

/* FIR filtering
 *
 * y(n) as above: consecutive calls of any lengths filter one continuous signal. The products are summed in
 * double, fused with the additions where the processor can, in an order that depends on tapsLen alone: however
 * a signal is split into blocks and single samples, filtering without the FFT gives the same bits, in place or
 * not, with a state or without (another processor may give others). The FFT differs from that by rounding.
 * Where nothing underflows,
 *     without FFT   |error| <= (min(tapsLen, 40) + tapsLen / 32 + 1) 2^-53 * sum of |h(k)| |x(n-k)|
 *                   (complex, of re and of im: min(tapsLen, 130))
 *     FFT           |error| of order 2^-53 log2(N) * norm of h * norm of the N inputs around n
 * The 32-bit signals are widened exactly, and each output is rounded once. Source and destination may be the
 * same vector, but not overlap in part. */

/* numIters inputs in, numIters outputs out; _I in place.
 * Returned, in this order of checks: -8 for a null pointer; -6 for numIters <= 0; -17 for a state of another
 * kind or type pair. */
ZPP_EXPORT(ZppStatus, zppsFIR_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR_64fc, (const Zpp64fc* pSrc, Zpp64fc* pDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR64f_32f, (const Zpp32f* pSrc, Zpp32f* pDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR64fc_32fc,
           (const Zpp32fc* pSrc, Zpp32fc* pDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR_64f_I, (Zpp64f* pSrcDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR_64fc_I, (Zpp64fc* pSrcDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR64f_32f_I, (Zpp32f* pSrcDst, int numIters, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIR64fc_32fc_I, (Zpp32fc* pSrcDst, int numIters, ZppsFIRState* pState))

/* One input in, one output to *pDstVal: to the bit that of a block of one. Errors: -8 for a null pointer; -17. */
ZPP_EXPORT(ZppStatus, zppsFIROne_64f, (Zpp64f src, Zpp64f* pDstVal, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIROne_64fc, (Zpp64fc src, Zpp64fc* pDstVal, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIROne64f_32f, (Zpp32f src, Zpp32f* pDstVal, ZppsFIRState* pState))
ZPP_EXPORT(ZppStatus, zppsFIROne64fc_32fc, (Zpp32fc src, Zpp32fc* pDstVal, ZppsFIRState* pState))

/* The same filter without a state. The caller keeps the delay line as 2 tapsLen elements d and an index i
 * between 0 and tapsLen-1, at first all zero: d[j] and d[j+tapsLen] hold the same sample, so that the last
 * tapsLen inputs stand at d[i] .. d[i+tapsLen-1], oldest first. The index is not checked. Nothing else is kept:
 * threads may share the taps.
 * Returned, in this order of checks: -8 for a null source or destination; -6 for numIters <= 0; -8 for a null
 * pTaps; -26 for tapsLen <= 0; -8 for a null pDlyLine or pDlyLineIndex. */
ZPP_EXPORT(ZppStatus, zppsFIR_Direct_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, int numIters, const Zpp64f* pTaps, int tapsLen,
            Zpp64f* pDlyLine, int* pDlyLineIndex))
ZPP_EXPORT(ZppStatus, zppsFIR_Direct_64f_I,
           (Zpp64f* pSrcDst, int numIters, const Zpp64f* pTaps, int tapsLen, Zpp64f* pDlyLine,
            int* pDlyLineIndex))
ZPP_EXPORT(ZppStatus, zppsFIR_Direct_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, int numIters, const Zpp64fc* pTaps, int tapsLen,
            Zpp64fc* pDlyLine, int* pDlyLineIndex))
ZPP_EXPORT(ZppStatus, zppsFIR_Direct_64fc_I,
           (Zpp64fc* pSrcDst, int numIters, const Zpp64fc* pTaps, int tapsLen, Zpp64fc* pDlyLine,
            int* pDlyLineIndex))

/* The same for one sample, to the bit; _I reads and replaces *pSrcDst.
 * Returned, in this order of checks: -8 for a null pDstVal (pSrcDst) or pTaps; -26; -8 for a null pDlyLine or
 * pDlyLineIndex. */
ZPP_EXPORT(ZppStatus, zppsFIROne_Direct_64f,
           (Zpp64f src, Zpp64f* pDstVal, const Zpp64f* pTaps, int tapsLen, Zpp64f* pDlyLine,
            int* pDlyLineIndex))
ZPP_EXPORT(ZppStatus, zppsFIROne_Direct_64f_I,
           (Zpp64f* pSrcDst, const Zpp64f* pTaps, int tapsLen, Zpp64f* pDlyLine, int* pDlyLineIndex))
ZPP_EXPORT(ZppStatus, zppsFIROne_Direct_64fc,
           (Zpp64fc src, Zpp64fc* pDstVal, const Zpp64fc* pTaps, int tapsLen, Zpp64fc* pDlyLine,
            int* pDlyLineIndex))
ZPP_EXPORT(ZppStatus, zppsFIROne_Direct_64fc_I,
           (Zpp64fc* pSrcDst, const Zpp64fc* pTaps, int tapsLen, Zpp64fc* pDlyLine, int* pDlyLineIndex))

/* Multi-rate FIR filtering
 *
 * The rate changes by U / D, U = upFactor and D = downFactor: as if U - 1 zeros were put in for every input,
 * the result filtered by the taps, and every D-th place kept. From blocks of D inputs come blocks of U
 * outputs. upPhase says at which place of its U the input stands, downPhase which place of D is the output:
 * output n, at place t = downPhase + n D, is the sum over j of h(p + j U) x(m - j), where x(m) is the newest
 * input at or before t and p the distance to it, for the ceil(tapsLen / U) or one fewer j for which there is
 * a tap.
 *
 * The delay line is K = ceil(tapsLen / U) inputs before the first, newest first. Consecutive calls filter one
 * continuous signal.
 *
 * A multi-rate state is a ZppsFIRState: zppsFIR, zppsFIR_I, zppsFIRFree, zppsFIRGetTaps, zppsFIRSetTaps,
 * zppsFIRGetDlyLine and zppsFIRSetDlyLine of its type pair take it, zppsFIROne refuses it with -17. numIters
 * is a number of blocks then: numIters D inputs are read and numIters U outputs written. In place the array
 * has room for the larger of both, with the inputs at its start.
 *
 * The products of an output are summed in double, fused with the additions where the processor can, in an
 * order that tapsLen, factors and phases decide: however a signal is split into blocks, the bits are the
 * same, in place or not, with a state or without (another processor may give others). Where nothing
 * underflows,
 *     |error| <= (K / 4 + 3) 2^-53 * sum of |h| |x| over the products of the output
 *     (complex, of re and of im: K / 2 + 3, with the magnitudes of the complex numbers)
 * The 32-bit signals are widened exactly, and each output is rounded once. Source and destination may be the
 * same vector, but not overlap otherwise. */

/* The same filter without a state: numIters blocks, with the bits of a state. The caller keeps the delay line
 * pDlyLine, K elements, newest first, which the call brings up to date; with both factors 1 too, where the
 * sums are those of this family. _I in place. Nothing is allocated, and nothing else kept: threads may share
 * the taps.
 * Returned, in this order of checks: -8 for a null source or destination; -6 for numIters <= 0; -8 for a null
 * pTaps; -26 for tapsLen <= 0; -29 for a factor <= 0; -28 for a phase below 0 or not below its factor; -8 for
 * a null pDlyLine. */
ZPP_EXPORT(ZppStatus, zppsFIRMR_Direct_64f,
           (const Zpp64f* pSrc, Zpp64f* pDst, int numIters, const Zpp64f* pTaps, int tapsLen, int upFactor,
            int upPhase, int downFactor, int downPhase, Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRMR_Direct_64f_I,
           (Zpp64f* pSrcDst, int numIters, const Zpp64f* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRMR_Direct_64fc,
           (const Zpp64fc* pSrc, Zpp64fc* pDst, int numIters, const Zpp64fc* pTaps, int tapsLen, int upFactor,
            int upPhase, int downFactor, int downPhase, Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRMR_Direct_64fc_I,
           (Zpp64fc* pSrcDst, int numIters, const Zpp64fc* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, Zpp64fc* pDlyLine))

/* The bytes that the buffer of zppsFIRMRInit must have, at any alignment and for all phases. With both
 * factors 1 they are those of zppsFIRGetStateSize.
 * Returned, in this order of checks: -8 for a null pointer; -26 for tapsLen <= 0; -29 for a factor <= 0; -6
 * where the size is beyond an int. */
ZPP_EXPORT(ZppStatus, zppsFIRMRGetStateSize_64f, (int tapsLen, int upFactor, int downFactor, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFIRMRGetStateSize_64fc, (int tapsLen, int upFactor, int downFactor, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFIRMRGetStateSize64f_32f, (int tapsLen, int upFactor, int downFactor, int* pSize))
ZPP_EXPORT(ZppStatus, zppsFIRMRGetStateSize64fc_32fc, (int tapsLen, int upFactor, int downFactor, int* pSize))

/* Build a state inside pBuffer, which must have the size of zppsFIRMRGetStateSize and stay where it is for
 * the life of the state, and put its address into *ppState. Taps and delay line are copied; a null pDlyLine
 * stands for zeros. With both factors 1 the state is that of zppsFIRInit: it filters samples, and keeps
 * tapsLen of them.
 * Returned, in this order of checks: -8 for a null pointer other than pDlyLine; -26; -29; -28 for a phase
 * below 0 or not below its factor; -6. */
ZPP_EXPORT(ZppStatus, zppsFIRMRInit_64f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp64f* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFIRMRInit_64fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp64fc* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFIRMRInit64f_32f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp32f* pDlyLine, Zpp8u* pBuffer))
ZPP_EXPORT(ZppStatus, zppsFIRMRInit64fc_32fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp32fc* pDlyLine, Zpp8u* pBuffer))

/* Allocate a state, to be released by zppsFIRFree. With both factors 1 it is that of zppsFIRInitAlloc.
 * Returned, in this order of checks: -8 for a null pointer other than pDlyLine; -26; -29; -28; -6; -9 where
 * memory is short. After an error *ppState is unchanged and nothing stays allocated. */
ZPP_EXPORT(ZppStatus, zppsFIRMRInitAlloc_64f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp64f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRMRInitAlloc_64fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp64fc* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRMRInitAlloc64f_32f,
           (ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp32f* pDlyLine))
ZPP_EXPORT(ZppStatus, zppsFIRMRInitAlloc64fc_32fc,
           (ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor, int upPhase,
            int downFactor, int downPhase, const Zpp32fc* pDlyLine))

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
