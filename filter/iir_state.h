// The state of an IIR filter, and what the files of the IIR filters know about it.
#pragma once

#include "core/areas.h"
#include "filter/elements.h"
#include "filter/exports.h"

// The areas behind the header, everything of double precision. Arbitrary order: the taps B(0) .. B(order),
// A(1) .. A(order), and d(0) .. d(order-1) with a zero behind them. Cascade: B0, B1, B2, A1, A2 of each
// section, and its d0, d1.
struct ZppsIIRState {
    int32_t id;
    void* taps;
    void* delayLine;
    int32_t delayLen;
    int32_t sections;  // 0: arbitrary order
    int32_t allocated;
    int32_t reserved[sizeof(void*) == 4 ? 6 : 3];  // zero
};
static_assert(sizeof(ZppsIIRState) == 48);  // so that sizes do not depend on the pointers'

namespace zpp::ZPP_ISA {

enum class IirShape { kArbitrary, kCascade };

// The type pairs. Sample is the type of the taps, of the delay line and of all arithmetic; Data that of the
// signal. kCascadeSlack bytes of a caller's buffer are there to align a cascade in it.
struct Iir64f {
    using Sample = Zpp64f;
    using Data = Zpp64f;
    static constexpr int32_t kArbitrary = 0x49493133, kCascade = 0x49493134;
    static constexpr size_t kCascadeSlack = 0;
};

struct Iir64fc {
    using Sample = Zpp64fc;
    using Data = Zpp64fc;
    static constexpr int32_t kArbitrary = 0x49493135, kCascade = 0x49493136;
    static constexpr size_t kCascadeSlack = 16;
};

struct Iir64f32f : Iir64f {
    using Data = Zpp32f;
    static constexpr int32_t kArbitrary = 0x49493137, kCascade = 0x49493138;
};

struct Iir64fc32fc : Iir64fc {
    using Data = Zpp32fc;
    static constexpr int32_t kArbitrary = 0x49493139, kCascade = 0x49493230;
};

// The areas of a state, as Samples.
template <class I>
inline auto* tapsOf(const ZppsIIRState* state) {
    return static_cast<typename I::Sample*>(state->taps);
}
template <class I>
inline auto* delayLineOf(const ZppsIIRState* state) {
    return static_cast<typename I::Sample*>(state->delayLine);
}

inline constexpr int kSectionTaps = 5;  // as stored
inline constexpr int kSectionDelays = 2;

// Only for a pointer that is not null.
template <class I>
inline ZppStatus checkPair(const ZppsIIRState* state) {
    const int32_t id = identifierOf(state);
    return require(id == I::kArbitrary || id == I::kCascade, zppStatusContextMismatch);
}

}  // namespace zpp::ZPP_ISA
