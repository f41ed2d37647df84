// Conversions between integers and floating types, and between floating types.
#include "core/elementwise.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto asFloat = [](auto v) ZPP_INLINE_LAMBDA { return toFloat(v); };

constexpr auto loadDoubles = [](auto lanes, const auto* p)
                                 ZPP_INLINE_LAMBDA { return loadAsDoubles<decltype(lanes)::value>(p); };
constexpr auto storeDoubles = [](double* p, auto v) ZPP_INLINE_LAMBDA { store(p, v); };
constexpr auto storeFloats = [](float* p, auto v) ZPP_INLINE_LAMBDA { storeAsFloats(p, v); };

// x * 2^-scaleFactor as a double for every scaleFactor, exact but for one rounding outside the normal range:
// the first of the two factors stays inside.
class ScaledDoubles {
  public:
    explicit ScaledDoubles(int scaleFactor) {
        const int near = clamp(scaleFactor, -1000, 1000);
        first_ = powerOfTwo<double>(-near);
        second_ = powerOfTwo<double>(-clamp(clamp(scaleFactor, -2000, 2000) - near, -1000, 1000));
    }
    template <class S, class Lanes>
    ZPP_INLINE auto operator()(Lanes lanes, const S* p) const {
        return loadDoubles(lanes, p) * first_ * second_;
    }

  private:
    double first_, second_;
};

template <class S>
inline ZppStatus scaledToDouble(const S* pSrc, Zpp64f* pDst, int len, int scaleFactor) {
    if (scaleFactor < -1000 || scaleFactor > 1000)
        return elementwiseSteps<kLanes<double>>(ScaledDoubles(scaleFactor), storeDoubles, pDst, len, pSrc);
    const double multiplier = scaleMultiplier<double>(scaleFactor);
    return elementwiseSteps<kLanes<double>>(
        [=](auto lanes, const S* p) ZPP_INLINE_LAMBDA { return loadDoubles(lanes, p) * multiplier; },
        storeDoubles, pDst, len, pSrc);
}

// Where the result is normal or infinite anyway, scaling after the rounding to single is exact. Elsewhere the
// product is formed as a double, which is exact, and rounded at the end.
template <class S>
inline ZppStatus scaledToFloat(const S* pSrc, Zpp32f* pDst, int len, int scaleFactor) {
    if (scaleFactor < -127 || scaleFactor > 126)
        return elementwiseSteps<kLanes<double>>(ScaledDoubles(clamp(scaleFactor, -500, 500)), storeFloats,
                                                pDst, len, pSrc);
    const float multiplier = scaleMultiplier<float>(scaleFactor);
    return elementwise32([=](auto v) ZPP_INLINE_LAMBDA { return toFloat(v) * multiplier; }, pDst, len, pSrc);
}

template <class S, class D>
inline ZppStatus toInteger(const S* pSrc, D* pDst, int len, ZppRoundMode rndMode, float multiplier) {
    return withRounding(rndMode, [=](auto rounding) {
        const auto toInt = [=](auto v) ZPP_INLINE_LAMBDA {
            return toIntsOf<D, decltype(rounding)::value>(v * multiplier);
        };
        return elementwise32(toInt, pDst, len, pSrc);
    });
}
template <class D>
inline ZppStatus toScaledInteger(const Zpp32f* pSrc, D* pDst, int len, ZppRoundMode rndMode,
                                 int scaleFactor) {
    return toInteger(pSrc, pDst, len, rndMode, scaleMultiplier<float>(scaleFactor));
}

// For packed integers the exponent field of the multiplier is 127 - scaleFactor, which for 127 makes it 0.
template <class D>
inline ZppStatus toPacked(const Zpp32f* pSrc, D* pDst, int len, int scaleFactor) {
    const int field = 127 - clamp(scaleFactor, -127, 127);
    return toInteger(pSrc, pDst, len, zppRoundNear, field == 0 ? 0.0F : powerOfTwo<float>(field - 127));
}

}  // namespace

ZppStatus zppsConvert_8s32f(const Zpp8s* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, pSrc);
}
ZppStatus zppsConvert_8u32f(const Zpp8u* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, pSrc);
}
ZppStatus zppsConvert_16s32f(const Zpp16s* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, pSrc);
}
ZppStatus zppsConvert_16u32f(const Zpp16u* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, pSrc);
}
ZppStatus zppsConvert_32s32f(const Zpp32s* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, pSrc);
}
ZppStatus zppsConvert_32s64f(const Zpp32s* pSrc, Zpp64f* pDst, int len) {
    return elementwiseSteps<kLanes<double>, true>(loadDoubles, storeDoubles, pDst, len, pSrc);
}
ZppStatus zppsConvert_32f64f(const Zpp32f* pSrc, Zpp64f* pDst, int len) {
    return elementwiseSteps<kLanes<double>, true>(loadDoubles, storeDoubles, pDst, len, pSrc);
}
ZppStatus zppsConvert_64f32f(const Zpp64f* pSrc, Zpp32f* pDst, int len) {
    return elementwiseSteps<kLanes<double>>(loadDoubles, storeFloats, pDst, len, pSrc);
}
ZppStatus zppsConvert_24s32f(const Zpp8u* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, elements<Int24>(pSrc));
}
ZppStatus zppsConvert_24u32f(const Zpp8u* pSrc, Zpp32f* pDst, int len) {
    return elementwise32(asFloat, pDst, len, elements<UInt24>(pSrc));
}

