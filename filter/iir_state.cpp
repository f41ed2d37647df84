// Set-up, release and access of IIR filter states.
#include "filter/iir_state.h"

#include <limits.h>

namespace zpp::ZPP_ISA {
namespace {

// The header of a state of this order or, a cascade, of so many sections.
template <class I, IirShape shape>
ZppsIIRState headerOf(int order) {
    ZppsIIRState state{};
    const bool cascade = shape == IirShape::kCascade;
    state.id = cascade ? I::kCascade : I::kArbitrary;
    // The number of delays of a cascade that is too long for a state may wrap around here.
    state.delayLen = static_cast<int32_t>(static_cast<uint32_t>(order) * (cascade ? kSectionDelays : 1U));
    state.sections = cascade ? order : 0;
    return state;
}

template <class I>
void layOut(Areas& areas, ZppsIIRState& state) {
    using Sample = typename I::Sample;
    const auto sections = static_cast<uint64_t>(state.sections);
    const auto order = static_cast<uint64_t>(state.delayLen);
    const bool cascade = sections > 0;
    state.taps = areas.take<Sample>(cascade ? kSectionTaps * sections : 2 * order + 1);
    state.delayLine = areas.take<Sample>(cascade ? kSectionDelays * sections : order + 1);
}

// The bytes that a state takes in a caller's buffer.
template <class I, IirShape shape>
uint64_t bufferBytes(int order) {
    constexpr size_t slack = shape == IirShape::kCascade ? I::kCascadeSlack : 16;
    return objectBytes(headerOf<I, shape>(order), kBufferAlignment, layOut<I>) + slack;
}

template <class I, IirShape shape>
ZppStatus checkOrder(int order) {
    if (order < (shape == IirShape::kCascade ? 1 : 0)) return zppStatusIirOrder;
    return require(bufferBytes<I, shape>(order) <= INT_MAX, zppStatusSizeError);
}

bool isNan(double x) { return x != x; }

// Whether nothing can be divided by a: it is zero, or a NaN in either part.
bool isRefused(Zpp64f a) { return isZero(a); }
bool isRefused(Zpp64fc a) { return (isZero(a.re) && isZero(a.im)) || isNan(a.re) || isNan(a.im); }

Zpp64f inverse(Zpp64f a) { return quotient(1.0, a); }

// 1 / a by the quotient of the smaller part and the larger one (Smith, "Algorithm 116", 1962), of an `a` that
// is brought to a middling exponent before, so that nothing overflows or is lost on the way.
Zpp64fc inverse(Zpp64fc a) {
    const double larger = max(magnitude(a.re), magnitude(a.im));
    const double scale = larger > 0x1p500 ? 0x1p-600 : larger < 0x1p-500 ? 0x1p600 : 1;
    const double re = product(a.re, scale), im = product(a.im, scale);
    if (magnitude(re) >= magnitude(im)) {
        const double ratio = quotient(im, re), k = quotient(scale, stored(re + product(im, ratio)));
        return {k, -product(k, ratio)};
    }
    const double ratio = quotient(re, im), k = quotient(scale, stored(im + product(re, ratio)));
    return {product(k, ratio), -k};
}

Zpp64f scaled(Zpp64f a, Zpp64f k) { return product(a, k); }
Zpp64fc scaled(Zpp64fc a, Zpp64fc k) {
    const auto p = product(Complex<double>{a.re, a.im}, Complex<double>{k.re, k.im});
    return {p.re, p.im};
}

// B(0) .. B(order), A(1) .. A(order) from b(0) .. b(order) and a(0) .. a(order).
template <class T>
void storeTaps(const T* b, const T* a, size_t order, T* taps) {
    const T k = inverse(a[0]);
    for (size_t i = 0; i <= order; ++i) taps[i] = scaled(b[i], k);
    for (size_t i = 1; i <= order; ++i) taps[order + i] = scaled(a[i], k);
}

// The taps of a filter of arbitrary order, or of the sections before one that is refused.
template <class I>
ZppStatus storeTaps(const ZppsIIRState* state, const typename I::Sample* pTaps) {
    const DoublePrecision precision;
    const SubnormalsKept subnormals;
    auto* taps = tapsOf<I>(state);
    if (state->sections == 0) {
        const size_t order = static_cast<size_t>(state->delayLen);
        if (isRefused(pTaps[order + 1])) return zppStatusDivideByZeroError;
        storeTaps(pTaps, pTaps + order + 1, order, taps);
        return zppStatusOk;
    }
    for (int i = 0; i < state->sections; ++i, pTaps += 6, taps += kSectionTaps) {
        if (isRefused(pTaps[3]) || isRefused(pTaps[0])) return zppStatusDivideByZeroError;
        storeTaps(pTaps, pTaps + 3, size_t{2}, taps);
    }
    return zppStatusOk;
}

template <class I>
void setDelayLine(ZppsIIRState* state, const typename I::Sample* pDlyLine) {
    const auto len = static_cast<size_t>(state->delayLen);
    auto* line = delayLineOf<I>(state);
    if (pDlyLine == nullptr)
        zeroElements(line, len);
    else
        moveElements(pDlyLine, line, len);
}

template <class I>
ZppStatus setContents(ZppsIIRState* state, const typename I::Sample* pTaps,
                      const typename I::Sample* pDlyLine) {
    setDelayLine<I>(state, pDlyLine);
    if (state->sections == 0) zeroElements(delayLineOf<I>(state) + state->delayLen, 1);
    return storeTaps<I>(state, pTaps);
}

template <class I, IirShape shape>
ZppStatus getStateSize(int order, int* pSize) {
    if (const ZppStatus error = firstError(checkPointers(pSize), checkOrder<I, shape>(order))) return error;
    *pSize = static_cast<int>(bufferBytes<I, shape>(order));
    return zppStatusOk;
}

template <class I, IirShape shape>
ZppStatus init(ZppsIIRState** ppState, const typename I::Sample* pTaps, int order,
               const typename I::Sample* pDlyLine, Zpp8u* pBuffer) {
    if (const ZppStatus error =
            firstError(checkPointers(ppState, pTaps, pBuffer), checkOrder<I, shape>(order)))
        return error;
    ZppsIIRState* state = placeObject(headerOf<I, shape>(order), kBufferAlignment, pBuffer, layOut<I>);
    const ZppStatus status = setContents<I>(state, pTaps, pDlyLine);
    if (status == zppStatusOk) *ppState = state;
    return status;
}

template <class I, IirShape shape>
ZppStatus initAlloc(ZppsIIRState** ppState, const typename I::Sample* pTaps, int order,
                    const typename I::Sample* pDlyLine) {
    if (const ZppStatus error = firstError(checkPointers(ppState, pTaps), checkOrder<I, shape>(order)))
        return error;
    ZppsIIRState header = headerOf<I, shape>(order);
    header.allocated = 1;
    ZppsIIRState* state = allocateObject(header, layOut<I>);
    if (state == nullptr) return zppStatusAllocationFailed;
    const ZppStatus status = setContents<I>(state, pTaps, pDlyLine);
    if (status == zppStatusOk)
        *ppState = state;
    else
        releaseObject(state);
    return status;
}

template <class I>
ZppStatus checkState(const ZppsIIRState* pState) {
    const ZppStatus error = checkPointers(pState);
    return error != zppStatusOk ? error : checkPair<I>(pState);
}

template <class I>
ZppStatus release(ZppsIIRState* pState) {
    if (const ZppStatus error = checkState<I>(pState)) return error;
    if (pState->allocated != 0) releaseObject(pState);
    return zppStatusOk;
}

template <class I>
ZppStatus setTaps(const typename I::Sample* pTaps, ZppsIIRState* pState) {
    if (const ZppStatus error = checkPointers(pState, pTaps)) return error;
    const ZppStatus error = checkPair<I>(pState);
    return error != zppStatusOk ? error : storeTaps<I>(pState, pTaps);
}

template <class I>
ZppStatus getDelayLine(const ZppsIIRState* pState, typename I::Sample* pDlyLine) {
    if (const ZppStatus error = checkPointers(pState, pDlyLine)) return error;
    if (const ZppStatus error = checkPair<I>(pState)) return error;
    moveElements(delayLineOf<I>(pState), pDlyLine, static_cast<size_t>(pState->delayLen));
    return zppStatusOk;
}

template <class I>
ZppStatus setDelayLineOf(ZppsIIRState* pState, const typename I::Sample* pDlyLine) {
    if (const ZppStatus error = checkState<I>(pState)) return error;
    setDelayLine<I>(pState, pDlyLine);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsIIRGetStateSize_64f(int order, int* pSize) {
    return getStateSize<Iir64f, IirShape::kArbitrary>(order, pSize);
}
ZppStatus zppsIIRGetStateSize_64fc(int order, int* pSize) {
    return getStateSize<Iir64fc, IirShape::kArbitrary>(order, pSize);
}
ZppStatus zppsIIRGetStateSize64f_32f(int order, int* pSize) {
    return getStateSize<Iir64f32f, IirShape::kArbitrary>(order, pSize);
}
ZppStatus zppsIIRGetStateSize64fc_32fc(int order, int* pSize) {
    return getStateSize<Iir64fc32fc, IirShape::kArbitrary>(order, pSize);
}

ZppStatus zppsIIRGetStateSize_BiQuad_64f(int numBq, int* pSize) {
    return getStateSize<Iir64f, IirShape::kCascade>(numBq, pSize);
}
ZppStatus zppsIIRGetStateSize_BiQuad_64fc(int numBq, int* pSize) {
    return getStateSize<Iir64fc, IirShape::kCascade>(numBq, pSize);
}
ZppStatus zppsIIRGetStateSize64f_BiQuad_32f(int numBq, int* pSize) {
    return getStateSize<Iir64f32f, IirShape::kCascade>(numBq, pSize);
}
ZppStatus zppsIIRGetStateSize64fc_BiQuad_32fc(int numBq, int* pSize) {
    return getStateSize<Iir64fc32fc, IirShape::kCascade>(numBq, pSize);
}

ZppStatus zppsIIRInit_64f(ZppsIIRState** ppState, const Zpp64f* pTaps, int order, const Zpp64f* pDlyLine,
                          Zpp8u* pBuffer) {
    return init<Iir64f, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine, pBuffer);
}
ZppStatus zppsIIRInit_64fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int order, const Zpp64fc* pDlyLine,
                           Zpp8u* pBuffer) {
    return init<Iir64fc, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine, pBuffer);
}
ZppStatus zppsIIRInit64f_32f(ZppsIIRState** ppState, const Zpp64f* pTaps, int order, const Zpp64f* pDlyLine,
                             Zpp8u* pBuffer) {
    return init<Iir64f32f, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine, pBuffer);
}
ZppStatus zppsIIRInit64fc_32fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int order,
                               const Zpp64fc* pDlyLine, Zpp8u* pBuffer) {
    return init<Iir64fc32fc, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine, pBuffer);
}

