#ifndef _WIN32
#include <unistd.h>
#endif

#include <cstdio>
#include <fstream>

#include "tests/support/binding.h"
#include "tests/support/table.h"
#include "zpp/data.h"

namespace zpp::test {
namespace {

class Companding : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Companding);

struct Intervals {
    int count, size;
};

// A law as tables 1 and 2 of G.711 have it: how many intervals of which size follow each other, from 0 on.
// Values of 16 bits are so many times those of the tables.
class Law {
  public:
    Law(std::initializer_list<Intervals> intervals, int times, int inverted) : inverted_(inverted) {
        int level = 0;
        for (const auto& [count, size] : intervals)
            for (int i = 0; i < count; ++i) {
                outputs_.push_back(times * (size == 1 ? 0 : 2 * level + size) /
                                   2);  // the middle; around 0 it is 0
                levels_.push_back(times * (level += size));
            }
    }
    const std::vector<int>& levels() const { return levels_; }
    int decoded(int code) const {
        const int bits = code ^ inverted_, magnitude = outputs_[static_cast<std::size_t>(bits & 0x7F)];
        return bits < 0x80 ? magnitude : -magnitude;
    }
    // An integer stands for the middle between it and the next one, which is no level. The last level is
    // virtual: what is above belongs to the interval below.
    int encoded(int value) const {
        const auto above = std::upper_bound(levels_.begin(), levels_.end() - 1, std::fabs(value + 0.5));
        return (static_cast<int>(above - levels_.begin()) | (value < 0 ? 0x80 : 0)) ^ inverted_;
    }

