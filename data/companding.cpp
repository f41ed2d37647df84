// Companding by the laws of ITU-T Recommendation G.711 (11/1988): tables 1a to 2b for the values, 3 and 4 for
// the ways between the laws.
#include "core/elementwise.h"
#include "core/simd_bytes.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

// kInverted of the bits of a code are inverted. Then it is, from the upper end: the sign (set where
// negative), three bits of the segment, and four of the place m in it. Values have 16 bits.
//
// magnitude() is what decoding gives. The sum of two products gives it too, and all factors are bytes, of
// both signs: 8m + kAdded[0] and 8m + kAdded[1] with what factors() has of the segment.
struct Factors {
    int of[2];
};
struct MuLaw {
    static constexpr int kInverted = 0xFF;
    static constexpr int kBias = 132;  // added to magnitudes, which leaves the segments as powers of two
    static constexpr int magnitude(int segment, int m) { return ((8 * m + kBias) << segment) - kBias; }
    [[maybe_unused]] static constexpr int kAdded[] = {0, kBias};
    static constexpr Factors factors(int segment) { return {{1, (1 << segment) - 1}}; }

    // The magnitude from (8m + 132) * 2^segment.
    template <class V>
    ZPP_INLINE static V unbiased(V v) {
        return v - kBias;
    }
};
struct ALaw {
    static constexpr int kInverted = 0xD5;
    static constexpr int kBias = 0;  // segment 0 has the steps of segment 1
    static constexpr int magnitude(int segment, int m) {
        return segment == 0 ? 16 * m + 8 : (16 * m + 264) << (segment - 1);
    }
    [[maybe_unused]] static constexpr int kAdded[] = {134, 130};
    static constexpr Factors factors(int segment) {
        if (segment == 0) return {{-63, 65}};
        return {{1 << (segment - 1), 1 << (segment - 1)}};
    }

    template <class V>
    ZPP_INLINE static V unbiased(V v) {
        return min(v, broadcast<V>(int16_t{256})) + (v - 256);  // 256 is the least of segment 1
    }
};

// Single codes are looked up.
template <class T, int n>
struct Table {
    T of[n];
};
template <class T, int n, class Of>
constexpr Table<T, n> tableOf(Of of) {
    Table<T, n> table{};
    for (int i = 0; i < n; ++i) table.of[i] = static_cast<T>(of(i));
    return table;
}

template <class Law, class T>
constexpr auto kDecoded = tableOf<T, 256>([](int code) {
    const int bits = code ^ Law::kInverted, magnitude = Law::magnitude(bits >> 4 & 7, bits & 15);
    return static_cast<T>(bits & 0x80 ? -magnitude : magnitude) / (std::is_same_v<T, float> ? 32768 : 1);
});

template <class Law>
ZPP_INLINE int32_t encoded(int32_t value) {
    const int32_t sign = value >> 31, magnitude = value ^ sign;
    const int32_t biased = min(magnitude, 32767 - Law::kBias) + Law::kBias;
    int32_t code = biased >> 4;
    if (Law::kBias > 0 || biased > 255) {
        const int segment = 24 - __builtin_clz(static_cast<unsigned>(biased));
        code = segment << 4 | (biased >> (segment + 3) & 15);
    }
    return code ^ Law::kInverted ^ (sign & 0x80);
}

// A single number is kept in double, in which none of its bits is lost.
template <class Law>
ZPP_INLINE int32_t encoded(float x) {
    const double y = saturate(static_cast<double>(x) * 32768, Range<double>{-32768, 32767});
    return encoded<Law>(static_cast<int32_t>(y < 0 ? y - 0.5 : y + 0.5));
}

