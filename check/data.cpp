#include "check/data.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>

namespace zpp::check {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Of either sign. The squares of 1.7e-162 and 1.3e154, and the reciprocals of those, are at the ends of the
// range; 1 - 2^-53 times the largest subnormal number shows a result that is rounded twice.
constexpr double kDoubles[] = {0,
                               1,
                               0.5,
                               0x1.fffffffffffffp-1,
                               kNan,
                               kInf,
                               0x1p300,
                               0x1.8p-300,
                               1.7e-162,
                               1.3e154,
                               0x1p-1074,
                               0x1.8p-1073,
                               0x0.fffffffffffffp-1022,
                               0x1p-1022,
                               0x1.fffffffffffffp1023};

constexpr double kSingles[] = {0.0,
                               -0.0,
                               1,
                               -1,
                               0.5,
                               kNan,
                               kInf,
                               -kInf,
                               0x1p-149,
                               -0x1.8p-148,
                               0x1p-126,
                               0x1p127,
                               -0x1.fffffep127,
                               65504,
                               65520,
                               65536,
                               0x1p-24,
                               0x1p-25,
                               0x1.8p-25,
                               -0x1.ff8p-15,
                               32767,
                               32767.5,
                               -32768.5,
                               127.5,
                               255.5,
                               0x1p31,
                               -0x1p31,
                               0x1p24};

template <std::size_t N>
double anyOf(const double (&values)[N], test::Random& random) {
    return values[random.below(N)];
}

// A double with many digits: subnormal, or of a magnitude for which products, squares or quotients are near
// one of the ends of the range. Made of its bits, which no library has to round.
double extreme(test::Random& random) {
    constexpr struct {
        std::uint64_t first, count;  // exponent fields
    } kFields[] = {{0, 1}, {1, 60}, {480, 40}, {993, 60}, {1523, 24}, {1987, 60}};
    const auto& fields = kFields[random.below(std::size(kFields))];
    const std::uint64_t field = fields.first + random.below(fields.count), bits = random.bits();
    const std::uint64_t fraction = (bits & 0xFFFFFFFFFFFFF) >> (field == 0 ? random.below(52) : 0);
    return std::bit_cast<double>((bits & std::uint64_t{1} << 63) | field << 52 | fraction);
}

// 2^-20 to 2^20 and, every fourth time, a multiple of a half.
double ordinary(test::Random& random) {
    const std::uint64_t bits = random.bits();
    if (bits % 4 == 0) return static_cast<double>(static_cast<std::int64_t>(bits >> 50) - 8192) / 2;
    return std::ldexp(random.uniform(1, 2), static_cast<int>(bits >> 8 & 0xFF) % 41 - 20) *
           ((bits & 0x80) != 0 ? -1 : 1);
}

double floatingNumber(std::size_t size, Data data, test::Random& random) {
    if (data == Data::kUniform) return random.uniform();
    if (data == Data::kOrdinary || random.below(4) == 0) return ordinary(random);
    if (size == sizeof(float)) return anyOf(kSingles, random);
    const std::uint64_t choice = random.below(4);
    return choice < 2 ? extreme(random) : choice == 2 ? anyOf(kDoubles, random) : -anyOf(kDoubles, random);
}

std::uint64_t integerNumber(std::size_t size, Data data, test::Random& random) {
    const unsigned bits = static_cast<unsigned>(8 * size);
    if (data != Data::kSpecial || random.below(4) == 0) {  // of either sign, any magnitude
        const auto number = static_cast<std::int64_t>(random.bits()) >> (64 - bits);
        return static_cast<std::uint64_t>(number >> random.below(bits));
    }
    const std::uint64_t top = std::uint64_t{1} << (bits - 1);
    const std::uint64_t edges[] = {0, 1, ~std::uint64_t{0}, top, top - 1, top + 1};
    return edges[random.below(6)];
}

}  // namespace

const char* nameOf(Data data) {
    constexpr const char* kNames[] = {"ordinary", "special", "uniform", "patterns"};
    return kNames[static_cast<int>(data)];
}

std::vector<unsigned char> makeElements(const Element& type, std::size_t count, Data data,
                                        test::Random& random) {
    if (data == Data::kPatterns) return random.patterns<unsigned char>(count * type.size);
    std::vector<unsigned char> bytes(count * type.size);
    for (std::size_t i = 0; i < bytes.size(); i += type.part) {
        if (!type.floating) {
            const std::uint64_t number = integerNumber(type.part, data, random);
            std::memcpy(&bytes[i], &number, type.part);
        } else if (type.part == sizeof(float)) {
            const auto number = static_cast<float>(floatingNumber(type.part, data, random));
            std::memcpy(&bytes[i], &number, sizeof number);
        } else {
            const double number = floatingNumber(type.part, data, random);
            std::memcpy(&bytes[i], &number, sizeof number);
        }
    }
    return bytes;
}

int makeScaleFactor(Data data, test::Random& random) {
    constexpr int kEdges[] = {INT_MIN, -1100, -200, -127, -126, -40, -32, -31, -30, -15, -14,  14,     15,
                              16,      31,    32,   33,   63,   64,  126, 127, 128, 200, 1100, INT_MAX};
    if (data == Data::kUniform) return 1 + static_cast<int>(random.below(8));  // results of many sizes
    if (data != Data::kOrdinary) return kEdges[random.below(sizeof kEdges / sizeof *kEdges)];
    return static_cast<int>(random.below(19)) - 9;
}

}  // namespace zpp::check
