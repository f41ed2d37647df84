// The release of generators' states.
#include "core/areas.h"
#include "gen/exports.h"

// What states begin with. Nothing in the library makes one.
struct ZppsToneState {
    int32_t id;
    int32_t allocated;  // 1: in a block of its own
};
struct ZppsTriangleState {
    int32_t id;
    int32_t allocated;
};

namespace zpp::ZPP_ISA {
namespace {

template <class State>
ZppStatus release(State* state) {
    if (state == nullptr) return zppStatusNullPointer;
    if (identifierOf(state) != 0x4C4D535A) return zppStatusContextMismatch;
    if (state->allocated == 1) releaseObject(state);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsToneFree(ZppsToneState* pState) { return release(pState); }
ZppStatus zppsTriangleFree(ZppsTriangleState* pState) { return release(pState); }

}  // namespace zpp::ZPP_ISA
