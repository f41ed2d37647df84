// Up- and down-sampling. Samples are moved as integers: the x87 unit would change a signalling NaN.
#include "core/elementwise.h"
#include "core/simd_interleave.h"
#include "filter/exports.h"

namespace zpp::ZPP_ISA {
namespace {

// Words of a sample, and N samples, or a register full of them.
template <class T>
inline constexpr int kWords = static_cast<int>(sizeof(T) / sizeof(uint64_t));
template <class T>
inline constexpr int kSamples = kVectorBytes == 0 ? 1 : kLanes<uint64_t> / kWords<T>;
template <class T, int N = kSamples<T>>
using Samples = Vec<uint64_t, N * kWords<T>>;

template <class T>
ZPP_INLINE void copySample(const T* src, T* dst) {
    store(dst, load<Samples<T, 1>>(src));
}

template <class T>
inline ZppStatus checkSampling(const T* pSrc, int srcLen, const T* pDst, const int* pDstLen, int factor,
                               const int* pPhase) {
    if (const ZppStatus error = firstError(checkPointers(pSrc, pDst, pDstLen, pPhase), checkLength(srcLen),
                                           require(factor > 0, zppStatusSampleFactor)))
        return error;
    return require(0 <= *pPhase && *pPhase < factor, zppStatusSamplePhase);
}

// Samples and zeros in turn.
template <bool kZerosFirst, class T>
void insertZeros(const T* src, T* dst, size_t len) {
    writeSteps<kSamples<T>>(
        len, dst, 2 * sizeof(T),
        [=](auto lanes, size_t i) ZPP_INLINE_LAMBDA {
            using V = Samples<T, decltype(lanes)::value>;
            const V samples = load<V>(src + i), zeros = V{};
            return interleaved<kWords<T>>(kZerosFirst ? halves(zeros, samples) : halves(samples, zeros));
        },
        [=](auto write, size_t i, auto v)
            ZPP_INLINE_LAMBDA { write(reinterpret_cast<uint64_t*>(dst + 2 * i), v); });
}

// How many of len samples give a block of results that stays in the first cache: whole cache lines, or one
// sample where the factor is large.
inline constexpr size_t kBlockBytes = 16384;
template <class T>
inline size_t samplesOfBlock(size_t len, size_t factor) {
    constexpr size_t most = kBlockBytes / sizeof(T);
    if (len * factor <= most) return len;  // without a division, which takes as long as a short call
    return factor <= most / 8 ? most / factor / 8 * 8 : 1;
}

template <class T>
ZPP_INLINE void putEach(const T* src, T* dst, size_t len, size_t factor) {
    for (size_t i = 0; i < len; ++i, dst += factor) copySample(src + i, dst);
}

// Samples among zeros.
template <class T>
void spread(const T* src, T* dst, size_t len, size_t factor, size_t phase) {
    const size_t most = samplesOfBlock<T>(len, factor);
    for (size_t count; len > 0; src += count, dst += count * factor, len -= count) {
        count = len < most ? len : most;
        zeroElements(dst, count * factor);
        putEach(src, dst + phase, count, factor);
    }
}
// The same, past the caches: in a block whose zeros stay.
template <class T>
[[gnu::noinline]] void spreadStreamed(const T* src, T* dst, size_t len, size_t factor, size_t phase) {
    alignas(64) T block[kBlockBytes / sizeof(T)];
    const size_t most = samplesOfBlock<T>(len, factor);
    zeroElements(block, most * factor);
    for (size_t count; len > 0; src += count, dst += count * factor, len -= count) {
        count = len < most ? len : most;
        putEach(src, block + phase, count, factor);
        mapStreamed(reinterpret_cast<uint64_t*>(dst), count * factor * kWords<T>, itself,
                    reinterpret_cast<const uint64_t*>(block));
    }
}

template <class T>
ZPP_INLINE ZppStatus sampleUp(const T* pSrc, int srcLen, T* pDst, int* pDstLen, int factor,
                              const int* pPhase) {
    const int64_t dstLen = int64_t{srcLen} * factor;
    if (const ZppStatus error = firstError(checkSampling(pSrc, srcLen, pDst, pDstLen, factor, pPhase),
                                           require(dstLen <= kRange<int32_t>.upper, zppStatusSizeError)))
        return error;
    const size_t len = static_cast<size_t>(srcLen), step = static_cast<size_t>(factor);
    const size_t phase = static_cast<size_t>(*pPhase);
    if (factor == 1)
        copyElements(pSrc, pDst, len);
    else if (factor == 2 && phase == 0)
        insertZeros<false>(pSrc, pDst, len);
    else if (factor == 2)
        insertZeros<true>(pSrc, pDst, len);
    else if (step <= kBlockBytes / sizeof(T) && isStreamed(pDst, len * step * sizeof(T)))
        spreadStreamed(pSrc, pDst, len, step, phase);
    else
        spread(pSrc, pDst, len, step, phase);
    *pDstLen = static_cast<int>(dstLen);
    return zppStatusOk;
}

template <class T>
ZPP_INLINE ZppStatus sampleDown(const T* pSrc, int srcLen, T* pDst, int* pDstLen, int factor, int* pPhase) {
    if (const ZppStatus error = checkSampling(pSrc, srcLen, pDst, pDstLen, factor, pPhase)) return error;
    if (factor == 1) {
        copyElements(pSrc, pDst, static_cast<size_t>(srcLen));
        *pDstLen = srcLen;
        return zppStatusOk;
    }
    const auto sample = [=](int64_t i) ZPP_INLINE_LAMBDA { return load<Samples<T, 1>>(pSrc + i); };
    T* dst = pDst;
    int64_t i = *pPhase;
    for (const int64_t step = factor; i + 3 * step < srcLen; i += 4 * step, dst += 4) {
        const auto a = sample(i), b = sample(i + step), c = sample(i + 2 * step), d = sample(i + 3 * step);
        store(dst, a);
        store(dst + 1, b);
        store(dst + 2, c);
        store(dst + 3, d);
    }
    for (; i < srcLen; i += factor, ++dst) store(dst, sample(i));
    *pPhase = static_cast<int>(i - srcLen);
    *pDstLen = static_cast<int>(dst - pDst);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsSampleUp_64f(const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int* pDstLen, int factor,
                           int* pPhase) {
    return sampleUp(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
}
ZppStatus zppsSampleUp_64fc(const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int* pDstLen, int factor,
                            int* pPhase) {
    return sampleUp(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
}
ZppStatus zppsSampleDown_64f(const Zpp64f* pSrc, int srcLen, Zpp64f* pDst, int* pDstLen, int factor,
                             int* pPhase) {
    return sampleDown(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
}
ZppStatus zppsSampleDown_64fc(const Zpp64fc* pSrc, int srcLen, Zpp64fc* pDst, int* pDstLen, int factor,
                              int* pPhase) {
    return sampleDown(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
}

}  // namespace zpp::ZPP_ISA