  private:
    std::vector<int> levels_, outputs_;
    int inverted_;
};
const Law kALaw({{32, 2}, {16, 4}, {16, 8}, {16, 16}, {16, 32}, {16, 64}, {16, 128}}, 8, 0xD5);
const Law kMuLaw({{1, 1}, {15, 2}, {16, 4}, {16, 8}, {16, 16}, {16, 32}, {16, 64}, {16, 128}, {16, 256}}, 4,
                 0xFF);

const struct {
    std::string name;
    const Law& law;
    ZppStatus (*encode)(const Zpp16s*, Zpp8u*, int);
    ZppStatus (*encodeSingles)(const Zpp32f*, Zpp8u*, int);
    ZppStatus (*decode)(const Zpp8u*, Zpp16s*, int);
    ZppStatus (*decodeToSingles)(const Zpp8u*, Zpp32f*, int);
} kLaws[] = {
    {"A-law", kALaw, zppsLinToALaw_16s8u, zppsLinToALaw_32f8u, zppsALawToLin_8u16s, zppsALawToLin_8u32f},
    {"mu-law", kMuLaw, zppsLinToMuLaw_16s8u, zppsLinToMuLaw_32f8u, zppsMuLawToLin_8u16s,
     zppsMuLawToLin_8u32f},
};

// The integer next to 2^15 x, ties away from zero, as long double holds it.
int linear(float x) {
    if (std::isnan(x)) return -32768;
    return static_cast<int>(std::clamp(std::round(32768.0L * x), -32768.0L, 32767.0L));
}

// On all values at once and at the end of awkward lengths; and on each in short calls, which steps of other
// lengths serve.
template <class D, class S, class F, class Rule>
void expectAll(const std::string& what, F f, Rule rule, const std::vector<S>& values) {
    expectRow<D>(what, outOfPlace(f), rule, Lengths::kEvery, values);
    for (const int piece : {1, 23}) {
        const auto inPieces = [=](const S* src, D* dst, int len) {
            ZppStatus status = f(src, dst, std::min(piece, len));
            for (int i = piece; i < len; i += piece)
                status = std::min(status, f(src + i, dst + i, std::min(piece, len - i)));
            return status;
        };
        expectRow<D>(what + " in pieces of " + std::to_string(piece), outOfPlace(inPieces), rule,
                     Lengths::kWhole, values);
    }
}

TEST_P(Companding, Encodes) {
    for (const auto& row : kLaws) {
        const auto code = [&](int x) { return static_cast<Zpp8u>(row.law.encoded(x)); };
        expectAll<Zpp8u>(
            row.name, row.encode, [=](Zpp16s x) { return code(x); }, everyValue<Zpp16s>());

        std::vector<float> singles = drawnEachWay<float>(300);
        for (const float x :
             {0.5F, 1.0F, 32767.0F, 32767.5F, 32768.0F, 1e9F, 1e30F, HUGE_VALF, std::nanf("")})
            for (const float near : {std::nextafter(x, 0.0F), x, std::nextafter(x, HUGE_VALF)})
                for (const float sign : {1 / 32768.0F, -1 / 32768.0F}) singles.push_back(sign * near);
        for (const int level : row.law.levels())
            for (const int doubled : {2 * level - 1, 2 * level, 2 * level + 1})
                for (const float x :
                     {static_cast<float>(doubled) / 65536, static_cast<float>(-doubled) / 65536})
                    for (const float towards : {-1.0F, x, 1.0F})
                        singles.push_back(std::nextafter(x, towards));
        expectAll<Zpp8u>(
            row.name + " of singles", row.encodeSingles, [=](float x) { return code(linear(x)); }, singles);
    }
}

TEST_P(Companding, Decodes) {
    for (const auto& row : kLaws) {
        const auto value = [&](Zpp8u code) { return static_cast<Zpp16s>(row.law.decoded(code)); };
        expectAll<Zpp16s>(row.name, row.decode, value, everyValue<Zpp8u>());
        const auto single = [&](Zpp8u code) { return static_cast<float>(value(code)) / 32768; };
        expectAll<Zpp32f>(row.name + " to singles", row.decodeToSingles, single, everyValue<Zpp8u>());
    }
}

// Tables 3 and 4 of G.711: the numbers, from 1 on in A-law and from 0 on in mu-law, in runs of those that
// follow each other.
using Runs = std::vector<std::pair<int, int>>;
std::vector<int> inFull(const Runs& runs) {
    std::vector<int> numbers;
    for (const auto& [first, last] : runs)
        for (int number = first; number <= last; ++number) numbers.push_back(number);
    return numbers;
}
const Runs kMuToA = {{1, 1},   {1, 2},   {2, 3},   {3, 4},   {4, 5},   {5, 6},
                     {6, 7},   {7, 8},   {8, 24},  {25, 25}, {27, 27}, {29, 29},
                     {31, 31}, {33, 44}, {46, 46}, {48, 62}, {64, 80}, {82, 128}};
const Runs kAToMu = {{1, 1},   {3, 3},   {5, 5},   {7, 7},   {9, 9},   {11, 11}, {13, 13}, {15, 32},
                     {32, 33}, {33, 34}, {34, 35}, {35, 48}, {48, 49}, {49, 64}, {64, 80}, {80, 127}};

TEST_P(Companding, BetweenTheLaws) {
    const std::vector<int> toA = inFull(kMuToA), toMu = inFull(kAToMu);
    ASSERT_EQ(toA.size(), 128U);
    ASSERT_EQ(toMu.size(), 128U);
    const auto number = [](int code, int inverted) {
        return static_cast<std::size_t>((code ^ inverted) & 0x7F);
    };
    const std::vector<Zpp8u> codes = everyValue<Zpp8u>();
    const auto inALaw = [&](Zpp8u code) {
        return static_cast<Zpp8u>(((toA[number(code, 0x7F)] - 1) ^ 0x55) | (code & 0x80));
    };
    const auto inMuLaw = [&](Zpp8u code) {
        return static_cast<Zpp8u>((toMu[number(code, 0x55)] ^ 0x7F) | (code & 0x80));
    };
    expectAll<Zpp8u>("mu-law to A-law", zppsMuLawToALaw_8u, inALaw, codes);
    const auto onItself = [](Zpp8u* p, int len) { return zppsMuLawToALaw_8u(p, p, len); };
    expectRow<Zpp8u>("mu-law to A-law in place", inPlace(onItself), inALaw, Lengths::kEvery, codes);
    expectAll<Zpp8u>("A-law to mu-law", zppsALawToMuLaw_8u, inMuLaw, codes);
}

// Codes that G.711 shows, or that follow by hand, against a slip in the tables above.
TEST_P(Companding, KnownCodes) {
    const struct {
        Zpp16s value;
        Zpp8u aLaw, muLaw;
    } rows[] = {
        {0, 0xD5, 0xFF}, {-1, 0x55, 0x7F}, {32767, 0xAA, 0x80}, {-32768, 0x2A, 0x00}, {4, 0xD5, 0xFE}};
    for (const auto& row : rows) {
        Zpp8u code = 0;
        EXPECT_EQ(zppsLinToALaw_16s8u(&row.value, &code, 1), zppStatusOk);
        EXPECT_EQ(code, row.aLaw) << row.value;
        EXPECT_EQ(zppsLinToMuLaw_16s8u(&row.value, &code, 1), zppStatusOk);
        EXPECT_EQ(code, row.muLaw) << row.value;
    }
    const Zpp8u codes[] = {0x00, 0x2A, 0x80, 0xAA};
    Zpp16s mu[4], a[4];
    EXPECT_EQ(zppsMuLawToLin_8u16s(codes, mu, 4), zppStatusOk);
    EXPECT_EQ(zppsALawToLin_8u16s(codes, a, 4), zppStatusOk);
    EXPECT_EQ(mu[0], -4 * 8031);
    EXPECT_EQ(mu[2], 4 * 8031);
    EXPECT_EQ(a[1], -8 * 4032);
    EXPECT_EQ(a[3], 8 * 4032);
}

// What another program makes of all codes. (Its encoder rounds, and differs by design.)
TEST(CompandingBesideSox, Decodes) {
#ifdef _WIN32
    GTEST_SKIP() << "sox is not looked for on Windows";
#else
    if (std::system("command -v sox >/dev/null") != 0) GTEST_SKIP() << "sox (Debian: sox) is not installed";
    const std::vector<Zpp8u> codes = everyValue<Zpp8u>();
    const std::string file = ::testing::TempDir() + "zpp_codes." + std::to_string(getpid());
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(codes.data()), 256);
    const struct {
        const char* encoding;
        ZppStatus (*decode)(const Zpp8u*, Zpp16s*, int);
    } rows[] = {{"a-law", zppsALawToLin_8u16s}, {"mu-law", zppsMuLawToLin_8u16s}};
    for (const auto& row : rows) {
        const std::string command = "sox -D -t raw -r 8000 -c 1 -e " + std::string(row.encoding) + ' ' +
                                    file + " -t raw -e signed -b 16 -L -";
        std::FILE* const pipe = popen(command.c_str(), "r");
        ASSERT_NE(pipe, nullptr);
        std::vector<Zpp16s> expected(257), values(256);
        EXPECT_EQ(std::fread(expected.data(), sizeof(Zpp16s), 257, pipe), 256U) << command;
        EXPECT_EQ(pclose(pipe), 0) << command;
        expected.pop_back();
        EXPECT_EQ(row.decode(codes.data(), values.data(), 256), zppStatusOk);
        EXPECT_EQ(values, expected) << row.encoding;
    }
    std::remove(file.c_str());
#endif
}

}  // namespace
}  // namespace zpp::test
