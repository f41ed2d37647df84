#include "tests/support/binding.h"
#include "tests/support/table.h"
#include "zpp/data.h"

namespace zpp::test {
namespace {

class Movement : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Movement);

template <class T>
void expectMoves(ZppStatus (*copy)(const T*, T*, int), ZppStatus (*move)(const T*, T*, int)) {
    const auto any = Random(1).patterns<Raw<T>>(600);
    for (const auto call : {copy, move})
        expectRow<Raw<T>>(
            "movement", outOfPlace(call), [](Raw<T> x) { return x; }, Lengths::kEvery, any);
    // Every distance of a short vector, some of a long one; support/copies.cpp is no memmove in disguise.
    const std::pair<int, int> steps[] = {{37, 1}, {1000, 111}, {20000, 6661}};
    for (const auto& [len, step] : steps) {
        const auto size = static_cast<std::size_t>(len);
        const auto values = Random(2).patterns<T>(3 * size);
        for (int shift = -len; shift <= len; shift += step) {
            auto expected = values;
            Guarded<T> buffer(values);
            std::copy_n(values.data() + len, size, expected.data() + len + shift);
            EXPECT_EQ(move(buffer + len, buffer + len + shift, len), zppStatusOk);
            EXPECT_TRUE(sameBits(expected, buffer.values())) << len << " elements, shift " << shift;
        }
    }
}

TEST_P(Movement, CopiesAnyBitsAndMovesUnderAnyOverlap) {
    expectMoves(zppsCopy_8u, zppsMove_8u);
    expectMoves(zppsCopy_16s, zppsMove_16s);
    expectMoves(zppsCopy_16sc, zppsMove_16sc);
    expectMoves(zppsCopy_32f, zppsMove_32f);
    expectMoves(zppsCopy_32fc, zppsMove_32fc);
    expectMoves(zppsCopy_64f, zppsMove_64f);
    expectMoves(zppsCopy_64fc, zppsMove_64fc);
}

template <class T, class Fill>
void expectFills(const T& val, Fill fill) {
    for (const int len : awkwardLengths()) {
        Guarded<T> dst(static_cast<std::size_t>(len));
        EXPECT_EQ(fill(dst.data(), len), zppStatusOk);
        EXPECT_TRUE(sameBits(std::vector<T>(dst.size(), val), dst.values()));
    }
    EXPECT_EQ(fill(static_cast<T*>(nullptr), 0), zppStatusNullPointer);
}
template <class T>
void expectSets(ZppStatus (*set)(T, T*, int)) {
    T val;
    std::memset(&val, 0xFF, sizeof val);  // as a double: a signalling NaN
    reinterpret_cast<unsigned char*>(&val)[sizeof val - 2] = 0xF0;
    reinterpret_cast<unsigned char*>(&val)[0] = 0x5A;
    // By reference: a compiler may copy a captured double through the x87 unit, which makes it quiet.
    expectFills(val, [&](T* dst, int len) { return set(val, dst, len); });
}

TEST_P(Movement, Fills) {
    expectSets(zppsSet_32s);
    expectSets(zppsSet_32sc);
    expectSets(zppsSet_64f);
    expectSets(zppsSet_64fc);
    expectFills(Zpp64f{}, zppsZero_64f);
    expectFills(Zpp64fc{}, zppsZero_64fc);
}

TEST_P(Movement, Flips) {
    for (const int len : awkwardLengths()) {
        const auto values = Random(3).patterns<double>(static_cast<std::size_t>(len));
        const std::vector<double> reversed(values.rbegin(), values.rend());
        Guarded<double> src(values), dst(values.size());
        EXPECT_EQ(zppsFlip_64f(src, dst, len), zppStatusOk);
        EXPECT_TRUE(sameBits(reversed, dst.values())) << len;
        EXPECT_EQ(zppsFlip_64f_I(src, len), zppStatusOk);
        EXPECT_TRUE(sameBits(reversed, src.values())) << len;
    }
    EXPECT_EQ(zppsFlip_64f(nullptr, nullptr, 0), zppStatusNullPointer);
    EXPECT_EQ(zppsFlip_64f_I(nullptr, 0), zppStatusNullPointer);
}

}  // namespace
}  // namespace zpp::test
