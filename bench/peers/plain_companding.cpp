// Companding by the formulas, which compilers make vectors of, and by tables, which they cannot.
#include <vector>

#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

int decodedA(int code) {
    const int bits = code ^ 0xD5, segment = bits >> 4 & 7, m = (bits & 15) << 4;
    const int magnitude = (m + (segment > 0 ? 264 : 8)) << (segment > 0 ? segment - 1 : 0);
    return bits & 0x80 ? -magnitude : magnitude;
}
int decodedMu(int code) {
    const int bits = code ^ 0xFF, magnitude = ((((bits & 15) << 3) + 132) << (bits >> 4 & 7)) - 132;
    return bits & 0x80 ? -magnitude : magnitude;
}
int encodedA(int x) {
    const int sign = x >> 31, magnitude = (x ^ sign) >> 4;
    const int above = 27 - __builtin_clz(static_cast<unsigned>(magnitude | 1)),
              segment = above > 0 ? above : 0;
    return (((magnitude >> segment) + 16 * segment) ^ 0xD5) ^ (sign & 0x80);
}
int encodedMu(int x) {
    const int sign = x >> 31, magnitude = x ^ sign, biased = (magnitude < 32635 ? magnitude : 32635) + 132;
    const int segment = 24 - __builtin_clz(static_cast<unsigned>(biased));
    return (((biased >> (segment + 3)) + 16 * segment - 16) ^ 0xFF) ^ (sign & 0x80);
}
int linear(float x) {
    const float y = x * 32768;
    const float bounded = y < 32767 ? y > -32768 ? y : -32768 : 32767;
    return static_cast<int>(bounded + (bounded < 0 ? -0.49999997F : 0.49999997F));
}

template <auto kOp>
constexpr auto byFormula16s8u = map<[](Zpp16s x) { return static_cast<Zpp8u>(kOp(x)); }>;
template <auto kOp>
constexpr auto byFormula32f8u = map<[](float x) { return static_cast<Zpp8u>(kOp(linear(x))); }>;
template <auto kOp>
constexpr auto byFormula8u16s = map<[](Zpp8u x) { return static_cast<Zpp16s>(kOp(x)); }>;
template <auto kOp>
constexpr auto byFormula8u32f = map<[](Zpp8u x) { return static_cast<float>(kOp(x)) / 32768; }>;

[[maybe_unused]] const Peers formulas(kWho, {
                                                {"LinToALaw_16s8u", byFormula16s8u<encodedA>},
                                                {"LinToALaw_32f8u", byFormula32f8u<encodedA>},
                                                {"LinToMuLaw_16s8u", byFormula16s8u<encodedMu>},
                                                {"LinToMuLaw_32f8u", byFormula32f8u<encodedMu>},
                                                {"ALawToLin_8u16s", byFormula8u16s<decodedA>},
                                                {"MuLawToLin_8u16s", byFormula8u16s<decodedMu>},
                                                {"ALawToLin_8u32f", byFormula8u32f<decodedA>},
                                                {"MuLawToLin_8u32f", byFormula8u32f<decodedMu>},
                                            });

// Between the laws a loop's time is that of a table, whatever is in it; here, of decoding and encoding again.
template <class D, class S, auto kOp>
void byTable(const S* __restrict src, D* __restrict dst, int len) {
    static const std::vector<D> table = [] {
        std::vector<D> values(size_t{1} << 8 * sizeof(S));
        for (size_t i = 0; i < values.size(); ++i) values[i] = static_cast<D>(kOp(static_cast<S>(i)));
        return values;
    }();
    const D* const entries = table.data();
    for (int i = 0; i < len; ++i) dst[i] = entries[static_cast<std::make_unsigned_t<S>>(src[i])];
}

[[maybe_unused]] const Peers tables(
    "table-" ZPP_WHO,
    {
        {"LinToALaw_16s8u", timed<byTable<Zpp8u, Zpp16s, encodedA>>},
        {"LinToMuLaw_16s8u", timed<byTable<Zpp8u, Zpp16s, encodedMu>>},
        {"ALawToLin_8u16s", timed<byTable<Zpp16s, Zpp8u, decodedA>>},
        {"MuLawToLin_8u16s", timed<byTable<Zpp16s, Zpp8u, decodedMu>>},
        {"ALawToLin_8u32f",
         timed<byTable<Zpp32f, Zpp8u, [](int code) { return decodedA(code) / 32768.0F; }>>},
        {"MuLawToLin_8u32f",
         timed<byTable<Zpp32f, Zpp8u, [](int code) { return decodedMu(code) / 32768.0F; }>>},
        {"ALawToMuLaw_8u", timed<byTable<Zpp8u, Zpp8u, [](int code) { return encodedMu(decodedA(code)); }>>},
        {"MuLawToALaw_8u", timed<byTable<Zpp8u, Zpp8u, [](int code) { return encodedA(decodedMu(code)); }>>},
    });

}  // namespace
}  // namespace zpp::bench
