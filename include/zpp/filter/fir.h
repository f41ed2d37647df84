/* FIR filters, of one rate and of two. */
#if !defined(ZPP_FIR_H) || defined(ZPP_LIST)
#define ZPP_FIR_H
#include "../export.h"

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

#endif
