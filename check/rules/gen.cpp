#include "zpp/gen.h"

#include "check/rules.h"
#include "zpp/frame.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"zppsVectorRamp* zppsWinBartlett*", Promise::kValues},
                                  {"*", Promise::kBound}};

template <int kFrom, int kTo, int kDivisor = 1>
double between(const Function&, const Case&, test::Random& random) {
    return random.uniform(kFrom, kTo) / kDivisor;
}

constexpr double kNegative[] = {-1, -2}, kNoPhase[] = {-1, 6.283185307179586}, kNoFrequency[] = {-0.25, 0.5},
                 kNoAsymmetry[] = {-4, 3.141592653589793}, kTooHuge[] = {-1000, 1000};
constexpr Number kNumbers[] = {
    {"zppsTone*", "magn", between<0, 1>, kBelowOne, zppStatusToneMagnitude},
    {"zppsTone*", "rFreq", between<0, 1, 2>, kNoFrequency, zppStatusToneFrequency},
    {"zppsTone*", "pPhase", between<0, 6>, kNoPhase, zppStatusTonePhase},
    {"zppsTriangle*", "magn", between<0, 1>, kBelowOne, zppStatusTriangleMagnitude},
    {"zppsTriangle*", "rFreq", between<0, 1, 2>, kNoFrequency, zppStatusTriangleFrequency},
    {"zppsTriangle*", "asym", between<-2, 2>, kNoAsymmetry, zppStatusTriangleAsymmetry},
    {"zppsTriangle*", "pPhase", between<0, 6>, kNoPhase, zppStatusTrianglePhase},
    {"zppsVectorJaehne_64f", "magn", between<0, 1>, kNegative, zppStatusNegativeMagnitude},
    // Smaller than it might be: a sine that differs in the last bit is seldom rounded to another integer.
    {"zppsVectorJaehne_32s", "magn", between<0, 1000000>, kNegative, zppStatusNegativeMagnitude},
    {"zppsVectorRamp*", "offset slope", nullptr},
    {"zppsWinBlackman*", "alpha", between<-1, 1, 2>},
    {"zppsWinKaiser*", "alpha",
     [](const Function&, const Case& c, test::Random& random) {
         return random.uniform(-600, 600) / c.length;  // below the limit
     },
     kTooHuge, zppStatusKaiserTooHuge},
};

// Of windows, which have two ends and more; and beyond a block of weights.
constexpr int kWindowed[] = {4,  5,  6,  7,  8,  9,   11,  13,   15,   16,   17,
                             31, 33, 63, 64, 65, 129, 255, 1023, 1024, 1090, 2085};
constexpr Lengths kLengths[] = {{"zppsWin*", kWindowed}};

// As the library makes none, one is put together.
template <class State>
ObjectKind state(const char* functions, ZppStatus (*free)(State*)) {
    const auto make = [](const Function&, const Case&) {
        Zpp32s* words = zppsMalloc_32s(8);
        if (words != nullptr) words[0] = 0x4C4D535A, words[1] = 1;
        return words;
    };
    return {functions,
            make,
            [=](void* made) { free(static_cast<State*>(made)); },
            reinterpret_cast<Entry>(free),
            {}};
}
const ObjectKind kObjects[] = {state("zppsToneFree", zppsToneFree),
                               state("zppsTriangleFree", zppsTriangleFree)};

}  // namespace

const Rules kGenRules = {
    .folder = "gen", .promises = kPromises, .numbers = kNumbers, .objects = kObjects, .lengths = kLengths};

}  // namespace zpp::check
