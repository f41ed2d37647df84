// Cosine transforms.
#include "transform/dct_direct.h"
#include "transform/dct_fft.h"
#include "transform/dct_large.h"

namespace zpp::ZPP_ISA {
namespace {

// The FFT of the longest lengths needs more than the work buffer has, an area of its own.
template <class Transform>
ZppStatus withGroup(const ZppsDCTSpec* spec, Transform transform) {
    if (spec->pow2Large == 0) {
        transform(nullptr);
        return zppStatusOk;
    }
    const LargeScratch s = largeScratch(fftTables(spec).order);
    const WorkBuffer buffer(nullptr, static_cast<int>((s.total - s.data) * sizeof(double)));
    double* const group = buffer.from<double>(kBlockAlignment);
    if (group == nullptr) return zppStatusAllocationFailed;
    transform(group);
    return zppStatusOk;
}

// Calls body(integral_constant N) for one of the fixed lengths.
template <class Body>
ZPP_INLINE ZppStatus withSmall(int len, Body body) {
    if (len == 1) body(std::integral_constant<int, 1>{});
    if (len == 2) body(std::integral_constant<int, 2>{});
    if (len == 4) body(std::integral_constant<int, 4>{});
    if (len == 8) body(std::integral_constant<int, 8>{});
    return zppStatusOk;
}

ZppStatus check(const double* pSrc, const double* pDst, const ZppsDCTSpec* spec, DctKind kind) {
    return firstError(checkSpec(spec, kind), checkPointers(pSrc, pDst));
}

// Calls one of the methods with what the call has to work in.
template <class Fft, class Direct, class Chirps>
ZPP_INLINE ZppStatus withMethod(const ZppsDCTSpec* spec, Zpp8u* pBuffer, Fft fft, Direct direct,
                                Chirps chirps) {
    const WorkBuffer buffer(pBuffer, spec->bufSize);
    if (buffer.block() == nullptr) return zppStatusAllocationFailed;
    if (spec->large != 0) {
        Areas areas(kBlockAlignment, buffer.block());
        chirps(ChirpWork(areas, spec));
        return zppStatusOk;
    }
    auto* const work = buffer.from<double>(kDctAlignment);
    if (spec->pow2 != 0) return withGroup(spec, [=](double* group) { fft(work, group); });
    direct(work);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsDCTFwd_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsDCTSpec* pDCTSpec, Zpp8u* pBuffer) {
    if (const ZppStatus error = check(pSrc, pDst, pDCTSpec, kForwardDct)) return error;
    const DoublePrecision precision;
    if (pDCTSpec->small != 0)
        return withSmall(pDCTSpec->len, [=](auto n) ZPP_INLINE_LAMBDA { smallForward<n>(pSrc, pDst); });
    return withMethod(
        pDCTSpec, pBuffer,
        [=](double* work, double* group) { forwardByFft(pSrc, pDst, pDCTSpec, work, group); },
        [=](double* work) { forwardDirectly(pSrc, pDst, pDCTSpec, work); },
        [=](const ChirpWork& work) { forwardByChirps(pSrc, pDst, pDCTSpec, work); });
}

ZppStatus zppsDCTInv_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsDCTSpec* pDCTSpec, Zpp8u* pBuffer) {
    if (const ZppStatus error = check(pSrc, pDst, pDCTSpec, kInverseDct)) return error;
    const DoublePrecision precision;
    if (pDCTSpec->small != 0)
        return withSmall(pDCTSpec->len, [=](auto n) ZPP_INLINE_LAMBDA { smallInverse<n>(pSrc, pDst); });
    return withMethod(
        pDCTSpec, pBuffer,
        [=](double* work, double* group) { inverseByFft(pSrc, pDst, pDCTSpec, work, group); },
        [=](double* work) { inverseDirectly(pSrc, pDst, pDCTSpec, work); },
        [=](const ChirpWork& work) { inverseByChirps(pSrc, pDst, pDCTSpec, work); });
}

}  // namespace zpp::ZPP_ISA
