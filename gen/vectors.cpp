// Jaehne's signal and ramps.
#include "core/elementwise.h"
#include "gen/exports.h"
#include "gen/rows.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr double kCount[] = {0, 1, 2, 3, 4, 5, 6, 7};

// put(write, p, v) writes what becomes of a register of sample(n).
template <class Sample, class Put, class D>
ZPP_INLINE ZppStatus generated(Sample sample, Put put, D* pDst, int len) {
    const auto compute = [=](auto lanes, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, decltype(lanes)::value>;
        return sample(load<V>(kCount) + static_cast<double>(static_cast<int>(i)));
    };
    return writeSteps<kLanes<double>>(static_cast<size_t>(len), pDst, sizeof(D), compute,
                                      [=](auto write, size_t i, auto v)
                                          ZPP_INLINE_LAMBDA { put(write, pDst + i, v); });
}

constexpr auto putDoubles = [](auto write, double* p, auto v) ZPP_INLINE_LAMBDA { write(p, v); };

template <class Put, class D>
ZPP_INLINE ZppStatus ramp(Put put, D* pDst, int len, double offset, double slope) {
    if (const ZppStatus error = checkVectors(len, pDst)) return error;
    return generated([=](auto n) ZPP_INLINE_LAMBDA { return product(n, slope) + offset; }, put, pDst, len);
}

// The sine of x below 2^32. Turns of 2 pi are first taken off by 2^16, in three parts: the multiples of two
// of them are exact, and so is what the first one leaves of x.
template <class V>
ZPP_INLINE V sineOfLarge(V x) {
    constexpr double first = 0x1.921fb5444p+18, second = 0x2.d184698988p-22, third = 0x4.c51701b839a25p-62;
    const V turns = nearestInteger(x * (1 / first));
    const Sum<V> left = exactSum(x - turns * first, -(turns * second));
    auto angle = SineAngle<V>::template of<0>(left.high);
    const Sum<V> r = exactSum(angle.r, left.low - turns * third);
    angle.r = r.high;
    angle.rest = angle.rest + r.low;
    return sineOf(angle);
}

template <class Put, class D>
ZPP_INLINE ZppStatus jaehne(Put put, D* pDst, int len, double magn) {
    if (const ZppStatus error =
            firstError(checkVectors(len, pDst), require(magn >= 0, zppStatusNegativeMagnitude)))
        return error;
    if (len == 1) {
        *pDst = 0;
        return zppStatusOk;
    }
    const Environment environment;
    const double step = 1.5707963267948966 / len;
    const auto sample = [=](auto n) ZPP_INLINE_LAMBDA {
        using V = decltype(n);
        const V x = n * step * n;
        const V sine = any(x > kSineLimit) ? sineOfLarge(x) : sineOf(SineAngle<V>::template of<0>(x));
        return sine * magn;
    };
    return generated(sample, put, pDst, len);
}

}  // namespace

ZppStatus zppsVectorJaehne_64f(Zpp64f* pDst, int len, Zpp64f magn) {
    return jaehne(putDoubles, pDst, len, magn);
}
ZppStatus zppsVectorJaehne_32s(Zpp32s* pDst, int len, Zpp32s magn) {
    const auto put = [](auto, Zpp32s* p, auto v) ZPP_INLINE_LAMBDA { storeAsInts<Rounding::kNearest>(p, v); };
    return jaehne(put, pDst, len, magn);
}

ZppStatus zppsVectorRamp_64f(Zpp64f* pDst, int len, Zpp32f offset, Zpp32f slope) {
    return ramp(putDoubles, pDst, len, offset, slope);
}
ZppStatus zppsVectorRamp_32s(Zpp32s* pDst, int len, Zpp32f offset, Zpp32f slope) {
    const auto put = [](auto, Zpp32s* p, auto v) ZPP_INLINE_LAMBDA {
        using V = decltype(v);
        const V half = select(v <= 0, broadcast<V>(-0.5), broadcast<V>(0.5));
        storeAsInts<Rounding::kZero>(p, v + half);
    };
    return ramp(put, pDst, len, offset, slope);
}

}  // namespace zpp::ZPP_ISA
