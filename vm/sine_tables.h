// Numbers of vm/sine.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// pi / 16, in three parts, of which the second has 30 bits: see vm/sine.h.
inline constexpr double kPi16First = 0x1.921fb54442d18p-3;

// The second.
inline constexpr double kPi16Second = 0x1.1a62633000000p-57;

// The third.
inline constexpr double kPi16Third = 0x1.45c06e0e68948p-89;

// What is added to i pi / 16 for a sine and a cosine that are doubles to 2^-60.
inline constexpr double kSineOffset[] = {
    0, -0x1.f200000000000p-38, -0x1.75d3000000000p-28, 0x1.40a7000000000p-29, -0x1.37d1400000000p-28,
    -0x1.40a7000000000p-29, 0x1.75d3000000000p-28, 0x1.f200000000000p-38, 0, -0x1.f200000000000p-38,
    -0x1.75d3000000000p-28, 0x1.40a7000000000p-29, 0x1.37d1400000000p-28, -0x1.40a7000000000p-29,
    0x1.75d3000000000p-28, 0x1.f200000000000p-38
};

// The sines of the sums.
inline constexpr double kSine[] = {
    0, 0x1.8f8b83c65d52ep-3, 0x1.87de2a1492fffp-2, 0x1.1c73b3ab905a1p-1, 0x1.6a09e64c641d9p-1,
    0x1.a9b66285c7c8bp-1, 0x1.d906bd050aa1ep-1, 0x1.f6297cff78d44p-1, 0x1.0000000000000p+0,
    0x1.f6297cff78d44p-1, 0x1.d906bd050aa1ep-1, 0x1.a9b66285c7c8bp-1, 0x1.6a09e64c641d9p-1,
    0x1.1c73b3ab905a1p-1, 0x1.87de2a1492fffp-2, 0x1.8f8b83c65d52ep-3
};

// Their cosines.
inline constexpr double kCosine[] = {
    0x1.0000000000000p+0, 0x1.f6297cff78d44p-1, 0x1.d906bd050aa1ep-1, 0x1.a9b66285c7c8bp-1,
    0x1.6a09e683835c0p-1, 0x1.1c73b3ab905a1p-1, 0x1.87de2a1492fffp-2, 0x1.8f8b83c65d52ep-3, 0,
    -0x1.8f8b83c65d52ep-3, -0x1.87de2a1492fffp-2, -0x1.1c73b3ab905a1p-1, -0x1.6a09e683835c0p-1,
    -0x1.a9b66285c7c8bp-1, -0x1.d906bd050aa1ep-1, -0x1.f6297cff78d44p-1
};

// pi / 64 in parts of 28 bits, and the rest.
inline constexpr double kPi64[] = {
    0x1.921fb54000000p-5, 0x1.10b4612000000p-35, -0x1.676733a000000p-65, -0x1.d1fc8f8cbb5bfp-94
};

