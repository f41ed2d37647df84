#include "zpp/filter.h"

#include <algorithm>
#include <cstring>

#include "check/rules.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"zppsFIR*", Promise::kBound},
                                  {"zppsSample*", Promise::kBits},
                                  {"zppsFilterMedian*", Promise::kBits},
                                  {"zppsConv* zppsAutoCorr* zppsCrossCorr*", Promise::kBound}};

int taps(const Function& f, const Case& c) {
    constexpr int kTaps[] = {1, 2, 3, 4, 5, 7, 8, 15, 16, 31, 32, 33, 64, 100};
    return f.has("numIters") ? kTaps[static_cast<unsigned>(c.length + 5 * c.variant) % 14] : c.length;
}

int factor(const Case& c) {
    constexpr int kFactors[] = {1, 2, 3, 4, 5, 8, 20, 130};
    return kFactors[static_cast<unsigned>(3 * c.length + c.variant) % 8];
}
int phase(const Case& c) { return (7 * c.length + c.variant) % factor(c); }

double below(int limit, test::Random& random) {
    return static_cast<double>(random.below(static_cast<std::uint64_t>(limit)));
}

// Where a state of either kind is taken, it is a multi-rate one in every other pair of calls.
bool isMultiRate(const Function& f, const Case& c) {
    return f.has("upFactor") || (f.has("pState") && !f.has("src") && c.variant >= 2);
}
int upFactor(const Function& f, const Case& c) { return isMultiRate(f, c) ? factor(c) : 1; }
int downFactor(const Function& f, const Case& c) {
    constexpr int kFactors[] = {3, 1, 6, 2, 7, 9, 1, 40};
    return isMultiRate(f, c) ? kFactors[static_cast<unsigned>(c.length + 3 * c.variant) % 8] : 1;
}
int delays(const Function& f, const Case& c) { return (taps(f, c) - 1) / upFactor(f, c) + 1; }

// Of two vectors, one is shorter than the length of the case, or much longer.
int otherLength(const Case& c) {
    return c.variant % 3 == 0 ? 3 * c.length + 600 : c.length / (1 + c.variant % 3) + 1;
}
int lags(const Case& c) { return c.length + c.variant % 5; }

constexpr double kNoPhase[] = {-1, 130};
constexpr Number kNumbers[] = {
    {"zppsSample*", "srcLen",
     [](const Function&, const Case& c, test::Random&) -> double { return c.length; }, kBelowOne,
     zppStatusSizeError},
    {"zppsSample*", "factor",
     [](const Function&, const Case& c, test::Random&) -> double { return factor(c); }, kBelowOne,
     zppStatusSampleFactor},
    {"zppsSample*", "pPhase",
     [](const Function&, const Case& c, test::Random&) -> double { return phase(c); }, kNoPhase,
     zppStatusSamplePhase},
    {"zppsFilterMedian*", "maskSize",
     [](const Function&, const Case& c, test::Random&) -> double {
         return 1 + (5 * c.length + 7 * c.variant) % 60;
     },
     kBelowOne, zppStatusMaskSize},
    {"zppsConv* zppsAutoCorr* zppsCrossCorr*", "lenSrc1 srcLen",
     [](const Function&, const Case& c, test::Random&) -> double { return c.length; }, kBelowOne,
     zppStatusSizeError},
    {"zppsConv* zppsCrossCorr*", "lenSrc2",
     [](const Function&, const Case& c, test::Random&) -> double { return otherLength(c); }, kBelowOne,
     zppStatusSizeError},
    {"zppsAutoCorr* zppsCrossCorr*", "dstLen",
     [](const Function&, const Case& c, test::Random&) -> double { return lags(c); }, kBelowOne,
     zppStatusSizeError},
    {"zppsCrossCorr*", "lowLag",
     [](const Function&, const Case& c, test::Random& random) {
         return below(2 * c.length, random) - c.length;
     }},
    {"zppsFIR*", "numIters", [](const Function&, const Case& c, test::Random&) -> double { return c.length; },
     kBelowOne, zppStatusSizeError},
    {"zppsFIR*", "tapsLen",
     [](const Function& f, const Case& c, test::Random&) -> double { return taps(f, c); }, kBelowOne,
     zppStatusFirLength},
    {"zppsFIR*", "pDlyLineIndex",
     [](const Function& f, const Case& c, test::Random& random) { return below(taps(f, c), random); }},
    {"zppsFIR*", "src", nullptr},
    {"zppsFIRMR*", "upFactor",
     [](const Function& f, const Case& c, test::Random&) -> double { return upFactor(f, c); }, kBelowOne,
     zppStatusFirMrFactor},
    {"zppsFIRMR*", "downFactor",
     [](const Function& f, const Case& c, test::Random&) -> double { return downFactor(f, c); }, kBelowOne,
     zppStatusFirMrFactor},
    {"zppsFIRMR*", "upPhase",
     [](const Function& f, const Case& c, test::Random& random) { return below(upFactor(f, c), random); },
     kNoPhase, zppStatusFirMrPhase},
    {"zppsFIRMR*", "downPhase",
     [](const Function& f, const Case& c, test::Random& random) { return below(downFactor(f, c), random); },
     kNoPhase, zppStatusFirMrPhase},
};

