#include "check/checker.h"

#include <algorithm>
#include <cstdio>

#include "check/heap.h"
#include "zpp.h"

// There where a sanitizer is linked, which ends the program at its first finding.
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

namespace zpp::check {
namespace {

std::string replayOf(const Function& f, const test::Binding& binding) {
    return "zpp-check --function " + f.name + " --column " + binding.columnName() + " --isa " +
           binding.isaName() + " --seed " + std::to_string(test::seed());
}

// The call being made, for a program that ends in it.
const Function* currentFunction = nullptr;
test::Binding currentBinding;

void printCurrentCall() {
    if (currentFunction != nullptr)
        std::printf("replay: %s\n", replayOf(*currentFunction, currentBinding).c_str());
    std::fflush(stdout);
}

}  // namespace

const test::Binding& referenceBinding() { return test::runnableBindings().front(); }

Data ordinaryFor(const Function& f) {
    const Promise promise = promiseOf(f);
    return promise == Promise::kBound ? Data::kUniform : Data::kOrdinary;
}

Data specialFor(const Function& f) {
    const Promise promise = promiseOf(f);
    return promise == Promise::kBound  ? Data::kUniform
           : promise == Promise::kBits ? Data::kPatterns
                                       : Data::kSpecial;
}

Checker::Checker(const Options& options) : options_(options) {
    for (const test::Binding& binding : test::runnableBindings())
        if ((options.column.empty() || options.column == binding.columnName()) &&
            (options.isa.empty() || options.isa == binding.isaName()))
            bindings_.push_back(binding);
    if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(printCurrentCall);
}

void Checker::bind(const test::Binding& binding) const {
    binding.bind();
    currentBinding = binding;
    if (planted_ == nullptr) return;
    const Entry entry = binding.name() == referenceBinding().name() ? plantedReference_ : plantedEntry_;
    displaced = *planted_->record->slot;
    if (entry == nullptr) return;
    test::makeSlotsWritable();
    *planted_->record->slot = entry;
}

void Checker::report(const Function& f, const test::Binding* binding, const std::string& text, int length,
                     const std::string& details) {
    std::string message = f.name + (binding != nullptr ? ' ' + binding->name() : "") + ": " + text;
    if (!details.empty()) message += "\n    in: " + details;
    if (binding != nullptr) {
        message += "\n    replay: " + replayOf(f, *binding);
        if (length != 0) message += " --length " + std::to_string(length);
    }
    if (!options_.quiet) std::printf("FAILED %s\n", message.c_str());
    reports_.push_back(message);
}

Outcome Checker::call(const Function& f, const Inputs& in, const Layout& layout) {
    ++calls_;
    currentFunction = &f;
    return perform(f, in, layout);
}

void Checker::check(const Function& f) {
    const std::string missing = missingRule(f);  // a new export must not escape
    if (!missing.empty()) return report(f, nullptr, "cannot be checked: " + missing);
    if (const OwnCheck* own = ownCheckOf(f)) return checkAsItsOwn(f, *own);
    // A binding takes long: each is made once.
    std::vector<Inputs> inputs;
    for (const int length : lengthsOf(f))
        for (int variant = 0; variant < 4; ++variant)
            if (options_.length == 0 || options_.length == length)
                inputs.push_back(
                    makeInputs(f, length, variant, variant < 2 ? ordinaryFor(f) : specialFor(f)));
    bind(referenceBinding());
    std::vector<Outcome> references;
    references.reserve(inputs.size());
    for (const Inputs& in : inputs) references.push_back(call(f, in, {0, -1, 0}));
    for (const test::Binding& binding : bindings_) {
        bind(binding);
        bool right = true;
        for (std::size_t i = 0; right && i < inputs.size(); ++i)
            right = checkLayouts(f, inputs[i], references[i], binding);
        right = right && checkErrors(f, binding) && checkFailingHeap(f, binding);
    }
}

void Checker::checkAsItsOwn(const Function& f, const OwnCheck& own) {
    for (const test::Binding& binding : bindings_) {
        bind(binding);
        ++calls_;
        const long before = liveBlocks();
        std::string complaint = own.check(f, binding.columnName());
        complaint.shrink_to_fit();  // its block is counted where the C++ runtime is in the program
        if (complaint.empty() && liveBlocks() != before) complaint = "leaves blocks of memory allocated";
        if (!complaint.empty()) report(f, &binding, complaint);
    }
}

// However the vectors lie in memory, the result is that of the reference.
bool Checker::checkLayouts(const Function& f, const Inputs& in, const Outcome& reference,
                           const test::Binding& binding) {
    std::vector<Layout> layouts;
    auto phase = static_cast<unsigned>(in.sizes.length + in.sizes.variant);
    for (unsigned places = 0; places < kPlaces; ++places) layouts.push_back({places, -1, phase++});
    for (const int shared : sharingsOf(f, in))
        for (unsigned places = 0; places < 3; ++places) layouts.push_back({places, shared, phase++});
    for (const Layout& layout : layouts) {
        const Outcome outcome = call(f, in, layout);
        std::string fault = outcome.complaint;
        if (fault.empty()) fault = difference(f, in, reference, outcome);
        if (fault.empty()) continue;
        char details[128];
        std::snprintf(details, sizeof details,
                      "length %d, variant %d, %s data, places %u, shared source %d, stack phase %u",
                      in.sizes.length, in.sizes.variant, nameOf(in.sizes.data), layout.places, layout.shared,
                      layout.phase % 8);
        report(f, &binding, fault, in.sizes.length, details);
        return false;
    }
    return true;
}

bool Checker::checkErrors(const Function& f, const test::Binding& binding) {
    const Inputs in = makeInputs(f, 8, 0, ordinaryFor(f));
    for (std::size_t i = 0; i < f.arguments.size(); ++i) {
        const Argument& a = f.arguments[i];
        const auto fails = [&](std::optional<double> illegal, int status) {
            const Layout layout = {0, -1, 0, static_cast<int>(i), illegal};
            return isRight(f, binding, call(f, in, layout), status,
                           a.name + " = " + (illegal ? std::to_string(*illegal) : "null"));
        };
        if (a.pointers != 0 && !mayBeNull(f, a) && !fails({}, zppStatusNullPointer)) return false;
        if (a.role == Role::kObject)
            for (const std::int32_t identifier : refusedIdentifiers(f))
                if (!fails(identifier, zppStatusContextMismatch)) return false;
        if (a.role != Role::kNumber) continue;
        const Number& number = *numberOf(f, a);
        for (const double value : number.refused)
            if (!fails(value, number.status)) return false;
    }
    return true;
}

// Each allocation of a long call fails once; the call that ends as usual had no more of them.
bool Checker::checkFailingHeap(const Function& f, const test::Binding& binding) {
    const Inputs in = makeInputs(f, lengthsOf(f).back(), 1, ordinaryFor(f));
    const std::int32_t usual = call(f, in, {0, -1, 0}).status;
    for (int n = 0;; ++n) {
        const Outcome outcome = call(f, in, {0, -1, 0, -1, 0, n});
        const bool ended = outcome.status == usual;
        if (!isRight(f, binding, outcome, ended ? usual : zppStatusAllocationFailed,
                     "allocation " + std::to_string(n) + " fails"))
            return false;
        if (ended) return true;
    }
}

// Whether a call ended so; if not, it is reported.
bool Checker::isRight(const Function& f, const test::Binding& binding, const Outcome& outcome, int expected,
                      const std::string& details) {
    std::string fault = outcome.complaint;
    if (fault.empty() && outcome.status != expected)
        fault = "returns " + std::to_string(outcome.status) + ", expected " + std::to_string(expected);
    if (!fault.empty()) report(f, &binding, fault, 0, details);
    return fault.empty();
}

}  // namespace zpp::check
