// Sorting in place.
#include "core/checks.h"
#include "core/move.h"
#include "core/precision.h"
#include "stats/exports.h"
#include "stats/sort_kernel.h"

namespace zpp::ZPP_ISA {
namespace {

template <class T>
inline void sortUp(T* p, size_t len) {
    MedianOfMedians<T> choose;
    sortAll(p, len, choose);
}

// Doubles by their bits: an x87 register would make signalling NaNs quiet.
constexpr uint64_t kSign = uint64_t{1} << 63, kInfinity = uint64_t{0x7FF} << 52;

// Moves NaNs to the end, where they are in the order that they were found in; gives how many others there
// are.
size_t moveNansToEnd(Zpp64f* p, size_t len) {
    size_t end = len;
    for (size_t i = len; i-- > 0;) {
        const auto x = load<uint64_t>(p + i);
        if ((x & ~kSign) <= kInfinity) continue;
        store(p + i, load<uint64_t>(p + --end));
        store(p + end, x);
    }
    return end;
}

// How many elements a condition holds of, which are the first ones.
template <class Holds>
inline size_t countFirst(const Zpp64f* p, size_t len, Holds holds) {
    size_t begin = 0;
    while (begin < len) {
        const size_t middle = begin + (len - begin) / 2;
        if (holds(p[middle]))
            begin = middle + 1;
        else
            len = middle;
    }
    return begin;
}

// Of sorted elements, puts -0 before +0, which compare equal.
void sortZeros(Zpp64f* p, size_t len) {
    const size_t first = countFirst(p, len, [](double x) { return x < 0; });
    const size_t zeros = countFirst(p + first, len - first, [](double x) { return x <= 0; });
    size_t negative = 0;
    for (size_t i = 0; i < zeros; ++i) negative += load<uint64_t>(p + first + i) != 0;
    for (size_t i = 0; i < zeros; ++i) store(p + first + i, i < negative ? kSign : 0);
}

// Sorts all but NaNs, which go to the end; gives how many these others are.
size_t sortNumbers(Zpp64f* p, size_t len) {
    if constexpr (kVectorBytes > 0) {
        const SubnormalsKept subnormals;
        const bool odd = hasNansOrNegativeZeros(p, len);
        const size_t numbers = odd ? moveNansToEnd(p, len) : len;
        sortUp(p, numbers);
        if (odd) sortZeros(p, numbers);
        return numbers;
    } else {
        // As integers that are in order where the doubles are, zeros too: of negative ones all bits but the
        // sign are turned over.
        const size_t numbers = moveNansToEnd(p, len);
        const auto exchange = [=] {
            for (size_t i = 0; i < numbers; ++i) {
                const auto x = load<int64_t>(p + i);
                store(p + i, x < 0 ? x ^ INT64_MAX : x);
            }
        };
        exchange();
        sortUp(reinterpret_cast<int64_t*>(p), numbers);
        exchange();
        return numbers;
    }
}

template <bool kDescending>
inline ZppStatus sort(Zpp32s* p, int len) {
    if (const ZppStatus error = checkVectors(len, p)) return error;
    sortUp(p, static_cast<size_t>(len));
    if (kDescending) reverseElements(p, static_cast<size_t>(len));
    return zppStatusOk;
}
template <bool kDescending>
inline ZppStatus sort(Zpp64f* p, int len) {
    if (const ZppStatus error = checkVectors(len, p)) return error;
    const size_t numbers = sortNumbers(p, static_cast<size_t>(len));
    using Same = std::conditional_t<kVectorBytes == 0, int64_t, double>;
    if (kDescending) reverseElements(reinterpret_cast<Same*>(p), numbers);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsSortAscend_32s_I(Zpp32s* pSrcDst, int len) { return sort<false>(pSrcDst, len); }
ZppStatus zppsSortAscend_64f_I(Zpp64f* pSrcDst, int len) { return sort<false>(pSrcDst, len); }
ZppStatus zppsSortDescend_32s_I(Zpp32s* pSrcDst, int len) { return sort<true>(pSrcDst, len); }
ZppStatus zppsSortDescend_64f_I(Zpp64f* pSrcDst, int len) { return sort<true>(pSrcDst, len); }

}  // namespace zpp::ZPP_ISA
