// FIR filtering of blocks and single samples with a state.
#include "filter/fir_kernel.h"
#include "filter/fir_multirate.h"

namespace zpp::ZPP_ISA {
namespace {

// Elements of a chunk in the work area: what it and its outputs take fits the first-level cache.
constexpr size_t kChunk = 1024;
static_assert(kChunk <= Fir64f::kWorkElements && kChunk <= Fir64fc::kWorkElements);

template <class F>
inline auto tapRowOf(const ZppsFIRState* state) {
    return TapRow<typename F::Sample, false>{tapsOf<F>(state)};
}

// The delay line, moved to the start of the delay buffer.
template <class F>
typename F::Sample* startDelayLine(ZppsFIRState* state) {
    auto* line = delayBufferOf<F>(state);
    moveElements(line + state->delayPosition, line, static_cast<size_t>(state->delayLen));
    state->delayPosition = 0;
    return line;
}

// Filters n samples without the FFT. The outputs whose windows begin in the delay line are computed from the
// delay buffer, to which the first samples are appended; the others from the source, in descending order: so
// the filter may work in place.
template <class F, class Sample = typename F::Sample>
void filterDirectly(ZppsFIRState* state, const Sample* src, Sample* dst, size_t n) {
    const size_t len = static_cast<size_t>(state->tapsLen);
    const size_t limit = static_cast<size_t>(state->directLimit);
    const size_t head = n < limit ? n : limit;
    const auto taps = tapRowOf<F>(state);
    Sample* line = startDelayLine<F>(state);
    Sample* newest = line + head;
    copyElements(src, line + len, head);
    if (n > head) {
        newest = line + 2 * len + 4;  // behind the head: in place, outputs are about to overwrite the source
        copyElements(src + n - len, newest, len);
        filterWindows(taps, len, src + head + 1 - len, dst + head, n - head);
    }
    filterWindows(taps, len, line + 1, dst, head);
    moveElements(newest, line, len);
}

// Signals of another precision pass through the work area.
template <class F>
ZppStatus filterBlock(ZppsFIRState* state, const typename F::Data* src, typename F::Data* dst, size_t n) {
    using Sample = typename F::Sample;
    if constexpr (std::is_same_v<typename F::Data, Sample>) {
        filterDirectly<F>(state, src, dst, n);
    } else {
        auto* work = static_cast<Sample*>(state->work);
        for (size_t done = 0; done < n; done += kChunk) {
            const size_t count = n - done < kChunk ? n - done : kChunk;
            convertElements(src + done, work, count);
            filterDirectly<F>(state, work, work, count);
            convertElements(work, dst + done, count);
        }
    }
    return zppStatusOk;
}

// The cyclic convolution of the taps with fftLen samples.
template <class F>
ZppStatus convolveBlock(const ZppsFIRState* state, typename F::Sample* block) {
    if (const ZppStatus error = F::forward(block, block, state->spec, state->fftBuffer)) return error;
    if (const ZppStatus error = F::multiply(spectrumOf<F>(state), block, state->fftLen)) return error;
    return F::inverse(block, block, state->spec, state->fftBuffer);
}

// Overlap-save: of the cyclic convolution of the taps with tapsLen-1 old and up to fftLen-(tapsLen-1) new
// samples, the outputs at the places of the new ones are those of the filter.
template <class F>
ZppStatus filterByFft(ZppsFIRState* state, const typename F::Data* src, typename F::Data* dst, size_t n) {
    const size_t len = static_cast<size_t>(state->tapsLen);
    const size_t fftLen = static_cast<size_t>(state->fftLen);
    const size_t history = len - 1;
    auto* block = static_cast<typename F::Sample*>(state->block);
    auto* line = startDelayLine<F>(state);
    for (size_t done = 0; done < n;) {
        const size_t room = fftLen - history;
        const size_t count = n - done < room ? n - done : room;
        copyElements(line + 1, block, history);
        convertElements(src + done, block + history, count);
        zeroElements(block + history + count, room - count);
        // The delay line advances first: the block is about to be transformed.
        if (count < len) moveElements(line + count, line, len - count);
        const size_t kept = count < len ? count : len;
        copyElements(block + history + count - kept, line + len - kept, kept);

        if (const ZppStatus error = convolveBlock<F>(state, block)) return error;
        convertElements(block + history, dst + done, count);
        done += count;
    }
    return zppStatusOk;
}

template <class F>
ZppStatus filter(const typename F::Data* pSrc, typename F::Data* pDst, int numIters, ZppsFIRState* pState) {
    if (const ZppStatus error = firstError(checkPointers(pState, pSrc, pDst), checkLength(numIters)))
        return error;
    if (const ZppStatus error = checkAnyRate<F>(pState)) return error;
    const DoublePrecision precision;
    const size_t n = static_cast<size_t>(numIters);
    if (pState->id == F::kMultiRate) {
        filterMultiRate<F>(pState, pSrc, pDst, n);
        return zppStatusOk;
    }
    if (pState->fftLen > 0 && numIters > pState->fftLen) return filterByFft<F>(pState, pSrc, pDst, n);
    return filterBlock<F>(pState, pSrc, pDst, n);
}

// One sample: it goes into the delay buffer twice, tapsLen elements apart, so that the window is contiguous
// wherever it begins.
template <class F>
ZppStatus filterOne(typename F::Data src, typename F::Data* pDstVal, ZppsFIRState* pState) {
    if (const ZppStatus error = checkPointers(pState, pDstVal)) return error;
    if (const ZppStatus error = checkSingleRate<F>(pState)) return error;
    const DoublePrecision precision;
    const int len = pState->tapsLen;
    auto* line = delayBufferOf<F>(pState) + pState->delayPosition;
    convertElement(src, line[0]);
    line[len] = line[0];
    if (++pState->delayPosition >= len) pState->delayPosition = 0;
    const auto* window = delayBufferOf<F>(pState) + pState->delayPosition;
    typename F::Sample y;
    filterWindow(tapRowOf<F>(pState), static_cast<size_t>(len), window, &y);
    convertElement(y, *pDstVal);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsFIR_64f(const Zpp64f* pSrc, Zpp64f* pDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64f>(pSrc, pDst, numIters, pState);
}
ZppStatus zppsFIR_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64fc>(pSrc, pDst, numIters, pState);
}
ZppStatus zppsFIR64f_32f(const Zpp32f* pSrc, Zpp32f* pDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64f32f>(pSrc, pDst, numIters, pState);
}
ZppStatus zppsFIR64fc_32fc(const Zpp32fc* pSrc, Zpp32fc* pDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64fc32fc>(pSrc, pDst, numIters, pState);
}

ZppStatus zppsFIR_64f_I(Zpp64f* pSrcDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64f>(pSrcDst, pSrcDst, numIters, pState);
}
ZppStatus zppsFIR_64fc_I(Zpp64fc* pSrcDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64fc>(pSrcDst, pSrcDst, numIters, pState);
}
ZppStatus zppsFIR64f_32f_I(Zpp32f* pSrcDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64f32f>(pSrcDst, pSrcDst, numIters, pState);
}
ZppStatus zppsFIR64fc_32fc_I(Zpp32fc* pSrcDst, int numIters, ZppsFIRState* pState) {
    return filter<Fir64fc32fc>(pSrcDst, pSrcDst, numIters, pState);
}

ZppStatus zppsFIROne_64f(Zpp64f src, Zpp64f* pDstVal, ZppsFIRState* pState) {
    return filterOne<Fir64f>(src, pDstVal, pState);
}
ZppStatus zppsFIROne_64fc(Zpp64fc src, Zpp64fc* pDstVal, ZppsFIRState* pState) {
    return filterOne<Fir64fc>(src, pDstVal, pState);
}
ZppStatus zppsFIROne64f_32f(Zpp32f src, Zpp32f* pDstVal, ZppsFIRState* pState) {
    return filterOne<Fir64f32f>(src, pDstVal, pState);
}
ZppStatus zppsFIROne64fc_32fc(Zpp32fc src, Zpp32fc* pDstVal, ZppsFIRState* pState) {
    return filterOne<Fir64fc32fc>(src, pDstVal, pState);
}

}  // namespace zpp::ZPP_ISA
