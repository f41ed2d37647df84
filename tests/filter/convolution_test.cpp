#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/guarded.h"
#include "tests/support/heap.h"
#include "zpp/filter.h"

namespace zpp::test {
namespace {

class Convolution : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Convolution);

// Sums of thousands of products in 64 bits are exact beside the bounds.
using Long = long double;
struct LongComplex {
    Long re = 0, im = 0;
};
LongComplex asLong(double x) { return {x, 0}; }
LongComplex asLong(Zpp64fc x) { return {x.re, x.im}; }

double norm(double x) { return x * x; }
double norm(Zpp64fc x) { return x.re * x.re + x.im * x.im; }
template <class T>
double norm(const std::vector<T>& values) {
    double sum = 0;
    for (const T& x : values) sum += norm(x);
    return std::sqrt(sum);
}

// The sum of a lag, and how many products it has.
template <class T>
LongComplex lagSum(const std::vector<T>& a, const std::vector<T>& b, long long lag, long long* terms) {
    LongComplex sum;
    *terms = 0;
    const long long begin = std::max(0LL, -lag);
    const long long end = std::min(static_cast<long long>(a.size()), static_cast<long long>(b.size()) - lag);
    for (long long i = begin; i < end; ++i, ++*terms) {
        const LongComplex x = asLong(a[static_cast<std::size_t>(i)]);
        const LongComplex y = asLong(b[static_cast<std::size_t>(i + lag)]);
        sum.re += x.re * y.re + x.im * y.im;
        sum.im += x.re * y.im - x.im * y.re;
    }
    return sum;
}

enum class Norm { kNone, kA, kB };

template <class S, class T>
struct Correlation {
    const char* name;
    Norm norm;
    ZppStatus (*automatic)(const S*, int, T*, int);
    ZppStatus (*cross)(const S*, int, const S*, int, T*, int, int);
};
template <class Check>
void forEachCorrelation(Check check) {
#define ROW(S, T, suffix)                                                                          \
    check(Correlation<S, T>{#suffix, Norm::kNone, zppsAutoCorr_##suffix, zppsCrossCorr_##suffix}); \
    check(Correlation<S, T>{#suffix " A", Norm::kA, zppsAutoCorr_NormA_##suffix,                   \
                            zppsCrossCorr_NormA_##suffix});                                        \
    check(Correlation<S, T>{#suffix " B", Norm::kB, zppsAutoCorr_NormB_##suffix,                   \
                            zppsCrossCorr_NormB_##suffix})
    ROW(Zpp64f, Zpp64f, 64f);
    ROW(Zpp64fc, Zpp64fc, 64fc);
    ROW(Zpp32f, Zpp64f, 32f64f);
#undef ROW
}

// The bound of the header for lengths and norms.
double bound(std::size_t n1, std::size_t n2, double norms) {
    const auto shorter = static_cast<double>(std::min(n1, n2));
    return 3 * 0x1p-53 * (std::log2(static_cast<double>(n1 + n2)) + 2 + std::sqrt(shorter)) * norms;
}

double partError(double actual, Long expected) {
    return std::fabs(static_cast<double>(Long{actual} - expected));
}

// Correlations of some lags near the exact sums, divided; 0 where nothing overlaps.
template <class T>
testing::AssertionResult isNear(const std::vector<T>& a, const std::vector<T>& b, Norm norming,
                                long long lowLag, const std::vector<T>& actual) {
    const double allowed = bound(a.size(), b.size(), norm(a) * norm(b));
    const auto most = static_cast<long long>(std::max(a.size(), b.size()));
    for (std::size_t k = 0; k < actual.size(); ++k) {
        if (actual.size() > 3000 && k % 97 != 0 && k + 20 < actual.size()) continue;  // not all of many
        const long long lag = lowLag + static_cast<long long>(k);
        long long terms;
        LongComplex sum = lagSum(a, b, lag, &terms);
        const long long divisor = norming == Norm::kA                             ? most
                                  : norming == Norm::kB && std::llabs(lag) < most ? most - std::llabs(lag)
                                                                                  : 1;
        LongComplex got;
        if constexpr (std::is_same_v<T, Zpp64fc>)
            got = {actual[k].re, actual[k].im};
        else
            got = {actual[k], 0};
        const double limit = (terms == 0 ? 0 : allowed / static_cast<double>(divisor)) * (1 + 0x1p-50);
        const double error = std::max(partError(static_cast<double>(got.re), sum.re / divisor),
                                      partError(static_cast<double>(got.im), sum.im / divisor));
        if (!(error <= limit))
            return testing::AssertionFailure()
                   << "lag " << lag << " is off by " << error << ", allowed " << limit;
    }
    return testing::AssertionSuccess();
}

template <class S>
auto widened(const std::vector<S>& values) {
    if constexpr (std::is_same_v<S, Zpp32f>)
        return std::vector<double>(values.begin(), values.end());
    else
        return values;
}

template <class S, class T>
void expectCorrelation(const Correlation<S, T>& f, const std::vector<S>& a, const std::vector<S>& b,
                       int dstLen, int lowLag) {
    SCOPED_TRACE(testing::Message() << f.name << ": " << a.size() << " with " << b.size() << ", " << dstLen
                                    << " lags from " << lowLag);
    const Guarded<S> src1(a), src2(b);
    Guarded<T> dst(static_cast<std::size_t>(dstLen));
    EXPECT_EQ(f.cross(src1.data(), static_cast<int>(a.size()), src2.data(), static_cast<int>(b.size()), dst,
                      dstLen, lowLag),
              zppStatusOk);
    EXPECT_TRUE(isNear<T>(widened(a), widened(b), f.norm, lowLag, dst.values()) && dst.intact());
}

template <class T>
std::vector<T> ordinary(Random& random, int len) {
    return drawn<T>(random, Draw::kOrdinary, static_cast<std::size_t>(len));
}

// Lengths around blocks, parts and transforms, and one short with one long.
constexpr std::pair<int, int> kLengths[] = {{1, 1},      {1, 9},     {3, 2},     {7, 40},     {33, 32},
                                            {64, 64},    {65, 200},  {130, 515}, {300, 1500}, {513, 600},
                                            {1024, 900}, {16, 3000}, {1500, 40}};

TEST_P(Convolution, CorrelationIsNearTheExactSums) {
    Random random;
    forEachCorrelation([&]<class S, class T>(const Correlation<S, T>& f) {
        for (const auto& [n1, n2] : kLengths) {
            if (f.norm != Norm::kNone && n1 + n2 > 300) continue;
            const auto a = ordinary<S>(random, n1), b = ordinary<S>(random, n2);
            expectCorrelation(f, a, b, n1 + n2 + 9, -n1 - 3);
            expectCorrelation(f, a, b, (n1 + 1) / 2, -n1 / 4);
            expectCorrelation(f, a, b, n2, n2 / 2);
        }
    });
}

TEST_P(Convolution, FewLagsOfLongVectors) {
    Random random;
    forEachCorrelation([&]<class S, class T>(const Correlation<S, T>& f) {
        if (f.norm != Norm::kNone) return;
        const auto a = ordinary<S>(random, 9000), b = ordinary<S>(random, 7000);
        for (const int count : {1, 50, 400}) expectCorrelation(f, a, b, count, -20);
    });
}

TEST_P(Convolution, LagsWithoutOverlapAreZero) {
    forEachCorrelation([]<class S, class T>(const Correlation<S, T>& f) {
        Random random;
        const auto a = ordinary<S>(random, 40), b = ordinary<S>(random, 50);
        for (const int lowLag : {INT_MIN, INT_MIN + 1, -100, -45, 45, 60, INT_MAX - 3, INT_MAX})
            for (const int count : {1, 40, 200}) expectCorrelation(f, a, b, count, lowLag);
    });
}

TEST_P(Convolution, AutoCorrelationIsThatOfTheVectorWithItself) {
    Random random;
    forEachCorrelation([&]<class S, class T>(const Correlation<S, T>& f) {
        SCOPED_TRACE(f.name);
        for (const int len : {1, 2, 40, 700, 5000})
            for (const int count : {1, len, len + 7}) {
                const auto x = ordinary<S>(random, len);
                const Guarded<S> src(x);
                Guarded<T> dst(static_cast<std::size_t>(count));
                EXPECT_EQ(f.automatic(src.data(), len, dst, count), zppStatusOk);
                EXPECT_TRUE(isNear<T>(widened(x), widened(x), f.norm, 0, dst.values()) && dst.intact());
            }
        // Lags of either sign, where both sources are one vector.
        const int len = 1024, count = 2 * len - 1;
        const auto x = ordinary<S>(random, len);
        const Guarded<S> src(x);
        for (const int lowLag : {1 - len, -len / 3}) {
            Guarded<T> dst(count);
            EXPECT_EQ(f.cross(src.data(), len, src.data(), len, dst, count, lowLag), zppStatusOk);
            EXPECT_TRUE(isNear<T>(widened(x), widened(x), f.norm, lowLag, dst.values()) && dst.intact());
        }
    });
}

// y[n] = the correlation of the reversed first vector at lag n - (n1 - 1).
void expectConvolution(const std::vector<double>& a, const std::vector<double>& b) {
    SCOPED_TRACE(testing::Message() << a.size() << " with " << b.size());
    const Guarded<double> src1(a), src2(b);
    Guarded<double> dst(a.size() + b.size() - 1);
    EXPECT_EQ(
        zppsConv_64f(src1.data(), static_cast<int>(a.size()), src2.data(), static_cast<int>(b.size()), dst),
        zppStatusOk);
    EXPECT_TRUE(dst.intact());
    EXPECT_TRUE(isNear(std::vector<double>(a.rbegin(), a.rend()), b, Norm::kNone,
                       1 - static_cast<long long>(a.size()), dst.values()));
}

TEST_P(Convolution, IsNearTheExactSums) {
    Random random;
    for (const auto& [n1, n2] : kLengths)
        expectConvolution(random.reals(static_cast<std::size_t>(n1)),
                          random.reals(static_cast<std::size_t>(n2)));
    for (const auto& [n1, n2] : {std::pair{100, 40000}, {3000, 30000}, {9000, 9000}})
        expectConvolution(random.reals(static_cast<std::size_t>(n1)),
                          random.reals(static_cast<std::size_t>(n2)));
}

// Impulses, flat spectra and a large range of magnitudes.
TEST_P(Convolution, HoldsTheBoundForHardInputs) {
    Random random;
    constexpr std::size_t n = 3000;
    std::vector<double> impulse(n), chirp(n), steep(n), constant(n, 0.7);
    impulse[n - 5] = 1;
    for (std::size_t i = 0; i < n; ++i) {
        chirp[i] = std::cos(3.14159 * static_cast<double>(i * i) / n);
        steep[i] = std::ldexp(random.uniform(), static_cast<int>(i % 200) - 100);
    }
    for (const auto& a : {impulse, chirp, steep, constant})
        for (const auto& b : {impulse, chirp, steep, constant}) expectConvolution(a, b);
}

// Sums of integers are exact, whatever their order.
TEST_P(Convolution, ShortSumsOfIntegersAreExact) {
    std::vector<double> a(20), b(30), expected(49);
    for (std::size_t i = 0; i < 20; ++i) a[i] = static_cast<double>(i * i) - 77;
    for (std::size_t i = 0; i < 30; ++i) b[i] = 100 - static_cast<double>(7 * i);
    for (std::size_t i = 0; i < 20; ++i)
        for (std::size_t j = 0; j < 30; ++j) expected[i + j] += a[i] * b[j];
    std::vector<double> dst(49);
    EXPECT_EQ(zppsConv_64f(a.data(), 20, b.data(), 30, dst.data()), zppStatusOk);
    EXPECT_TRUE(same(expected, dst));
}

// In a direct sum an infinity reaches the results that it is a part of, and no others.
TEST_P(Convolution, ShortSumsKeepInfinitiesApart) {
    std::vector<double> a(20, 1), b(70, 1);
    for (auto* x : {&a[3], &b[50]}) {
        *x = kInf;
        std::vector<double> dst(89);
        EXPECT_EQ(zppsConv_64f(a.data(), 20, b.data(), 70, dst.data()), zppStatusOk);
        const int first = x == &a[3] ? 3 : 50, last = x == &a[3] ? 72 : 69;
        for (int n = 0; n < 89; ++n)
            EXPECT_EQ(std::isfinite(dst[static_cast<std::size_t>(n)]), n < first || n > last) << n;
        *x = 1;
    }
}

TEST_P(Convolution, AlignmentChangesNoBit) {
    Random random;
    for (const auto& [n1, n2] : {std::pair{50, 301}, {2000, 2500}}) {
        const auto a = random.reals(static_cast<std::size_t>(n1) + 8),
                   b = random.reals(static_cast<std::size_t>(n2) + 8);
        std::vector<std::vector<double>> results;
        for (std::size_t shift = 0; shift < 8; ++shift) {
            std::vector<double> x(a), y(b), dst(static_cast<std::size_t>(n1 + n2) + 8);
            std::copy(a.begin(), a.end() - 8, x.begin() + static_cast<long>(shift));
            std::copy(b.begin(), b.end() - 8, y.begin() + static_cast<long>(7 - shift));
            EXPECT_EQ(zppsConv_64f(&x[shift], n1, &y[7 - shift], n2, &dst[shift]), zppStatusOk);
            results.emplace_back(dst.begin() + static_cast<long>(shift),
                                 dst.begin() + static_cast<long>(shift) + n1 + n2 - 1);
            EXPECT_TRUE(sameBits(results[0], results.back())) << "shift " << shift;
        }
    }
}

TEST_P(Convolution, ChecksInOrder) {
    Guarded<double> src(std::vector<double>(9000)), dst(18000);
    const struct {
        const double *src1, *src2;
        double* dst;
        int len1, len2;
        ZppStatus status;
    } kCases[] = {{nullptr, src, dst, 0, 0, zppStatusNullPointer},
                  {src, nullptr, dst, 0, 0, zppStatusNullPointer},
                  {src, src, nullptr, 0, 0, zppStatusNullPointer},
                  {src, src, dst, 0, 1, zppStatusSizeError},
                  {src, src, dst, 1, -1, zppStatusSizeError}};
    for (const auto& c : kCases) EXPECT_EQ(zppsConv_64f(c.src1, c.len1, c.src2, c.len2, c.dst), c.status);
    EXPECT_EQ(zppsCrossCorr_64f(src, 1, src, 1, dst, 0, 0), zppStatusSizeError);
    EXPECT_EQ(zppsAutoCorr_64f(src, 0, dst, 1), zppStatusSizeError);
    EXPECT_EQ(zppsAutoCorr_64f(src, 1, dst, -1), zppStatusSizeError);
    EXPECT_EQ(zppsAutoCorr_64f(nullptr, 0, dst, 0), zppStatusNullPointer);
    for (int failing = 0; failing < 3; ++failing) {
        const long before = liveBlocks();
        const FailingHeap heap(failing);
        EXPECT_EQ(zppsConv_64f(src, 9000, src, 9000, dst), zppStatusAllocationFailed) << failing;
        EXPECT_EQ(liveBlocks(), before);
    }
    EXPECT_TRUE(dst.untouched());
}

}  // namespace
}  // namespace zpp::test