// The values of codes, as words of their lower and of their upper half.
template <class Law, class V>
ZPP_INLINE auto decodedWords(V codes) {
    if constexpr (kLooksUpBytes) {
        static constexpr auto factors = [](int which) {
            return tableOf<int8_t, 16>([=](int upperBits) {
                const int bits = upperBits ^ Law::kInverted >> 4, factor = Law::factors(bits & 7).of[which];
                return bits & 8 ? -factor : factor;
            });
        };
        static constexpr Table<int8_t, 16> kFactors[] = {factors(0), factors(1)};
        const V upper = bitCast<V>(lanesOf<uint16_t>(codes) >> 4) & 15;
        const auto segments = interleaveBytes(lookUp(kFactors[0], upper), lookUp(kFactors[1], upper));
        const V eightfold = bitCast<V>(lanesOf<uint16_t>(codes) << 3) & 0x78;
        constexpr int inverted = (Law::kInverted & 15) << 3;
        const V first = eightfold ^ static_cast<uint8_t>(inverted ^ Law::kAdded[0]);
        const V second = eightfold ^ static_cast<uint8_t>(inverted ^ Law::kAdded[1]);
        return mapRegisters([](auto a, auto b) ZPP_INLINE_LAMBDA { return sumsOfProducts(a, b); },
                            interleaveBytes(first, second), segments);
    } else {
        // A single of the magnitude is put together, of which the segment is the exponent.
        const auto decode = [](auto pairs) ZPP_INLINE_LAMBDA {
            using W = decltype(pairs);
            // Its upper word; both bytes of a pair are the code.
            const W upper = (pairs << 3 & 0x3F8) + int16_t{((127 + 7) << 7) + 4};
            const auto ints = [](auto x) ZPP_INLINE_LAMBDA { return toInts<Rounding::kZero>(asFloats(x)); };
            const W magnitude = Law::unbiased(wordsOf(mapRegisters(ints, interleaveWords(W{}, upper))));
            const W sign = pairs >> 15;
            return (magnitude ^ sign) - sign;
        };
        const V bits = codes ^ static_cast<uint8_t>(Law::kInverted);
        return mapRegisters(decode, interleaveBytes(bits, bits));
    }
}

// The codes of words, as words.
template <class Law, class V>
ZPP_INLINE V encodedWords(V values) {
    const V sign = values >> 15, magnitude = values ^ sign;
    V biased = magnitude;
    if (Law::kBias > 0) biased = min(magnitude, broadcast<V>(int16_t{32767 - Law::kBias})) + Law::kBias;
    // Segment and place are the exponent and the top of the fraction of a single. The odd word of a pair
    // stays where it is: the even one below is less than 2^15, so that rounding does not carry into the odd
    // one.
    const auto pairs = lanesOf<int32_t>(biased);
    const auto even = lanesOf<uint32_t>(toFloat(pairs & 0xFFFF)), odd = lanesOf<uint32_t>(toFloat(pairs));
    const V upper = bitCast<V>((odd & 0xFFFF0000) | even >> 16);
    V code = (upper >> 3) - bitCast<V>(broadcast<decltype(pairs)>((127 + 7) << 4 | (127 + 7 + 16) << 20));
    if (Law::kBias == 0) code = max(code, min(magnitude >> 4, broadcast<V>(int16_t{15})));
    return code ^ ((sign & 0x80) ^ Law::kInverted);
}

// Singles times 2^15 as the integers next to them, ties away from zero, in the range of words.
template <class V>
ZPP_INLINE auto nearestWords(V x) {
    // The single below one half, for the sum is rounded: to the next integer from one half on, but not below.
    const V y = x * 0x1p15F;
    const auto half = (lanesOf<int32_t>(y) & static_cast<int32_t>(0x80000000)) | 0x3EFFFFFF;
    return toIntsOf<int16_t, Rounding::kZero>(y + asFloats(half));
}

// Steps of N elements; of short vectors 16.
template <int N, class Compute, class D, class S>
ZPP_INLINE ZppStatus inSteps(Compute compute, D* pDst, int len, const S* pSrc) {
    const auto put = [](D* p, auto v) ZPP_INLINE_LAMBDA { storeRegisters(p, v); };
    constexpr int shortStep = N < 16 ? N : 16;
    return elementwiseSteps<N, false, shortStep>(compute, put, pDst, len, pSrc);
}
inline constexpr int kCodes = kLanes<uint8_t>;

