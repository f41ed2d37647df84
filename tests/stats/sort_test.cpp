#include <algorithm>
#include <climits>

#include "tests/support/binding.h"
#include "tests/support/draws.h"
#include "tests/support/guarded.h"
#include "zpp.h"

namespace zpp::test {
namespace {

class Sort : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Sort);

// Doubles as their bits, which an x87 register would change.
using Bits = std::uint64_t;
constexpr Bits kSign = Bits{1} << 63, kInfinite = Bits{0x7FF} << 52;
bool isNan(Bits x) { return (x & ~kSign) > kInfinite; }
bool isNan(Zpp32s) { return false; }
bool isLess(Bits a, Bits b) {
    const auto key = [](Bits x) { return (x & kSign) != 0 ? ~x : x | kSign; };
    return key(a) < key(b);
}
bool isLess(Zpp32s a, Zpp32s b) { return a < b; }

ZppStatus sort(Zpp32s* p, int len, bool down) {
    return down ? zppsSortDescend_32s_I(p, len) : zppsSortAscend_32s_I(p, len);
}
ZppStatus sort(Bits* p, int len, bool down) {
    auto* reals = reinterpret_cast<double*>(p);
    return down ? zppsSortDescend_64f_I(reals, len) : zppsSortAscend_64f_I(reals, len);
}

// Where `expected` is the ascending order, with the NaNs, which are `nans`, behind the numbers.
template <class T>
void expectSorted(const std::string& what, const std::vector<T>& values, std::vector<T> expected,
                  std::ptrdiff_t nans) {
    for (const bool down : {false, true}) {
        if (down) std::reverse(expected.begin(), expected.end() - nans);
        Guarded<T> sorted(values);
        ASSERT_EQ(sort(sorted, sorted.len(), down), zppStatusOk);
        const auto wrong = std::mismatch(expected.begin(), expected.end(), sorted.begin()).first;
        ASSERT_TRUE(wrong == expected.end() && sorted.intact())
            << what << " of " << values.size() << (down ? ", descending" : ", ascending") << ", at "
            << wrong - expected.begin();
    }
}
template <class T>
void expectSorted(const std::string& what, const std::vector<T>& values) {
    std::vector<T> expected = values;
    const auto nans = std::stable_partition(expected.begin(), expected.end(), [](T x) { return !isNan(x); });
    std::sort(expected.begin(), nans, [](T a, T b) { return isLess(a, b); });
    expectSorted(what, values, expected, expected.end() - nans);
}

Bits bitsOf(double x) {
    Bits bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}
std::vector<Bits> asReals(const std::vector<Zpp32s>& values) {
    std::vector<Bits> reals;
    for (const Zpp32s x : values) reals.push_back(bitsOf(x / 16.0));
    return reals;
}
// As integers and as doubles.
void expectSortedAsBoth(const std::string& what, const std::vector<Zpp32s>& values) {
    std::vector<Zpp32s> expected = values;
    std::sort(expected.begin(), expected.end());
    expectSorted(what, values, expected, 0);
    expectSorted(what, asReals(values), asReals(expected), 0);
}

TEST_P(Sort, EveryLength) {
    Random random;
    for (std::size_t len = 1; len <= 300; ++len) {
        expectSorted("any integers", random.patterns<Zpp32s>(len));
        expectSorted("any bits", random.patterns<Bits>(len));
        std::vector<Zpp32s> few(len);
        for (Zpp32s& x : few) x = static_cast<Zpp32s>(random.below(len));
        expectSortedAsBoth("some alike", few);
    }
}

// An order that makes the median of the first, the middle and the last element, and of what is left each
// time, one of the two least (Musser, "Introspective sorting and selection algorithms", 1997).
Zpp32s killer(int i, int len) {
    const int half = len / 2;
    if (i >= 2 * half) return len;
    return i >= half ? 2 * (i - half + 1) : i % 2 == 0 ? i + 1 : half + i / 2 * 2;
}

struct Shape {
    const char* name;
    Zpp32s (*element)(int i, int len, Random& random);
};
constexpr Shape kShapes[] = {
    {"random", [](int, int, Random& random) { return static_cast<Zpp32s>(random.bits()); }},
    {"sorted", [](int i, int, Random&) { return i; }},
    {"reversed", [](int i, int len, Random&) { return len - i; }},
    {"equal", [](int, int, Random&) { return 5; }},
    {"least", [](int, int, Random&) { return INT_MIN; }},
    {"greatest", [](int, int, Random&) { return INT_MAX; }},
    {"the ends", [](int, int, Random& random) { return random.below(2) == 0 ? INT_MIN : INT_MAX; }},
    {"few distinct", [](int, int, Random& random) { return static_cast<Zpp32s>(random.below(7)); }},
    {"mostly equal",
     [](int i, int, Random& random) { return random.below(9) == 0 ? i : static_cast<Zpp32s>(1 << 20); }},
    {"organ pipes", [](int i, int len, Random&) { return std::min(i, len - i); }},
    {"short sawteeth", [](int i, int, Random&) { return i % 8; }},
    {"long sawteeth", [](int i, int len, Random&) { return i % (len / 8 + 1); }},
    {"one out of place", [](int i, int len, Random&) { return i == len - 1 ? len / 2 : i; }},
    {"killer of medians of three", [](int i, int len, Random&) { return killer(i, len); }},
};
std::vector<Zpp32s> shaped(const Shape& shape, int len) {
    Random random;
    std::vector<Zpp32s> values;
    for (int i = 0; i < len; ++i) values.push_back(shape.element(i, len, random));
    return values;
}

TEST_P(Sort, EveryShape) {
    for (const Shape& shape : kShapes)
        for (const int len : {64, 257, 1000, 4099}) expectSortedAsBoth(shape.name, shaped(shape, len));
}

TEST_P(Sort, ManyElements) {
    for (const Shape& shape : kShapes) expectSortedAsBoth(shape.name, shaped(shape, 100003));
    const Shape& killers = kShapes[std::size(kShapes) - 1];
    expectSortedAsBoth(killers.name, shaped(killers, 1000000));
}

// Some of the special ones among so many ordinary numbers.
TEST_P(Sort, NansAndZeros) {
    const std::vector<Bits> nans = {kInfinite | 1, kInfinite | kSign | 2, kInfinite | 1ull << 51, ~Bits{0}};
    const std::vector<Bits> zeros = {0, kSign};
    const std::vector<Bits> least = {0, kSign, 1, kSign | 1, kInfinite, kInfinite | kSign};
    std::vector<Bits> all = nans;
    all.insert(all.end(), least.begin(), least.end());
    const struct {
        const char* name;
        const std::vector<Bits>& special;
    } rows[] = {{"NaNs", nans}, {"zeros", zeros}, {"least and infinite", least}, {"all", all}};
    Random random;
    for (const auto& row : rows)
        for (const unsigned of : {1u, 2u, 100u})
            for (const int len : {1, 2, 3, 7, 16, 33, 100, 700, 3000}) {
                std::vector<Bits> values;
                for (int i = 0; i < len; ++i)
                    values.push_back(
                        random.below(of) == 0
                            ? row.special[static_cast<std::size_t>(random.below(row.special.size()))] ^
                                  (isNan(row.special[0]) ? random.below(2) << 40 : 0)
                            : bitsOf(random.uniform()));
                expectSorted(row.name, values);
            }
}

// No bit of them is lost where the SSE unit takes them for zeros.
TEST_P(Sort, SubnormalNumbers) {
    Random random;
    for (const std::size_t len : {5u, 100u, 1000u}) {
        std::vector<Bits> values = random.patterns<Bits>(len);
        for (Bits& x : values) x &= kSign | 0x000FFFFFFFFFFFFF;
        for (const int mode : {1, 0})
            if (zppSetDenormAreZeros(mode) == zppStatusOk) expectSorted("subnormal numbers", values);
        zppSetDenormAreZeros(0);
    }
}

}  // namespace
}  // namespace zpp::test
