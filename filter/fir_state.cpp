// Set-up, release and access of FIR filter states.
#include "filter/fir_multirate.h"

#include <limits.h>

namespace zpp::ZPP_ISA {
namespace {

// The normalisation flag of a transform whose inverse divides by the length.
constexpr int kDivideInverse = 2;

// The header of a state of `tapsLen` taps without FFT path.
template <class F>
ZppsFIRState headerOf(int tapsLen) {
    ZppsFIRState state{};
    state.id = F::kSingleRate;
    state.tapsLen = tapsLen;
    state.fftLen = -1;
    state.delayLen = tapsLen;
    return state;
}

// The areas of a state, whose transform needs a work buffer of `fftBufSize` bytes.
template <class F>
auto areasOf(int fftBufSize = 0) {
    return [=](Areas& areas, ZppsFIRState& state) {
        using Sample = typename F::Sample;
        const auto tapsLen = static_cast<uint64_t>(state.tapsLen);
        state.taps = areas.take<Sample>(tapsLen);
        state.delayBuffer = areas.take<Sample>(3 * tapsLen + 4);
        state.work = areas.take<Sample>(F::kWorkElements);
        if (state.spec == nullptr) return;
        const auto fftLen = static_cast<uint64_t>(state.fftLen);
        state.spectrum = areas.take<Sample>(fftLen);
        state.block = areas.take<Sample>(fftLen);
        state.fftBuffer = areas.take<Zpp8u>(static_cast<uint64_t>(fftBufSize));
    };
}

// The bytes that a state takes in a caller's buffer.
template <class F>
uint64_t bufferBytes(int tapsLen) {
    return objectBytes(headerOf<F>(tapsLen), kBufferAlignment, areasOf<F>()) + F::kBufferSlack;
}

template <class F>
void setContents(ZppsFIRState* state, const typename F::Sample* pTaps, const typename F::Data* pDlyLine) {
    state->directLimit = ((state->tapsLen + 3) & ~3) + 1;
    copyReversed(pTaps, tapsOf<F>(state), state->tapsLen);
    setDelayLine<F>(state, pDlyLine);
}

// Gives a header the transform of a new state, and its work buffer's size; none for short filters.
template <class F>
ZppStatus addFft(ZppsFIRState& state, int& bufSize) {
    if (state.tapsLen < F::kFftTaps) return zppStatusOk;
    int order = 2;
    while (1 << order <= state.tapsLen) ++order;
    ++order;  // at most 27, for a tapsLen whose state size is an int
    if (const ZppStatus error = F::initFft(&state.spec, order, kDivideInverse, 0)) return error;
    state.ownedSpec = state.spec;
    state.fftLen = 1 << order;
    return F::fftBufSize(state.spec, &bufSize);
}

// The spectrum of the taps, from the taps of the state.
template <class F>
ZppStatus transformTaps(ZppsFIRState* state) {
    auto* spectrum = spectrumOf<F>(state);
    copyReversed(tapsOf<F>(state), spectrum, state->tapsLen);
    zeroElements(spectrum + state->tapsLen, static_cast<size_t>(state->fftLen - state->tapsLen));
    return F::forward(spectrum, spectrum, state->spec, state->fftBuffer);
}

// From here on the state filters directly.
template <class F>
void dropFft(ZppsFIRState* state) {
    F::freeFft(state->ownedSpec);
    state->spec = state->ownedSpec = nullptr;
    state->spectrum = nullptr;
    state->fftLen = -1;
}

template <class F>
ZppStatus checkTapsLen(int tapsLen) {
    return firstError(require(tapsLen > 0, zppStatusFirLength),
                      require(tapsLen <= 0 || bufferBytes<F>(tapsLen) <= INT_MAX, zppStatusSizeError));
}

template <class F>
ZppStatus getStateSize(int tapsLen, int* pSize) {
    if (const ZppStatus error = firstError(checkPointers(pSize), checkTapsLen<F>(tapsLen))) return error;
    *pSize = static_cast<int>(bufferBytes<F>(tapsLen));
    return zppStatusOk;
}

template <class F>
ZppStatus init(ZppsFIRState** ppState, const typename F::Sample* pTaps, int tapsLen,
               const typename F::Data* pDlyLine, Zpp8u* pBuffer) {
    if (const ZppStatus error = firstError(checkPointers(ppState, pTaps, pBuffer), checkTapsLen<F>(tapsLen)))
        return error;
    *ppState = placeObject(headerOf<F>(tapsLen), kBufferAlignment, pBuffer, areasOf<F>());
    setContents<F>(*ppState, pTaps, pDlyLine);
    return zppStatusOk;
}

template <class F>
ZppStatus initAlloc(ZppsFIRState** ppState, const typename F::Sample* pTaps, int tapsLen,
                    const typename F::Data* pDlyLine) {
    if (const ZppStatus error = firstError(checkPointers(ppState, pTaps), checkTapsLen<F>(tapsLen)))
        return error;
    ZppsFIRState header = headerOf<F>(tapsLen);
    header.allocated = 1;
    int fftBufSize = 0;
    ZppStatus error = addFft<F>(header, fftBufSize);
    ZppsFIRState* state = error == zppStatusOk ? allocateObject(header, areasOf<F>(fftBufSize)) : nullptr;
    if (state != nullptr) {
        setContents<F>(state, pTaps, pDlyLine);
        if (state->spec != nullptr) error = transformTaps<F>(state);
    } else if (error == zppStatusOk) {
        error = zppStatusAllocationFailed;
    }
    if (error == zppStatusOk) {
        *ppState = state;
    } else {
        if (header.spec != nullptr) F::freeFft(header.spec);
        releaseObject(state);
    }
    return error;
}

template <class F>
ZppStatus checkState(const ZppsFIRState* pState) {
    const ZppStatus error = checkPointers(pState);
    return error != zppStatusOk ? error : checkAnyRate<F>(pState);
}

template <class F>
ZppStatus release(ZppsFIRState* pState) {
    if (const ZppStatus error = checkState<F>(pState)) return error;
    if (pState->allocated == 0) return zppStatusOk;
    if (pState->ownedSpec != nullptr) F::freeFft(pState->ownedSpec);
    releaseObject(pState);
    return zppStatusOk;
}

template <class F>
ZppStatus getTaps(const ZppsFIRState* pState, typename F::Sample* pTaps) {
    if (const ZppStatus error = firstError(checkPointers(pState, pTaps), checkState<F>(pState))) return error;
    copyReversed(tapsOf<F>(pState), pTaps, pState->tapsLen);
    return zppStatusOk;
}

template <class F>
ZppStatus setTaps(const typename F::Sample* pTaps, ZppsFIRState* pState) {
    if (const ZppStatus error = firstError(checkPointers(pState, pTaps), checkState<F>(pState))) return error;
    copyReversed(pTaps, tapsOf<F>(pState), pState->tapsLen);
    if (pState->id == F::kMultiRate) layOutTaps<F>(pState);
    if (pState->spec == nullptr) return zppStatusOk;
    const ZppStatus error = transformTaps<F>(pState);
    if (error != zppStatusOk) dropFft<F>(pState);
    return error;
}

template <class F>
ZppStatus getDelayLine(const ZppsFIRState* pState, typename F::Data* pDlyLine) {
    if (const ZppStatus error = firstError(checkPointers(pState, pDlyLine), checkState<F>(pState)))
        return error;
    copyReversed(delayBufferOf<F>(pState) + pState->delayPosition, pDlyLine, pState->delayLen);
    return zppStatusOk;
}

template <class F>
ZppStatus setDelayLineOf(ZppsFIRState* pState, const typename F::Data* pDlyLine) {
    if (const ZppStatus error = checkState<F>(pState)) return error;
    setDelayLine<F>(pState, pDlyLine);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsFIRGetStateSize_64f(int tapsLen, int* pSize) { return getStateSize<Fir64f>(tapsLen, pSize); }
ZppStatus zppsFIRGetStateSize_64fc(int tapsLen, int* pSize) { return getStateSize<Fir64fc>(tapsLen, pSize); }
ZppStatus zppsFIRGetStateSize64f_32f(int tapsLen, int* pSize) {
    return getStateSize<Fir64f32f>(tapsLen, pSize);
}
ZppStatus zppsFIRGetStateSize64fc_32fc(int tapsLen, int* pSize) {
    return getStateSize<Fir64fc32fc>(tapsLen, pSize);
}

ZppStatus zppsFIRInit_64f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, const Zpp64f* pDlyLine,
                          Zpp8u* pBuffer) {
    return init<Fir64f>(ppState, pTaps, tapsLen, pDlyLine, pBuffer);
}
ZppStatus zppsFIRInit_64fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, const Zpp64fc* pDlyLine,
                           Zpp8u* pBuffer) {
    return init<Fir64fc>(ppState, pTaps, tapsLen, pDlyLine, pBuffer);
}
ZppStatus zppsFIRInit64f_32f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, const Zpp32f* pDlyLine,
                             Zpp8u* pBuffer) {
    return init<Fir64f32f>(ppState, pTaps, tapsLen, pDlyLine, pBuffer);
}
ZppStatus zppsFIRInit64fc_32fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen,
                               const Zpp32fc* pDlyLine, Zpp8u* pBuffer) {
    return init<Fir64fc32fc>(ppState, pTaps, tapsLen, pDlyLine, pBuffer);
}