// The sines of i pi / 64.
inline constexpr double kSineFine[] = {
    0, 0x1.91f65f10dd814p-5, 0x1.917a6bc29b42cp-4, 0x1.2c8106e8e613ap-3, 0x1.8f8b83c69a60bp-3,
    0x1.f19f97b215f1bp-3, 0x1.294062ed59f06p-2, 0x1.58f9a75ab1fddp-2, 0x1.87de2a6aea963p-2,
    0x1.b5d1009e15cc0p-2, 0x1.e2b5d3806f63bp-2, 0x1.073879922ffeep-1, 0x1.1c73b39ae68c8p-1,
    0x1.30ff7fce17035p-1, 0x1.44cf325091dd6p-1, 0x1.57d69348ceca0p-1, 0x1.6a09e667f3bcdp-1,
    0x1.7b5df226aafafp-1, 0x1.8bc806b151741p-1, 0x1.9b3e047f38741p-1, 0x1.a9b66290ea1a3p-1,
    0x1.b728345196e3ep-1, 0x1.c38b2f180bdb1p-1, 0x1.ced7af43cc773p-1, 0x1.d906bcf328d46p-1,
    0x1.e212104f686e5p-1, 0x1.e9f4156c62ddap-1, 0x1.f0a7efb9230d7p-1, 0x1.f6297cff75cb0p-1,
    0x1.fa7557f08a517p-1, 0x1.fd88da3d12526p-1, 0x1.ff621e3796d7ep-1, 0x1.0000000000000p+0,
    0x1.ff621e3796d7ep-1, 0x1.fd88da3d12526p-1, 0x1.fa7557f08a517p-1, 0x1.f6297cff75cb0p-1,
    0x1.f0a7efb9230d7p-1, 0x1.e9f4156c62ddap-1, 0x1.e212104f686e5p-1, 0x1.d906bcf328d46p-1,
    0x1.ced7af43cc773p-1, 0x1.c38b2f180bdb1p-1, 0x1.b728345196e3ep-1, 0x1.a9b66290ea1a3p-1,
    0x1.9b3e047f38741p-1, 0x1.8bc806b151741p-1, 0x1.7b5df226aafafp-1, 0x1.6a09e667f3bcdp-1,
    0x1.57d69348ceca0p-1, 0x1.44cf325091dd6p-1, 0x1.30ff7fce17035p-1, 0x1.1c73b39ae68c8p-1,
    0x1.073879922ffeep-1, 0x1.e2b5d3806f63bp-2, 0x1.b5d1009e15cc0p-2, 0x1.87de2a6aea963p-2,
    0x1.58f9a75ab1fddp-2, 0x1.294062ed59f06p-2, 0x1.f19f97b215f1bp-3, 0x1.8f8b83c69a60bp-3,
    0x1.2c8106e8e613ap-3, 0x1.917a6bc29b42cp-4, 0x1.91f65f10dd814p-5
};

// What these lack.
inline constexpr double kSineFineTail[] = {
    0, -0x1.912bd0d569a90p-61, -0x1.e2718d26ed688p-60, 0x1.13000a89a11e0p-58, -0x1.26d19b9ff8d82p-57,
    -0x1.42deef11da2c4p-57, -0x1.5d28da2c4612dp-56, -0x1.efdc0d58cf620p-62, -0x1.72cedd3d5a610p-57,
    0x1.5b362cb974183p-57, 0x1.e0d891d3c6841p-58, -0x1.a5a014347406cp-55, 0x1.b25dd267f6600p-55,
    -0x1.efcc626f74a6fp-57, 0x1.8076a2cfdc6b3p-57, -0x1.75720992bfbb2p-55, -0x1.bdd3413b26456p-55,
    -0x1.0f537acdf0ad7p-56, -0x1.2c5e12ed1336dp-55, -0x1.30ee286712474p-55, 0x1.9f630e8b6dac8p-60,
    -0x1.bc69f324e6d61p-55, -0x1.6e0b1757c8d07p-56, -0x1.e7b6bb5ab58aep-58, 0x1.457e610231ac2p-56,
    -0x1.014c76c126527p-55, 0x1.760b1e2e3f81ep-55, 0x1.52c7adc6b4989p-56, 0x1.562172a361fd3p-56,
    -0x1.7a0a8ca13571fp-55, -0x1.87df6378811c7p-55, -0x1.c57bc2e24aa15p-57, 0, -0x1.c57bc2e24aa15p-57,
    -0x1.87df6378811c7p-55, -0x1.7a0a8ca13571fp-55, 0x1.562172a361fd3p-56, 0x1.52c7adc6b4989p-56,
    0x1.760b1e2e3f81ep-55, -0x1.014c76c126527p-55, 0x1.457e610231ac2p-56, -0x1.e7b6bb5ab58aep-58,
    -0x1.6e0b1757c8d07p-56, -0x1.bc69f324e6d61p-55, 0x1.9f630e8b6dac8p-60, -0x1.30ee286712474p-55,
    -0x1.2c5e12ed1336dp-55, -0x1.0f537acdf0ad7p-56, -0x1.bdd3413b26456p-55, -0x1.75720992bfbb2p-55,
    0x1.8076a2cfdc6b3p-57, -0x1.efcc626f74a6fp-57, 0x1.b25dd267f6600p-55, -0x1.a5a014347406cp-55,
    0x1.e0d891d3c6841p-58, 0x1.5b362cb974183p-57, -0x1.72cedd3d5a610p-57, -0x1.efdc0d58cf620p-62,
    -0x1.5d28da2c4612dp-56, -0x1.42deef11da2c4p-57, -0x1.26d19b9ff8d82p-57, 0x1.13000a89a11e0p-58,
    -0x1.e2718d26ed688p-60, -0x1.912bd0d569a90p-61
};

