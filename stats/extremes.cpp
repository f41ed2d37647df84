// Extremes.
#include "core/extremes.h"

#include "core/elementwise.h"
#include "stats/exports.h"

namespace zpp::ZPP_ISA {
namespace {

inline bool isNan(double x) { return x != x; }

template <class Kind, class T>
inline Extreme<Kind, T> only(const T* p, size_t i) {
    return {p[i], i, 1};
}

// The element that is the extreme.
template <class Kind, class T>
inline void settle(const T* p, Extreme<Kind, T>& extreme, int* pIndx) {
    extreme.begin = indexOf(p, extreme);
    extreme.count = 1;
    *pIndx = static_cast<int>(extreme.begin);
}

template <class Kind, bool kIndexed>
inline ZppStatus extreme(const Zpp64f* pSrc, int len, Zpp64f* pExtreme, int* pIndx = nullptr) {
    if (const ZppStatus error = checkVectors(len, pSrc, pExtreme)) return error;
    auto found = only<Kind>(pSrc, 0);
    if (!isNan(pSrc[0])) findExtremes<kIndexed>(pSrc, static_cast<size_t>(len), found);
    if constexpr (kIndexed) settle(pSrc, found, pIndx);
    copyTo(pExtreme, pSrc, found);
    return zppStatusOk;
}

// Where there are NaNs: the maximum is one at element 0, the minimum that of the elements behind the last
// one.
template <bool kIndexed>
[[gnu::noinline]] void findBesideNans(const Zpp64f* p, size_t len, Extreme<Lowest, Zpp64f>& low,
                                      Extreme<Highest, Zpp64f>& high) {
    high = only<Highest>(p, 0);
    if (!isNan(p[0])) findExtremes<kIndexed>(p, len, high);
    size_t last = len - 1;
    while (!isNan(p[last])) --last;
    low = only<Lowest>(p, last);
    if (last == len - 1) return;
    findExtremes<kIndexed>(p + last + 1, len - last - 1, low);
    low.begin += last + 1;
}

template <bool kIndexed, class T>
inline ZppStatus extremes(const T* pSrc, int len, T* pMin, T* pMax, int* pMinIndx = nullptr,
                          int* pMaxIndx = nullptr) {
    const size_t count = static_cast<size_t>(len);
    Extreme<Lowest, T> low;
    Extreme<Highest, T> high;
    if constexpr (std::is_same_v<T, Zpp64f>) {
        if (isNan(pSrc[0]) || findExtremes<kIndexed>(pSrc, count, low, high))
            findBesideNans<kIndexed>(pSrc, count, low, high);
    } else {
        findExtremes<kIndexed>(pSrc, count, low, high);
    }
    if constexpr (kIndexed) {
        settle(pSrc, low, pMinIndx);
        settle(pSrc, high, pMaxIndx);
    }
    copyTo(pMin, pSrc, low);
    copyTo(pMax, pSrc, high);
    return zppStatusOk;
}

template <class T>
inline ZppStatus minMax(const T* pSrc, int len, T* pMin, T* pMax) {
    if (const ZppStatus error = checkVectors(len, pSrc, pMin, pMax)) return error;
    return extremes<false>(pSrc, len, pMin, pMax);
}

template <class T>
inline ZppStatus minMaxIndx(const T* pSrc, int len, T* pMin, int* pMinIndx, T* pMax, int* pMaxIndx) {
    if (const ZppStatus error = checkVectors(len, pSrc, pMin, pMinIndx, pMax, pMaxIndx)) return error;
    return extremes<true>(pSrc, len, pMin, pMax, pMinIndx, pMaxIndx);
}

}  // namespace

ZppStatus zppsMax_64f(const Zpp64f* pSrc, int len, Zpp64f* pMax) {
    return extreme<Highest, false>(pSrc, len, pMax);
}
ZppStatus zppsMin_64f(const Zpp64f* pSrc, int len, Zpp64f* pMin) {
    return extreme<Lowest, false>(pSrc, len, pMin);
}
ZppStatus zppsMaxIndx_64f(const Zpp64f* pSrc, int len, Zpp64f* pMax, int* pIndx) {
    if (pIndx == nullptr) return zppsMax_64f(pSrc, len, pMax);
    return extreme<Highest, true>(pSrc, len, pMax, pIndx);
}
ZppStatus zppsMinIndx_64f(const Zpp64f* pSrc, int len, Zpp64f* pMin, int* pIndx) {
    if (pIndx == nullptr) return zppsMin_64f(pSrc, len, pMin);
    return extreme<Lowest, true>(pSrc, len, pMin, pIndx);
}

ZppStatus zppsMinMax_64f(const Zpp64f* pSrc, int len, Zpp64f* pMin, Zpp64f* pMax) {
    return minMax(pSrc, len, pMin, pMax);
}
ZppStatus zppsMinMax_32s(const Zpp32s* pSrc, int len, Zpp32s* pMin, Zpp32s* pMax) {
    return minMax(pSrc, len, pMin, pMax);
}
ZppStatus zppsMinMaxIndx_64f(const Zpp64f* pSrc, int len, Zpp64f* pMin, int* pMinIndx, Zpp64f* pMax,
                             int* pMaxIndx) {
    return minMaxIndx(pSrc, len, pMin, pMinIndx, pMax, pMaxIndx);
}
ZppStatus zppsMinMaxIndx_32s(const Zpp32s* pSrc, int len, Zpp32s* pMin, int* pMinIndx, Zpp32s* pMax,
                             int* pMaxIndx) {
    return minMaxIndx(pSrc, len, pMin, pMinIndx, pMax, pMaxIndx);
}

ZppStatus zppsMaxEvery_32s_I(const Zpp32s* pSrc, Zpp32s* pSrcDst, int len) {
    return elementwise([](auto a, auto b) { return max(a, b); }, pSrcDst, len, pSrc, pSrcDst);
}

}  // namespace zpp::ZPP_ISA
