#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"

namespace zpp::test {
namespace {

class Movement : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Movement);

template <class T>
using Mover = ZppStatus (*)(const T*, T*, int);

template <class T>
void expectCopies(Mover<T> copy) {
    for (const int len : awkwardLengths()) {
        const auto values = Random(1).patterns<T>(static_cast<std::size_t>(len));
        Guarded<T> src(values), dst(values.size());
        EXPECT_EQ(copy(src, dst, len), zppStatusOk);
        EXPECT_TRUE(sameBits(values, dst.values()));
        EXPECT_TRUE(dst.intact());
        EXPECT_EQ(copy(src, dst, 0), zppStatusSizeError);
        EXPECT_EQ(copy(nullptr, dst, 0), zppStatusNullPointer);
        EXPECT_EQ(copy(src, nullptr, len), zppStatusNullPointer);
    }
}

TEST_P(Movement, CopiesAnyBits) {
    expectCopies(zppsCopy_8u);
    expectCopies(zppsCopy_16s);
    expectCopies(zppsCopy_16sc);
    expectCopies(zppsCopy_32f);
    expectCopies(zppsCopy_32fc);
    expectCopies(zppsCopy_64f);
    expectCopies(zppsCopy_64fc);
}

template <class T>
void expectMovesUnderOverlap(Mover<T> move) {
    expectCopies(move);
    constexpr int len = 37;
    for (int shift = -len; shift <= len; ++shift) {
        auto values = Random(2).patterns<T>(3 * len);
        Guarded<T> buffer(values);
        std::memmove(&values[static_cast<std::size_t>(len + shift)], &values[len], len * sizeof(T));
        EXPECT_EQ(move(buffer + len, buffer + len + shift, len), zppStatusOk);
        EXPECT_TRUE(sameBits(values, buffer.values())) << "shift " << shift;
    }
}

TEST_P(Movement, MovesUnderAnyOverlap) {
    expectMovesUnderOverlap(zppsMove_8u);
    expectMovesUnderOverlap(zppsMove_16s);
    expectMovesUnderOverlap(zppsMove_16sc);
    expectMovesUnderOverlap(zppsMove_32f);
    expectMovesUnderOverlap(zppsMove_32fc);
    expectMovesUnderOverlap(zppsMove_64f);
    expectMovesUnderOverlap(zppsMove_64fc);
}

template <class T>
void expectSets(ZppStatus (*set)(T, T*, int)) {
    T val;
    std::memset(&val, 0xFF, sizeof val);  // as a double: a NaN
    reinterpret_cast<unsigned char*>(&val)[sizeof val - 2] = 0xF0;
    reinterpret_cast<unsigned char*>(&val)[0] = 0x5A;
    for (const int len : awkwardLengths()) {
        Guarded<T> dst(static_cast<std::size_t>(len));
        EXPECT_EQ(set(val, dst, len), zppStatusOk);
        EXPECT_TRUE(sameBits(std::vector<T>(dst.size(), val), dst.values()));
        EXPECT_TRUE(dst.intact());
        EXPECT_EQ(set(val, nullptr, 0), zppStatusNullPointer);
        EXPECT_EQ(set(val, dst, -1), zppStatusSizeError);
    }
}

TEST_P(Movement, Sets) {
    expectSets(zppsSet_32s);
    expectSets(zppsSet_32sc);
    expectSets(zppsSet_64f);
    expectSets(zppsSet_64fc);
}

template <class T>
void expectZeros(ZppStatus (*zero)(T*, int)) {
    for (const int len : awkwardLengths()) {
        Guarded<T> dst(static_cast<std::size_t>(len));
        EXPECT_EQ(zero(nullptr, 0), zppStatusNullPointer);
        EXPECT_EQ(zero(dst, 0), zppStatusSizeError);
        EXPECT_TRUE(dst.untouched());
        EXPECT_EQ(zero(dst, len), zppStatusOk);
        EXPECT_TRUE(sameBits(std::vector<T>(dst.size(), T{}), dst.values()));
        EXPECT_TRUE(dst.intact());
    }
}

TEST_P(Movement, Zeros) {
    expectZeros(zppsZero_64f);
    expectZeros(zppsZero_64fc);
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
        EXPECT_TRUE(src.intact() && dst.intact());
    }
    EXPECT_EQ(zppsFlip_64f(nullptr, nullptr, 0), zppStatusNullPointer);
    EXPECT_EQ(zppsFlip_64f_I(nullptr, 0), zppStatusNullPointer);
}

}  // namespace
}  // namespace zpp::test