// The cosines, of 26 bits.
inline constexpr double kCosineFine[] = {
    0x1.0000000000000p+0, 0x1.ff621e0000000p-1, 0x1.fd88da0000000p-1, 0x1.fa75580000000p-1,
    0x1.f6297d0000000p-1, 0x1.f0a7ef8000000p-1, 0x1.e9f4158000000p-1, 0x1.e212108000000p-1,
    0x1.d906bd0000000p-1, 0x1.ced7af8000000p-1, 0x1.c38b2f0000000p-1, 0x1.b728348000000p-1,
    0x1.a9b6628000000p-1, 0x1.9b3e048000000p-1, 0x1.8bc8068000000p-1, 0x1.7b5df20000000p-1,
    0x1.6a09e68000000p-1, 0x1.57d6938000000p-1, 0x1.44cf328000000p-1, 0x1.30ff800000000p-1,
    0x1.1c73b38000000p-1, 0x1.0738798000000p-1, 0x1.e2b5d38000000p-2, 0x1.b5d1008000000p-2,
    0x1.87de2a8000000p-2, 0x1.58f9a78000000p-2, 0x1.2940630000000p-2, 0x1.f19f978000000p-3,
    0x1.8f8b840000000p-3, 0x1.2c81070000000p-3, 0x1.917a6c0000000p-4, 0x1.91f65f0000000p-5, 0,
    -0x1.91f65f0000000p-5, -0x1.917a6c0000000p-4, -0x1.2c81070000000p-3, -0x1.8f8b840000000p-3,
    -0x1.f19f978000000p-3, -0x1.2940630000000p-2, -0x1.58f9a78000000p-2, -0x1.87de2a8000000p-2,
    -0x1.b5d1008000000p-2, -0x1.e2b5d38000000p-2, -0x1.0738798000000p-1, -0x1.1c73b38000000p-1,
    -0x1.30ff800000000p-1, -0x1.44cf328000000p-1, -0x1.57d6938000000p-1, -0x1.6a09e68000000p-1,
    -0x1.7b5df20000000p-1, -0x1.8bc8068000000p-1, -0x1.9b3e048000000p-1, -0x1.a9b6628000000p-1,
    -0x1.b728348000000p-1, -0x1.c38b2f0000000p-1, -0x1.ced7af8000000p-1, -0x1.d906bd0000000p-1,
    -0x1.e212108000000p-1, -0x1.e9f4158000000p-1, -0x1.f0a7ef8000000p-1, -0x1.f6297d0000000p-1,
    -0x1.fa75580000000p-1, -0x1.fd88da0000000p-1, -0x1.ff621e0000000p-1
};