ZppStatus zppsConvert_16s32f_Sfs(const Zpp16s* pSrc, Zpp32f* pDst, int len, int scaleFactor) {
    return scaledToFloat(pSrc, pDst, len, scaleFactor);
}
ZppStatus zppsConvert_16s64f_Sfs(const Zpp16s* pSrc, Zpp64f* pDst, int len, int scaleFactor) {
    return scaledToDouble(pSrc, pDst, len, scaleFactor);
}
ZppStatus zppsConvert_32s32f_Sfs(const Zpp32s* pSrc, Zpp32f* pDst, int len, int scaleFactor) {
    return scaledToFloat(pSrc, pDst, len, scaleFactor);
}
ZppStatus zppsConvert_32s64f_Sfs(const Zpp32s* pSrc, Zpp64f* pDst, int len, int scaleFactor) {
    return scaledToDouble(pSrc, pDst, len, scaleFactor);
}

ZppStatus zppsConvert_32f8s_Sfs(const Zpp32f* pSrc, Zpp8s* pDst, int len, ZppRoundMode rndMode,
                                int scaleFactor) {
    return toScaledInteger(pSrc, pDst, len, rndMode, scaleFactor);
}
ZppStatus zppsConvert_32f8u_Sfs(const Zpp32f* pSrc, Zpp8u* pDst, int len, ZppRoundMode rndMode,
                                int scaleFactor) {
    return toScaledInteger(pSrc, pDst, len, rndMode, scaleFactor);
}
ZppStatus zppsConvert_32f16s_Sfs(const Zpp32f* pSrc, Zpp16s* pDst, int len, ZppRoundMode rndMode,
                                 int scaleFactor) {
    return toScaledInteger(pSrc, pDst, len, rndMode, scaleFactor);
}
ZppStatus zppsConvert_32f16u_Sfs(const Zpp32f* pSrc, Zpp16u* pDst, int len, ZppRoundMode rndMode,
                                 int scaleFactor) {
    return toScaledInteger(pSrc, pDst, len, rndMode, scaleFactor);
}
ZppStatus zppsConvert_32f32s_Sfs(const Zpp32f* pSrc, Zpp32s* pDst, int len, ZppRoundMode rndMode,
                                 int scaleFactor) {
    return toScaledInteger(pSrc, pDst, len, rndMode, scaleFactor);
}
ZppStatus zppsConvert_64f32s_Sfs(const Zpp64f* pSrc, Zpp32s* pDst, int len, ZppRoundMode rndMode,
                                 int scaleFactor) {
    const double multiplier = scaleMultiplier<double>(scaleFactor);
    const auto scaled = [=](auto lanes, const Zpp64f* p)
                            ZPP_INLINE_LAMBDA { return loadDoubles(lanes, p) * multiplier; };
    return withRounding(rndMode, [=](auto rounding) {
        const auto put = [](Zpp32s* p, auto v)
                             ZPP_INLINE_LAMBDA { storeAsInts<decltype(rounding)::value>(p, v); };
        return elementwiseSteps<kLanes<double>>(scaled, put, pDst, len, pSrc);
    });
}
ZppStatus zppsConvert_32f24s_Sfs(const Zpp32f* pSrc, Zpp8u* pDst, int len, int scaleFactor) {
    return toPacked(pSrc, elements<Int24>(pDst), len, scaleFactor);
}
ZppStatus zppsConvert_32f24u_Sfs(const Zpp32f* pSrc, Zpp8u* pDst, int len, int scaleFactor) {
    return toPacked(pSrc, elements<UInt24>(pDst), len, scaleFactor);
}

ZppStatus zppsConvert_16f16s_Sfs(const Zpp16f* pSrc, Zpp16s* pDst, int len, ZppRoundMode rndMode,
                                 int scaleFactor) {
    // Beyond 50 either way every number is 0 or saturated; the limit keeps the multiplier off infinity and 0.
    const float multiplier = powerOfTwo<float>(-clamp(scaleFactor, -50, 50));
    return toInteger(reinterpret_cast<const Half*>(pSrc), pDst, len, rndMode, multiplier);
}

}  // namespace zpp::ZPP_ISA
