#include "check/trial.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "check/arena.h"
#include "check/heap.h"
#include "check/watch.h"
#include "zpp.h"

namespace zpp::check {
namespace {

constexpr unsigned char kUnwritten = 0xA5;  // in what a call is to write

// A number as it lies in memory.
Bytes bytesOf(const Element& type, double number) {
    Bytes bytes(type.size);
    const auto single = static_cast<float>(number);
    const auto integer = static_cast<std::int64_t>(number);
    std::memcpy(bytes.data(),
                !type.floating               ? static_cast<const void*>(&integer)
                : type.part == sizeof single ? static_cast<const void*>(&single)
                                             : &number,
                type.part);
    return bytes;
}

std::uint64_t hashOf(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

Bytes makeVector(const Function& f, const Argument& a, const Case& c, test::Random& random) {
    const Extent& extent = *extentOf(f, a);
    const std::size_t count = extent.elements(f, c);
    if (a.role == Role::kDestination || a.role == Role::kBuffer || a.role == Role::kSize)
        return Bytes(count * extent.copies * a.type->size, kUnwritten);
    const Bytes content = makeElements(*a.type, count, c.data, random);
    Bytes bytes;
    for (std::size_t i = 0; i < extent.copies; ++i) bytes.insert(bytes.end(), content.begin(), content.end());
    return bytes;
}

Bytes makeValue(const Function& f, const Argument& a, const Case& c, test::Random& random) {
    if (a.role == Role::kObject) return {};
    if (a.role == Role::kObjectOut) return Bytes(sizeof(void*), kUnwritten);
    const Number* number = numberOf(f, a);
    if (number == nullptr) return makeVector(f, a, c, random);
    Bytes numbers;
    for (std::size_t left = a.pointers == 0 ? 1 : extentOf(f, a)->elements(f, c); left > 0; --left) {
        const Bytes drawn = number->draw == nullptr ? makeElements(*a.type, 1, c.data, random)
                                                    : bytesOf(*a.type, number->draw(f, c, random));
        numbers.insert(numbers.end(), drawn.begin(), drawn.end());
    }
    return numbers;
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

// The specification or state of one call.
class Object {
  public:
    Object(const Function& f, const Case& c) : f_(f), case_(c), kind_(objectOf(f)) {
        if (f.has(Role::kObject)) counted([this] { object_ = kind_->make(f_, case_); });
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() { release(); }

    void* get() const { return object_; }
    void adopt(void* made) { object_ = made; }
    void forget() { object_ = nullptr; }
    Bytes content() const {
        return object_ == nullptr || !kind_->read ? Bytes() : kind_->read(object_, f_, case_);
    }
    void release() {
        if (object_ != nullptr) counted([this] { kind_->release(object_); });
        object_ = nullptr;
    }

    // Does a step, and counts the blocks of memory that it leaves.
    template <class Step>
    void counted(Step step) {
        const long before = liveBlocks();
        step();
        blocks_ += liveBlocks() - before;
    }
    // Those that are left of its making, the call and its release.
    long blocks() const { return blocks_; }

  private:
    const Function& f_;
    const Case& case_;
    const ObjectKind* kind_;
    void* object_ = nullptr;
    long blocks_ = 0;
};

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
        if (f_.has(Role::kObject) && object_.get() == nullptr)
            return {zppStatusError, {}, {}, "no object can be made for it"};
        prepare();
        const bool toFail = layout_.replaced >= 0 || layout_.failing >= 0;
        const Bytes before = toFail ? object_.content() : Bytes();
        object_.counted([this] {
            const FailingHeap heap(layout_.failing);
            outcome_.status = static_cast<std::int32_t>(call_.run());
        });
        outcome_.complaint = call_.complaint();
        if (call_.faultAddress() != nullptr) outcome_.complaint += faultPlace();
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) inspect(i);
        if (outcome_.status == zppStatusOk && outcome_.complaint.empty()) inspectObject();
        if (outcome_.status < 0 && toFail && outcome_.complaint.empty() && object_.content() != before)
            outcome_.complaint = "fails but changes the state";
        object_.release();
        if (outcome_.complaint.empty() && object_.blocks() != 0)
            outcome_.complaint = "leaves blocks of memory allocated: " + std::to_string(object_.blocks());
        return outcome_;
    }

  private:
    static Arena& arena(std::size_t i) {
        static std::array<Arena, kMaxArguments + 1> arenas;
        return arenas[i];
    }

    bool isReplaced(std::size_t i) const { return layout_.replaced == static_cast<int>(i); }
    // One of those that may be null, in turn.
    bool isLeftOut(std::size_t i) const {
        const auto optional = [this](const Argument& a) { return mayBeNull(f_, a); };
        if (in_.sizes.variant % 2 == 0 || !optional(f_.arguments[i])) return false;
        const auto first = f_.arguments.begin(), here = first + static_cast<std::ptrdiff_t>(i);
        const auto all = std::count_if(first, f_.arguments.end(), optional);
        return std::count_if(first, here, optional) == in_.sizes.variant / 2 % all;
    }

    void prepare() {
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) place(i);
        for (std::size_t i = 0; i < f_.arguments.size(); ++i) pass(i);
    }

