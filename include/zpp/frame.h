/* The frame: status messages, processor, clocks, aligned memory, versions. */
#if !defined(ZPP_FRAME_H) || defined(ZPP_LIST)
#define ZPP_FRAME_H
#include "export.h"

/* The message of a status code: constant text, never null, "Unknown Status Code" for a code without one. */
ZPP_EXPORT_SHARED(const char*, zppGetStatusString, (ZppStatus status))

/* Classifies the processor by CPUID, which is read anew on each call. */
ZPP_EXPORT_SHARED(ZppCpuType, zppGetCpuType, (void))

/* Switches flush-to-zero of the SSE unit on (value not 0) or off (0) for the calling thread.
 * On: the underflow exception becomes masked, and *pUMask, if pUMask is not null, receives the state its mask
 * had: 0x800 masked, 0 not. Off: where pUMask is not null and *pUMask is 0, the exception is unmasked again.
 * An "off" call given the word of the "on" call thus restores the mask.
 * Returns -9998 without a change where the processor has no CPUID or no SSE. */
ZPP_EXPORT_SHARED(ZppStatus, zppSetFlushToZero, (Zpp32s value, Zpp32u* pUMask))

/* Switches denormals-are-zero of the SSE unit on (value not 0) or off (0) for the calling thread.
 * Returns -9998 without a change where the processor has no CPUID, no SSE or no such mode. */
ZPP_EXPORT_SHARED(ZppStatus, zppSetDenormAreZeros, (Zpp32s value))

/* The processor's time-stamp counter. */
ZPP_EXPORT_SHARED(Zpp64u, zppGetCpuClocks, (void))

/* Allocate a vector of len elements on a multiple of 32 bytes, released by zppsFree.
 * Return null where len is not positive or memory is short. */
ZPP_EXPORT_SHARED(Zpp32s*, zppsMalloc_32s, (int len))
ZPP_EXPORT_SHARED(Zpp64f*, zppsMalloc_64f, (int len))
ZPP_EXPORT_SHARED(Zpp32sc*, zppsMalloc_32sc, (int len))
ZPP_EXPORT_SHARED(Zpp64fc*, zppsMalloc_64fc, (int len))

/* Releases a vector of zppsMalloc; does nothing with null. */
ZPP_EXPORT_SHARED(void, zppsFree, (void* ptr))

/* The version record of the signal-processing part and of the vector-math part: constant, and of the column
 * that was bound at load. */
ZPP_EXPORT_COLUMN(const ZppLibraryVersion*, zppsGetLibVersion, (void))
ZPP_EXPORT_COLUMN(const ZppLibraryVersion*, zppvmGetLibVersion, (void))

#endif