ZppStatus zppsIIRInit_BiQuad_64f(ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq,
                                 const Zpp64f* pDlyLine, Zpp8u* pBuffer) {
    return init<Iir64f, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine, pBuffer);
}
ZppStatus zppsIIRInit_BiQuad_64fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq,
                                  const Zpp64fc* pDlyLine, Zpp8u* pBuffer) {
    return init<Iir64fc, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine, pBuffer);
}
ZppStatus zppsIIRInit64f_BiQuad_32f(ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq,
                                    const Zpp64f* pDlyLine, Zpp8u* pBuffer) {
    return init<Iir64f32f, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine, pBuffer);
}
ZppStatus zppsIIRInit64fc_BiQuad_32fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq,
                                      const Zpp64fc* pDlyLine, Zpp8u* pBuffer) {
    return init<Iir64fc32fc, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine, pBuffer);
}

ZppStatus zppsIIRInitAlloc_64f(ZppsIIRState** ppState, const Zpp64f* pTaps, int order,
                               const Zpp64f* pDlyLine) {
    return initAlloc<Iir64f, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine);
}
ZppStatus zppsIIRInitAlloc_64fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int order,
                                const Zpp64fc* pDlyLine) {
    return initAlloc<Iir64fc, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine);
}
ZppStatus zppsIIRInitAlloc64f_32f(ZppsIIRState** ppState, const Zpp64f* pTaps, int order,
                                  const Zpp64f* pDlyLine) {
    return initAlloc<Iir64f32f, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine);
}
ZppStatus zppsIIRInitAlloc64fc_32fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int order,
                                    const Zpp64fc* pDlyLine) {
    return initAlloc<Iir64fc32fc, IirShape::kArbitrary>(ppState, pTaps, order, pDlyLine);
}

