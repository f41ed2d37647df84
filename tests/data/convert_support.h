// What the tests of the conversions share.
#pragma once

#include <climits>
#include <cmath>
#include <functional>
#include <limits>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"

namespace zpp::test {

inline constexpr ZppRoundMode kNear = zppRoundNear, kZero = zppRoundZero;

// A packed 24-bit element; the library takes vectors of them as bytes.
struct Packed24 {
    Zpp8u bytes[3];

    static Packed24 of(long value) {
        const auto byte = [=](int i) { return static_cast<Zpp8u>(value >> 8 * i & 0xFF); };
        return {{byte(0), byte(1), byte(2)}};
    }
    long asUnsigned() const { return bytes[0] + 256L * bytes[1] + 65536L * bytes[2]; }
    long asSigned() const { return asUnsigned() - (bytes[2] >= 128 ? 16777216 : 0); }
};
inline void PrintTo(const Packed24& v, std::ostream* out) { *out << "packed " << v.asUnsigned(); }

template <class T>
T* raw(T* p) {
    return p;
}
inline const Zpp8u* raw(const Packed24* p) { return reinterpret_cast<const Zpp8u*>(p); }
inline Zpp8u* raw(Packed24* p) { return reinterpret_cast<Zpp8u*>(p); }

// Checks call(src, dst, len) against the results expected of `values`, all at once.
template <class D, class S, class Call>
void expectValues(const Call& call, const std::vector<S>& values, const std::vector<D>& expected,
                  const std::string& what) {
    Guarded<S> all(values);
    Guarded<D> dst(values.size());
    ASSERT_EQ(call(raw(all.data()), raw(dst.data()), dst.len()), zppStatusOk) << what;
    for (std::size_t i = 0; i < values.size(); ++i)
        ASSERT_EQ(std::memcmp(&expected[i], &dst.data()[i], sizeof(D)), 0)
            << what << " of " << testing::PrintToString(values[i]) << " (element " << i << ") is "
            << testing::PrintToString(dst.data()[i]) << ", expected " << testing::PrintToString(expected[i]);
}

// The same, then awkward lengths between guard pages, then the argument checks.
template <class D, class S, class Call>
void expectConverts(const Call& call, const std::vector<S>& values, const std::vector<D>& expected,
                    const std::string& what) {
    expectValues(call, values, expected, what);
    for (const int len : awkwardLengths()) {
        const auto n = std::min(static_cast<std::size_t>(len), values.size());
        const auto skip = static_cast<std::ptrdiff_t>(values.size() - n) / 2;
        const std::vector<S> some(values.begin() + skip,
                                  values.begin() + skip + static_cast<std::ptrdiff_t>(n));
        for (const Edge edge : {Edge::kEnd, Edge::kStart}) {
            Guarded<S> src(some, edge);
            Guarded<D> part(n, edge);
            ASSERT_EQ(call(raw(src.data()), raw(part.data()), part.len()), zppStatusOk) << what;
            ASSERT_EQ(std::memcmp(&expected[static_cast<std::size_t>(skip)], part.data(), n * sizeof(D)), 0)
                << what << ", length " << n;
            ASSERT_TRUE(part.intact()) << what << ", length " << n;
        }
    }
    Guarded<S> source(4);
    Guarded<D> kept(4);
    constexpr S* kNoSource = nullptr;
    constexpr D* kNoDestination = nullptr;
    EXPECT_EQ(call(raw(kNoSource), raw(kept.data()), 0), zppStatusNullPointer) << what;
    EXPECT_EQ(call(raw(source.data()), raw(kNoDestination), 0), zppStatusNullPointer) << what;
    EXPECT_EQ(call(raw(source.data()), raw(kept.data()), 0), zppStatusSizeError) << what;
    EXPECT_EQ(call(raw(source.data()), raw(kept.data()), INT_MIN), zppStatusSizeError) << what;
    EXPECT_TRUE(kept.untouched()) << what;
}

template <class S, class Rule>
auto mapped(const std::vector<S>& values, Rule rule) {
    std::vector<decltype(rule(values[0]))> results;
    results.reserve(values.size());
    for (const S& value : values) results.push_back(rule(value));
    return results;
}

// Every value of a type of 8 or 16 bits, in order.
template <class T>
std::vector<T> everyValue() {
    std::vector<T> values;
    for (long x = std::numeric_limits<T>::min(); x <= std::numeric_limits<T>::max(); ++x)
        values.push_back(static_cast<T>(x));
    return values;
}

// y rounded in the mode (zppRoundNear: to nearest, ties to even) and saturated; a NaN gives the lower bound.
inline long rounded(long double y, ZppRoundMode mode, long lower, long upper) {
    if (!(y > static_cast<long double>(lower))) return lower;
    if (y >= static_cast<long double>(upper)) return upper;
    return static_cast<long>(mode == zppRoundNear ? std::nearbyint(y) : std::trunc(y));
}

// expectConverts for the scale factors that choose between loops, expectValues for the others.
template <class D, class S, class Call>
void expectScaled(const Call& call, const std::vector<S>& values, const std::vector<D>& expected,
                  const std::string& name, int factor) {
    const std::string what = name + ", scaleFactor " + std::to_string(factor) + ",";
    if (factor == 0 || factor == 1 || factor == -1 || factor == 150)
        expectConverts(call, values, expected, what);
    else
        expectValues(call, values, expected, what);
}

// scaleFactor within the range that ldexp can take and that changes no result.
inline int exponentOf(int scaleFactor) { return -std::min(std::max(scaleFactor, -5000), 5000); }

}  // namespace zpp::test