// As many elements as the numbers of the filter say.
Extent perFilter(const char* functions, const char* arguments, int (*number)(const Function&, const Case&),
                 std::size_t copies = 1) {
    return {functions, arguments,
            [=](const Function& f, const Case& c) { return static_cast<std::size_t>(number(f, c)); }, copies};
}

Extent stateBytes(const char* functions, ZppStatus (*getStateSize)(int tapsLen, int* pSize)) {
    return {functions, "pBuffer", [=](const Function& f, const Case& c) {
                int bytes = 0;
                getStateSize(taps(f, c), &bytes);
                return static_cast<std::size_t>(bytes);
            }};
}

Extent stateBytes(const char* functions,
                  ZppStatus (*getStateSize)(int tapsLen, int up, int down, int* pSize)) {
    return {functions, "pBuffer", [=](const Function& f, const Case& c) {
                int bytes = 0;
                getStateSize(taps(f, c), upFactor(f, c), downFactor(f, c), &bytes);
                return static_cast<std::size_t>(bytes);
            }};
}
int inputs(const Function& f, const Case& c) { return c.length * downFactor(f, c); }
int outputs(const Function& f, const Case& c) { return c.length * upFactor(f, c); }

std::size_t spread(const Function&, const Case& c) {
    return static_cast<std::size_t>(c.length) * static_cast<std::size_t>(factor(c));
}
std::size_t kept(const Function&, const Case& c) {
    return static_cast<std::size_t>((c.length - phase(c) + factor(c) - 1) / factor(c));
}

const Extent kExtents[] = {
    stated("zppsSample*", "pSrc", 1),
    stated("zppsSample*", "pDstLen", 0, 1),
    {"zppsSampleUp*", "pDst", spread},
    {"zppsSampleDown*", "pDst", kept},
    stated("zppsFilterMedian*", "pSrc pDst pSrcDst", 1),
    {"zppsConv*", "pDst",
     [](const Function&, const Case& c) { return static_cast<std::size_t>(c.length + otherLength(c) - 1); }},
    {"zppsConv* zppsCrossCorr*", "pSrc2",
     [](const Function&, const Case& c) { return static_cast<std::size_t>(otherLength(c)); }},
    {"zppsAutoCorr* zppsCrossCorr*", "pDst",
     [](const Function&, const Case& c) { return static_cast<std::size_t>(lags(c)); }},
    stated("zppsConv* zppsAutoCorr* zppsCrossCorr*", "pSrc pSrc1", 1),
    stateBytes("zppsFIRInit_64f", zppsFIRGetStateSize_64f),
    stateBytes("zppsFIRInit_64fc", zppsFIRGetStateSize_64fc),
    stateBytes("zppsFIRInit64f_32f", zppsFIRGetStateSize64f_32f),
    stateBytes("zppsFIRInit64fc_32fc", zppsFIRGetStateSize64fc_32fc),
    stateBytes("zppsFIRMRInit_64f", zppsFIRMRGetStateSize_64f),
    stateBytes("zppsFIRMRInit_64fc", zppsFIRMRGetStateSize_64fc),
    stateBytes("zppsFIRMRInit64f_32f", zppsFIRMRGetStateSize64f_32f),
    stateBytes("zppsFIRMRInit64fc_32fc", zppsFIRMRGetStateSize64fc_32fc),
    perFilter("zppsFIR_Direct_* zppsFIROne_Direct_*", "pDlyLine", taps, 2),
    perFilter("zppsFIR*", "pDlyLine", delays),
    perFilter("zppsFIR*", "pTaps", taps),
    stated("zppsFIROne*", "pSrcDst pDstVal", 0, 1),
    perFilter("zppsFIR*", "pSrc", inputs),
    perFilter("zppsFIR*", "pDst", outputs),
    perFilter("zppsFIR*", "pSrcDst",
              [](const Function& f, const Case& c) { return std::max(inputs(f, c), outputs(f, c)); }),
};

