// One level of the Haar wavelet transform: pairs of samples a, b to a low and a high band, and back.
#include "core/scaled.h"
#include "core/simd_interleave.h"
#include "transform/exports.h"

namespace zpp::ZPP_ISA {
namespace {

template <class V>
struct Bands {
    V low, high;
};

// split(a, b) gives the Bands of a pair; last(a) the low sample of a without b.
template <class T, class Split, class Last>
ZPP_INLINE ZppStatus forward(const T* pSrc, int len, T* pDstLow, T* pDstHigh, Split split, Last last) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDstLow, pDstHigh)) return error;
    const size_t pairs = static_cast<size_t>(len) / 2;
    if (len % 2 != 0) pDstLow[pairs] = last(pSrc[2 * pairs]);
    return writeSteps<kLineStep<T>, false, kLanes<T>>(
        pairs, pDstLow, sizeof(T),
        [=](auto lanes, size_t i) ZPP_INLINE_LAMBDA {
            const auto pair = loadDeinterleaved<decltype(lanes)::value, T>(pSrc + 2 * i);
            return mapRegisters(split, pair.low, pair.high);
        },
        [=](auto write, size_t i, auto bands) ZPP_INLINE_LAMBDA {
            write(pDstLow + i, mapRegisters([](auto v) ZPP_INLINE_LAMBDA { return v.low; }, bands));
            write(pDstHigh + i, mapRegisters([](auto v) ZPP_INLINE_LAMBDA { return v.high; }, bands));
        });
}

// join(low, high) gives a and b.
template <class T, class Join, class Last>
ZPP_INLINE ZppStatus inverse(const T* pSrcLow, const T* pSrcHigh, T* pDst, int len, Join join, Last last) {
    if (const ZppStatus error = checkVectors(len, pSrcLow, pSrcHigh, pDst)) return error;
    const size_t pairs = static_cast<size_t>(len) / 2;
    if (len % 2 != 0) pDst[2 * pairs] = last(pSrcLow[pairs]);
    return writeSteps<kLanes<T>>(
        pairs, pDst, 2 * sizeof(T),
        [=](auto lanes, size_t i) ZPP_INLINE_LAMBDA {
            using V = Vec<T, decltype(lanes)::value>;
            return interleaved(join(load<V>(pSrcLow + i), load<V>(pSrcHigh + i)));
        },
        [=](auto write, size_t i, auto v) ZPP_INLINE_LAMBDA { write(pDst + 2 * i, v); });
}

ZPP_INLINE ZppStatus inverseScaled(const Zpp32s* pSrcLow, const Zpp32s* pSrcHigh, Zpp32s* pDst, int len,
                                   int scaleFactor) {
    return withScaledSums(scaleFactor, [=](auto scaled) ZPP_INLINE_LAMBDA {
        const auto join = [=](auto low, auto high) ZPP_INLINE_LAMBDA {
            return halves(scaled(Difference(), low, high), scaled(Sum(), low, high));
        };
        const auto last = [=](auto low) ZPP_INLINE_LAMBDA { return scaled(Sum(), low, 0 * low); };
        return inverse(pSrcLow, pSrcHigh, pDst, len, join, last);
    });
}

}  // namespace

ZppStatus zppsWTHaarFwd_64f(const Zpp64f* pSrc, int len, Zpp64f* pDstLow, Zpp64f* pDstHigh) {
    const auto split = [](auto a, auto b) ZPP_INLINE_LAMBDA {
        const auto high = product(stored(b - a), 0.5);
        return Bands<decltype(high + high)>{stored(a + high), high};
    };
    return forward(pSrc, len, pDstLow, pDstHigh, split, itself);
}

ZppStatus zppsWTHaarFwd_32s(const Zpp32s* pSrc, int len, Zpp32s* pDstLow, Zpp32s* pDstHigh) {
    const auto split = [](auto a, auto b) ZPP_INLINE_LAMBDA {
        const auto halfA = a >> 1, halfB = b >> 1;
        const auto farApart = halfB - halfA == kRange<int32_t>.upper;  // the exception
        // An odd sum ends in a half, and goes to its even neighbour.
        const auto odd = select(farApart, a ^ a, (a ^ b) & 1);
        const auto low = (halfA + halfB + ((a | b) & 1)) & ~odd;
        return Bands<decltype(a + b)>{select(farApart, a ^ a, low), (halfB - halfA + (b & odd)) & ~odd};
    };
    return forward(pSrc, len, pDstLow, pDstHigh, split, itself);
}

ZppStatus zppsWTHaarFwd_32s_Sfs(const Zpp32s* pSrc, int len, Zpp32s* pDstLow, Zpp32s* pDstHigh,
                                int scaleFactor) {
    if (scaleFactor == 0) return zppsWTHaarFwd_32s(pSrc, len, pDstLow, pDstHigh);
    const int factorOfSums = clamp(scaleFactor, -100, 100) + 1;  // further ones do the same
    return withScaledSums(factorOfSums, [=](auto scaled) ZPP_INLINE_LAMBDA {
        const auto split = [=](auto a, auto b) ZPP_INLINE_LAMBDA {
            return Bands<decltype(a + b)>{scaled(Sum(), a, b), scaled(Difference(), b, a)};
        };
        const auto last = [=](auto a) ZPP_INLINE_LAMBDA { return scaled(Sum(), a, a); };
        return forward(pSrc, len, pDstLow, pDstHigh, split, last);
    });
}

ZppStatus zppsWTHaarInv_64f(const Zpp64f* pSrcLow, const Zpp64f* pSrcHigh, Zpp64f* pDst, int len) {
    const auto join = [](auto low, auto high)
                          ZPP_INLINE_LAMBDA { return halves(stored(low - high), stored(low + high)); };
    return inverse(pSrcLow, pSrcHigh, pDst, len, join, itself);
}

ZppStatus zppsWTHaarInv_32s(const Zpp32s* pSrcLow, const Zpp32s* pSrcHigh, Zpp32s* pDst, int len) {
    return inverseScaled(pSrcLow, pSrcHigh, pDst, len, 0);
}
ZppStatus zppsWTHaarInv_32s_Sfs(const Zpp32s* pSrcLow, const Zpp32s* pSrcHigh, Zpp32s* pDst, int len,
                                int scaleFactor) {
    return inverseScaled(pSrcLow, pSrcHigh, pDst, len, scaleFactor);
}

}  // namespace zpp::ZPP_ISA
