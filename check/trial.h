// One call of one function: what goes in, how it lies in memory, what comes out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/data.h"
#include "check/rules.h"
#include "frame/cpu.h"

namespace zpp::check {

struct Inputs {
    Case sizes;
    std::vector<Bytes> values;  // for each argument, what it or its vector holds
};

// The same for the same arguments on every machine.
Inputs makeInputs(const Function& f, int length, int variant, Data data);

struct Layout {
    unsigned places;    // one of kPlaces ways to distribute the vectors over the places of arena.h
    int shared;         // first source that shares its array with the first destination, and so on; -1: none
    unsigned phase;     // of the stack
    int replaced = -1;  // the argument that is made illegal
    std::optional<double> illegal = {};  // number, or identifier of an object, that it is given; none: null
    int failing = -1;                    // which of the allocations in the call fails; -1: none
};
inline constexpr unsigned kPlaces = 5;

struct Outcome {
    std::int32_t status = 0;
    std::vector<Bytes> written;  // for each argument, what its vector holds now
    Bytes object;                // what its object holds
    std::string complaint;       // of manners; empty if there is none
};

// Calls the function as it is bound.
Outcome perform(const Function& f, const Inputs& inputs, const Layout& layout);

// Nanoseconds of a call, as it is bound, by so many of them; and of the way there and back alone.
double timeCall(const Function& f, const Inputs& inputs, int calls);
double timeEmptyCall(int calls);

// The values of Layout::shared that the function allows.
std::vector<int> sharingsOf(const Function& f, const Inputs& inputs);

// How the outcome differs from that of the reference, which ran on another ISA build; empty if it does not.
std::string difference(const Function& f, const Inputs& inputs, const Outcome& reference,
                       const Outcome& outcome);

// Whether the written vector is a result.
bool isResult(const Argument& a);

}  // namespace zpp::check