constexpr Optional kOptional[] = {{"zppsFIRInit* zppsFIRMRInit* zppsFIRSetDlyLine*", "pDlyLine"}};

template <class T>
std::vector<T> uniform(int count) {
    std::vector<T> values(static_cast<std::size_t>(count));
    const auto numbers = test::Random().reals(2 * values.size());
    auto* number = numbers.data();
    for (T& value : values)
        if constexpr (requires { value.re; })
            value = {static_cast<decltype(value.re)>(*number++), static_cast<decltype(value.im)>(*number++)};
        else
            value = static_cast<T>(*number++);
    return values;
}

// The states of one pair of types.
template <class Taps, class Sample>
ObjectKind state(const char* functions,
                 ZppStatus (*initAlloc)(ZppsFIRState**, const Taps*, int, int, int, int, int, const Sample*),
                 ZppStatus (*free)(ZppsFIRState*), ZppStatus (*getTaps)(const ZppsFIRState*, Taps*),
                 ZppStatus (*getDlyLine)(const ZppsFIRState*, Sample*)) {
    const auto make = [=](const Function& f, const Case& c) {
        ZppsFIRState* made = nullptr;
        const int up = upFactor(f, c), down = downFactor(f, c);
        initAlloc(&made, uniform<Taps>(taps(f, c)).data(), taps(f, c), up, c.length % up, down, 5 % down,
                  uniform<Sample>(delays(f, c)).data());
        return made;
    };
    const auto read = [=](const void* object, const Function& f, const Case& c) {
        std::vector<Taps> tapsRead(static_cast<std::size_t>(taps(f, c)));
        std::vector<Sample> delayLine(static_cast<std::size_t>(delays(f, c)));
        getTaps(static_cast<const ZppsFIRState*>(object), tapsRead.data());
        getDlyLine(static_cast<const ZppsFIRState*>(object), delayLine.data());
        const std::size_t size = tapsRead.size() * sizeof(Taps);
        Bytes bytes(size + delayLine.size() * sizeof(Sample));
        std::memcpy(bytes.data(), tapsRead.data(), size);
        std::memcpy(bytes.data() + size, delayLine.data(), bytes.size() - size);
        return bytes;
    };
    return {functions, make, [=](void* object) { free(static_cast<ZppsFIRState*>(object)); },
            reinterpret_cast<Entry>(free), read};
}

const ObjectKind kObjects[] = {
    state("zppsFIR*_64f zppsFIR_64f_I", zppsFIRMRInitAlloc_64f, zppsFIRFree_64f, zppsFIRGetTaps_64f,
          zppsFIRGetDlyLine_64f),
    state("zppsFIR*_64fc zppsFIR_64fc_I", zppsFIRMRInitAlloc_64fc, zppsFIRFree_64fc, zppsFIRGetTaps_64fc,
          zppsFIRGetDlyLine_64fc),
    state("zppsFIR*64f_32f zppsFIR64f_32f_I", zppsFIRMRInitAlloc64f_32f, zppsFIRFree64f_32f,
          zppsFIRGetTaps64f_32f, zppsFIRGetDlyLine64f_32f),
    state("zppsFIR*64fc_32fc zppsFIR64fc_32fc_I", zppsFIRMRInitAlloc64fc_32fc, zppsFIRFree64fc_32fc,
          zppsFIRGetTaps64fc_32fc, zppsFIRGetDlyLine64fc_32fc),
};

}  // namespace

const Rules kFilterRules = {.folder = "filter",
                            .promises = kPromises,
                            .extents = kExtents,
                            .numbers = kNumbers,
                            .optional = kOptional,
                            .objects = kObjects,
                            .neverShared = "zppsConv* zppsAutoCorr* zppsCrossCorr* zppsFilterMedian*"};

}  // namespace zpp::check