ZppStatus zppsFIRInitAlloc_64f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen,
                               const Zpp64f* pDlyLine) {
    return initAlloc<Fir64f>(ppState, pTaps, tapsLen, pDlyLine);
}
ZppStatus zppsFIRInitAlloc_64fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen,
                                const Zpp64fc* pDlyLine) {
    return initAlloc<Fir64fc>(ppState, pTaps, tapsLen, pDlyLine);
}
ZppStatus zppsFIRInitAlloc64f_32f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen,
                                  const Zpp32f* pDlyLine) {
    return initAlloc<Fir64f32f>(ppState, pTaps, tapsLen, pDlyLine);
}
ZppStatus zppsFIRInitAlloc64fc_32fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen,
                                    const Zpp32fc* pDlyLine) {
    return initAlloc<Fir64fc32fc>(ppState, pTaps, tapsLen, pDlyLine);
}

ZppStatus zppsFIRFree_64f(ZppsFIRState* pState) { return release<Fir64f>(pState); }
ZppStatus zppsFIRFree_64fc(ZppsFIRState* pState) { return release<Fir64fc>(pState); }
ZppStatus zppsFIRFree64f_32f(ZppsFIRState* pState) { return release<Fir64f32f>(pState); }
ZppStatus zppsFIRFree64fc_32fc(ZppsFIRState* pState) { return release<Fir64fc32fc>(pState); }

