#include "check/trial.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "check/arena.h"
#include "check/watch.h"
#include "zpp.h"

namespace zpp::check {
namespace {

constexpr std::size_t kMaxArguments = 8;
constexpr std::size_t kObjectAlignment = 16;

std::vector<unsigned char> bytesOf(int number) {
    std::vector<unsigned char> bytes(sizeof number);
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

std::uint64_t hashOf(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

std::vector<unsigned char> makeVector(const Function& f, const Argument& a, const Inputs& in,
                                      test::Random& random) {
    const std::size_t count = elementsOf(f, a, in.sizes);
    if (a.pointers == 2) return std::vector<unsigned char>(sizeof(void*));
    if (a.role == Role::kDestination || a.role == Role::kBuffer || a.role == Role::kSize)
        return std::vector<unsigned char>(count * a.type->size, 0xA5);
    auto bytes = makeElements(*a.type, count, in.data, random);
    // A delay line of twice the taps holds every sample twice.
    if (a.name == "pDlyLine" && f.has(Role::kIndex))
        std::memcpy(bytes.data() + bytes.size() / 2, bytes.data(), bytes.size() / 2);
    return bytes;
}

std::vector<unsigned char> makeValue(const Function& f, const Argument& a, const Inputs& in,
                                     test::Random& random) {
    constexpr int kRoundings[] = {zppRoundZero, zppRoundNear, 7};
    switch (a.role) {
        case Role::kLength:
            return bytesOf(in.sizes.length);
        case Role::kTapsLength:
            return bytesOf(in.sizes.taps(f));
        case Role::kScaleFactor:
            return bytesOf(makeScaleFactor(in.data, random));
        case Role::kRounding:
            return bytesOf(kRoundings[random.below(3)]);
        case Role::kOrder:
            return bytesOf(in.sizes.order());
        case Role::kFlag:
            return bytesOf(in.sizes.flag());
        case Role::kHint:
            return bytesOf(0);
        case Role::kIndex:
            return bytesOf(static_cast<int>(random.below(static_cast<std::uint64_t>(in.sizes.taps(f)))));
        case Role::kConstant:
            return makeElements(*a.type, 1, in.data, random);
        case Role::kObject:
            return {};
        default:
            return makeVector(f, a, in, random);
    }
}

bool isSource(const Argument& a) { return a.role == Role::kSource && a.name.starts_with("pSrc"); }

// Indices of the arguments.
template <class Condition>
std::vector<std::size_t> argumentsThat(const Function& f, Condition condition) {
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < f.arguments.size(); ++i)
        if (condition(f.arguments[i])) indices.push_back(i);
    return indices;
}

// The source that destination number `i` shares its array with, or `i` itself.
std::size_t sharedWith(const Function& f, std::size_t i, int shared) {
    if (shared < 0 || f.arguments[i].role != Role::kDestination) return i;
    const auto sources = argumentsThat(f, isSource);
    const auto destinations =
        argumentsThat(f, [](const Argument& a) { return a.role == Role::kDestination; });
    for (std::size_t k = 0; k < destinations.size(); ++k)
        if (destinations[k] == i) return sources[k + static_cast<std::size_t>(shared)];
    return i;
}

Place placeOf(unsigned places, std::size_t argument) {
    return static_cast<Place>(places < 3 ? places : (argument + places) % 3);
}

// The call being made.
class Trial {
  public:
    Trial(const Function& f, const Inputs& in, const Layout& layout)
        : f_(f), in_(in), layout_(layout), object_(f, in.sizes), call_(f.stub, layout.phase) {}

    double time(int calls) {
        prepare();
        return call_.time(calls);
    }

    Outcome run() {
        prepare();
        outcome_.status = static_cast<std::int32_t>(call_.run());
        outcome_.complaint = call_.complaint();
        if (call_.faultAddress() != nullptr) outcome_.complaint += faultPlace();
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) inspect(i);
        if (outcome_.status == zppStatusOk && outcome_.complaint.empty()) inspectObject();
        return outcome_;
    }

  private:
    static Arena& arena(std::size_t i) {
        static std::array<Arena, kMaxArguments + 1> arenas;
        return arenas[i];
    }

    bool isReplaced(std::size_t i) const { return layout_.replaced == static_cast<int>(i); }
    bool isLeftOut(std::size_t i) const {
        return in_.sizes.variant % 2 != 0 && mayBeNull(f_, f_.arguments[i]);
    }

    void prepare() {
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) place(i);
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) pass(i);
    }

