// FIR filtering without a state: taps and delay line are the caller's.
#include "core/checks.h"
#include "core/move.h"
#include "filter/exports.h"
#include "filter/fir_kernel.h"

namespace zpp::ZPP_ISA {
namespace {

// Blocks of at least kMinBlock samples are filtered from a window in which history and new samples are
// contiguous, others sample by sample. With up to kMaxTaps<T> taps the window is on the stack (16 KiB); with
// more it is the delay line itself, which holds everything twice.
template <class T>
constexpr size_t kWindow = 16384 / sizeof(T);
template <class T>
constexpr size_t kMaxTaps = kWindow<T> / 2;
constexpr size_t kMinBlock = 8;

// The caller's taps and delay line: 2 len elements, of which the current ones begin at *index.
template <class T>
struct Filter {
    const T* taps;
    size_t len;
    T* elements;
    int* index;

    TapRow<T, true> row() const { return {taps + len - 1}; }

    void filterSample(const T& sample, T* dst) const {
        T* place = elements + *index;
        memcpy(place + len, &sample, sizeof sample);
        memcpy(place, &sample, sizeof sample);
        const size_t next = static_cast<size_t>(*index) + 1;
        *index = static_cast<int>(next < len ? next : 0);
        filterWindow(row(), len, elements + *index, dst);
    }

    // The window has room for `room` new samples behind the history.
    void filterFrom(T* window, size_t room, const T* src, T* dst, size_t n) const {
        moveElements(elements + *index, window, len);
        for (size_t done = 0; done < n;) {
            const size_t count = n - done < room ? n - done : room;
            copyElements(src + done, window + len, count);
            filterWindows(row(), len, window + 1, dst + done, count);
            moveElements(window + count, window, len);
            done += count;
        }
        replaceLine(window, n);
    }

    // The delay line after n samples, of which the last len are given, oldest first; they may stand at its
    // start.
    void replaceLine(const T* newest, size_t n) const {
        const size_t begin = (static_cast<size_t>(*index) + n % len) % len;
        const size_t rest = len - begin;
        copyElements(newest, elements + len + begin, rest);
        copyElements(newest + rest, elements + len, begin);
        copyElements(elements + len, elements, len);
        *index = static_cast<int>(begin);
    }
};

template <class T>
[[gnu::noinline]] void filterOnStack(const Filter<T>& filter, const T* src, T* dst, size_t n) {
    T window[kWindow<T>];
    filter.filterFrom(window, kWindow<T> - filter.len, src, dst, n);
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
    const DoublePrecision precision;
    const Filter<T> filter{pTaps, static_cast<size_t>(tapsLen), pDlyLine, pDlyLineIndex};
    const size_t n = static_cast<size_t>(numIters);
    if (n < kMinBlock)
        for (size_t i = 0; i < n; ++i) filter.filterSample(pSrc[i], pDst + i);
    else if (filter.len <= kMaxTaps<T>)
        filterOnStack(filter, pSrc, pDst, n);
    else
        filter.filterFrom(pDlyLine, filter.len, pSrc, pDst, n);
    return zppStatusOk;
}

template <class T>
ZppStatus filterOneDirect(const T* pSrc, T* pDstVal, const T* pTaps, int tapsLen, T* pDlyLine,
                          int* pDlyLineIndex) {
    if (const ZppStatus error =
            firstError(checkPointers(pDstVal), checkFilter(pTaps, tapsLen, pDlyLine, pDlyLineIndex)))
        return error;
    const DoublePrecision precision;
    const Filter<T> filter{pTaps, static_cast<size_t>(tapsLen), pDlyLine, pDlyLineIndex};
    filter.filterSample(*pSrc, pDstVal);
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
