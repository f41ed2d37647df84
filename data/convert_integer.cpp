// Conversions between integer types.
#include "core/elementwise.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto sameValue = [](auto v) { return v; };

// T is the type of the lanes. Larger scale factors count as 31, and beyond mostLeft all but 0 saturates.
template <class T, class D>
inline ZppStatus scaled(const T* pSrc, D* pDst, int len, int scaleFactor, int mostLeft) {
    const Range<T> range = {static_cast<T>(kRange<D>.lower), static_cast<T>(kRange<D>.upper)};
    const auto run = [=](auto op) { return elementwise32(op, pDst, len, pSrc); };
    if (scaleFactor < 0) return withScale(scaleFactor, range, mostLeft, run);

    const auto saturated = [=](auto v) ZPP_INLINE_LAMBDA {
        if constexpr (kSaturatesBelow<D>)  // when it is stored
            return v;
        else
            return saturate(v, range);
    };
    if (scaleFactor == 0) return run(saturated);
    const RoundedShiftRight<T> shift(clamp(scaleFactor, 1, 31));
    return run([=](auto v) ZPP_INLINE_LAMBDA { return saturated(shift(v)); });
}

}  // namespace

ZppStatus zppsConvert_8s16s(const Zpp8s* pSrc, Zpp16s* pDst, int len) {
    return elementwiseSteps<kLanes<int16_t>, false, kLanes<int16_t>>(
        [](auto lanes, const Zpp8s* p) ZPP_INLINE_LAMBDA { return loadAsWords<decltype(lanes)::value>(p); },
        [](Zpp16s* p, auto v) ZPP_INLINE_LAMBDA { store(p, v); }, pDst, len, pSrc);
}
ZppStatus zppsConvert_16s32s(const Zpp16s* pSrc, Zpp32s* pDst, int len) {
    return elementwise32(sameValue, pDst, len, pSrc);
}
ZppStatus zppsConvert_32s16s(const Zpp32s* pSrc, Zpp16s* pDst, int len) {
    return elementwise32(sameValue, pDst, len, pSrc);
}
ZppStatus zppsConvert_24s32s(const Zpp8u* pSrc, Zpp32s* pDst, int len) {
    return elementwise32(sameValue, pDst, len, elements<Int24>(pSrc));
}
ZppStatus zppsConvert_24u32u(const Zpp8u* pSrc, Zpp32u* pDst, int len) {
    return elementwise32(sameValue, pDst, len, elements<UInt24>(pSrc));
}

ZppStatus zppsConvert_32s16s_Sfs(const Zpp32s* pSrc, Zpp16s* pDst, int len, int scaleFactor) {
    return scaled(pSrc, pDst, len, scaleFactor, 15);
}
ZppStatus zppsConvert_32s24s_Sfs(const Zpp32s* pSrc, Zpp8u* pDst, int len, int scaleFactor) {
    return scaled(pSrc, elements<Int24>(pDst), len, scaleFactor, 31);
}
ZppStatus zppsConvert_32u24u_Sfs(const Zpp32u* pSrc, Zpp8u* pDst, int len, int scaleFactor) {
    return scaled(pSrc, elements<UInt24>(pDst), len, scaleFactor, 31);
}

ZppStatus zppsSwapBytes_24u(const Zpp8u* pSrc, Zpp8u* pDst, int len) {
    return elementwiseSteps<kStep32<UInt24>>(
        [](auto lanes, const UInt24* p) ZPP_INLINE_LAMBDA {
            return mapRegisters([](auto v) ZPP_INLINE_LAMBDA { return reversePacked(v); },
                                loadPacked<decltype(lanes)::value>(p->bytes));
        },
        [](UInt24* p, auto v) ZPP_INLINE_LAMBDA { storePacked(p->bytes, v); }, elements<UInt24>(pDst), len,
        elements<UInt24>(pSrc));
}
ZppStatus zppsSwapBytes_24u_I(Zpp8u* pSrcDst, int len) { return zppsSwapBytes_24u(pSrcDst, pSrcDst, len); }

}  // namespace zpp::ZPP_ISA