    void place(std::size_t i) {
        const Argument& a = f_.arguments[i];
        at_[i] = sharedWith(f_, i, layout_.shared);
        const std::size_t size = a.type == nullptr ? sizeof(void*) : a.type->size;
        if ((a.isVector() || a.pointers == 2) && at_[i] == i)
            arena(i).place(in_.values[i], placeOf(layout_.places, i), size);
    }

    void pass(std::size_t i) {
        const Argument& a = f_.arguments[i];
        if (a.pointers == 0) {
            call_.pass(*a.type,
                       isReplaced(i) ? static_cast<const void*>(&layout_.illegal) : in_.values[i].data());
        } else if (isReplaced(i)) {
            auto identifier = bytesOf(layout_.illegal);
            identifier.resize(kObjectAlignment);  // little behind it can be read
            call_.pass(layout_.illegal == 0 ? nullptr
                                            : arena(kMaxArguments).place(identifier, Place::kEnd, 1));
        } else if (a.role == Role::kObject) {
            call_.pass(object_.get());
        } else {
            call_.pass(isLeftOut(i) ? nullptr : arena(at_[i]).data());
        }
    }

    // Which vector a forbidden access belongs to.
    std::string faultPlace() const {
        const auto address = reinterpret_cast<std::intptr_t>(call_.faultAddress());
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) {
            if (!f_.arguments[i].isVector()) continue;
            const std::intptr_t offset = address - reinterpret_cast<std::intptr_t>(arena(at_[i]).data());
            if (offset >= -4096 && offset < static_cast<std::intptr_t>(arena(at_[i]).bytes()) + 4096)
                return ", byte " + std::to_string(offset) + " of " + f_.arguments[i].name + ", which has " +
                       std::to_string(arena(at_[i]).bytes());
        }
        return "";
    }

    void inspect(std::size_t i) {
        const Argument& a = f_.arguments[i];
        outcome_.written.emplace_back();
        if (!a.isVector() && a.pointers != 2) return;
        const char* fault = nullptr;
        const bool sharedSource = a.constant && layout_.shared >= 0;
        if (!arena(at_[i]).intact()) fault = "writes outside ";
        if (!arena(i).holds(in_.values[i]) && at_[i] == i) {
            if (a.constant && !sharedSource) fault = "writes into ";
            if (outcome_.status < 0) fault = "fails but writes into ";
        }
        if (fault != nullptr && outcome_.complaint.empty()) outcome_.complaint = fault + a.name;
        if (a.isWritten()) outcome_.written.back() = arena(at_[i]).content();
    }

    void inspectObject() {
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) {
            if (f_.arguments[i].role != Role::kObjectOut) continue;
            void* made;
            std::memcpy(&made, arena(i).data(), sizeof made);
            if (made == nullptr) outcome_.complaint = "makes no object";
            object_.adopt(made);
        }
        if (releasesObject(f_))
            object_.forget();
        else
            outcome_.object = object_.content();
    }

    const Function& f_;
    const Inputs& in_;
    const Layout& layout_;
    Object object_;
    WatchedCall call_;
    Outcome outcome_;
    std::array<std::size_t, kMaxArguments> at_ = {};  // the argument in whose arena the vector lies
};

// An argument's numbers may differ by this much.
//
// Bounded results are sums of no more terms than the longest of its vectors has, of numbers below 1.
double toleranceOf(const Function& f, const Inputs& in, std::size_t part) {
    if (promiseOf(f) != Promise::kBound) return 0;
    return (in.sizes.length < 128 ? 128 : in.sizes.length) * (part == sizeof(float) ? 0x1p-23 : 0x1p-51);
}

