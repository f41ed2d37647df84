// Numbers of vm/log10.h, made by vm/make_tables.py.
// clang-format off
#pragma once

#include "core/isa.h"

namespace zpp::ZPP_ISA {

// 1 / ln 10.
inline constexpr double kLog10PerLnHigh = 0x1.bcb7b1526e50ep-2;

// And what it lacks.
inline constexpr double kLog10PerLnLow = 0x1.95355baaafad3p-57;

// Its first 26 bits.
inline constexpr double kLog10PerLnHalf = 0x1.bcb7b18000000p-2;

// log10 2, a multiple of 2^-42.
inline constexpr double kLog10Of2High = 0x1.34413509f8000p-2;

// And what it lacks.
inline constexpr double kLog10Of2Low = -0x1.80433b83b532ap-44;

// Next to the inverses of the middles of the intervals.
inline constexpr double kLog10Inverse[] = {
    0x1.642c3bd422377p+0, 0x1.5555a989110cap+0, 0x1.47ad68ff2db5dp+0, 0x1.3b14292fa95fdp+0,
    0x1.2f6801bb3385bp+0, 0x1.2492b44ab21ffp+0, 0x1.1a7c2f4390c35p+0, 0x1.1111a0c6e84cfp+0,
    0x1.0842586e8da77p+0, 0x1.0000000000000p+0, 0x1.e1e2a6d495cd2p-1, 0x1.c71b8e2af6493p-1,
    0x1.af2907c0b110fp-1, 0x1.999a2ea111d5ap-1, 0x1.86184f08e7b54p-1, 0x1.745ccaa7e41ccp-1
};

// Minus the logarithms of these, multiples of 2^-42: right to 2^-64 of what they are of.
inline constexpr double kLog10Log[] = {
    -0x1.25b9c9f330000p-3, -0x1.ffc1798e00000p-4, -0x1.b71e2a28a8000p-4, -0x1.715fb2224c000p-4,
    -0x1.2e38c17a0c000p-4, -0x1.db17046a88000p-5, -0x1.5e40f02168000p-5, -0x1.cb479d8b30000p-6,
    -0x1.c3dfa44d20000p-7, 0, 0x1.af54368f30000p-6, 0x1.a31190ae00000p-5, 0x1.31b081e3b8000p-4,
    0x1.8ceefc4f20000p-4, 0x1.e3bc6f00ac000p-4, 0x1.1b3f28eede000p-3
};

// (log10(1 + r) - r / ln 10) / r^2 for |r| <= 1/32: right to 2^-63.5 r.
inline constexpr double kLog10Polynomial[] = {
    -0x1.bcb7b1526e50ep-3, 0x1.287a7636f4304p-3, -0x1.bcb7b1526e268p-4, 0x1.63c62776dc8f3p-4,
    -0x1.287a763a6f8bbp-4, 0x1.fc3f7c9cf9841p-5, -0x1.bcb7764e48353p-5, 0x1.8c1349b236a11p-5,
    -0x1.64a121ca373c8p-5
};

// Minus the logarithms of kLnFineInverse, multiples of 2^-42.
inline constexpr double kLog10FineLog[] = {
    -0x1.3459679ca8000p-3, -0x1.2f72fe55e0000p-3, -0x1.2a934b2520000p-3, -0x1.25ba742ff2000p-3,
    -0x1.20e84f9382000p-3, -0x1.1c1d02c5c4000p-3, -0x1.1758111c02000p-3, -0x1.12999e0860000p-3,
    -0x1.0de1cd4634000p-3, -0x1.09301dd05e000p-3, -0x1.0485044842000p-3, -0x1.ffbffa52bc000p-4,
    -0x1.f68252b88c000p-4, -0x1.ed50ab954c000p-4, -0x1.e42b4523ec000p-4, -0x1.db11b5df74000p-4,
    -0x1.d2043c620c000p-4, -0x1.c9026bc424000p-4, -0x1.c00c80f514000p-4, -0x1.b7220ba0e8000p-4,
    -0x1.ae42986c7c000p-4, -0x1.a56e60679c000p-4, -0x1.9ca59d0fc8000p-4, -0x1.93e7d71ce4000p-4,
    -0x1.8b35464664000p-4, -0x1.828cbccf54000p-4, -0x1.79efd59e54000p-4, -0x1.715d6045d8000p-4,
    -0x1.68d4db4ff8000p-4, -0x1.60572efbb8000p-4, -0x1.57e3d8d408000p-4, -0x1.4f7a53466c000p-4,
    -0x1.471b87a63c000p-4, -0x1.3ec6ef574c000p-4, -0x1.367c009b04000p-4, -0x1.2e3a2e8ec4000p-4,
    -0x1.26031e9dd4000p-4, -0x1.1dd5880fd0000p-4, -0x1.15b0d9c2bc000p-4, -0x1.0d96bcaf50000p-4,
    -0x1.0585214484000p-4, -0x1.faf9e24018000p-5, -0x1.eafcafe430000p-5, -0x1.db117e4880000p-5,
    -0x1.cb38a0bb80000p-5, -0x1.bb726b1a10000p-5, -0x1.abbda775c8000p-5, -0x1.9c191976d0000p-5,
    -0x1.8c8827ca28000p-5, -0x1.7d0679c5f8000p-5, -0x1.6d9778dad8000p-5, -0x1.5e39e3cb90000p-5,
    -0x1.4eec72e5f8000p-5, -0x1.3faf6e8070000p-5, -0x1.30831f6af8000p-5, -0x1.2167ceecf8000p-5,
    -0x1.125dc6c340000p-5, -0x1.03621638a8000p-5, -0x1.e8ed396420000p-6, -0x1.cb3a81ee40000p-6,
    -0x1.ada2cd1870000p-6, -0x1.902d250aa0000p-6, -0x1.72d37f79d0000p-6, -0x1.559cf618f0000p-6,
    -0x1.38801f1de0000p-6, -0x1.1b876ffda0000p-6, -0x1.fd52d74c80000p-7, -0x1.c3d3c54fe0000p-7,
    -0x1.8a8be3fcc0000p-7, -0x1.5182e554a0000p-7, -0x1.18b2f858a0000p-7, -0x1.c03a118080000p-8,
    -0x1.4f840757c0000p-8, -0x1.be6fca9900000p-9, -0x1.bd94e52000000p-10, 0, 0x1.baf6544380000p-9,
    0x1.b947d97dc0000p-8, 0x1.49afd75c80000p-7, 0x1.b5e8ed1fa0000p-7, 0x1.10a7f50790000p-6,
    0x1.45f4a93d20000p-6, 0x1.7adcf617c0000p-6, 0x1.af5fae7b90000p-6, 0x1.e3813ebb60000p-6,
    0x1.0ba0521868000p-5, 0x1.2550540448000p-5, 0x1.3ed1278018000p-5, 0x1.58235910f8000p-5,
    0x1.7148762b18000p-5, 0x1.8a3f345150000p-5, 0x1.a30a2e32b8000p-5, 0x1.bba9234538000p-5,
    0x1.d41cd45150000p-5, 0x1.ec660cdaf0000p-5, 0x1.0242510ea4000p-4, 0x1.0e3d397a88000p-4,
    0x1.1a2331391c000p-4, 0x1.25f531df88000p-4, 0x1.31b3360060000p-4, 0x1.3d5d3a4f30000p-4,
    0x1.48f3c36cbc000p-4, 0x1.54775ba5c4000p-4, 0x1.5fe80b7b90000p-4, 0x1.6b45ddb288000p-4,
    0x1.76916896d4000p-4, 0x1.81ca340aa0000p-4, 0x1.8cf167bce8000p-4, 0x1.98071d0148000p-4,
    0x1.a30ae2dd54000p-4, 0x1.adfcd4e09c000p-4, 0x1.b8de2df5c8000p-4, 0x1.c3ae848280000p-4,
    0x1.ce6dfe2468000p-4, 0x1.d91d540ee0000p-4, 0x1.e3bc21a3c0000p-4, 0x1.ee4a942948000p-4,
    0x1.f8c96f2748000p-4, 0x1.019c29971e000p-3, 0x1.06cbbaaef2000p-3, 0x1.0bf3d1e106000p-3,
    0x1.11144223f6000p-3, 0x1.162d2a0ac8000p-3, 0x1.1b3e5d13f8000p-3, 0x1.204894face000p-3,
    0x1.254b5b1ba6000p-3, 0x1.2a46d23528000p-3, 0x1.2f3b6c95ca000p-3
};

// And what these lack.
inline constexpr double kLog10FineTail[] = {
    0x1.e06bacb6da14fp-46, 0x1.b966b7d6dc473p-44, -0x1.79d70605f4bbfp-48, 0x1.34e73a95f2d52p-46,
    -0x1.a63e8022cebbap-47, 0x1.878fda5dc2a03p-44, -0x1.a947470db6cd4p-45, 0x1.37c7a38858409p-44,
    -0x1.22b80bedf3467p-46, -0x1.9ff651d95e59bp-44, -0x1.deba5e72893e8p-45, -0x1.98529c99b9256p-45,
    -0x1.ab1e61e16b6f6p-45, -0x1.718fc49e8f925p-44, 0x1.99aa90c180bf4p-48, 0x1.2599e68f12bccp-46,
    0x1.a57dcaab0b919p-46, -0x1.c76e26f2a8762p-44, -0x1.4aba01419a7e3p-45, -0x1.5454ab285d0e3p-44,
    -0x1.d4f9dde02ae9bp-44, 0x1.a376453e00ec5p-46, -0x1.b14a6d5c92f80p-47, -0x1.1f359417187eep-44,
    -0x1.0e7b8094b3aefp-44, -0x1.2afe2f3b43ed6p-45, -0x1.8659603e01c94p-44, 0x1.051f0ebfea216p-44,
    -0x1.8b4467f0caeb6p-47, -0x1.964c13e6037b4p-44, 0x1.ce5dbdaf7330cp-44, 0x1.94fbbf41881a8p-44,
    0x1.3044ab4e0dda5p-46, 0x1.60cc09a5b5061p-44, 0x1.56a4ef6481631p-44, 0x1.0f67840d1e8a8p-44,
    -0x1.aa68693e54a1ap-44, 0x1.d06707d2d3b09p-44, -0x1.41a850c439672p-46, -0x1.077d81050f0b4p-47,
    -0x1.4eb915cf19249p-44, 0x1.917816bc88e75p-44, -0x1.de3bcb6c64871p-45, 0x1.a9081085a58cdp-44,
    -0x1.8b550092b9233p-44, 0x1.e0fa803697971p-48, -0x1.a65c6f0c20a52p-45, -0x1.7dd35c8367f79p-46,
    0x1.4d306471a0ddfp-45, -0x1.30e3975559fd6p-44, 0x1.90a307f861584p-45, -0x1.ab50a642ebb93p-46,
    0x1.26c89f061e207p-44, -0x1.67a99d3a816f4p-44, -0x1.6d98c62041541p-45, -0x1.a9af8394eb8d0p-46,
    -0x1.317cfc67d9795p-44, 0x1.01602d3ecb544p-44, -0x1.fa9387c475acfp-44, 0x1.bf06cea844944p-45,
    0x1.77060ec19b79ap-44, 0x1.2aae6f222b429p-44, 0x1.1d6b3033bfecep-45, -0x1.4ec42b8ce9ceap-45,
    -0x1.cd2fab83e7a7cp-45, 0x1.6f2c3529b33bep-44, 0x1.69f2a01f5bc80p-48, 0x1.cbcf656aa15c0p-45,
    -0x1.a4fa31b5d5940p-46, -0x1.81a4102adbb91p-44, -0x1.b1d09267343dep-45, 0x1.d0df4ba6c6131p-45,
    0x1.d360063742bdep-45, 0x1.60c820b12b76ep-44, -0x1.3cd7c317f1ce0p-45, 0, -0x1.557b0cd0ea5ebp-46,
    -0x1.98b7faf08d0d5p-46, 0x1.99bc72f5b0cd4p-46, -0x1.e54cc3358eb1cp-45, 0x1.b4ba5a77410b4p-45,
    0x1.ab3d7a5799c70p-44, 0x1.e6cd724d5ac34p-45, -0x1.9efe3bdf53ce2p-44, -0x1.fdc545bc23345p-46,
    -0x1.66818a2bfa5c2p-45, -0x1.e1b84d8dfa246p-44, 0x1.e9eb4451c1358p-44, -0x1.a5f988faa488cp-46,
    -0x1.9dbbe7a5bec59p-47, -0x1.f4a71db7b3daap-44, -0x1.cca3e20856760p-44, 0x1.5f588fa64a993p-48,
    0x1.8f71b502241ffp-44, 0x1.b88a5655a1b20p-44, -0x1.211cabf2dbfe0p-45, -0x1.4c9d35d0dd302p-44,
    0x1.fa2f531d15977p-45, -0x1.4339fcf225308p-44, -0x1.be7afdd22a9a5p-45, 0x1.e04fd82d6d9ddp-44,
    0x1.b43cc36860923p-46, 0x1.b01701755e9ecp-47, -0x1.e7724502bcbe9p-44, -0x1.84854679ecd40p-44,
    -0x1.777e9c358f9d3p-47, -0x1.471601ac96debp-45, 0x1.a339c312fd81fp-44, -0x1.2324388c1f4b0p-45,
    0x1.dd9e0a3494e4dp-49, 0x1.80b8438339998p-44, 0x1.a80eaad3fff05p-44, 0x1.d38cd52c7a7cep-45,
    0x1.21085e58e7aaep-44, -0x1.4073bcb6cfe6cp-45, 0x1.a29bf82c9ee91p-46, -0x1.b3b5027027998p-44,
    -0x1.1e34895434364p-44, -0x1.47cd221c1b233p-44, -0x1.aa4ed5f8ebcdfp-45, 0x1.c007e16da8290p-49,
    0x1.10b7452fa8994p-48, 0x1.df9122f64b6a7p-45, 0x1.ccb0c7bbf9023p-44, -0x1.6ae674a0b4c6ap-44,
    -0x1.0bbe750822549p-44, -0x1.530f487e34806p-47, -0x1.372510bf9c80fp-44
};

// The same for |r| <= 1/256: right to 2^-66.2 r.
inline constexpr double kLog10FinePolynomial[] = {
    -0x1.bcb7b1526e50fp-3, 0x1.287a7636f4361p-3, -0x1.bcb7b151ab78dp-4, 0x1.63c62773f8cdbp-4,
    -0x1.287bfba84548ep-4, 0x1.fc430cd1aca81p-5
};

}  // namespace zpp::ZPP_ISA
