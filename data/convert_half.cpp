// Conversions between half precision and other types; to integers they are in convert_float.cpp.
#include "core/elementwise.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

// The halves of compute(registers), the bits of singles, which may be `plain` (core/simd_half.h).
template <bool plain, class S, class Compute>
inline ZppStatus toHalves(const S* pSrc, Zpp16f* pDst, int len, ZppRoundMode rndMode, Compute compute) {
    const auto load = [=](auto lanes, const S* p) ZPP_INLINE_LAMBDA {
        return mapRegisters(compute, loadRegisters<decltype(lanes)::value>(p));
    };
    return withRounding(rndMode, [=](auto rounding) {
        const auto put = [](Half* p, auto v)
                             ZPP_INLINE_LAMBDA { storeAsHalves<decltype(rounding)::value, plain>(p, v); };
        return elementwiseSteps<kStep32<Half>>(load, put, reinterpret_cast<Half*>(pDst), len, pSrc);
    });
}

}  // namespace

ZppStatus zppsConvert_16s16f(const Zpp16s* pSrc, Zpp16f* pDst, int len, ZppRoundMode rndMode) {
    return toHalves<true>(pSrc, pDst, len, rndMode,
                          [](auto v) ZPP_INLINE_LAMBDA { return bitCast<decltype(v)>(toFloat(v)); });
}
// Singles are loaded as integers: the NaNs among them are read by their bits.
ZppStatus zppsConvert_32f16f(const Zpp32f* pSrc, Zpp16f* pDst, int len, ZppRoundMode rndMode) {
    return toHalves<false>(reinterpret_cast<const int32_t*>(pSrc), pDst, len, rndMode,
                           [](auto v) ZPP_INLINE_LAMBDA { return v; });
}
ZppStatus zppsConvert_16f32f(const Zpp16f* pSrc, Zpp32f* pDst, int len) {
    return elementwiseSteps<kLanes<int16_t>>(
        [](auto lanes, const Half* p)
            ZPP_INLINE_LAMBDA { return loadAsFloatBits<decltype(lanes)::value>(p); },
        [](Zpp32f* p, auto v) ZPP_INLINE_LAMBDA { storeRegisters(p, v); }, pDst, len,
        reinterpret_cast<const Half*>(pSrc));
}

}  // namespace zpp::ZPP_ISA