double numberAt(const unsigned char* bytes, std::size_t part) {
    if (part == sizeof(float)) {
        float number;
        std::memcpy(&number, bytes, sizeof number);
        return static_cast<double>(number);
    }
    double number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

std::string textOf(const unsigned char* bytes, const Element& type) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes, type.part);
    char text[64];
    if (type.floating)
        std::snprintf(text, sizeof text, "%a (0x%llX)", numberAt(bytes, type.part),
                      static_cast<unsigned long long>(bits));
    else
        std::snprintf(text, sizeof text, "0x%llX", static_cast<unsigned long long>(bits));
    return text;
}

// The one place that says when two numbers are the same.
bool same(const unsigned char* a, const unsigned char* b, const Element& type, Promise promise,
          double tolerance) {
    if (std::memcmp(a, b, type.part) == 0) return true;
    if (!type.floating || promise == Promise::kBits) return false;
    const double x = numberAt(a, type.part), y = numberAt(b, type.part);
    if (std::isnan(x) || std::isnan(y)) return std::isnan(x) && std::isnan(y);
    if (x == y && promise != Promise::kBound) return false;  // zeros of different signs
    return tolerance > 0 && std::abs(x - y) <= tolerance;
}

}  // namespace

bool isResult(const Argument& a) {
    return a.isWritten() && a.role != Role::kBuffer && a.role != Role::kSize && a.role != Role::kObjectOut;
}

Inputs makeInputs(const Function& f, int length, int variant, Data data) {
    Inputs in = {{length, variant}, data, {}};
    test::Random random(hashOf(f.name) ^ static_cast<std::uint64_t>(4 * length + variant));
    for (const Argument& a : f.arguments) in.values.push_back(makeValue(f, a, in, random));
    return in;
}

Outcome perform(const Function& f, const Inputs& inputs, const Layout& layout) {
    return Trial(f, inputs, layout).run();
}

double timeCall(const Function& f, const Inputs& inputs, int calls) {
    return Trial(f, inputs, {1, -1, 0}).time(calls);
}

double timeEmptyCall(int calls) {
    return WatchedCall([] {}, 0).time(calls);
}

std::vector<int> sharingsOf(const Function& f, const Inputs& inputs) {
    const auto sources = argumentsThat(f, isSource);
    const auto destinations =
        argumentsThat(f, [](const Argument& a) { return a.role == Role::kDestination; });
    std::vector<int> sharings;
    if (destinations.empty() || !mayShare(f)) return sharings;
    for (std::size_t shared = 0; shared + destinations.size() <= sources.size(); ++shared) {
        const std::size_t source = sources[shared], destination = destinations[0];
        if (inputs.values[source].size() == inputs.values[destination].size() &&
            f.arguments[source].type->size == f.arguments[destination].type->size)
            sharings.push_back(static_cast<int>(shared));
    }
    return sharings;
}

std::string difference(const Function& f, const Inputs& inputs, const Outcome& reference,
                       const Outcome& outcome) {
    if (outcome.status != reference.status)
        return "returns " + std::to_string(outcome.status) + ", expected " + std::to_string(reference.status);
    if (outcome.status < 0) return "";  // that nothing was written is a question of manners
    const Promise promise = promiseOf(f);
    for (std::size_t i = 0; i < f.arguments.size(); ++i) {
        const Argument& a = f.arguments[i];
        if (!isResult(a)) continue;
        const double tolerance = toleranceOf(f, inputs, a.type->part);
        for (std::size_t at = 0; at < outcome.written[i].size(); at += a.type->part) {
            const unsigned char *actual = &outcome.written[i][at], *expected = &reference.written[i][at];
            if (!same(actual, expected, *a.type, promise, tolerance))
                return a.name + '[' + std::to_string(at / a.type->size) + "] is " + textOf(actual, *a.type) +
                       ", expected " + textOf(expected, *a.type);
        }
    }
    return outcome.object == reference.object ? "" : "leaves another state";
}

}  // namespace zpp::check
