#include "check/measure.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "check/watch.h"

namespace zpp::check {
namespace {

void add(std::uint64_t& digest, std::uint64_t word) {
    digest ^= word;  // and the finaliser of SplitMix64
    digest = (digest ^ digest >> 30) * 0xBF58476D1CE4E5B9u;
    digest = (digest ^ digest >> 27) * 0x94D049BB133111EBu;
    digest ^= digest >> 31;
}

// All NaN are one, unless their bits are promised.
template <class T>
bool isNan(const unsigned char* bytes) {
    T number;
    std::memcpy(&number, bytes, sizeof number);
    return std::isnan(number);
}

void addOutcome(std::uint64_t& digest, const Function& f, const Outcome& outcome) {
    add(digest, static_cast<std::uint32_t>(outcome.status));
    const bool anyNan = promiseOf(f) != Promise::kBits;
    for (std::size_t i = 0; i < f.arguments.size(); ++i) {
        if (!isResult(f.arguments[i])) continue;
        const Element& type = *f.arguments[i].type;
        const auto& bytes = outcome.written[i];
        for (std::size_t at = 0; at < bytes.size(); at += type.part) {
            const bool nan =
                type.floating && anyNan &&
                (type.part == sizeof(float) ? isNan<float>(&bytes[at]) : isNan<double>(&bytes[at]));
            std::uint64_t number = 0;
            std::memcpy(&number, &bytes[at], type.part);
            add(digest, nan ? ~std::uint64_t{0} : number);
        }
    }
}

constexpr int kCalls = 200;  // of a batch, after which in-place vectors get their numbers back
constexpr int kBatches = 25;

}  // namespace

bool addToDigest(const Function& f, std::uint64_t& digest) {
    if (ownCheckOf(f) != nullptr) return false;
    const Promise promise = promiseOf(f);
    if (promise == Promise::kNear || promise == Promise::kBound) return false;
    for (const int length : lengthsOf(f))
        for (int variant = 0; variant < 4; ++variant) {
            const Data data = variant < 2 ? ordinaryFor(f) : specialFor(f);
            addOutcome(digest, f, perform(f, makeInputs(f, length, variant, data), {0, -1, 0}));
        }
    return true;
}

std::vector<double> timeCalls(const Checker& checker, const Function& f, int length) {
    if (ownCheckOf(f) != nullptr || releasesObject(f) || f.has(Role::kObjectOut)) return {};
    const Inputs in = makeInputs(f, length, 0, Data::kUniform);
    const int calls = std::clamp(kCalls * 1000 / length, 1, kCalls);
    std::vector<double> best(checker.bindings().size(), HUGE_VAL);
    double empty = HUGE_VAL;
    for (int batch = 0; batch < kBatches; ++batch) {
        empty = std::min(empty, timeEmptyCall(calls));
        for (std::size_t i = 0; i < best.size(); ++i) {
            checker.bind(checker.bindings()[i]);
            best[i] = std::min(best[i], timeCall(f, in, calls));
        }
    }
    for (double& time : best) time -= empty;
    return best;
}

}  // namespace zpp::check
