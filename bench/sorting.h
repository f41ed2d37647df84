// Sorting as a job: of a copy of the source, other elements in each call, so that the processor does not
// learn where branches go.
#pragma once

#include <cstring>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

template <class T, auto kSort>
void sortCopy(const T* src, T* dst, int len) {
    constexpr int kKept = 1 << 17;  // elements, which stay in a cache
    static int begin = 0;
    if (begin + len > kKept) begin = 0;
    std::memcpy(dst, src + begin, sizeof(T) * static_cast<size_t>(len));
    begin += len;
    kSort(dst, len);
}

template <class T, auto kSort>
constexpr Timed timedSort = timed<sortCopy<T, kSort>>;

}  // namespace
}  // namespace zpp::bench