template <class Law>
inline ZppStatus decode(const Zpp8u* pSrc, Zpp16s* pDst, int len) {
    const auto compute = [](auto lanes, const Zpp8u* p) ZPP_INLINE_LAMBDA {
        constexpr int n = decltype(lanes)::value;
        if constexpr (n == 1)
            return kDecoded<Law, Zpp16s>.of[*p];
        else
            return decodedWords<Law>(spread<1>(load<Vec<uint8_t, n>>(p)));
    };
    return inSteps<kCodes>(compute, pDst, len, pSrc);
}
template <class Law>
inline ZppStatus decode(const Zpp8u* pSrc, Zpp32f* pDst, int len) {
    const auto compute = [](auto lanes, const Zpp8u* p) ZPP_INLINE_LAMBDA {
        constexpr int n = decltype(lanes)::value;
        constexpr auto& values = kDecoded<Law, Zpp32f>.of;
        if constexpr (n == 1) {
            return values[*p];
        } else if constexpr (!kLooksUpBytes) {  // where decodedWords and what follows take longer than this
            return Vec<float, n>{values[p[0]], values[p[1]], values[p[2]], values[p[3]]};
        } else {
            const auto singles = [](auto words) ZPP_INLINE_LAMBDA {
                // In the upper half of their lanes words need no extension of their sign.
                return mapRegisters([](auto x) ZPP_INLINE_LAMBDA { return toFloat(x) * 0x1p-31F; },
                                    interleaveWords(decltype(words){}, words));
            };
            return mapRegisters(singles, decodedWords<Law>(spread<2>(load<Vec<uint8_t, n>>(p))));
        }
    };
    constexpr int step = kLooksUpBytes ? kCodes : kLanes<float>;
    return inSteps<step>(compute, pDst, len, pSrc);
}

template <class Law>
inline ZppStatus encode(const Zpp16s* pSrc, Zpp8u* pDst, int len) {
    const auto compute = [](auto lanes, const Zpp16s* p) ZPP_INLINE_LAMBDA {
        constexpr int n = decltype(lanes)::value;
        if constexpr (n == 1) {
            return static_cast<Zpp8u>(encoded<Law>(int32_t{*p}));
        } else {
            using Words = Vec<int16_t, n / 2>;
            const auto code = [](auto words) ZPP_INLINE_LAMBDA { return encodedWords<Law>(words); };
            return packedInOrder<1>(mapRegisters(code, halves(load<Words>(p), load<Words>(p + n / 2))));
        }
    };
    return inSteps<kCodes>(compute, pDst, len, pSrc);
}
template <class Law>
inline ZppStatus encode(const Zpp32f* pSrc, Zpp8u* pDst, int len) {
    const auto compute = [](auto lanes, const Zpp32f* p) ZPP_INLINE_LAMBDA {
        constexpr int n = decltype(lanes)::value;
        if constexpr (n == 1) {
            return static_cast<Zpp8u>(encoded<Law>(*p));
        } else {
            const auto codesAt = [](const Zpp32f* from) ZPP_INLINE_LAMBDA {
                using Singles = Vec<float, n / 4>;
                return encodedWords<Law>(wordsOf(
                    halves(nearestWords(load<Singles>(from)), nearestWords(load<Singles>(from + n / 4)))));
            };
            return packedInOrder<2>(halves(codesAt(p), codesAt(p + n / 2)));
        }
    };
    return inSteps<kCodes>(compute, pDst, len, pSrc);
}

