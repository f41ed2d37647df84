// Tests as tables: a function of a known shape is one row, of its name, its forms and an oracle that says
// what each element must be. A row is called on every kind of data and at all awkward lengths, up to a page
// that cannot be read. What zpp-check asks of every export is not asked here again.
//
//     unary("Abs_64f", zppsAbs_64f, zppsAbs_64f_I, magnitude);
//     binary("Add_64f", zppsAdd_64f, zppsAdd_64f_I, sum);
//     withConstant("AddC_64f", zppsAddC_64f, zppsAddC_64f_I, sum, {0.0, 3.0, kNan});
//
// The form in place may be null. Functions of other shapes are brought to the one of expectRow, by outOfPlace
// with what follows their length: a scale factor, a rounding mode, levels.
#pragma once

#include <functional>
#include <string>
#include <tuple>
#include <type_traits>

#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/guarded.h"
#include "zpp/status.h"

namespace zpp::test {

// What an oracle gives where an element makes the whole call return a warning.
template <class D>
struct Warned {
    Warned(D v, ZppStatus s = zppStatusOk) : value(v), status(s) {}
    D value;
    ZppStatus status;
};

// An element of the result, from elements of the sources. An overloaded function will do.
template <class D, class... S>
struct Oracle : std::function<Warned<D>(S...)> {
    using Base = std::function<Warned<D>(S...)>;
    Oracle(D (*f)(S...)) : Base(f) {}
    Oracle(Warned<D> (*f)(S...)) : Base(f) {}
    template <class F>
    requires std::is_class_v<F> Oracle(F f) : Base(f) {}
};

// The bytes of a T: an x87 register would change a signalling NaN.
template <class T>
struct Raw {
    unsigned char bytes[sizeof(T)];
};

// How a vector is passed; types that stand for others in the tests have an overload.
template <class T>
T* passed(T* p) {
    return p;
}
template <class T>
T* passed(Raw<T>* p) {
    return reinterpret_cast<T*>(p);
}

// Calls of one shape, (len, sources..., destination), of functions with other arguments behind the length.
template <class F, class... Extra>
auto outOfPlace(F f, Extra... extra) {
    return [=](int len, auto*... vectors) { return f(passed(vectors)..., len, extra...); };
}
// Of one in place: the last source is copied to where it finds it.
template <class F, class... Extra>
auto inPlace(F f, Extra... extra) {
    return [=](int len, auto*... vectors) {
        const auto all = std::make_tuple(vectors...);
        constexpr std::size_t last = sizeof...(vectors) - 1;
        auto* dst = std::get<last>(all);
        if (len > 0) std::memcpy(dst, std::get<last - 1>(all), sizeof(*dst) * static_cast<std::size_t>(len));
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return f(passed(std::get<I>(all))..., passed(dst), len, extra...);
        }
        (std::make_index_sequence<last - 1>());
    };
}

// Over all elements only, or as well over the last of them in every awkward length.
enum class Lengths { kEvery, kWhole };

// Checks call(len, values..., destination) against the oracle, element by element.
template <class D, class Call, class... S>
void expectRow(const std::string& what, const Call& call, const std::type_identity_t<Oracle<D, S...>>& oracle,
               Lengths lengths, const std::vector<S>&... values) {
    const std::size_t all = std::min({values.size()...});
    std::vector<Warned<D>> expected;
    for (std::size_t i = 0; i < all; ++i) expected.push_back(oracle(values[i]...));
    std::tuple<Guarded<S>...> sources(values...);
    const auto callFrom = [&](std::size_t first, int len, D* dst) {
        return std::apply([&](auto&... src) { return call(len, (src + first)..., dst); }, sources);
    };
    std::vector<int> tried = {static_cast<int>(all)};
    if (lengths == Lengths::kEvery)
        tried.insert(tried.end(), awkwardLengths().begin(), awkwardLengths().end());
    for (const int len : tried) {
        const std::size_t count = std::min(static_cast<std::size_t>(len), all), first = all - count;
        Guarded<D> dst(count);
        ZppStatus warning = zppStatusOk;
        for (std::size_t i = first; i < all; ++i) warning = std::max(warning, expected[i].status);
        ASSERT_EQ(callFrom(first, dst.len(), dst), warning) << what << ", " << count << " elements";
        for (std::size_t i = 0; i < count; ++i)
            if (!same(expected[first + i].value, dst[i]))
                FAIL() << what << " of" << ((' ' + shown(values[first + i])) + ...) << " (element " << i
                       << " of " << count << ") is " << shown(dst[i]) << ", expected "
                       << shown(expected[first + i].value);
        ASSERT_TRUE(dst.intact()) << what << ", " << count << " elements";
    }
    Guarded<D> dst(1);
    EXPECT_EQ(callFrom(0, 0, dst), zppStatusSizeError) << what;
    EXPECT_EQ(call(0, static_cast<S*>(nullptr)..., static_cast<D*>(nullptr)), zppStatusNullPointer)
        << what << ", null pointers and no elements";
    EXPECT_TRUE(dst.untouched()) << what << ", after an error";
}

