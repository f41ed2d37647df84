// Sums, means and deviations.
#include "core/reduce.h"
#include "core/scale.h"
#include "stats/exports.h"

namespace zpp::ZPP_ISA {
namespace {

template <class T>
ZppStatus mean(const T* pSrc, int len, T* pMean) {
    return sumOf(
        itself, [=](double sum) { return quotient(sum, len); }, pMean, len, pSrc);
}

}  // namespace

ZppStatus zppsSum_64f(const Zpp64f* pSrc, int len, Zpp64f* pSum) {
    return sumOf(itself, itself, pSum, len, pSrc);
}
ZppStatus zppsSum_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pSum) {
    return sumOf(itself, itself, pSum, len, pSrc);
}

ZppStatus zppsSum_32s_Sfs(const Zpp32s* pSrc, int len, Zpp32s* pSum, int scaleFactor) {
    if (const ZppStatus error = checkVectors(len, pSrc, pSum)) return error;
    constexpr int n = kLanes<int64_t>;
    constexpr auto add = [](auto a, auto b) { return a + b; };
    Vec<int64_t> running[4];
    clear(running);
    reduceAll<n>(
        running, static_cast<size_t>(len),
        [=](size_t j, auto... count) ZPP_INLINE_LAMBDA { return loadAsLongs<n>(pSrc + j * n, count...); },
        add);
    const int64_t sum = foldToParts<1>(foldRegisters<n, 1>(running, add), add);
    const Range<int64_t> range = {kRange<int32_t>.lower, kRange<int32_t>.upper};
    return withScale(scaleFactor, range, [=](auto scale) {
        *pSum = static_cast<Zpp32s>(scale(sum));
        return zppStatusOk;
    });
}

ZppStatus zppsMean_64f(const Zpp64f* pSrc, int len, Zpp64f* pMean) { return mean(pSrc, len, pMean); }
ZppStatus zppsMean_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pMean) { return mean(pSrc, len, pMean); }

ZppStatus zppsStdDev_64f(const Zpp64f* pSrc, int len, Zpp64f* pStdDev) {
    const ZppStatus error = firstError(checkPointers(pSrc, pStdDev), require(len >= 2, zppStatusSizeError));
    if (error != zppStatusOk) return error;
    const auto powers = [](auto x) ZPP_INLINE_LAMBDA { return Complex<decltype(x)>{x, product(x, x)}; };
    const auto put = [=](auto sums) ZPP_INLINE_LAMBDA {
        const double sum = foldToParts<1>(sums.re, addTerm), squares = foldToParts<1>(sums.im, addTerm);
        const double n = len, spread = stored(product(squares, n) - product(sum, sum));
        *pStdDev = spread > 0 ? squareRoot(quotient(spread, product(n - 1, n))) : 0;
    };
    return reduceParts<kLanes<double>, 1, 1>(len, put, powers, addTerm, pSrc);
}

}  // namespace zpp::ZPP_ISA
