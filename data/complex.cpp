// Complex vectors taken apart, put together and measured.
#include "core/elementwise.h"
#include "core/simd_wide.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

// Numbers that only move are integers: the x87 unit would change a signalling NaN on the way.
using Bits = uint64_t;

constexpr auto power = [](auto z) ZPP_INLINE_LAMBDA { return squaredNorm(z); };
constexpr auto length = [](auto z) ZPP_INLINE_LAMBDA { return magnitude(z); };

// dst[i] = op(z[i]), of parts of type Number.
template <class Number, class Op>
inline ZppStatus ofComplex(Op op, const Zpp64fc* pSrc, Zpp64f* pDst, int len) {
    return elementwiseSteps<kLanes<Number>, true>(
        [=](auto lanes, const Zpp64fc* p) ZPP_INLINE_LAMBDA {
            const auto parts = loadDeinterleaved<Vec<Number, decltype(lanes)::value>>(&p->re);
            return op(Complex<decltype(parts.low)>{parts.low, parts.high});
        },
        [](Zpp64f* p, auto v) ZPP_INLINE_LAMBDA { store(p, v); }, pDst, len, pSrc);
}

// The same of parts that lie in two vectors.
template <class Op>
inline ZppStatus ofParts(Op op, const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len) {
    return elementwise(
        [=](auto re, auto im) {
            return op(Complex<decltype(re)>{re, im});
        },
        pDst, len, pSrcRe, pSrcIm);
}

// pDst[i] = (re, im), which join makes of elements of the sources.
template <class Join, class... S>
inline ZppStatus joined(Join join, Zpp64fc* pDst, int len, const S*... pSrc) {
    return elementwiseSteps<kLanes<Bits>>(
        [=](auto lanes, const S*... p)
            ZPP_INLINE_LAMBDA { return interleaved(join(load<Vec<Bits, decltype(lanes)::value>>(p)...)); },
        [](Zpp64fc* p, auto z) ZPP_INLINE_LAMBDA { storeRegisters(&p->re, z); }, pDst, len, pSrc...);
}

// re re + im im, at most 2^63.
template <class V>
ZPP_INLINE auto exactSquaredNorm(V z) {
    const auto parts = squares(z);
    return parts.low + parts.high;
}

// run(scale) for such sums: 64 bits without a sign have room for the half that is added to them.
template <class Run>
ZPP_INLINE ZppStatus withScaledNorm(int scaleFactor, Run run) {
    if (scaleFactor <= 0) {
        const SaturatedShiftLeft<int32_t> shift(-clamp(scaleFactor, -31, 0), kRange<int32_t>);
        return run([=](auto norms) ZPP_INLINE_LAMBDA { return shift(saturatedInOrder(norms)); });
    }
    if (scaleFactor > 63)  // at most a half
        return run([](auto norms) ZPP_INLINE_LAMBDA { return decltype(saturatedInOrder(norms)){}; });
    const RoundedShiftRightOfSmall<uint64_t> shift(scaleFactor);
    return run([=](auto norms) ZPP_INLINE_LAMBDA { return saturatedInOrder(mapRegisters(shift, norms)); });
}

inline ZppStatus checkDivisor(double vdiv, int len, const void* pSrc, const void* pDst) {
    constexpr double kLeastNormal = 0x1p-1022;
    return firstError(checkVectors(len, pSrc, pDst),
                      require(!(__builtin_fabs(vdiv) < kLeastNormal), zppStatusDivideByZeroError));
}

}  // namespace

ZppStatus zppsConj_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return elementwise([](auto z) { return conjugate(z); }, pDst, len, pSrc);
}
ZppStatus zppsConj_64fc_I(Zpp64fc* pSrcDst, int len) { return zppsConj_64fc(pSrcDst, pSrcDst, len); }
ZppStatus zppsConjFlip_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return flipped([](auto z) { return conjugate(reverseLanes(z)); }, pDst, len, pSrc);
}