ZppStatus zppsIIRInitAlloc_BiQuad_64f(ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq,
                                      const Zpp64f* pDlyLine) {
    return initAlloc<Iir64f, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine);
}
ZppStatus zppsIIRInitAlloc_BiQuad_64fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq,
                                       const Zpp64fc* pDlyLine) {
    return initAlloc<Iir64fc, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine);
}
ZppStatus zppsIIRInitAlloc64f_BiQuad_32f(ZppsIIRState** ppState, const Zpp64f* pTaps, int numBq,
                                         const Zpp64f* pDlyLine) {
    return initAlloc<Iir64f32f, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine);
}
ZppStatus zppsIIRInitAlloc64fc_BiQuad_32fc(ZppsIIRState** ppState, const Zpp64fc* pTaps, int numBq,
                                           const Zpp64fc* pDlyLine) {
    return initAlloc<Iir64fc32fc, IirShape::kCascade>(ppState, pTaps, numBq, pDlyLine);
}

ZppStatus zppsIIRFree_64f(ZppsIIRState* pState) { return release<Iir64f>(pState); }
ZppStatus zppsIIRFree_64fc(ZppsIIRState* pState) { return release<Iir64fc>(pState); }
ZppStatus zppsIIRFree64f_32f(ZppsIIRState* pState) { return release<Iir64f32f>(pState); }
ZppStatus zppsIIRFree64fc_32fc(ZppsIIRState* pState) { return release<Iir64fc32fc>(pState); }

