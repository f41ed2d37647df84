// The state of a FIR filter, and what the files of the FIR filters know about it.
#pragma once

#include "arith/exports.h"
#include "core/areas.h"
#include "core/loops.h"
#include "core/move.h"
#include "filter/elements.h"
#include "filter/exports.h"
#include "transform/exports.h"

// The areas behind the header: the taps, last one first; the delay buffer of 3 tapsLen + 4 elements, with the
// delay line from delayPosition on, oldest sample first; the work area; for the FFT path then the spectrum of
// the taps, the block that is transformed and the transform's buffer. Everything is of double precision.
// A multi-rate state has no FFT path. Its taps are followed by rows of those of each phase; its delay line,
// of ceil(tapsLen / up) elements, stands at the start of the delay buffer, which then has room for new
// samples.
struct ZppsFIRState {
    int32_t id;
    void* taps;
    void* delayBuffer;
    int32_t tapsLen;
    int32_t directLimit;  // tapsLen rounded up to a multiple of 4, plus 1
    ZppsFFTSpec* spec;    // null: no FFT path
    void* spectrum;
    int32_t fftLen;  // -1: no FFT path
    int32_t delayPosition;
    int32_t delayLen;
    void* work;
    Zpp8u* fftBuffer;
    ZppsFFTSpec* ownedSpec;  // the same, to be released with the state
    void* block;
    int32_t allocated;
    int32_t up, upPhase, down, downPhase;  // zero in a single-rate state, as all that follows
    void* phases;                          // of a multi-rate state: what follows from its numbers,
    void* rows;                            // and the taps of each phase
    uintptr_t reserved[sizeof(void*) == 4 ? 7 : 9];
};
static_assert(sizeof(ZppsFIRState) == (sizeof(void*) == 4 ? 112 : 208));

namespace zpp::ZPP_ISA {

// The type pairs. Sample is the type of the taps, of the delay line inside the state and of all arithmetic;
// Data that of the signal. kBufferSlack bytes of a caller's buffer are there to align the state in it.
struct Fir64f {
    using Sample = Zpp64f;
    using Data = Zpp64f;
    static constexpr int32_t kSingleRate = 0x46493133, kMultiRate = 0x46493135;
    static constexpr size_t kWorkElements = 4096;
    static constexpr size_t kBufferSlack = 15;
    static constexpr int kFftTaps = 32;  // with fewer there is no FFT path

    static constexpr auto initFft = zppsFFTInitAlloc_R_64f;
    static constexpr auto fftBufSize = zppsFFTGetBufSize_R_64f;
    static constexpr auto freeFft = zppsFFTFree_R_64f;
    static constexpr auto forward = zppsFFTFwd_RToPerm_64f;
    static constexpr auto multiply = zppsMulPerm_64f_I;
    static constexpr auto inverse = zppsFFTInv_PermToR_64f;
};

struct Fir64fc {
    using Sample = Zpp64fc;
    using Data = Zpp64fc;
    static constexpr int32_t kSingleRate = 0x46493134, kMultiRate = 0x46493136;
    static constexpr size_t kWorkElements = 4095;
    static constexpr size_t kBufferSlack = 16;
    static constexpr int kFftTaps = 16;

    static constexpr auto initFft = zppsFFTInitAlloc_C_64fc;
    static constexpr auto fftBufSize = zppsFFTGetBufSize_C_64fc;
    static constexpr auto freeFft = zppsFFTFree_C_64fc;
    static constexpr auto forward = zppsFFTFwd_CToC_64fc;
    static constexpr auto multiply = zppsMul_64fc_I;
    static constexpr auto inverse = zppsFFTInv_CToC_64fc;
};

struct Fir64f32f : Fir64f {
    using Data = Zpp32f;
    static constexpr int32_t kSingleRate = 0x46493137, kMultiRate = 0x46493139;
};

struct Fir64fc32fc : Fir64fc {
    using Data = Zpp32fc;
    static constexpr int32_t kSingleRate = 0x46493138, kMultiRate = 0x46493230;
};

// The areas of a state, as Samples.
template <class F>
inline auto* tapsOf(const ZppsFIRState* state) {
    return static_cast<typename F::Sample*>(state->taps);
}
template <class F>
inline auto* delayBufferOf(const ZppsFIRState* state) {
    return static_cast<typename F::Sample*>(state->delayBuffer);
}
template <class F>
inline auto* rowsOf(const ZppsFIRState* state) {
    return static_cast<typename F::Sample*>(state->rows);
}
template <class F>
inline auto* spectrumOf(const ZppsFIRState* state) {
    return static_cast<typename F::Sample*>(state->spectrum);
}

// Only for a pointer that is not null.
template <class F>
inline ZppStatus checkSingleRate(const ZppsFIRState* state) {
    return require(identifierOf(state) == F::kSingleRate, zppStatusContextMismatch);
}
template <class F>
inline ZppStatus checkAnyRate(const ZppsFIRState* state) {
    const int32_t id = identifierOf(state);
    return require(id == F::kSingleRate || id == F::kMultiRate, zppStatusContextMismatch);
}

// To the caller taps and delay line are the other way round than in the state.
template <class To, class From>
inline void copyReversed(const From* src, To* dst, int len) {
    for (ptrdiff_t i = 0; i < len; ++i) convertElement(src[len - 1 - i], dst[i]);
}

template <class F>
inline void setDelayLine(ZppsFIRState* state, const typename F::Data* pDlyLine) {
    state->delayPosition = 0;
    if (pDlyLine == nullptr)
        zeroElements(delayBufferOf<F>(state), static_cast<size_t>(state->delayLen));
    else
        copyReversed(pDlyLine, delayBufferOf<F>(state), state->delayLen);
}

}  // namespace zpp::ZPP_ISA
