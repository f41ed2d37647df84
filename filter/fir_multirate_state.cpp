// Set-up of multi-rate FIR filter states.
#include <limits.h>

#include "filter/fir_multirate.h"
#include "filter/fir_multirate_kernel.h"

namespace zpp::ZPP_ISA {
namespace {

bool isSingleRate(const MultiRateNumbers& n) { return n.up == 1 && n.down == 1; }

template <class F>
ZppsFIRState headerOf(const MultiRateNumbers& n) {
    ZppsFIRState state{};
    state.id = F::kMultiRate;
    state.tapsLen = n.tapsLen;
    state.fftLen = -1;
    state.delayLen = (n.tapsLen - 1) / n.up + 1;
    state.up = n.up;
    state.upPhase = n.upPhase;
    state.down = n.down;
    state.downPhase = n.downPhase;
    return state;
}

// In front of the delay line there are always rows: a row may be longer than the line. No size depends on the
// phases, which are not known when a size is asked for.
template <class F>
void layOut(Areas& areas, ZppsFIRState& state) {
    using Sample = typename F::Sample;
    const Phases phases(ratesOf(&state));
    state.taps = areas.take<Sample>(static_cast<uint64_t>(state.tapsLen));
    state.phases = areas.take<Phases>(1);
    state.rows = areas.take<Sample>((uint64_t{phases.mostRows} + 1) * phases.rowLen<Sample>());
    state.delayBuffer = areas.take<Sample>(uint64_t{phases.window} + kMultiRateChunk);
    state.work = areas.take<Sample>(kMultiRateChunk);
}

template <class F>
uint64_t bufferBytes(const MultiRateNumbers& n) {
    return objectBytes(headerOf<F>(n), kBufferAlignment, layOut<F>) + F::kBufferSlack;
}

template <class F>
ZppStatus checkSize(const MultiRateNumbers& n) {
    return require(bufferBytes<F>(n) <= INT_MAX, zppStatusSizeError);
}

template <class F>
void setContents(ZppsFIRState* state, const typename F::Sample* pTaps, const typename F::Data* pDlyLine) {
    const Phases phases(ratesOf(state));
    memcpy(state->phases, &phases, sizeof phases);
    copyReversed(pTaps, tapsOf<F>(state), state->tapsLen);
    layOutTaps<F>(state);
    setDelayLine<F>(state, pDlyLine);
}

template <class F, class GetSingleRate>
ZppStatus getStateSize(GetSingleRate getSingleRate, const MultiRateNumbers& n, int* pSize) {
    if (const ZppStatus error = firstError(checkPointers(pSize), check(n))) return error;
    if (isSingleRate(n)) return getSingleRate(n.tapsLen, pSize);
    if (const ZppStatus error = checkSize<F>(n)) return error;
    *pSize = static_cast<int>(bufferBytes<F>(n));
    return zppStatusOk;
}

template <class F, class InitSingleRate>
ZppStatus init(InitSingleRate initSingleRate, ZppsFIRState** ppState, const typename F::Sample* pTaps,
               const MultiRateNumbers& n, const typename F::Data* pDlyLine, Zpp8u* pBuffer) {
    if (const ZppStatus error = firstError(checkPointers(ppState, pTaps, pBuffer), check(n))) return error;
    if (isSingleRate(n)) return initSingleRate(ppState, pTaps, n.tapsLen, pDlyLine, pBuffer);
    if (const ZppStatus error = checkSize<F>(n)) return error;
    *ppState = placeObject(headerOf<F>(n), kBufferAlignment, pBuffer, layOut<F>);
    setContents<F>(*ppState, pTaps, pDlyLine);
    return zppStatusOk;
}

template <class F, class InitSingleRate>
ZppStatus initAlloc(InitSingleRate initSingleRate, ZppsFIRState** ppState, const typename F::Sample* pTaps,
                    const MultiRateNumbers& n, const typename F::Data* pDlyLine) {
    if (const ZppStatus error = firstError(checkPointers(ppState, pTaps), check(n))) return error;
    if (isSingleRate(n)) return initSingleRate(ppState, pTaps, n.tapsLen, pDlyLine);
    if (const ZppStatus error = checkSize<F>(n)) return error;
    ZppsFIRState header = headerOf<F>(n);
    header.allocated = 1;
    ZppsFIRState* state = allocateObject(header, layOut<F>);
    if (state == nullptr) return zppStatusAllocationFailed;
    setContents<F>(state, pTaps, pDlyLine);
    *ppState = state;
    return zppStatusOk;
}

}  // namespace

template <class F>
void layOutTaps(ZppsFIRState* state) {
    const auto* last = tapsOf<F>(state) + (state->tapsLen - 1);
    layOutRows(
        phasesOf(state), ratesOf(state), [=](size_t k) { return last - k; }, rowsOf<F>(state));
}
template void layOutTaps<Fir64f>(ZppsFIRState*);
template void layOutTaps<Fir64fc>(ZppsFIRState*);
template void layOutTaps<Fir64f32f>(ZppsFIRState*);
template void layOutTaps<Fir64fc32fc>(ZppsFIRState*);

ZppStatus zppsFIRMRGetStateSize_64f(int tapsLen, int upFactor, int downFactor, int* pSize) {
    return getStateSize<Fir64f>(zppsFIRGetStateSize_64f, {tapsLen, upFactor, 0, downFactor, 0}, pSize);
}
ZppStatus zppsFIRMRGetStateSize_64fc(int tapsLen, int upFactor, int downFactor, int* pSize) {
    return getStateSize<Fir64fc>(zppsFIRGetStateSize_64fc, {tapsLen, upFactor, 0, downFactor, 0}, pSize);
}
ZppStatus zppsFIRMRGetStateSize64f_32f(int tapsLen, int upFactor, int downFactor, int* pSize) {
    return getStateSize<Fir64f32f>(zppsFIRGetStateSize64f_32f, {tapsLen, upFactor, 0, downFactor, 0}, pSize);
}
ZppStatus zppsFIRMRGetStateSize64fc_32fc(int tapsLen, int upFactor, int downFactor, int* pSize) {
    return getStateSize<Fir64fc32fc>(zppsFIRGetStateSize64fc_32fc, {tapsLen, upFactor, 0, downFactor, 0},
                                     pSize);
}

ZppStatus zppsFIRMRInit_64f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor,
                            int upPhase, int downFactor, int downPhase, const Zpp64f* pDlyLine,
                            Zpp8u* pBuffer) {
    return init<Fir64f>(zppsFIRInit_64f, ppState, pTaps, {tapsLen, upFactor, upPhase, downFactor, downPhase},
                        pDlyLine, pBuffer);
}
ZppStatus zppsFIRMRInit_64fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor,
                             int upPhase, int downFactor, int downPhase, const Zpp64fc* pDlyLine,
                             Zpp8u* pBuffer) {
    return init<Fir64fc>(zppsFIRInit_64fc, ppState, pTaps,
                         {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine, pBuffer);
}
ZppStatus zppsFIRMRInit64f_32f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor,
                               int upPhase, int downFactor, int downPhase, const Zpp32f* pDlyLine,
                               Zpp8u* pBuffer) {
    return init<Fir64f32f>(zppsFIRInit64f_32f, ppState, pTaps,
                           {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine, pBuffer);
}
ZppStatus zppsFIRMRInit64fc_32fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zpp32fc* pDlyLine,
                                 Zpp8u* pBuffer) {
    return init<Fir64fc32fc>(zppsFIRInit64fc_32fc, ppState, pTaps,
                             {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine, pBuffer);
}

ZppStatus zppsFIRMRInitAlloc_64f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zpp64f* pDlyLine) {
    return initAlloc<Fir64f>(zppsFIRInitAlloc_64f, ppState, pTaps,
                             {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine);
}
ZppStatus zppsFIRMRInitAlloc_64fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, const Zpp64fc* pDlyLine) {
    return initAlloc<Fir64fc>(zppsFIRInitAlloc_64fc, ppState, pTaps,
                              {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine);
}
ZppStatus zppsFIRMRInitAlloc64f_32f(ZppsFIRState** ppState, const Zpp64f* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, const Zpp32f* pDlyLine) {
    return initAlloc<Fir64f32f>(zppsFIRInitAlloc64f_32f, ppState, pTaps,
                                {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine);
}
ZppStatus zppsFIRMRInitAlloc64fc_32fc(ZppsFIRState** ppState, const Zpp64fc* pTaps, int tapsLen, int upFactor,
                                      int upPhase, int downFactor, int downPhase, const Zpp32fc* pDlyLine) {
    return initAlloc<Fir64fc32fc>(zppsFIRInitAlloc64fc_32fc, ppState, pTaps,
                                  {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine);
}

}  // namespace zpp::ZPP_ISA
