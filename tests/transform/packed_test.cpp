#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"
#include "tests/support/rounded.h"
#include "tests/support/x87.h"
#include "tests/transform/packed_support.h"

namespace zpp::test {
namespace {

class Packed : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Packed);

Zpp64fc productConj(Zpp64fc a, Zpp64fc b) { return product(a, conjugate(b)); }

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
    for (const std::uint16_t word : x87Words()) {
        Random random(1);
        for (const auto& c : kProducts)
            for (const int len : awkwardLengths()) {
                const auto n = static_cast<std::size_t>(len);
                const double unit = len % 2 == 0 ? 1 : 0x1p-511;  // products at the lower end of the range
                const auto a = random.reals(n, -unit, unit), b = random.reals(n, -unit, unit);
                auto products = unpacked(c.layout, a.data(), n);
                const auto factors = unpacked(c.layout, b.data(), n);
                for (std::size_t k = 0; k < n; ++k) products[k] = c.expected(products[k], factors[k]);
                const auto expected = packed(c.layout, products);
                Guarded<double> src1(a), src2(b), dst(n);
                const X87ControlWord narrow(word);
                if (c.call != nullptr) {
                    EXPECT_EQ(c.call(src1, src2, dst, len), zppStatusOk) << c.name;
                    EXPECT_TRUE(sameBits(expected, dst.values()) && dst.intact()) << c.name << " " << len;
                }
                EXPECT_EQ(c.inPlace(src1, src2, len), zppStatusOk) << c.name;
                EXPECT_TRUE(sameBits(expected, src2.values()) && src2.intact()) << c.name << " " << len;
                EXPECT_EQ(x87ControlWord(), word) << c.name;
            }
    }
    for (const auto& c : kProducts) EXPECT_EQ(c.inPlace(nullptr, nullptr, 0), zppStatusNullPointer) << c.name;
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
    for (const auto& c : kExpansions) {
        for (const int len : awkwardLengths()) {
            const auto n = static_cast<std::size_t>(len);
            const auto spectrum = random.reals(sizeIn(c.layout, n));
            const auto expected = unpacked(c.layout, spectrum.data(), n);
            Guarded<double> src(spectrum);
            // A CCS spectrum of one or two elements is longer than its expansion: behind it in the same
            // buffer.
            Guarded<Zpp64fc> dst(n), inPlace(std::max(n, spectrum.size() / 2));
            EXPECT_EQ(c.call(src, dst, len), zppStatusOk) << c.name;
            EXPECT_TRUE(sameBits(expected, dst.values()) && dst.intact()) << c.name << " " << len;
            std::memcpy(inPlace.data(), spectrum.data(), spectrum.size() * sizeof(double));
            EXPECT_EQ(c.inPlace(inPlace, len), zppStatusOk) << c.name;
            auto result = inPlace.values();
            result.resize(n);
            EXPECT_TRUE(sameBits(expected, result) && inPlace.intact()) << c.name << " " << len;
        }
        EXPECT_EQ(c.call(nullptr, nullptr, 0), zppStatusNullPointer) << c.name;
        EXPECT_EQ(c.inPlace(nullptr, 0), zppStatusNullPointer) << c.name;
    }
}

}  // namespace
}  // namespace zpp::test
