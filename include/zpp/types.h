/* Element types and constants of libzpp. */
#ifndef ZPP_TYPES_H
#define ZPP_TYPES_H

typedef unsigned char Zpp8u;
typedef signed char Zpp8s;
typedef unsigned short Zpp16u;
typedef short Zpp16s;
typedef unsigned int Zpp32u;
typedef int Zpp32s;
typedef float Zpp32f;
typedef double Zpp64f;
#ifdef __GNUC__
__extension__
#endif
    typedef unsigned long long Zpp64u;

/* An IEEE 754 binary16 value in a 16-bit word. */
typedef Zpp16u Zpp16f;

/* A packed 24-bit integer (24s: two's complement, 24u: unsigned) takes three bytes, least significant first.
 * Vectors of them are passed as pointers to Zpp8u. */

typedef struct {
    Zpp16s re;
    Zpp16s im;
} Zpp16sc;

typedef struct {
    Zpp32s re;
    Zpp32s im;
} Zpp32sc;

typedef struct {
    Zpp32f re;
    Zpp32f im;
} Zpp32fc;

typedef struct {
    Zpp64f re;
    Zpp64f im;
} Zpp64fc;

/* Rounding of floating values to integers: zppRoundNear is to nearest, ties to even; every other value is
 * toward zero. The argument is never refused. */
typedef Zpp32s ZppRoundMode;
enum { zppRoundZero = 0, zppRoundNear = 1 };

/* Which elements a threshold replaces: zppCmpGreater those above the level; every other value is zppCmpLess. */
typedef Zpp32s ZppCmpOp;
enum { zppCmpLess = 0, zppCmpGreater = 4 };

/* Processor classification of zppGetCpuType. */
typedef Zpp32s ZppCpuType;
enum {
    zppCpuUnknown = 0,             /* no CPUID, another vendor, or a family other than 5, 6, 7 and 15 */
    zppCpuFamily5 = 1,             /* family 5 without MMX */
    zppCpuFamily5Mmx = 2,          /* family 5 with MMX */
    zppCpuFamily6 = 3,             /* family 6 without MMX */
    zppCpuFamily6Mmx = 4,          /* family 6 with MMX, without SSE */
    zppCpuFamily6Sse = 5,          /* family 6 with SSE, without SSE2 */
    zppCpuFamily15Sse2 = 6,        /* family 15 with SSE2, without SSE3 and hyper-threading */
    zppCpuFamily15Sse2Ht = 7,      /* family 15 with SSE2 and hyper-threading, without SSE3 */
    zppCpuFamily15Sse3 = 8,        /* family 15 with SSE2 and SSE3 */
    zppCpuFamily6Sse2 = 9,         /* family 6 with SSE2 */
    zppCpuFamily7 = 16,            /* family 7 */
    zppCpuFamily15WithoutSse2 = 17 /* family 15 without SSE2 */
};

/* Version record of one part of the library in the column that is bound. */
typedef struct {
    Zpp32s major;
    Zpp32s minor;
    Zpp32s majorBuild; /* build series */
    Zpp32s build;      /* build number */
    char targetCpu[4]; /* column: "px", "a6" or "w7", padded with zeros */
    const char* Name;
    const char* Version;
    const char* BuildDate;
} ZppLibraryVersion;

/* Objects that the library makes; their content is its own. */
typedef struct ZppsFFTSpec ZppsFFTSpec;
typedef struct ZppsDCTSpec ZppsDCTSpec;
typedef struct ZppsFIRState ZppsFIRState;
typedef struct ZppsIIRState ZppsIIRState;
typedef struct ZppsToneState ZppsToneState;
typedef struct ZppsTriangleState ZppsTriangleState;

#endif