ZppStatus zppsReal_64fc(const Zpp64fc* pSrc, Zpp64f* pDst, int len) {
    return ofComplex<Bits>([](auto z) { return z.re; }, pSrc, pDst, len);
}
ZppStatus zppsImag_64fc(const Zpp64fc* pSrc, Zpp64f* pDst, int len) {
    return ofComplex<Bits>([](auto z) { return z.im; }, pSrc, pDst, len);
}
ZppStatus zppsCplxToReal_64fc(const Zpp64fc* pSrc, Zpp64f* pDstRe, Zpp64f* pDstIm, int len) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDstRe, pDstIm)) return error;
    return writeSteps<kLineStep<Zpp64f>, false, kLanes<Bits>>(
        static_cast<size_t>(len), pDstRe, sizeof(Zpp64f),
        [=](auto lanes, size_t i)
            ZPP_INLINE_LAMBDA { return loadDeinterleaved<decltype(lanes)::value, Bits>(&pSrc[i].re); },
        [=](auto write, size_t i, auto parts) ZPP_INLINE_LAMBDA {
            write(pDstRe + i, parts.low);
            write(pDstIm + i, parts.high);
        });
}

ZppStatus zppsRealToCplx_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64fc* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pDst)) return error;
    if (pSrcIm == nullptr)
        return joined([](auto re) { return halves(re, decltype(re){}); }, pDst, len, pSrcRe);
    if (pSrcRe == nullptr)
        return joined([](auto im) { return halves(decltype(im){}, im); }, pDst, len, pSrcIm);
    return joined([](auto re, auto im) { return halves(re, im); }, pDst, len, pSrcRe, pSrcIm);
}

ZppStatus zppsMagnitude_64fc(const Zpp64fc* pSrc, Zpp64f* pDst, int len) {
    return ofComplex<double>(length, pSrc, pDst, len);
}
ZppStatus zppsMagnitude_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len) {
    return ofParts(length, pSrcRe, pSrcIm, pDst, len);
}
ZppStatus zppsMagnitude_32sc_Sfs(const Zpp32sc* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    // Beyond these every element is 0, or as large as can be if it is not 0.
    const double scale = scaleMultiplier<double>(clamp(scaleFactor, -31, 64));
    return elementwiseSteps<kLanes<double>>(
        [=](auto lanes, const Zpp32sc* p) ZPP_INLINE_LAMBDA {
            const auto z = loadComplex<decltype(lanes)::value>(&p->re);
            return naturalOrder(stored(product(magnitude(z), scale) + 0.5));
        },
        [](Zpp32s* p, auto v) ZPP_INLINE_LAMBDA { storeAsInts<Rounding::kZero>(p, v); }, pDst, len, pSrc);
}
ZppStatus zppsMagSquared_32sc32s_Sfs(const Zpp32sc* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    return withScaledNorm(scaleFactor, [=](auto scale) ZPP_INLINE_LAMBDA {
        return elementwiseSteps<kLanes<int32_t>>(
            [=](auto lanes, const Zpp32sc* p) ZPP_INLINE_LAMBDA {
                constexpr int n = decltype(lanes)::value;
                if constexpr (n == 1)
                    return scale(exactSquaredNorm(loadElements<1>(p)));
                else
                    return scale(halves(exactSquaredNorm(loadElements<n / 2>(p)),
                                        exactSquaredNorm(loadElements<n / 2>(p + n / 2))));
            },
            [](Zpp32s* p, auto v) ZPP_INLINE_LAMBDA { store(p, v); }, pDst, len, pSrc);
    });
}

ZppStatus zppsPowerSpectr_64fc(const Zpp64fc* pSrc, Zpp64f* pDst, int len) {
    return ofComplex<double>(power, pSrc, pDst, len);
}
ZppStatus zppsPowerSpectr_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len) {
    return ofParts(power, pSrcRe, pSrcIm, pDst, len);
}

ZppStatus zppsNormalize_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f vsub, Zpp64f vdiv) {
    if (const ZppStatus error = checkDivisor(vdiv, len, pSrc, pDst)) return error;
    const double scale = reciprocal(vdiv);
    return elementwise([=](auto x) { return product(stored(x - vsub), scale); }, pDst, len, pSrc);
}
ZppStatus zppsNormalize_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64fc vsub, Zpp64f vdiv) {
    if (const ZppStatus error = checkDivisor(vdiv, len, pSrc, pDst)) return error;
    const double scale = reciprocal(vdiv);
    const Complex<double> offset = {vsub.re, vsub.im};
    return elementwise([=](auto z) { return product(stored(z - offset), scale); }, pDst, len, pSrc);
}

}  // namespace zpp::ZPP_ISA