// The way between the laws is one between the numbers of the values, 0 to 127 from the least magnitude on:
// one law has steps where the other has none or two.
template <class V>
ZPP_INLINE constexpr V stepsUp(V v, int from, int count) {
    if constexpr (std::is_same_v<V, int>) {
        return v < from ? 0 : v > from + count ? count : v - from;
    } else {
        const auto lower = static_cast<uint8_t>(from), upper = static_cast<uint8_t>(from + count);
        const V notAbove = min(v, broadcast<V>(upper));
        return from == 0 ? notAbove : max(notAbove, broadcast<V>(lower)) - lower;
    }
}
constexpr auto numberInALaw = [](auto number) ZPP_INLINE_LAMBDA {
    return number - halvedUp(stepsUp(number, 0, 16)) + stepsUp(number, 32, 4) + stepsUp(number, 47, 2) +
           stepsUp(number, 63, 1) + stepsUp(number, 80, 1);
};
constexpr auto numberInMuLaw = [](auto number) ZPP_INLINE_LAMBDA {
    return number + stepsUp(number + 1, 0, 8) - halvedUp(stepsUp(number, 24, 8)) -
           halvedUp(stepsUp(number, 44, 4)) - stepsUp(number, 62, 1) - stepsUp(number, 79, 1);
};

// Codes of one law as codes of the other; the sign of both is the same bit.
template <auto kNumber, int inverted, int invertedAfter>
inline ZppStatus translate(const Zpp8u* pSrc, Zpp8u* pDst, int len) {
    static constexpr auto kTranslated = tableOf<Zpp8u, 256>([](int code) {
        const int bits = code ^ inverted;
        return ((bits & 0x80) | kNumber(bits & 0x7F)) ^ invertedAfter;
    });
    const auto compute = [](auto lanes, const Zpp8u* p) ZPP_INLINE_LAMBDA {
        constexpr int n = decltype(lanes)::value;
        if constexpr (n == 1) {
            return kTranslated.of[*p];
        } else {
            const auto bits = load<Vec<uint8_t, n>>(p) ^ static_cast<uint8_t>(inverted);
            return ((bits & 0x80) | kNumber(bits & 0x7F)) ^ static_cast<uint8_t>(invertedAfter);
        }
    };
    return inSteps<kCodes>(compute, pDst, len, pSrc);
}

}  // namespace

ZppStatus zppsLinToALaw_16s8u(const Zpp16s* pSrc, Zpp8u* pDst, int len) {
    return encode<ALaw>(pSrc, pDst, len);
}
ZppStatus zppsLinToALaw_32f8u(const Zpp32f* pSrc, Zpp8u* pDst, int len) {
    return encode<ALaw>(pSrc, pDst, len);
}
ZppStatus zppsLinToMuLaw_16s8u(const Zpp16s* pSrc, Zpp8u* pDst, int len) {
    return encode<MuLaw>(pSrc, pDst, len);
}
ZppStatus zppsLinToMuLaw_32f8u(const Zpp32f* pSrc, Zpp8u* pDst, int len) {
    return encode<MuLaw>(pSrc, pDst, len);
}
ZppStatus zppsALawToLin_8u16s(const Zpp8u* pSrc, Zpp16s* pDst, int len) {
    return decode<ALaw>(pSrc, pDst, len);
}
ZppStatus zppsALawToLin_8u32f(const Zpp8u* pSrc, Zpp32f* pDst, int len) {
    return decode<ALaw>(pSrc, pDst, len);
}
ZppStatus zppsMuLawToLin_8u16s(const Zpp8u* pSrc, Zpp16s* pDst, int len) {
    return decode<MuLaw>(pSrc, pDst, len);
}
ZppStatus zppsMuLawToLin_8u32f(const Zpp8u* pSrc, Zpp32f* pDst, int len) {
    return decode<MuLaw>(pSrc, pDst, len);
}
ZppStatus zppsALawToMuLaw_8u(const Zpp8u* pSrc, Zpp8u* pDst, int len) {
    return translate<numberInMuLaw, 0x55, 0x7F>(pSrc, pDst, len);
}
ZppStatus zppsMuLawToALaw_8u(const Zpp8u* pSrc, Zpp8u* pDst, int len) {
    return translate<numberInALaw, 0x7F, 0x55>(pSrc, pDst, len);
}

}  // namespace zpp::ZPP_ISA
