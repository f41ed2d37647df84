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
ZPP_EXPORT(ZppStatus, zppsZero_64f, (Zpp64f * pDst, int len))
ZPP_EXPORT(ZppStatus, zppsZero_64fc, (Zpp64fc * pDst, int len))

/* pDst[len-1-i] = pSrc[i], for vectors that do not overlap; _I reverses in place. */
ZPP_EXPORT(ZppStatus, zppsFlip_64f, (const Zpp64f* pSrc, Zpp64f* pDst, int len))
ZPP_EXPORT(ZppStatus, zppsFlip_64f_I, (Zpp64f * pSrcDst, int len))

#endif
