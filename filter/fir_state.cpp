// Set-up, release and access of FIR filter states.
#include "filter/fir_state.h"

#include <limits.h>

#include "frame/memory.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr size_t kStateAlignment = 16;
constexpr size_t kFftAlignment = 64;
// The normalisation flag of a transform whose inverse divides by the length.
constexpr int kDivideInverse = 2;

constexpr uint64_t alignUp(uint64_t bytes, uint64_t alignment) {
    return (bytes + alignment - 1) / alignment * alignment;
}

// Sizes of the areas, which are multiples of 16 bytes.
template <class F>
uint64_t areaBytes(uint64_t elements) {
    return alignUp(elements * sizeof(typename F::Sample), kStateAlignment);
}
uint64_t delayElements(int tapsLen) { return 3 * static_cast<uint64_t>(tapsLen) + 4; }

template <class F>
uint64_t stateBytes(int tapsLen) {
    return sizeof(ZppsFIRState) + areaBytes<F>(static_cast<uint64_t>(tapsLen)) +
           areaBytes<F>(delayElements(tapsLen)) + areaBytes<F>(kWorkElements);
}

template <class F>
uint64_t bufferBytes(int tapsLen) {
    return stateBytes<F>(tapsLen) + F::kBufferSlack;
}

// Hands out the areas of a block, one after the other.
class Areas {
  public:
    explicit Areas(void* block) : next_(static_cast<Zpp8u*>(block)) {}

    Zpp8u* take(uint64_t bytes) {
        Zpp8u* area = next_;
        next_ += bytes;
        return area;
    }
    void align(uintptr_t alignment) { next_ += -reinterpret_cast<uintptr_t>(next_) & (alignment - 1); }

  private:
    Zpp8u* next_;
};

// To the caller taps and delay line are the other way round than in the state.
template <class To, class From>
void copyReversed(const From* src, To* dst, int len) {
    for (ptrdiff_t i = 0; i < len; ++i) convertElement(src[len - 1 - i], dst[i]);
}

template <class F>
void setDelayLine(ZppsFIRState* state, const typename F::Data* pDlyLine) {
    state->delayPosition = 0;
    if (pDlyLine == nullptr)
        zeroElements(delayBufferOf<F>(state), static_cast<size_t>(state->delayLen));
    else
        copyReversed(pDlyLine, delayBufferOf<F>(state), state->delayLen);
}

// A state without FFT path at the start of `areas`.
template <class F>
ZppsFIRState* build(Areas& areas, const typename F::Sample* pTaps, int tapsLen,
                    const typename F::Data* pDlyLine) {
    auto* state = reinterpret_cast<ZppsFIRState*>(areas.take(sizeof(ZppsFIRState)));
    zeroElements(state, 1);
    state->id = F::kSingleRate;
    state->tapsLen = tapsLen;
    state->directLimit = ((tapsLen + 3) & ~3) + 1;
    state->fftLen = -1;
    state->delayLen = tapsLen;
    state->taps = areas.take(areaBytes<F>(static_cast<uint64_t>(tapsLen)));
    state->delayBuffer = areas.take(areaBytes<F>(delayElements(tapsLen)));
    state->work = areas.take(areaBytes<F>(kWorkElements));
    copyReversed(pTaps, tapsOf<F>(state), tapsLen);
    setDelayLine<F>(state, pDlyLine);
    return state;
}

// The transform of a new state: none for short filters.
struct Fft {
    ZppsFFTSpec* spec = nullptr;
    int len = 0;
    int bufSize = 0;

    template <class F>
    ZppStatus init(int tapsLen) {
        if (tapsLen < F::kFftTaps) return zppStatusOk;
        int order = 2;
        while (1 << order <= tapsLen) ++order;
        ++order;  // at most 27, for a tapsLen whose state size is an int
        if (const ZppStatus error = F::initFft(&spec, order, kDivideInverse, 0)) return error;
        len = 1 << order;
        const ZppStatus error = F::fftBufSize(spec, &bufSize);
        if (error != zppStatusOk) F::freeFft(spec);
        return error;
    }

    template <class F>
    uint64_t bytes() const {
        if (spec == nullptr) return 0;
        const uint64_t spectrum = areaBytes<F>(static_cast<uint64_t>(len));
        return kFftAlignment + alignUp(static_cast<uint64_t>(bufSize), kFftAlignment) + 2 * spectrum;
    }
};

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
ZppStatus addFft(ZppsFIRState* state, const Fft& fft, Areas& areas) {
    const uint64_t blockBytes = areaBytes<F>(static_cast<uint64_t>(fft.len));
    state->spec = state->ownedSpec = fft.spec;
    state->fftLen = fft.len;
    areas.align(kFftAlignment);
    state->spectrum = areas.take(blockBytes);
    state->block = areas.take(blockBytes);
    if (fft.bufSize > 0) state->fftBuffer = areas.take(static_cast<uint64_t>(fft.bufSize));
    return transformTaps<F>(state);
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
    Areas areas(pBuffer);
    areas.align(kStateAlignment);
    *ppState = build<F>(areas, pTaps, tapsLen, pDlyLine);
    return zppStatusOk;
}

template <class F>
ZppStatus initAlloc(ZppsFIRState** ppState, const typename F::Sample* pTaps, int tapsLen,
                    const typename F::Data* pDlyLine) {
    if (const ZppStatus error = firstError(checkPointers(ppState, pTaps), checkTapsLen<F>(tapsLen)))
        return error;
    Fft fft;
    if (const ZppStatus error = fft.init<F>(tapsLen)) return error;
    const uint64_t bytes = stateBytes<F>(tapsLen) + fft.bytes<F>();
    void* block = bytes <= PTRDIFF_MAX ? allocateAligned(static_cast<size_t>(bytes)) : nullptr;
    if (block == nullptr) {
        if (fft.spec != nullptr) F::freeFft(fft.spec);
        return zppStatusAllocationFailed;
    }
    Areas areas(block);
    ZppsFIRState* state = build<F>(areas, pTaps, tapsLen, pDlyLine);
    state->allocated = 1;
    if (fft.spec != nullptr) {
        if (const ZppStatus error = addFft<F>(state, fft, areas)) {
            F::freeFft(fft.spec);
            freeAligned(block);
            return error;
        }
    }
    *ppState = state;
    return zppStatusOk;
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
    pState->id = 0;
    freeAligned(pState);
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
