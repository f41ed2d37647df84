/* Statistics: reductions of vectors to a number or a few. */
#if !defined(ZPP_STATS_H) || defined(ZPP_LIST)
#define ZPP_STATS_H
#include "export.h"

/* Sums, means and deviations
 *
 * Vectors hold len elements, results one. Sums are formed in double, in one order of additions, which depends
 * on len alone: the bits of a result are the same on every processor and for every alignment.
 *
 * Returned, in this order of checks: -8 for a null pointer; -6 for len < 1. */

/* *pSum = the sum of all elements; complex: of each part. */
ZPP_EXPORT(ZppStatus, zppsSum_64f, (const Zpp64f* pSrc, int len, Zpp64f* pSum))
ZPP_EXPORT(ZppStatus, zppsSum_64fc, (const Zpp64fc* pSrc, int len, Zpp64fc* pSum))

#endif
