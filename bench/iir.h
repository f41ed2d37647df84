// The recursive filters that are timed, stable ones with an a0 of 1.
#pragma once

#include "zpp/types.h"

namespace zpp::bench {
namespace {

template <class T>
T tap(double x) {
    if constexpr (requires(T t) { t.re; })
        return {x, x / 4};
    else
        return x;
}

// Section k: b0, b1, b2 and a1, a2.
template <class T>
void sectionTaps(int k, T* b, T* a) {
    const double numbers[] = {0.8, 0.5, 0.25, -0.5 - 0.01 * k, 0.3};
    for (int i = 0; i < 3; ++i) b[i] = tap<T>(numbers[i]);
    for (int i = 0; i < 2; ++i) a[i] = tap<T>(numbers[3 + i]);
}

// b0 .. b(order) and a1 .. a(order).
template <class T>
void tapsOf(int order, T* b, T* a) {
    for (int i = 0; i <= order; ++i) b[i] = tap<T>(1.0 / (i + 1));
    for (int i = 0; i < order; ++i) a[i] = tap<T>(0.5 / order);
}

}  // namespace
}  // namespace zpp::bench
