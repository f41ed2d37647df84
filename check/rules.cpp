#include "check/rules.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>
#include <set>

#include "zpp.h"

namespace zpp::check {
namespace {

const Rules* const kRules[] = {&kFrameRules, &kArithRules,  &kDataRules,      &kStatsRules, &kGenRules,
                               &kIirRules,   &kFilterRules, &kTransformRules, &kVmRules};

// What is the same in all folders.
const Extent kLength = stated("*", "pSrc* pDst*", 1);
const Extent kOne = stated("*", "*", 0, 1);

// Around every vector and unroll width: tail only, body only, both.
constexpr int kLengths[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 13,  15,  16,  17,  19,  23,
                            31, 32, 33, 40, 47, 63, 64, 65, 71, 97, 127, 128, 129, 515, 1031};

double scaleFactor(const Function&, const Case& c, test::Random& random) {
    return makeScaleFactor(c.data, random);
}

double rounding(const Function&, const Case&, test::Random& random) {
    constexpr int kRoundings[] = {zppRoundZero, zppRoundNear, 7};
    return kRoundings[random.below(3)];
}

constexpr Number kNumbers[] = {
    {"*", "len", [](const Function&, const Case& c, test::Random&) -> double { return c.length; }, kBelowOne,
     zppStatusSizeError},
    {"*", "val", nullptr},
    {"*", "scaleFactor", scaleFactor},
    {"*", "rndMode", rounding},
};

template <class Row>
const Row* find(std::span<const Row> table, const Function& f) {
    for (const Row& row : table)
        if (f.matches(row.functions)) return &row;
    return nullptr;
}

template <class Row>
const Row* find(std::span<const Row> table, const Function& f, const Argument& a) {
    for (const Row& row : table)
        if (like(a.name.c_str(), row.arguments) && f.matches(row.functions)) return &row;
    return nullptr;
}

// What the argument lacks.
std::string missingRule(const Function& f, const Argument& a) {
    if (a.type == nullptr && objectOf(f) == nullptr) return "what kind of object " + a.name + " is";
    if (a.role == Role::kNumber && numberOf(f, a) == nullptr) return "what " + a.name + " may be";
    if (a.isVector() && extentOf(f, a) == nullptr) return "the extent of " + a.name;
    return "";
}

// What the objects begin with that the function is called with.
std::set<std::int32_t> takenIdentifiers(const Function& f) {
    std::set<std::int32_t> identifiers;
    for (int variant = 0; variant < 4; ++variant) {
        const ObjectKind& kind = *objectOf(f);
        void* object = kind.make(f, {8, variant, Data::kUniform});
        if (object == nullptr) continue;
        std::int32_t identifier;
        std::memcpy(&identifier, object, sizeof identifier);
        identifiers.insert(identifier);
        kind.release(object);
    }
    return identifiers;
}

std::set<std::int32_t> allIdentifiers() {
    std::set<std::int32_t> identifiers = {0};
    for (const Function& f : allFunctions())
        if (f.rules != nullptr && objectOf(f) != nullptr) identifiers.merge(takenIdentifiers(f));
    return identifiers;
}

}  // namespace

Extent stated(const char* functions, const char* arguments, int perLength, int more) {
    return {functions, arguments, [=](const Function&, const Case& c) {
                const int elements = perLength * c.length + more;
                return static_cast<std::size_t>(elements);
            }};
}

double zero(const Function&, const Case&, test::Random&) { return 0; }

const Rules* rulesOf(const std::string& folder, const std::string& function) {
    for (const Rules* rules : kRules)
        if (folder == rules->folder && like(function.c_str(), rules->functions)) return rules;
    return nullptr;
}

std::string missingRule(const Function& f) {
    if (f.rules == nullptr) return "the folder of its header has no file in check/rules";
    if (ownCheckOf(f) != nullptr) return "";
    if (f.arguments.size() > kMaxArguments)
        return "it has " + std::to_string(f.arguments.size()) + " arguments, and kMaxArguments is " +
               std::to_string(kMaxArguments);
    const std::string ask = "check/rules/" + std::string(f.rules->folder) + ".cpp must state ";
    if (f.result != "ZppStatus") return ask + "how to check its result " + f.result;
    if (find(f.rules->promises, f) == nullptr) return ask + "how far its results agree";
    for (const Argument& a : f.arguments) {
        if (a.role == Role::kUnknown) return "check/prototype.cpp does not know the type of " + a.name;
        const std::string missing = missingRule(f, a);
        if (!missing.empty()) return ask + missing;
    }
    return "";
}

std::span<const int> lengthsOf(const Function& f) {
    const Lengths* row = find(f.rules->lengths, f);
    return row == nullptr ? kLengths : row->lengths;
}

const Extent* extentOf(const Function& f, const Argument& a) {
    if (const Extent* row = find(f.rules->extents, f, a)) return row;
    if (a.role == Role::kSize || numberOf(f, a) != nullptr) return &kOne;
    return f.has("len") && like(a.name.c_str(), kLength.arguments) ? &kLength : nullptr;
}

const Number* numberOf(const Function& f, const Argument& a) {
    const Number* row = find(f.rules->numbers, f, a);
    return row == nullptr ? find(std::span<const Number>(kNumbers), f, a) : row;
}

const ObjectKind* objectOf(const Function& f) { return find(f.rules->objects, f); }

const OwnCheck* ownCheckOf(const Function& f) { return find(f.rules->ownChecks, f); }

Promise promiseOf(const Function& f) { return find(f.rules->promises, f)->promise; }
double restOf(const Function& f) { return find(f.rules->promises, f)->rest; }

bool releasesObject(const Function& f) {
    const ObjectKind* kind = objectOf(f);
    return kind != nullptr && kind->releaser == f.stub;
}

std::vector<std::int32_t> refusedIdentifiers(const Function& f) {
    static const std::set<std::int32_t> kAll = allIdentifiers();
    const std::set<std::int32_t> taken = takenIdentifiers(f);
    std::set<std::int32_t> others = kAll;
    for (const std::int32_t identifier : taken)
        for (int bit = 0; bit < 32; ++bit)
            others.insert(static_cast<std::int32_t>(static_cast<std::uint32_t>(identifier) ^ 1U << bit));
    std::vector<std::int32_t> refused;
    std::set_difference(others.begin(), others.end(), taken.begin(), taken.end(),
                        std::back_inserter(refused));
    return refused;
}

bool mayBeNull(const Function& f, const Argument& a) { return find(f.rules->optional, f, a) != nullptr; }

}  // namespace zpp::check
