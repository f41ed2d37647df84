#include <algorithm>
#include <cmath>
#include <functional>

#include "bench/peers/plain.h"
#include "bench/sorting.h"

namespace zpp::bench {
namespace {

using C = Zpp64fc;

int indexOfLargest(const double* __restrict a, int len) {
    int index = 0;
    for (int i = 1; i < len; ++i)
        if (a[i] > a[index]) index = i;
    return index;
}
template <class T>
void minMax(const T* __restrict a, int len, T* dst) {
    T least = a[0], largest = a[0];
    for (int i = 1; i < len; ++i) {
        least = a[i] < least ? a[i] : least;
        largest = a[i] > largest ? a[i] : largest;
    }
    dst[0] = least;
    dst[1] = largest;
}
void larger(const Zpp32s* __restrict a, Zpp32s* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = dst[i] < a[i] ? a[i] : dst[i];
}
double deviation(const double* __restrict a, int len) {
    double sum = 0, squares = 0;
    for (int i = 0; i < len; ++i) {
        sum += a[i];
        squares += a[i] * a[i];
    }
    return std::sqrt((squares * len - sum * sum) / (len * (len - 1.0)));
}
double magnitude(C z) { return std::sqrt(z.re * z.re + z.im * z.im); }
C addProduct(C sum, C a, C b) {
    return {sum.re + (a.re * b.re - a.im * b.im), sum.im + (a.re * b.im + a.im * b.re)};
}

constexpr auto sumOfLogarithm = [](double sum, double x) { return sum + std::log(x); };

template <class T, class Order>
void sort(T* p, int len) {
    std::sort(p, p + len, Order());
}

[[maybe_unused]] const Peers peers(
    kWho,
    {
        {"Sum_64f", reduce<[](double sum, double x) { return sum + x; }>},
        {"Sum_64fc", reduce<[](C sum, C x) {
             return C{sum.re + x.re, sum.im + x.im};
         }>},
        {"Sum_32s_Sfs", reduce<[](long long sum, Zpp32s x) { return sum + x; }>},
        {"StdDev_64f", timed<deviation>},
        {"Max_64f", reduce<[](double most, double x) { return most < x ? x : most; }>},
        {"MaxIndx_64f", timed<indexOfLargest>},
        {"MinMax_64f", timed<minMax<double>>},
        {"MinMax_32s", timed<minMax<Zpp32s>>},
        {"MaxEvery_32s_I", timed<larger>},
        {"Norm_Inf_64f", reduce<[](double most, double x) {
             const double y = std::fabs(x);
             return most < y ? y : most;
         }>},
        {"Norm_L1_64f", reduce<[](double sum, double x) { return sum + std::fabs(x); }>},
        {"Norm_L2_64f", reduce<[](double sum, double x) { return sum + x * x; }>},
        {"Norm_L1_64fc64f", reduce<[](double sum, C x) { return sum + magnitude(x); }>},
        {"NormDiff_L2_64f", reduce<[](double sum, double a, double b) { return sum + (a - b) * (a - b); }>},
        {"DotProd_64f", reduce<[](double sum, double a, double b) { return sum + a * b; }>},
        {"DotProd_64fc", reduce<[](C sum, C a, C b) { return addProduct(sum, a, b); }>},
        {"DotProd_32f64f", reduce<[](double sum, float a, float b) { return sum + double{a} * b; }>},
        {"DotProd_32s_Sfs", reduce<[](double sum, Zpp32s a, Zpp32s b) { return sum + double(a) * b; }>},
        {"SumLn_64f", timedOfPositive<reduceOf<sumOfLogarithm>(+sumOfLogarithm)>},
        {"SortAscend_32s_I", timedSort<Zpp32s, sort<Zpp32s, std::less<>>>},
        {"SortDescend_32s_I", timedSort<Zpp32s, sort<Zpp32s, std::greater<>>>},
        {"SortAscend_64f_I", timedSort<Zpp64f, sort<Zpp64f, std::less<>>>},
        {"SortDescend_64f_I", timedSort<Zpp64f, sort<Zpp64f, std::greater<>>>},
    });

}  // namespace
}  // namespace zpp::bench
