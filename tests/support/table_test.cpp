// The tables find what is wrong with functions, for each of which one sort of check is there.
#include "tests/support/table.h"

#include <gtest/gtest-spi.h>

#include "tests/support/rounded.h"

namespace zpp::test {
namespace {

template <class Row>
int failuresOf(Row row) {
    testing::TestPartResultArray results;
    {
        testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        row();
    }
    return results.size();
}

// A quotient whose faults the template argument chooses.
enum Fault { kNone, kSign, kNoNan, kWarning, kTail, kPast, kOrder, kRounding };
template <Fault fault>
ZppStatus divide(const double* divisor, const double* dividend, double* dst, int len) {
    if (fault == kOrder && len <= 0) return zppStatusSizeError;
    if (divisor == nullptr || dividend == nullptr || dst == nullptr) return zppStatusNullPointer;
    if (len <= 0) return zppStatusSizeError;
    ZppStatus status = zppStatusOk;
    for (int i = 0; i < len; ++i) {
        if (divisor[i] == 0 && fault != kWarning) status = zppStatusDivByZero;
        const volatile double quotient = dividend[i] / divisor[i];
        dst[i] = quotient;
        if (fault == kSign && quotient == 0) dst[i] = 0;
        if (fault == kNoNan && std::isnan(quotient)) dst[i] = 0;
        if (fault == kRounding) dst[i] = std::nextafter(dst[i], 0.0);
    }
    if (fault == kTail && len % 8 == 1) dst[len - 1] = 1;
    if (fault == kPast) reinterpret_cast<unsigned char*>(dst)[-1] = 1;
    return status;
}
template <Fault fault>
ZppStatus divideInPlace(const double* divisor, double* dst, int len) {
    return divide<fault>(divisor, dst, dst, len);
}
Warned<double> quotientOf(double divisor, double dividend) {
    return {quotient(dividend, divisor), divisor == 0 ? zppStatusDivByZero : zppStatusOk};
}

TEST(Table, FindsFaults) {
    const auto row = [](auto call, auto callInPlace) {
        return failuresOf([=] { binary("Divide", call, callInPlace, quotientOf); });
    };
    EXPECT_EQ(row(divide<kNone>, divideInPlace<kNone>), 0);
    EXPECT_GT(row(divide<kNone>, divideInPlace<kTail>), 0);
    EXPECT_GT(row(divide<kSign>, nullptr), 0);
    EXPECT_GT(row(divide<kNoNan>, nullptr), 0);
    EXPECT_GT(row(divide<kWarning>, nullptr), 0);
    EXPECT_GT(row(divide<kTail>, nullptr), 0);
    EXPECT_GT(row(divide<kPast>, nullptr), 0);
    EXPECT_GT(row(divide<kOrder>, nullptr), 0);
    EXPECT_GT(row(divide<kRounding>, nullptr), 0);
}

template <int added>
ZppStatus increase(const int* src, int* dst, int len) {
    if (src == nullptr || dst == nullptr) return zppStatusNullPointer;
    for (int i = 0; i < len; ++i) dst[i] = src[i] / 2 + added;
    return len > 0 ? zppStatusOk : zppStatusSizeError;
}

TEST(Table, FindsFaultsOfOneSource) {
    const auto halfAndOne = [](int x) { return x / 2 + 1; };
    EXPECT_EQ(failuresOf([=] { unary("Increase", increase<1>, nullptr, halfAndOne); }), 0);
    EXPECT_GT(failuresOf([=] { unary("Increase", increase<2>, nullptr, halfAndOne); }), 0);
}

template <int skipped, bool checks = true>
ZppStatus largest(const int* src, int len, int* max) {
    if (src == nullptr || max == nullptr)
        return checks || len > 0 ? zppStatusNullPointer : zppStatusSizeError;
    if (len <= 0) return zppStatusSizeError;
    *max = *std::max_element(src + (len > 1 ? skipped : 0), src + len);
    return zppStatusOk;
}
int largestOf(const std::vector<int>& values) {
    int max = values[0];
    for (const int x : values) max = x > max ? x : max;
    return max;
}

TEST(Table, FindsFaultsOfReductions) {
    EXPECT_EQ(failuresOf([] { reduction("Largest", largest<0>, largestOf); }), 0);
    EXPECT_GT(failuresOf([] { reduction("Largest", largest<1>, largestOf); }), 0);
    EXPECT_GT(failuresOf([] { reduction("Largest", largest<0, false>, largestOf); }), 0);
}

TEST(Table, ComparesNumbers) {
    const double up = std::nextafter(1.0, 2.0);
    EXPECT_TRUE(same(kNan, -kNan) && same(1.0, 1.0) && same(1.0, up, 1) && same(0.0, -0x1p-1074, 1));
    EXPECT_FALSE(same(kNan, 1.0, 9) || same(0.0, -0.0) || same(1.0, up) ||
                 same(1.0, std::nextafter(up, 2), 1));
    EXPECT_FALSE(same(Zpp32fc{1, 0}, Zpp32fc{1, -0.0F}) || same(1, 2, 1));
}

TEST(Table, KeepsTheWorstError) {
    WorstError worst;
    worst.add(1, 1.5, Wide{1.5});
    worst.add(2, 1.0 + 0x1p-52, Wide{1} - Wide{0x1p-53});
    worst.add(3, 0x1p-1074, Wide{0x1p-1074});
    EXPECT_EQ(worst.argument, 2);
    EXPECT_EQ(worst.ulps, 3);  // of the doubles below 1
    worst.add(4, kNan, Wide{1});
    EXPECT_EQ(worst.argument, 4);
    EXPECT_EQ(worst.ulps, kInf);
}

}  // namespace
}  // namespace zpp::test