// expectRow on all kinds of drawn data.
template <class D, class... S, class Call>
void expectDrawn(const std::string& what, const Call& call,
                 const std::type_identity_t<Oracle<D, S...>>& oracle) {
    for (const Draw draw : kDraws) {
        Random random;
        const std::tuple values = {drawn<S>(random, draw, 600)...};
        std::apply([&](auto&... v) { expectRow<D>(what, call, oracle, Lengths::kEvery, v...); }, values);
    }
}

// pDst[i] from pSrc[i].
template <class S, class D>
void unary(const std::string& name, ZppStatus (*call)(const S*, D*, int),
           std::type_identity_t<ZppStatus (*)(D*, int)> callInPlace,
           const std::type_identity_t<Oracle<D, S>>& oracle) {
    expectDrawn<D, S>(name, outOfPlace(call), oracle);
    if (callInPlace != nullptr) expectDrawn<D, S>(name + "_I", inPlace(callInPlace), oracle);
}

// pDst[i] from pSrc1[i] and pSrc2[i]; in place pSrc2 is the destination.
template <class A, class B, class D>
void binary(const std::string& name, ZppStatus (*call)(const A*, const B*, D*, int),
            std::type_identity_t<ZppStatus (*)(const A*, D*, int)> callInPlace,
            const std::type_identity_t<Oracle<D, A, B>>& oracle) {
    expectDrawn<D, A, B>(name, outOfPlace(call), oracle);
    if (callInPlace != nullptr) expectDrawn<D, A, B>(name + "_I", inPlace(callInPlace), oracle);
}

// pDst[i] from pSrc[i] and each of the constants.
template <class S, class C, class D>
void withConstant(const std::string& name, ZppStatus (*call)(const S*, C, D*, int),
                  std::type_identity_t<ZppStatus (*)(C, D*, int)> callInPlace,
                  const std::type_identity_t<Oracle<D, S, C>>& oracle,
                  const std::vector<std::type_identity_t<C>>& constants) {
    for (const C& val : constants) {
        const auto result = [&](S x) { return oracle(x, val); };
        const std::string what = name + ", constant " + shown(val) + ',';
        const auto bound = [&](const S* src, D* dst, int len) { return call(src, val, dst, len); };
        const auto boundInPlace = [&](D* dst, int len) { return callInPlace(val, dst, len); };
        expectDrawn<D, S>(what, outOfPlace(bound), result);
        if (callInPlace != nullptr) expectDrawn<D, S>(what, inPlace(boundInPlace), result);
    }
}

// One result from whole vectors, which call(sources..., len, result) must make as the oracle does; for fewer
// than `least` elements it fails.
template <class D, class... S, class Call, class Expected>
void expectReduction(const std::string& what, const Call& call, const Expected& oracle, int least = 1) {
    Random random;
    const auto values = [&](Draw draw, int len) {
        return std::tuple{drawn<S>(random, draw, static_cast<std::size_t>(len))...};
    };
    const auto callWith = [&](const auto& vectors, int len, D* dst) {
        std::tuple<Guarded<S>...> sources(vectors);
        return std::apply([&](auto&... src) { return call(src.data()..., len, dst); }, sources);
    };
    Guarded<D> result(1);
    const auto some = values(Draw::kOrdinary, least);
    EXPECT_EQ(callWith(some, 0, nullptr), zppStatusNullPointer) << what << ", no result and no elements";
    EXPECT_EQ(callWith(some, least - 1, result), zppStatusSizeError) << what;
    EXPECT_TRUE(result.untouched()) << what << ", after an error";
    for (const Draw draw : kDraws)
        for (const int len : awkwardLengths()) {
            if (len < least) continue;
            const auto vectors = values(draw, len);
            const D expected = std::apply(oracle, vectors);
            EXPECT_EQ(callWith(vectors, len, result), zppStatusOk) << what;
            EXPECT_TRUE(same(expected, *result) && result.intact())
                << what << " of " << len << " elements, draw " << static_cast<int>(draw) << ", is "
                << shown(*result) << ", expected " << shown(expected);
        }
}

// Of one vector or of two, and with a scale factor, which the oracle has first.
template <class S, class D, class Expected>
void reduction(const std::string& name, ZppStatus (*call)(const S*, int, D*), const Expected& oracle,
               int least = 1) {
    expectReduction<D, S>(name, call, oracle, least);
}
template <class A, class B, class D, class Expected>
void reduction(const std::string& name, ZppStatus (*call)(const A*, const B*, int, D*),
               const Expected& oracle) {
    expectReduction<D, A, B>(name, call, oracle);
}
template <class D, class... S, class Call, class Expected>
void scaledReduction(const std::string& name, Call call, const Expected& oracle,
                     const std::vector<int>& factors) {
    for (const int factor : factors)
        expectReduction<D, S...>(
            name + ", scaleFactor " + std::to_string(factor) + ',',
            [=](auto... arguments) { return call(arguments..., factor); },
            [&](const auto&... values) { return oracle(factor, values...); });
}

}  // namespace zpp::test
