// FIR filtering without a state: taps and delay line are the caller's.
#include "core/checks.h"
#include "core/move.h"
#include "filter/exports.h"
#include "filter/fir_kernel.h"

namespace zpp::ZPP_ISA {
namespace {

// Blocks of at least kMinBlock samples, with up to kMaxTaps<T> taps, are filtered from a copy on the stack of
// kWindow<T> elements (16 KiB) in which history and new samples are contiguous; others sample by sample.
template <class T>
constexpr size_t kWindow = 16384 / sizeof(T);
template <class T>
constexpr size_t kMaxTaps = kWindow<T> / 2;
constexpr size_t kMinBlock = 4;

// The caller's delay line: 2 len elements, of which the current ones begin at *index.
template <class T>
struct DelayLine {
    T* elements;
    size_t len;
    int* index;

    const T* window() const { return elements + *index; }

    void push(const T& sample) const {
        T* place = elements + *index;
        memcpy(place + len, &sample, sizeof sample);
        memcpy(place, &sample, sizeof sample);
        const size_t next = static_cast<size_t>(*index) + 1;
        *index = static_cast<int>(next < len ? next : 0);
    }

    // The state after n samples, of which the last len are given, oldest first.
    void replace(const T* newest, size_t n) const {
        const size_t begin = (static_cast<size_t>(*index) + n % len) % len;
        const size_t rest = len - begin;
        copyElements(newest, elements + begin, len);
        copyElements(newest, elements + begin + len, rest);
        copyElements(newest + rest, elements, begin);
        *index = static_cast<int>(begin);
    }
};

template <class T>
void filterBySamples(const T* src, T* dst, size_t n, const T* taps, const DelayLine<T>& line) {
    for (size_t i = 0; i < n; ++i) {
        line.push(src[i]);
        dst[i] = filterWindow<true>(taps, line.window(), line.len);
    }
}

template <class T>
void filterByBlocks(const T* src, T* dst, size_t n, const T* taps, const DelayLine<T>& line) {
    T window[kWindow<T>];
    const size_t len = line.len;
    const size_t room = kWindow<T> - len;
    const TapRow<T> row{taps + len - 1, -1};
    copyElements(line.window(), window, len);
    for (size_t done = 0; done < n;) {
        const size_t count = n - done < room ? n - done : room;
        copyElements(src + done, window + len, count);
        filterWindows(row, len, window + 1, dst + done, count);
        moveElements(window + count, window, len);
        done += count;
    }
    line.replace(window, n);
}

template <class T>
ZppStatus checkFilter(const T* pTaps, int tapsLen, const T* pDlyLine, const int* pDlyLineIndex) {
    return firstError(checkPointers(pTaps), require(tapsLen > 0, zppStatusFirLength),
                      checkPointers(pDlyLine, pDlyLineIndex));
}

template <class T>
ZppStatus filterDirect(const T* pSrc, T* pDst, int numIters, const T* pTaps, int tapsLen, T* pDlyLine,
                       int* pDlyLineIndex) {
    if (const ZppStatus error = firstError(checkVectors(numIters, pSrc, pDst),
                                           checkFilter(pTaps, tapsLen, pDlyLine, pDlyLineIndex)))
        return error;
    const DelayLine<T> line{pDlyLine, static_cast<size_t>(tapsLen), pDlyLineIndex};
    const size_t n = static_cast<size_t>(numIters);
    if (n < kMinBlock || line.len > kMaxTaps<T>)
        filterBySamples(pSrc, pDst, n, pTaps, line);
    else
        filterByBlocks(pSrc, pDst, n, pTaps, line);
    return zppStatusOk;
}

template <class T>
ZppStatus filterOneDirect(const T* pSrc, T* pDstVal, const T* pTaps, int tapsLen, T* pDlyLine,
                          int* pDlyLineIndex) {
    if (const ZppStatus error =
            firstError(checkPointers(pDstVal), checkFilter(pTaps, tapsLen, pDlyLine, pDlyLineIndex)))
        return error;
    const DelayLine<T> line{pDlyLine, static_cast<size_t>(tapsLen), pDlyLineIndex};
    filterBySamples(pSrc, pDstVal, 1, pTaps, line);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsFIR_Direct_64f(const Zpp64f* pSrc, Zpp64f* pDst, int numIters, const Zpp64f* pTaps, int tapsLen,
                             Zpp64f* pDlyLine, int* pDlyLineIndex) {
    return filterDirect(pSrc, pDst, numIters, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}
ZppStatus zppsFIR_Direct_64f_I(Zpp64f* pSrcDst, int numIters, const Zpp64f* pTaps, int tapsLen,
                               Zpp64f* pDlyLine, int* pDlyLineIndex) {
    return filterDirect(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}
ZppStatus zppsFIR_Direct_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int numIters, const Zpp64fc* pTaps,
                              int tapsLen, Zpp64fc* pDlyLine, int* pDlyLineIndex) {
    return filterDirect(pSrc, pDst, numIters, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}
ZppStatus zppsFIR_Direct_64fc_I(Zpp64fc* pSrcDst, int numIters, const Zpp64fc* pTaps, int tapsLen,
                                Zpp64fc* pDlyLine, int* pDlyLineIndex) {
    return filterDirect(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}

ZppStatus zppsFIROne_Direct_64f(Zpp64f src, Zpp64f* pDstVal, const Zpp64f* pTaps, int tapsLen,
                                Zpp64f* pDlyLine, int* pDlyLineIndex) {
    return filterOneDirect(&src, pDstVal, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}
ZppStatus zppsFIROne_Direct_64f_I(Zpp64f* pSrcDst, const Zpp64f* pTaps, int tapsLen, Zpp64f* pDlyLine,
                                  int* pDlyLineIndex) {
    return filterOneDirect(pSrcDst, pSrcDst, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}
ZppStatus zppsFIROne_Direct_64fc(Zpp64fc src, Zpp64fc* pDstVal, const Zpp64fc* pTaps, int tapsLen,
                                 Zpp64fc* pDlyLine, int* pDlyLineIndex) {
    return filterOneDirect(&src, pDstVal, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}
ZppStatus zppsFIROne_Direct_64fc_I(Zpp64fc* pSrcDst, const Zpp64fc* pTaps, int tapsLen, Zpp64fc* pDlyLine,
                                   int* pDlyLineIndex) {
    return filterOneDirect(pSrcDst, pSrcDst, pTaps, tapsLen, pDlyLine, pDlyLineIndex);
}

}  // namespace zpp::ZPP_ISA
