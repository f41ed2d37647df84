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

// What is wrong of a call that fails.
std::string faultOf(const Outcome& outcome, int expected) {
    if (!outcome.complaint.empty() || outcome.status == expected) return outcome.complaint;
    return "returns " + std::to_string(outcome.status) + ", expected " + std::to_string(expected);
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
    if (entry != nullptr) *planted_->record->slot = entry;
}

void Checker::report(const Function& f, const test::Binding* binding, const std::string& text, int length,
                     const std::string& details) {
    std::string message = f.name + (binding != nullptr ? ' ' + binding->name() : "") + ": " + text;
    if (!details.empty()) message += "\n    in: " + details;
    if (binding != nullptr) {
        message += "\n    replay: " + replayOf(f, *binding);
        if (length != 0) message += " --length " + std::to_string(length);
        failures_.push_back(f.name + binding->name());
    }
    if (!options_.quiet) std::printf("FAILED %s\n", message.c_str());
    reports_.push_back(message);
}

bool Checker::failed(const Function& f, const test::Binding& binding) const {
    return std::find(failures_.begin(), failures_.end(), f.name + binding.name()) != failures_.end();
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
    for (const int length : lengthsOf(f))
        if (options_.length == 0 || options_.length == length) checkLength(f, length);
    checkErrors(f);
    checkFailingHeap(f);
}

void Checker::checkAsItsOwn(const Function& f, const OwnCheck& own) {
    for (const test::Binding& binding : bindings_) {
        bind(binding);
        ++calls_;
        const long before = liveBlocks();
        std::string complaint = own.check(f, binding.columnName());
        if (complaint.empty() && liveBlocks() != before) complaint = "leaves blocks of memory allocated";
        if (!complaint.empty()) report(f, &binding, complaint);
    }
}

void Checker::checkLength(const Function& f, int length) {
    for (int variant = 0; variant < 4; ++variant) {
        const Inputs in = makeInputs(f, length, variant, variant < 2 ? ordinaryFor(f) : specialFor(f));
        bind(referenceBinding());
        const Outcome reference = call(f, in, {0, -1, 0});
        for (const test::Binding& binding : bindings_) {
            if (failed(f, binding)) continue;
            bind(binding);
            checkLayouts(f, in, reference, binding);
        }
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

void Checker::checkErrors(const Function& f) {
    const Inputs in = makeInputs(f, 8, 0, ordinaryFor(f));
    for (std::size_t i = 0; i < f.arguments.size(); ++i) {
        const Argument& a = f.arguments[i];
        const int index = static_cast<int>(i);
        if (a.pointers != 0 && !mayBeNull(f, a)) checkError(f, in, {0, -1, 0, index}, zppStatusNullPointer);
        if (a.role == Role::kObject) checkError(f, in, {0, -1, 0, index, 0x5EED}, zppStatusContextMismatch);
        if (a.role != Role::kNumber) continue;
        const Number& number = *numberOf(f, a);
        for (const double value : number.refused) checkError(f, in, {0, -1, 0, index, value}, number.status);
    }
}

// Each allocation of a long call fails once; the call that ends as usual had no more of them.
void Checker::checkFailingHeap(const Function& f) {
    const Inputs in = makeInputs(f, lengthsOf(f).back(), 1, ordinaryFor(f));
    for (const test::Binding& binding : bindings_) {
        if (failed(f, binding)) continue;
        bind(binding);
        const std::int32_t usual = call(f, in, {0, -1, 0}).status;
        for (int n = 0;; ++n) {
            const Outcome outcome = call(f, in, {0, -1, 0, -1, 0, n});
            const bool ended = outcome.status == usual;
            const std::string fault = ended ? outcome.complaint : faultOf(outcome, zppStatusAllocationFailed);
            if (!fault.empty()) report(f, &binding, fault, 0, "allocation " + std::to_string(n) + " fails");
            if (ended || !fault.empty()) break;
        }
    }
}

void Checker::checkError(const Function& f, const Inputs& in, const Layout& layout, int expected) {
    for (const test::Binding& binding : bindings_) {
        if (failed(f, binding)) continue;
        bind(binding);
        const Outcome outcome = call(f, in, layout);
        const std::string fault = faultOf(outcome, expected);
        const Argument& a = f.arguments[static_cast<std::size_t>(layout.replaced)];
        char number[32];
        std::snprintf(number, sizeof number, "%g", layout.illegal);
        const std::string value = a.pointers == 0       ? number
                                  : layout.illegal == 0 ? "null"
                                                        : "an object of another kind";
        if (!fault.empty()) report(f, &binding, fault, 0, a.name + " = " + value);
    }
}

}  // namespace zpp::check