ZppStatus zppsIIRSetTaps_64f(const Zpp64f* pTaps, ZppsIIRState* pState) {
    return setTaps<Iir64f>(pTaps, pState);
}
ZppStatus zppsIIRSetTaps_64fc(const Zpp64fc* pTaps, ZppsIIRState* pState) {
    return setTaps<Iir64fc>(pTaps, pState);
}
ZppStatus zppsIIRSetTaps64f_32f(const Zpp64f* pTaps, ZppsIIRState* pState) {
    return setTaps<Iir64f32f>(pTaps, pState);
}
ZppStatus zppsIIRSetTaps64fc_32fc(const Zpp64fc* pTaps, ZppsIIRState* pState) {
    return setTaps<Iir64fc32fc>(pTaps, pState);
}

ZppStatus zppsIIRGetDlyLine_64f(const ZppsIIRState* pState, Zpp64f* pDlyLine) {
    return getDelayLine<Iir64f>(pState, pDlyLine);
}
ZppStatus zppsIIRGetDlyLine_64fc(const ZppsIIRState* pState, Zpp64fc* pDlyLine) {
    return getDelayLine<Iir64fc>(pState, pDlyLine);
}
ZppStatus zppsIIRGetDlyLine64f_32f(const ZppsIIRState* pState, Zpp64f* pDlyLine) {
    return getDelayLine<Iir64f32f>(pState, pDlyLine);
}
ZppStatus zppsIIRGetDlyLine64fc_32fc(const ZppsIIRState* pState, Zpp64fc* pDlyLine) {
    return getDelayLine<Iir64fc32fc>(pState, pDlyLine);
}

ZppStatus zppsIIRSetDlyLine_64f(ZppsIIRState* pState, const Zpp64f* pDlyLine) {
    return setDelayLineOf<Iir64f>(pState, pDlyLine);
}
ZppStatus zppsIIRSetDlyLine_64fc(ZppsIIRState* pState, const Zpp64fc* pDlyLine) {
    return setDelayLineOf<Iir64fc>(pState, pDlyLine);
}
ZppStatus zppsIIRSetDlyLine64f_32f(ZppsIIRState* pState, const Zpp64f* pDlyLine) {
    return setDelayLineOf<Iir64f32f>(pState, pDlyLine);
}
ZppStatus zppsIIRSetDlyLine64fc_32fc(ZppsIIRState* pState, const Zpp64fc* pDlyLine) {
    return setDelayLineOf<Iir64fc32fc>(pState, pDlyLine);
}
}  // namespace zpp::ZPP_ISA