ZppStatus zppsFIRGetTaps_64f(const ZppsFIRState* pState, Zpp64f* pTaps) {
    return getTaps<Fir64f>(pState, pTaps);
}
ZppStatus zppsFIRGetTaps_64fc(const ZppsFIRState* pState, Zpp64fc* pTaps) {
    return getTaps<Fir64fc>(pState, pTaps);
}
ZppStatus zppsFIRGetTaps64f_32f(const ZppsFIRState* pState, Zpp64f* pTaps) {
    return getTaps<Fir64f32f>(pState, pTaps);
}
ZppStatus zppsFIRGetTaps64fc_32fc(const ZppsFIRState* pState, Zpp64fc* pTaps) {
    return getTaps<Fir64fc32fc>(pState, pTaps);
}

ZppStatus zppsFIRSetTaps_64f(const Zpp64f* pTaps, ZppsFIRState* pState) {
    return setTaps<Fir64f>(pTaps, pState);
}
ZppStatus zppsFIRSetTaps_64fc(const Zpp64fc* pTaps, ZppsFIRState* pState) {
    return setTaps<Fir64fc>(pTaps, pState);
}
ZppStatus zppsFIRSetTaps64f_32f(const Zpp64f* pTaps, ZppsFIRState* pState) {
    return setTaps<Fir64f32f>(pTaps, pState);
}
ZppStatus zppsFIRSetTaps64fc_32fc(const Zpp64fc* pTaps, ZppsFIRState* pState) {
    return setTaps<Fir64fc32fc>(pTaps, pState);
}

ZppStatus zppsFIRGetDlyLine_64f(const ZppsFIRState* pState, Zpp64f* pDlyLine) {
    return getDelayLine<Fir64f>(pState, pDlyLine);
}
ZppStatus zppsFIRGetDlyLine_64fc(const ZppsFIRState* pState, Zpp64fc* pDlyLine) {
    return getDelayLine<Fir64fc>(pState, pDlyLine);
}
ZppStatus zppsFIRGetDlyLine64f_32f(const ZppsFIRState* pState, Zpp32f* pDlyLine) {
    return getDelayLine<Fir64f32f>(pState, pDlyLine);
}
ZppStatus zppsFIRGetDlyLine64fc_32fc(const ZppsFIRState* pState, Zpp32fc* pDlyLine) {
    return getDelayLine<Fir64fc32fc>(pState, pDlyLine);
}

ZppStatus zppsFIRSetDlyLine_64f(ZppsFIRState* pState, const Zpp64f* pDlyLine) {
    return setDelayLineOf<Fir64f>(pState, pDlyLine);
}
ZppStatus zppsFIRSetDlyLine_64fc(ZppsFIRState* pState, const Zpp64fc* pDlyLine) {
    return setDelayLineOf<Fir64fc>(pState, pDlyLine);
}
ZppStatus zppsFIRSetDlyLine64f_32f(ZppsFIRState* pState, const Zpp32f* pDlyLine) {
    return setDelayLineOf<Fir64f32f>(pState, pDlyLine);
}
ZppStatus zppsFIRSetDlyLine64fc_32fc(ZppsFIRState* pState, const Zpp32fc* pDlyLine) {
    return setDelayLineOf<Fir64fc32fc>(pState, pDlyLine);
}

}  // namespace zpp::ZPP_ISA
