#include <cstring>

#include "check/rules.h"
#include "zpp/filter.h"

namespace zpp::check {
namespace {

constexpr Promised kPromises[] = {{"zppsIIR*", Promise::kBound}};

bool isCascade(const Function& f, const Case& c) {
    return f.has("numBq") || (!f.has("order") && c.variant % 2 == 1);
}

// Of order 0 too, where that is allowed.
int order(const Function& f, const Case& c) {
    constexpr int kOrders[] = {1, 2, 3, 4, 5, 7, 8, 9, 12, 16, 17, 20, 40};
    if (f.has("order") || f.has("numBq")) return f.has("numBq") ? c.length : c.length - 1;
    return kOrders[static_cast<unsigned>(c.length + 5 * c.variant) % 13];
}

std::size_t taps(const Function& f, const Case& c) {
    const auto count = static_cast<std::size_t>(order(f, c));
    return isCascade(f, c) ? 6 * count : 2 * count + 2;
}
std::size_t delays(const Function& f, const Case& c) {
    const auto count = static_cast<std::size_t>(order(f, c));
    return isCascade(f, c) ? 2 * count : count;
}

constexpr double kNegative[] = {-1, -2};
constexpr Number kNumbers[] = {
    {"zppsIIR*", "order",
     [](const Function& f, const Case& c, test::Random&) -> double { return order(f, c); }, kNegative,
     zppStatusIirOrder},
    {"zppsIIR*", "numBq",
     [](const Function& f, const Case& c, test::Random&) -> double { return order(f, c); }, kBelowOne,
     zppStatusIirOrder},
    {"zppsIIR*", "src", nullptr},
};

Extent stateBytes(const char* functions, ZppStatus (*getStateSize)(int order, int* pSize),
                  std::size_t step = 1) {
    const auto elements = [=](const Function& f, const Case& c) {
        int bytes = 0;
        getStateSize(order(f, c), &bytes);
        return static_cast<std::size_t>(bytes);
    };
    return {functions, "pBuffer", elements, 1, step};
}

const Extent kExtents[] = {
    stateBytes("zppsIIRInit_64f", zppsIIRGetStateSize_64f),
    stateBytes("zppsIIRInit_64fc", zppsIIRGetStateSize_64fc),
    stateBytes("zppsIIRInit64f_32f", zppsIIRGetStateSize64f_32f),
    stateBytes("zppsIIRInit64fc_32fc", zppsIIRGetStateSize64fc_32fc),
    stateBytes("zppsIIRInit_BiQuad_64f", zppsIIRGetStateSize_BiQuad_64f, 16),
    stateBytes("zppsIIRInit_BiQuad_64fc", zppsIIRGetStateSize_BiQuad_64fc),
    stateBytes("zppsIIRInit64f_BiQuad_32f", zppsIIRGetStateSize64f_BiQuad_32f, 16),
    stateBytes("zppsIIRInit64fc_BiQuad_32fc", zppsIIRGetStateSize64fc_BiQuad_32fc),
    {"zppsIIR*", "pTaps", taps},
    {"zppsIIR*", "pDlyLine", delays},
    stated("zppsIIROne*", "pDstVal", 0, 1),
    stated("zppsIIR*", "pSrc pDst pSrcDst", 1),
};

constexpr Optional kOptional[] = {{"zppsIIRInit* zppsIIRSetDlyLine*", "pDlyLine"}};

// Numbers from 1 on: no a0 or b0 is zero, and of the sections of 1 / n, most are stable.
template <class T>
std::vector<T> ordinaryTaps(const Function& f, const Case& c) {
    const auto count = static_cast<std::size_t>(order(f, c)), perSection = isCascade(f, c) ? 3 : count + 1;
    std::vector<T> values(taps(f, c));
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t place = i % perSection;
        const double size = place == 0 ? 1 : 0.5 / static_cast<double>(perSection + place);
        if constexpr (requires { values[i].re; })
            values[i] = {size, -size / 2};
        else
            values[i] = size;
    }
    return values;
}

// The states of one pair of types, in both shapes.
template <class T>
ObjectKind state(const char* functions, ZppStatus (*initAlloc)(ZppsIIRState**, const T*, int, const T*),
                 ZppStatus (*initAllocCascade)(ZppsIIRState**, const T*, int, const T*),
                 ZppStatus (*free)(ZppsIIRState*), ZppStatus (*getDlyLine)(const ZppsIIRState*, T*)) {
    const auto make = [=](const Function& f, const Case& c) {
        ZppsIIRState* made = nullptr;
        (isCascade(f, c) ? initAllocCascade : initAlloc)(&made, ordinaryTaps<T>(f, c).data(), order(f, c),
                                                         nullptr);
        return made;
    };
    const auto read = [=](const void* object, const Function& f, const Case& c) {
        std::vector<T> line(delays(f, c) + 1);
        getDlyLine(static_cast<const ZppsIIRState*>(object), line.data());
        Bytes bytes(line.size() * sizeof(T));
        std::memcpy(bytes.data(), line.data(), bytes.size());
        return bytes;
    };
    return {functions,
            make,
            [=](void* object) { free(static_cast<ZppsIIRState*>(object)); },
            reinterpret_cast<Entry>(free),
            read,
            true};
}

const ObjectKind kObjects[] = {
    state("zppsIIR*_64f zppsIIR_64f_I", zppsIIRInitAlloc_64f, zppsIIRInitAlloc_BiQuad_64f, zppsIIRFree_64f,
          zppsIIRGetDlyLine_64f),
    state("zppsIIR*_64fc zppsIIR_64fc_I", zppsIIRInitAlloc_64fc, zppsIIRInitAlloc_BiQuad_64fc,
          zppsIIRFree_64fc, zppsIIRGetDlyLine_64fc),
    state("zppsIIR*64f_*32f zppsIIR64f_32f_I", zppsIIRInitAlloc64f_32f, zppsIIRInitAlloc64f_BiQuad_32f,
          zppsIIRFree64f_32f, zppsIIRGetDlyLine64f_32f),
    state("zppsIIR*64fc_*32fc zppsIIR64fc_32fc_I", zppsIIRInitAlloc64fc_32fc,
          zppsIIRInitAlloc64fc_BiQuad_32fc, zppsIIRFree64fc_32fc, zppsIIRGetDlyLine64fc_32fc),
};

}  // namespace

const Rules kIirRules = {.folder = "filter",
                         .promises = kPromises,
                         .extents = kExtents,
                         .numbers = kNumbers,
                         .optional = kOptional,
                         .objects = kObjects,
                         .functions = "zppsIIR*"};

}  // namespace zpp::check
