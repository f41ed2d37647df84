#include <climits>
#include <numeric>

#include "tests/support/binding.h"
#include "tests/support/table.h"
#include "zpp/stats.h"

namespace zpp::test {
namespace {

class Extremes : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Extremes);

// The index by the rule, element by element.
template <class T, class Better>
int indexBy(Better better, const T* p, int len) {
    int index = 0;
    for (int i = 1; i < len; ++i)
        if (better(p[i], p[index])) index = i;
    return index;
}
constexpr auto greater = [](auto x, auto best) { return x > best; };
constexpr auto less = [](auto x, auto best) { return x < best; };
constexpr auto notGreaterOrEqual = [](auto x, auto best) { return !(x >= best); };

// By the bits: of zeros and of NaN.
template <class T, class Better>
void expectAt(Better better, const T* p, int len, const T& value, int index) {
    const int expected = indexBy(better, p, len);
    EXPECT_TRUE(index == expected && sameBits(p[expected], value))
        << shown(value) << " at " << index << " of " << len << ", expected " << shown(p[expected]) << " at "
        << expected;
}

template <class Better>
void expectOne(Better better, ZppStatus (*call)(const double*, int, double*),
               ZppStatus (*indexed)(const double*, int, double*, int*), const double* p, int len) {
    double value[3];
    int index = -1;
    EXPECT_EQ(call(p, len, &value[0]), zppStatusOk);
    EXPECT_EQ(indexed(p, len, &value[1], &index), zppStatusOk);
    EXPECT_EQ(indexed(p, len, &value[2], nullptr), zppStatusOk);
    for (const double& x : value) expectAt(better, p, len, x, index);
}

template <class T>
void expectBoth(ZppStatus (*call)(const T*, int, T*, T*),
                ZppStatus (*indexed)(const T*, int, T*, int*, T*, int*), const T* p, int len) {
    T min[2], max[2];
    int minIndx = -1, maxIndx = -1;
    EXPECT_EQ(call(p, len, &min[0], &max[0]), zppStatusOk);
    EXPECT_EQ(indexed(p, len, &min[1], &minIndx, &max[1], &maxIndx), zppStatusOk);
    for (const T& x : min) expectAt(notGreaterOrEqual, p, len, x, minIndx);
    for (const T& x : max) expectAt(greater, p, len, x, maxIndx);
}

void expectExtremes(const double* p, int len) {
    expectOne(greater, zppsMax_64f, zppsMaxIndx_64f, p, len);
    expectOne(less, zppsMin_64f, zppsMinIndx_64f, p, len);
    expectBoth(zppsMinMax_64f, zppsMinMaxIndx_64f, p, len);
}
void expectExtremes(const Zpp32s* p, int len) { expectBoth(zppsMinMax_32s, zppsMinMaxIndx_32s, p, len); }

template <class T>
void expectInEveryLength(const std::vector<T>& values) {
    Guarded<T> src(values);
    expectExtremes(src, src.len());
    for (const int len : awkwardLengths()) expectExtremes(src + (src.len() - len), len);
}

// Some of few values: mostly ties.
template <class T>
std::vector<T> anyOf(const std::vector<T>& values) {
    Random random;
    std::vector<T> chosen(1100);
    for (T& x : chosen) std::memcpy(&x, values.data() + random.below(values.size()), sizeof x);
    return chosen;
}
template <class T>
std::vector<T> rising(T step) {
    std::vector<T> values(1100);
    for (std::size_t i = 1; i < values.size(); ++i) values[i] = values[i - 1] + step;
    return values;
}

TEST_P(Extremes, AreWhatOneElementAfterTheOtherGives) {
    for (const Draw draw : kDraws) {
        Random random;
        expectInEveryLength(drawn<double>(random, draw, 1100));
        expectInEveryLength(drawn<Zpp32s>(random, draw, 1100));
    }
    const std::vector<double> few[] = {{0.0, -0.0},      {0.0, -0.0, -1},   {0.0, -0.0, 1}, {1, 2},
                                       {kInf, 0, kNan},  {-kInf, -1, kNan}, {kNan, -kNan},  {kInf, kNan},
                                       {kInf, -kInf, 1}, {-kNan, -0.0, 0}};
    for (const auto& values : few) expectInEveryLength(anyOf(values));
    expectInEveryLength(anyOf<Zpp32s>({INT_MIN, INT_MAX}));
    expectInEveryLength(anyOf<Zpp32s>({-1, 0}));
    for (const int step : {-1, 1}) {
        expectInEveryLength(rising<double>(step));
        expectInEveryLength(rising<Zpp32s>(step));
    }
}

// Among ones there is another element everywhere, and once more a little behind.
template <class T>
void expectFoundAnywhere(const T& other) {
    for (const int len : {1, 2, 7, 16, 37, 70, 131, 270, 530})
        for (int first = 0; first < len; first += 1 + len / 30)
            for (const int second : {first + 3, first + 90}) {
                Guarded<T> src(std::vector<T>(static_cast<std::size_t>(len), T{1}));
                for (const int i : {first, second})
                    if (i < len) std::memcpy(&src[i], &other, sizeof other);
                expectExtremes(src, len);
            }
}

TEST_P(Extremes, AreFoundAnywhere) {
    for (const double other : {2.0, 0.5, -0.0, kNan}) expectFoundAnywhere(other);
    const std::uint64_t signallingNan = 0xFFF0000000000001;
    std::vector<double> signalling(1);
    std::memcpy(signalling.data(), &signallingNan, sizeof signallingNan);
    expectFoundAnywhere(signalling[0]);
    for (const Zpp32s other : {2, 0, -1}) expectFoundAnywhere(other);
}

TEST_P(Extremes, TakesUnalignedIntegers) {
    Random random;
    for (const int len : awkwardLengths())
        for (const std::size_t shift : {1u, 2u, 3u}) {
            const auto values = drawn<Zpp32s>(random, Draw::kOrdinary, static_cast<std::size_t>(len));
            Guarded<unsigned char> src(values.size() * sizeof(Zpp32s) + shift);
            std::memcpy(src + shift, values.data(), values.size() * sizeof(Zpp32s));
            Zpp32s min, max;
            EXPECT_EQ(zppsMinMax_32s(reinterpret_cast<const Zpp32s*>(src + shift), len, &min, &max),
                      zppStatusOk);
            EXPECT_EQ(min, *std::min_element(values.begin(), values.end()));
            EXPECT_EQ(max, *std::max_element(values.begin(), values.end()));
        }
}

TEST_P(Extremes, OfEveryPairOfElements) {
    expectDrawn<Zpp32s, Zpp32s, Zpp32s>("MaxEvery_32s", inPlace(zppsMaxEvery_32s_I),
                                        [](Zpp32s a, Zpp32s b) { return std::max(a, b); });
}

struct Order {
    int order;
    ZppStatus status;
    bool operator==(const Order&) const = default;
};
Order stated(const std::vector<Zpp32s>& values) {
    std::int64_t bits = 0;
    for (const std::int64_t x : values) bits |= std::abs(x);
    int order = 0;
    while (bits >> order != 0) ++order;
    return {order, zppStatusOk};
}
Order stated(const std::vector<double>& values) {
    Order result = {0, zppStatusOk};
    double largest = 0;
    for (const double x : values) {
        if (std::isfinite(x))
            largest = std::max(largest, std::fabs(x));
        else
            result.status = zppStatusNanArg;
    }
    if (largest > 0 && largest < std::numeric_limits<double>::min()) return {-1022, zppStatusNanArg};
    std::frexp(largest, &result.order);
    return result;
}

template <class T>
void expectOrder(ZppStatus (*call)(const T*, int, int*), const std::vector<T>& values, Order expected) {
    Guarded<T> src(values);
    Order actual = {INT_MIN, zppStatusOk};
    actual.status = call(src, src.len(), &actual.order);
    EXPECT_TRUE(actual == expected) << actual.order << ", status " << actual.status << ", expected "
                                    << expected.order << ", status " << expected.status << ", of "
                                    << values.size() << " elements, the first " << shown(values[0]);
}

TEST_P(Extremes, HaveAnOrder) {
    Random random;
    for (const Draw draw : kDraws)
        for (const int len : awkwardLengths()) {
            const auto count = static_cast<std::size_t>(len);
            const auto ints = drawn<Zpp32s>(random, draw, count);
            const auto reals = drawn<double>(random, draw, count);
            expectOrder(zppsMaxOrder_32s, ints, stated(ints));
            expectOrder(zppsMaxOrder_64f, reals, stated(reals));
        }
    for (int bit = 0; bit < 32; ++bit)
        expectOrder(zppsMaxOrder_32s, std::vector<Zpp32s>(70, -1 - (INT_MAX >> bit)),
                    {32 - bit, zppStatusOk});
    expectOrder<Zpp32s>(zppsMaxOrder_32s, {0, 0}, {0, zppStatusOk});
    const struct {
        std::vector<double> values;
        Order expected;
    } rows[] = {{{0.75}, {0, zppStatusOk}},
                {{4}, {3, zppStatusOk}},
                {{-0.0}, {0, zppStatusOk}},
                {{-0x1p1023, 1}, {1024, zppStatusOk}},
                {{0x1p-1022}, {-1021, zppStatusOk}},
                {{1e-310}, {-1022, zppStatusNanArg}},
                {{0x1p-1074, 0}, {-1022, zppStatusNanArg}},
                {{kInf, 2}, {2, zppStatusNanArg}},
                {{kNan, kInf}, {0, zppStatusNanArg}}};
    for (const auto& row : rows) expectOrder(zppsMaxOrder_64f, row.values, row.expected);
}

TEST_P(Extremes, ChecksPointersAndLengthsInTheirOrder) {
    const double* reals = nullptr;
    const Zpp32s* ints = nullptr;
    EXPECT_EQ(zppsMax_64f(reals, 0, nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsMinIndx_64f(reals, 0, nullptr, nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsMinMax_64f(reals, 0, nullptr, nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsMinMaxIndx_32s(ints, 0, nullptr, nullptr, nullptr, nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsMaxOrder_32s(ints, 0, nullptr), zppStatusSizeError);
    EXPECT_EQ(zppsMaxOrder_64f(reals, 0, nullptr), zppStatusSizeError);
}

}  // namespace
}  // namespace zpp::test
