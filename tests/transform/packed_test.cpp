#include <climits>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"

namespace zpp::test {
namespace {

class Packed : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Packed);

enum Layout { kPack, kPerm, kCcs };

std::size_t packedSize(Layout layout, std::size_t n) {
    return layout != kCcs ? n : n % 2 == 0 ? n + 2 : n + 1;
}

// Where the parts of X[k] are in a packed spectrum; -1 for a part that is left out.
struct Place {
    int re, im;
};
Place placeOf(Layout layout, int k, int n) {
    const bool even = n % 2 == 0;
    const bool real = k == 0 || 2 * k == n;
    if (layout == kCcs) return {2 * k, 2 * k + 1};
    if (layout == kPerm && even) return real ? Place{k == 0 ? 0 : 1, -1} : Place{2 * k, 2 * k + 1};
    return {k == 0 ? 0 : 2 * k - 1, real ? -1 : 2 * k};
}

Zpp64fc product(Zpp64fc a, Zpp64fc b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
Zpp64fc productConj(Zpp64fc a, Zpp64fc b) { return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im}; }

using Multiply = ZppStatus (*)(const double*, const double*, double*, int);
using MultiplyInPlace = ZppStatus (*)(const double*, double*, int);
const struct {
    const char* name;
    Layout layout;
    Multiply call;  // null: in place only
    MultiplyInPlace inPlace;
    Zpp64fc (*expected)(Zpp64fc, Zpp64fc);
} kProducts[] = {
    {"MulPack", kPack, zppsMulPack_64f, zppsMulPack_64f_I, product},
    {"MulPerm", kPerm, zppsMulPerm_64f, zppsMulPerm_64f_I, product},
    {"MulPackConj", kPack, nullptr, zppsMulPackConj_64f_I, productConj},
};

TEST_P(Packed, MultipliesSpectra) {
    Random random(1);
    for (const auto& c : kProducts)
        for (const int len : awkwardLengths()) {
            const auto n = static_cast<std::size_t>(len);
            const auto a = random.reals(n), b = random.reals(n);
            std::vector<double> expected(n);
            for (int k = 0; k <= len / 2; ++k) {
                const Place at = placeOf(c.layout, k, len);
                const auto part = [](const std::vector<double>& v, int i) {
                    return i < 0 ? 0.0 : v[static_cast<std::size_t>(i)];
                };
                const Zpp64fc x =
                    c.expected({part(a, at.re), part(a, at.im)}, {part(b, at.re), part(b, at.im)});
                expected[static_cast<std::size_t>(at.re)] = x.re;
                if (at.im >= 0) expected[static_cast<std::size_t>(at.im)] = x.im;
            }
            for (const Edge edge : {Edge::kEnd, Edge::kStart}) {
                Guarded<double> src1(a, edge), src2(b, edge), dst(n, edge);
                if (c.call != nullptr) {
                    EXPECT_EQ(c.call(src1, src2, dst, len), zppStatusOk) << c.name;
                    EXPECT_TRUE(sameBits(expected, dst.values()) && dst.intact()) << c.name << " " << len;
                }
                EXPECT_EQ(c.inPlace(src1, src2, len), zppStatusOk) << c.name;
                EXPECT_TRUE(sameBits(expected, src2.values()) && src2.intact()) << c.name << " " << len;
            }
        }
}

const struct {
    const char* name;
    Layout layout;
    ZppStatus (*call)(const double*, Zpp64fc*, int);
    ZppStatus (*inPlace)(Zpp64fc*, int);
} kExpansions[] = {
    {"ConjPack", kPack, zppsConjPack_64fc, zppsConjPack_64fc_I},
    {"ConjPerm", kPerm, zppsConjPerm_64fc, zppsConjPerm_64fc_I},
    {"ConjCcs", kCcs, zppsConjCcs_64fc, zppsConjCcs_64fc_I},
};

// The imaginary parts of X[0] and X[N / 2] that CCS stores are arbitrary here: they are to arrive.
TEST_P(Packed, ExpandsSpectra) {
    Random random(2);
    for (const auto& c : kExpansions)
        for (const int len : awkwardLengths()) {
            const auto n = static_cast<std::size_t>(len);
            const auto packed = random.reals(packedSize(c.layout, n));
            std::vector<Zpp64fc> expected(n);
            for (int k = len / 2; k >= 0; --k) {
                const Place at = placeOf(c.layout, k, len);
                const Zpp64fc x = {packed[static_cast<std::size_t>(at.re)],
                                   at.im < 0 ? 0.0 : packed[static_cast<std::size_t>(at.im)]};
                expected[(n - static_cast<std::size_t>(k)) % n] = {x.re, -x.im};
                expected[static_cast<std::size_t>(k)] = x;
            }
            Guarded<double> src(packed);
            // A CCS spectrum of one or two elements is longer than its expansion: behind it in the same
            // buffer.
            Guarded<Zpp64fc> dst(n), inPlace(std::max(n, packed.size() / 2));
            EXPECT_EQ(c.call(src, dst, len), zppStatusOk) << c.name;
            EXPECT_TRUE(sameBits(expected, dst.values()) && dst.intact()) << c.name << " " << len;
            std::memcpy(inPlace.data(), packed.data(), packed.size() * sizeof(double));
            EXPECT_EQ(c.inPlace(inPlace, len), zppStatusOk) << c.name;
            auto result = inPlace.values();
            result.resize(n);
            EXPECT_TRUE(sameBits(expected, result) && inPlace.intact()) << c.name << " " << len;
        }
}

TEST_P(Packed, ChecksArguments) {
    Guarded<double> src(4), dst(4);
    Guarded<Zpp64fc> complexDst(4);
    for (const int len : {4, 0}) {
        constexpr int status = zppStatusNullPointer;
        for (const auto& c : kProducts) {
            if (c.call != nullptr) {
                EXPECT_EQ(c.call(nullptr, src, dst, len), status) << c.name;
                EXPECT_EQ(c.call(src, nullptr, dst, len), status) << c.name;
                EXPECT_EQ(c.call(src, src, nullptr, len), status) << c.name;
            }
            EXPECT_EQ(c.inPlace(nullptr, dst, len), status) << c.name;
            EXPECT_EQ(c.inPlace(src, nullptr, len), status) << c.name;
        }
        for (const auto& c : kExpansions) {
            EXPECT_EQ(c.call(nullptr, complexDst, len), status) << c.name;
            EXPECT_EQ(c.call(src, nullptr, len), status) << c.name;
            EXPECT_EQ(c.inPlace(nullptr, len), status) << c.name;
        }
    }
    for (const int len : {0, -1, INT_MIN}) {
        for (const auto& c : kProducts) {
            if (c.call != nullptr) {
                EXPECT_EQ(c.call(src, src, dst, len), zppStatusSizeError) << c.name;
            }
            EXPECT_EQ(c.inPlace(src, dst, len), zppStatusSizeError) << c.name;
        }
        for (const auto& c : kExpansions) {
            EXPECT_EQ(c.call(src, complexDst, len), zppStatusSizeError) << c.name;
            EXPECT_EQ(c.inPlace(complexDst, len), zppStatusSizeError) << c.name;
        }
    }
    EXPECT_TRUE(dst.untouched() && complexDst.untouched());
}

}  // namespace
}  // namespace zpp::test