    void place(std::size_t i) {
        const Argument& a = f_.arguments[i];
        at_[i] = sharedWith(f_, i, layout_.shared);
        if ((!a.isVector() && a.pointers != 2) || at_[i] != i) return;
        const std::size_t size = a.type == nullptr ? sizeof(void*) : a.type->size;
        const Extent* extent = extentOf(f_, a);
        const std::size_t step = extent != nullptr && extent->step > 0 ? extent->step : size;
        arena(i).place(in_.values[i], placeOf(layout_.places, i), step);
    }

    void pass(std::size_t i) {
        const Argument& a = f_.arguments[i];
        if (a.pointers == 0) {
            call_.pass(*a.type,
                       isReplaced(i) ? bytesOf(*a.type, *layout_.illegal).data() : in_.values[i].data());
        } else if (isReplaced(i)) {
            call_.pass(layout_.illegal ? stranger().place(identifier(), Place::kEnd, 1) : nullptr);
        } else if (a.role == Role::kObject) {
            call_.pass(object_.get());
        } else {
            call_.pass(isLeftOut(i) ? nullptr : arena(at_[i]).data());
        }
    }

    // The first bytes of an object of another kind: what is behind them cannot be read.
    static Arena& stranger() { return arena(kMaxArguments); }
    Bytes identifier() const {
        const auto number = static_cast<std::int32_t>(*layout_.illegal);
        Bytes bytes(sizeof number);
        std::memcpy(bytes.data(), &number, sizeof number);
        return bytes;
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
        if (a.role == Role::kObject && isReplaced(i) && layout_.illegal && !stranger().holds(identifier()))
            outcome_.complaint = "writes into an object of another kind";
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
            if (arena(i).holds(in_.values[i]) || made == nullptr)
                outcome_.complaint = "makes no object";
            else
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
    if (promiseOf(f) != Promise::kBound) return restOf(f);
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

// The same number, or one that is next to it.
bool neighbours(const unsigned char* a, const unsigned char* b, std::size_t part) {
    std::uint64_t x = 0, y = 0;
    std::memcpy(&x, a, part);
    std::memcpy(&y, b, part);
    return x - y + 1 <= 2;
}

// The one place that says when two numbers are the same.
bool same(const unsigned char* a, const unsigned char* b, const Element& type, Promise promise,
          double tolerance) {
    if (std::memcmp(a, b, type.part) == 0) return true;
    if (!type.floating || promise == Promise::kBits) return false;
    const double x = numberAt(a, type.part), y = numberAt(b, type.part);
    if (std::isnan(x) || std::isnan(y)) return std::isnan(x) && std::isnan(y);
    if (promise == Promise::kNear && neighbours(a, b, type.part)) return true;
    if (x == y && promise != Promise::kBound) return false;  // zeros of different signs
    return tolerance > 0 && std::abs(x - y) <= tolerance;
}

bool sameState(const Function& f, const Inputs& in, const Bytes& a, const Bytes& b) {
    if (a == b) return true;
    if (a.size() != b.size() || !objectOf(f)->bounded) return false;
    constexpr Element kDouble = {"double", sizeof(double), sizeof(double), true};
    for (std::size_t at = 0; at < a.size(); at += sizeof(double))
        if (!same(&a[at], &b[at], kDouble, promiseOf(f), toleranceOf(f, in, sizeof(double)))) return false;
    return true;
}

}  // namespace

bool isResult(const Argument& a) {
    return a.isWritten() && a.role != Role::kBuffer && a.role != Role::kSize && a.role != Role::kObjectOut;
}

Inputs makeInputs(const Function& f, int length, int variant, Data data) {
    Inputs in = {{length, variant, data}, {}};
    test::Random random(hashOf(f.name) ^ static_cast<std::uint64_t>(4 * length + variant));
    for (const Argument& a : f.arguments) in.values.push_back(makeValue(f, a, in.sizes, random));
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
    if (destinations.empty() || f.matches(f.rules->neverShared)) return sharings;
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
    return sameState(f, inputs, outcome.object, reference.object) ? "" : "leaves another state";
}

}  // namespace zpp::check
