// Runs the checks of functions on bindings, counts and reports.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "check/trial.h"
#include "tests/support/columns.h"

namespace zpp::check {

struct Options {
    std::string function = "*";  // a pattern
    std::string column, isa;     // empty: all
    int length = 0;              // 0: all
    bool quiet = false;          // reports are kept, not printed
};

class Checker {
  public:
    explicit Checker(const Options& options);

    // All that is known to be wrong of the function is reported.
    void check(const Function& f);

    // From now on this stands in the slot of the function, and in the reference the other, if it is not null.
    void plant(const Function& f, Entry entry, Entry reference = nullptr) {
        planted_ = &f, plantedEntry_ = entry, plantedReference_ = reference;
    }

    static inline Entry displaced = nullptr;  // what the bound build had in that slot

    const std::vector<test::Binding>& bindings() const { return bindings_; }
    void bind(const test::Binding& binding) const;

    long calls() const { return calls_; }
    const std::vector<std::string>& reports() const { return reports_; }

  private:
    void checkAsItsOwn(const Function& f, const OwnCheck& own);
    bool checkErrors(const Function& f, const test::Binding& binding);
    bool checkFailingHeap(const Function& f, const test::Binding& binding);
    bool isRight(const Function& f, const test::Binding& binding, const Outcome& outcome, int expected,
                 const std::string& details);
    bool checkLayouts(const Function& f, const Inputs& in, const Outcome& reference,
                      const test::Binding& binding);
    Outcome call(const Function& f, const Inputs& in, const Layout& layout);
    void report(const Function& f, const test::Binding* binding, const std::string& text, int length = 0,
                const std::string& details = "");

    const Options options_;
    std::vector<test::Binding> bindings_;  // that are asked for
    const Function* planted_ = nullptr;
    Entry plantedEntry_ = nullptr, plantedReference_ = nullptr;
    long calls_ = 0;
    std::vector<std::string> reports_;
};

// What the results are compared with.
const test::Binding& referenceBinding();

// The two kinds of data that suit the function.
Data ordinaryFor(const Function& f);
Data specialFor(const Function& f);

}  // namespace zpp::check
