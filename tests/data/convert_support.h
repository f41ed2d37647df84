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
#include "zpp/data.h"

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

// Checks call(src, dst, len) against the results expected of `values`: of all of them at once and, with
// everyLength, of the last few.
template <class D, class S, class Call>
void expectConverts(const Call& call, const std::vector<S>& values, const std::vector<D>& expected,
                    const std::string& what, bool everyLength = true) {
    const int all = static_cast<int>(values.size());
    std::vector<int> lengths = everyLength ? awkwardLengths() : std::vector<int>();
    lengths.push_back(all);
    Guarded<S> src(values);
    for (const int len : lengths) {
        const int skip = std::max(all - len, 0);
        Guarded<D> dst(static_cast<std::size_t>(all - skip));
        ASSERT_EQ(call(raw(src + skip), raw(dst.data()), dst.len()), zppStatusOk) << what;
        for (int i = 0; i < dst.len(); ++i) {
            const auto at = static_cast<std::size_t>(skip + i);
            ASSERT_EQ(std::memcmp(&expected[at], dst + i, sizeof(D)), 0)
                << what << " of " << testing::PrintToString(values[at]) << " (element " << i << " of "
                << dst.len() << ") is " << testing::PrintToString(dst[i]) << ", expected "
                << testing::PrintToString(expected[at]);
        }
    }
    EXPECT_EQ(call(raw(static_cast<S*>(nullptr)), raw(static_cast<D*>(nullptr)), 0), zppStatusNullPointer)
        << what;
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

inline std::vector<Packed24> packedValues() {
    std::vector<Packed24> values = {{{0xFF, 0xFF, 0x80}}, {{0xFF, 0xFF, 0x7F}}, {{0, 0, 0x80}}};
    for (long x = 0; x < 0x1000000; x += 97) values.push_back(Packed24::of(x));
    return values;
}

// y rounded in the mode (zppRoundNear: to nearest, ties to even) and saturated; a NaN gives the lower bound.
inline long rounded(long double y, ZppRoundMode mode, long lower, long upper) {
    if (!(y > static_cast<long double>(lower))) return lower;
    if (y >= static_cast<long double>(upper)) return upper;
    return static_cast<long>(mode == zppRoundNear ? std::nearbyint(y) : std::trunc(y));
}

// A conversion with its scale factor.
template <class Call>
auto withFactor(Call call, int factor) {
    return [=](auto* src, auto* dst, int len) { return call(src, dst, len, factor); };
}

// expectConverts at every length for the scale factors that choose between loops.
template <class D, class S, class Call>
void expectScaled(const Call& call, const std::vector<S>& values, const std::vector<D>& expected,
                  const std::string& name, int factor) {
    const bool chooses = factor == 0 || factor == 1 || factor == -1 || factor == 150;
    expectConverts(call, values, expected, name + ", scaleFactor " + std::to_string(factor) + ",", chooses);
}

// scaleFactor within the range that ldexp can take and that changes no result.
inline int exponentOf(int scaleFactor) { return -std::min(std::max(scaleFactor, -5000), 5000); }

}  // namespace zpp::test