// What these lack.
inline constexpr double kCosineFineTail[] = {
    0, 0x1.bcb6bef1d421fp-28, 0x1.e89292cf04139p-28, -0x1.eeb5d2bd05465p-30, -0x1.1469faa77a357p-34,
    0x1.c9186b952c7aep-28, -0x1.39d225a27d387p-29, -0x1.84bc8da0298eep-28, -0x1.9ae573aea067cp-30,
    -0x1.e19c46879edafp-28, 0x1.80bdb0d23e9d1p-29, -0x1.7348e1378d3e6p-28, 0x1.0ea1a3033ec62p-29,
    -0x1.8f17e98771434p-34, 0x1.8a8ba05a743dap-28, 0x1.3557d76f0ac85p-28, -0x1.80c4336f74d05p-29,
    -0x1.b989b02eae413p-28, -0x1.7b7114f3fc4afp-28, -0x1.8f47e58f7e631p-28, 0x1.ae68c86c9774ap-29,
    0x1.22ffed9697fafp-29, 0x1.bd8ec78362475p-36, 0x1.e15cc02b66c59p-30, -0x1.51569d2e59dbap-30,
    -0x1.2a701180f7ee0p-29, -0x1.2a60fa574a369p-30, 0x1.90af8d57a4222p-30, -0x1.cb2cfaa4da337p-30,
    -0x1.719ec5dd9ffebp-31, -0x1.eb25ea0f138c7p-31, 0x1.0dd813e6ed42fp-33, 0, -0x1.0dd813e6ed42fp-33,
    0x1.eb25ea0f138c7p-31, 0x1.719ec5dd9ffebp-31, 0x1.cb2cfaa4da337p-30, -0x1.90af8d57a4222p-30,
    0x1.2a60fa574a369p-30, 0x1.2a701180f7ee0p-29, 0x1.51569d2e59dbap-30, -0x1.e15cc02b66c59p-30,
    -0x1.bd8ec78362475p-36, -0x1.22ffed9697fafp-29, -0x1.ae68c86c9774ap-29, 0x1.8f47e58f7e631p-28,
    0x1.7b7114f3fc4afp-28, 0x1.b989b02eae413p-28, 0x1.80c4336f74d05p-29, -0x1.3557d76f0ac85p-28,
    -0x1.8a8ba05a743dap-28, 0x1.8f17e98771434p-34, -0x1.0ea1a3033ec62p-29, 0x1.7348e1378d3e6p-28,
    -0x1.80bdb0d23e9d1p-29, 0x1.e19c46879edafp-28, 0x1.9ae573aea067cp-30, 0x1.84bc8da0298eep-28,
    0x1.39d225a27d387p-29, -0x1.c9186b952c7aep-28, 0x1.1469faa77a357p-34, 0x1.eeb5d2bd05465p-30,
    -0x1.e89292cf04139p-28, -0x1.bcb6bef1d421fp-28
};

// As below for |r| <= pi / 128: sin(r) / r to 2^-68.0.
inline constexpr double kSineFinePolynomial[] = {
    -0x1.5555555555551p-3, 0x1.11111110745cap-7, -0x1.a0184b606872fp-13
};

// As below: cos(r) to 2^-63.8.
inline constexpr double kCosineFinePolynomial[] = {
    0x1.555555549e7bbp-5, -0x1.6c153165a6265p-10
};

// (sin(r) / r - 1) / r^2 in r^2 for |r| <= pi / 32: sin(r) / r to 2^-67.6.
inline constexpr double kSinePolynomial[] = {
    -0x1.5555555555555p-3, 0x1.111111110eed3p-7, -0x1.a01a00f872043p-13, 0x1.71ca0248daa1ap-19
};

// (cos(r) - 1 + r^2 / 2) / r^4 in r^2: cos(r) to 2^-63.3.
inline constexpr double kCosinePolynomial[] = {
    0x1.5555555552a5bp-5, -0x1.6c16c0c732082p-10, 0x1.a001777ab65fcp-16
};

// As these for |r| <= pi / 4: sin(r) / r to 2^-58.0.
inline constexpr double kWideSinePolynomial[] = {
    -0x1.5555555555549p-3, 0x1.111111110f881p-7, -0x1.a01a019c126c2p-13, 0x1.71de357875556p-19,
    -0x1.ae5e66d5a45dcp-26, 0x1.5d932f80e30fbp-33
};

// As these: cos(r) to 2^-64.2.
inline constexpr double kWideCosinePolynomial[] = {
    0x1.555555555554cp-5, -0x1.6c16c16c15184p-10, 0x1.a01a019cb26fcp-16, -0x1.27e4f80a76f11p-22,
    0x1.1ee9ec481eaa1p-29, -0x1.8faecf69c95b1p-37
};

}  // namespace zpp::ZPP_ISA
