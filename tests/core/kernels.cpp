#include "tests/core/kernels.h"

#include "core/elementwise.h"
#include "core/simd_interleave.h"
#include "stats/sort_kernel.h"

namespace zpp::ZPP_ISA {
namespace {

ZppStatus scale64(const int64_t* pSrc, int64_t* pDst, int len, int scaleFactor) {
    const Range<int64_t> range = {kRange<int32_t>.lower, kRange<int32_t>.upper};
    return withScale(scaleFactor, range, [=](auto scale) { return elementwise(scale, pDst, len, pSrc); });
}

ZppStatus addScaled(const Zpp16s* pSrc1, const Zpp16s* pSrc2, Zpp16s* pDst, int len, int scaleFactor) {
    return withScale(scaleFactor, kRange<int16_t>, [=](auto scale) {
        const auto op = [=](auto a, auto b) ZPP_INLINE_LAMBDA { return scale(a + b); };
        return elementwise32(op, pDst, len, pSrc1, pSrc2);
    });
}

template <class S, class D>
ZppStatus convertComplex(const S* pSrc, D* pDst, int len) {
    return elementwiseSteps<kLanes<double>>(
        [](auto lanes, const S* p) ZPP_INLINE_LAMBDA { return loadComplex<decltype(lanes)::value>(&p->re); },
        [](D* p, auto v) ZPP_INLINE_LAMBDA { storeComplex(&p->re, v); }, pDst, len, pSrc);
}

template <class Bits, class C, class T>
ZppStatus exchange(const C* pSrc, const T* pOther, C* pDst, int len) {
    return elementwiseSteps<kLanes<Bits>>(
        [](auto lanes, const C* p, const T* other) ZPP_INLINE_LAMBDA {
            using V = Vec<Bits, decltype(lanes)::value>;
            const auto parts = loadDeinterleaved<V>(&p->re);
            return interleaved(halves(parts.high, parts.low ^ load<V>(other)));
        },
        [](C* p, auto v) ZPP_INLINE_LAMBDA { storeRegisters(&p->re, v); }, pDst, len, pSrc, pOther);
}

template <class T>
class Chooser {
  public:
    explicit Chooser(test::Pivots pivots) : pivots_(pivots) {}
    T operator()(const T* p, size_t len) {
        ++count;
        if (pivots_ == test::Pivots::kAsChosen) return choose_(p, len);
        T extreme = p[0];
        for (size_t i = 1; i < len; ++i)
            if (pivots_ == test::Pivots::kLeast ? p[i] < extreme : extreme < p[i]) extreme = p[i];
        return extreme;
    }

    int count = 0;

  private:
    test::Pivots pivots_;
    MedianOfMedians<T> choose_;
};

template <class T>
int sortBy(T* p, int len, test::Pivots pivots) {
    Chooser<T> choose(pivots);
    sortAll(p, static_cast<size_t>(len), choose);
    return choose.count;
}

}  // namespace

extern const test::CoreKernels kCoreKernels;
const test::CoreKernels kCoreKernels = {scale64,        addScaled,      convertComplex,    convertComplex,
                                        convertComplex, convertComplex, exchange<int32_t>, exchange<int64_t>,
                                        sortBy,         sortBy};

}  // namespace zpp::ZPP_ISA
