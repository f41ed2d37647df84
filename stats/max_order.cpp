// The order of the largest magnitude.
#include "core/extremes.h"
#include "stats/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr double kLargest = __DBL_MAX__, kSmallestNormal = __DBL_MIN__;

// As extremes without an index: the bits of all magnitudes together,
struct AllBits {
    template <class V>
    ZPP_INLINE static V key(V x) {
        return magnitudeOfInts(x);
    }
    template <class V>
    ZPP_INLINE static V pick(V key, V best) {
        return key | best;
    }
};
// the largest magnitude,
struct Largest : Highest {
    template <class V>
    ZPP_INLINE static V key(V x) {
        return magnitude(x);
    }
};
// and the same with 0 for infinite numbers and NaN.
struct LargestFinite : Highest {
    template <class V>
    ZPP_INLINE static V key(V x) {
        const V size = magnitude(x);
        return select(size <= kLargest, size, V{});
    }
};

}  // namespace

ZppStatus zppsMaxOrder_32s(const Zpp32s* pSrc, int len, int* pOrder) {
    if (const ZppStatus error = firstError(checkLength(len), checkPointers(pSrc, pOrder))) return error;
    Extreme<AllBits, uint32_t> bits;
    findExtremes<false>(reinterpret_cast<const uint32_t*>(pSrc), static_cast<size_t>(len), bits);
    *pOrder = bits.value == 0 ? 0 : 32 - __builtin_clz(bits.value);
    return zppStatusOk;
}

ZppStatus zppsMaxOrder_64f(const Zpp64f* pSrc, int len, int* pOrder) {
    if (const ZppStatus error = firstError(checkLength(len), checkPointers(pSrc, pOrder))) return error;
    const size_t count = static_cast<size_t>(len);
    Extreme<Largest, Zpp64f> largest;
    bool warn = findExtremes<false>(pSrc, count, largest);
    double value = largest.value;
    if (warn || value > kLargest) {
        warn = true;
        Extreme<LargestFinite, Zpp64f> finite;
        findExtremes<false>(pSrc, count, finite);
        value = finite.value;
    }
    const auto exponent = static_cast<int>(bitCast<uint64_t>(value) >> 52) - 1022;
    *pOrder = value == 0 ? 0 : exponent;  // -1022 of all subnormal numbers
    return warn || (value != 0 && value < kSmallestNormal) ? zppStatusNanArg : zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
