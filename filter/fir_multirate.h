// What the files of the FIR filters know of multi-rate filtering.
#pragma once

#include "filter/fir_state.h"

namespace zpp::ZPP_ISA {

// Elements of a state's delay buffer behind the delay line: inputs are taken in such chunks.
inline constexpr size_t kMultiRateChunk = 2048;

// What a caller says of a filter, in the order of the arguments.
struct MultiRateNumbers {
    int tapsLen, up, upPhase, down, downPhase;
};

inline ZppStatus check(const MultiRateNumbers& n) {
    return firstError(require(n.tapsLen > 0, zppStatusFirLength),
                      require(n.up > 0 && n.down > 0, zppStatusFirMrFactor),
                      require(n.upPhase >= 0 && n.upPhase < n.up && n.downPhase >= 0 && n.downPhase < n.down,
                              zppStatusFirMrPhase));
}

// For states with the multi-rate identifier: lays out the rows of the phases anew, from the taps of the
// state; filters n blocks.
template <class F>
void layOutTaps(ZppsFIRState* state);
template <class F>
void filterMultiRate(ZppsFIRState* state, const typename F::Data* src, typename F::Data* dst, size_t n);

}  // namespace zpp::ZPP_ISA
