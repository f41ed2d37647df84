// IIR filtering of blocks and single samples.
#include "filter/iir_biquad.h"
#include "filter/iir_state.h"

namespace zpp::ZPP_ISA {
namespace {

// Elements of a chunk of a signal in single precision, which is widened on the stack.
constexpr size_t kChunk = 512;

// Order 0: nothing fades away, so nothing is flushed.
template <class T>
void filterByGain(const T& gain, const T* src, T* dst, size_t len) {
    if constexpr (std::is_same_v<T, Zpp64f>)
        map(
            dst, len, [=](auto x) { return product(x, gain); }, src);
    else
        map(
            dst, len,
            [=](auto x) {
                return product(x, Complex<double>{gain.re, gain.im});
            },
            src);
}

template <class T>
void filterArbitrary(const T* taps, size_t order, T* line, const T* src, T* dst, size_t len) {
    static_assert(kSmallOrder == 8);
    switch (order) {
        case 1:
            return filterSmall<1>(taps, line, src, dst, len);
        case 2:
            return filterCascade(taps, size_t{1}, line, src, dst, len);  // the same as one section
        case 3:
            return filterSmall<3>(taps, line, src, dst, len);
        case 4:
            return filterSmall<4>(taps, line, src, dst, len);
        case 5:
            return filterSmall<5>(taps, line, src, dst, len);
        case 6:
            return filterSmall<6>(taps, line, src, dst, len);
        case 7:
            return filterSmall<7>(taps, line, src, dst, len);
        case 8:
            return filterSmall<8>(taps, line, src, dst, len);
        default:
            return filterLarge(taps, order, line, src, dst, len);
    }
}

// Samples in the precision of the state, in place or not.
template <class I, class T = typename I::Sample>
void filterSamples(ZppsIIRState* state, const T* src, T* dst, size_t len) {
    const T* taps = tapsOf<I>(state);
    T* line = delayLineOf<I>(state);
    if (state->delayLen == 0) return filterByGain(taps[0], src, dst, len);
    const DoublePrecision precision;
    const SubnormalsFlushed flushed;
    if (state->sections > 0)
        filterCascade(taps, static_cast<size_t>(state->sections), line, src, dst, len);
    else
        filterArbitrary(taps, static_cast<size_t>(state->delayLen), line, src, dst, len);
}

template <class I>
ZppStatus filter(const typename I::Data* pSrc, typename I::Data* pDst, int len, ZppsIIRState* pState) {
    if (const ZppStatus error = firstError(checkPointers(pState, pSrc, pDst), checkLength(len))) return error;
    if (const ZppStatus error = checkPair<I>(pState)) return error;
    const size_t count = static_cast<size_t>(len);
    if constexpr (std::is_same_v<typename I::Data, typename I::Sample>) {
        filterSamples<I>(pState, pSrc, pDst, count);
    } else {
        typename I::Sample chunk[kChunk];
        for (size_t i = 0; i < count; i += kChunk) {
            const size_t n = count - i < kChunk ? count - i : kChunk;
            convertElements(pSrc + i, chunk, n);
            filterSamples<I>(pState, chunk, chunk, n);
            convertElements(chunk, pDst + i, n);
        }
    }
    return zppStatusOk;
}

template <class I>
ZppStatus filterOne(typename I::Data src, typename I::Data* pDstVal, ZppsIIRState* pState) {
    if (const ZppStatus error = checkPointers(pState, pDstVal)) return error;
    if (const ZppStatus error = checkPair<I>(pState)) return error;
    typename I::Sample sample;
    convertElement(src, sample);
    filterSamples<I>(pState, &sample, &sample, 1);
    convertElement(sample, *pDstVal);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsIIR_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, ZppsIIRState* pState) {
    return filter<Iir64f>(pSrc, pDst, len, pState);
}
ZppStatus zppsIIR_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, ZppsIIRState* pState) {
    return filter<Iir64fc>(pSrc, pDst, len, pState);
}
ZppStatus zppsIIR64f_32f(const Zpp32f* pSrc, Zpp32f* pDst, int len, ZppsIIRState* pState) {
    return filter<Iir64f32f>(pSrc, pDst, len, pState);
}
ZppStatus zppsIIR64fc_32fc(const Zpp32fc* pSrc, Zpp32fc* pDst, int len, ZppsIIRState* pState) {
    return filter<Iir64fc32fc>(pSrc, pDst, len, pState);
}

ZppStatus zppsIIR_64f_I(Zpp64f* pSrcDst, int len, ZppsIIRState* pState) {
    return filter<Iir64f>(pSrcDst, pSrcDst, len, pState);
}
ZppStatus zppsIIR_64fc_I(Zpp64fc* pSrcDst, int len, ZppsIIRState* pState) {
    return filter<Iir64fc>(pSrcDst, pSrcDst, len, pState);
}
ZppStatus zppsIIR64f_32f_I(Zpp32f* pSrcDst, int len, ZppsIIRState* pState) {
    return filter<Iir64f32f>(pSrcDst, pSrcDst, len, pState);
}
ZppStatus zppsIIR64fc_32fc_I(Zpp32fc* pSrcDst, int len, ZppsIIRState* pState) {
    return filter<Iir64fc32fc>(pSrcDst, pSrcDst, len, pState);
}

ZppStatus zppsIIROne_64f(Zpp64f src, Zpp64f* pDstVal, ZppsIIRState* pState) {
    return filterOne<Iir64f>(src, pDstVal, pState);
}
ZppStatus zppsIIROne_64fc(Zpp64fc src, Zpp64fc* pDstVal, ZppsIIRState* pState) {
    return filterOne<Iir64fc>(src, pDstVal, pState);
}
ZppStatus zppsIIROne64f_32f(Zpp32f src, Zpp32f* pDstVal, ZppsIIRState* pState) {
    return filterOne<Iir64f32f>(src, pDstVal, pState);
}
ZppStatus zppsIIROne64fc_32fc(Zpp32fc src, Zpp32fc* pDstVal, ZppsIIRState* pState) {
    return filterOne<Iir64fc32fc>(src, pDstVal, pState);
}
}  // namespace zpp::ZPP_ISA
