// The exported functions, read from the public headers, with the arguments of each.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "frame/dispatch.h"

namespace zpp::check {

struct Element {
    const char* name;  // as in the headers
    std::size_t size;
    std::size_t part;  // bytes of each number: of a complex type, half the size
    bool floating;
};

// What an argument is for, by its name and its type.
enum class Role {
    kUnknown,      // nothing is known: no call can be made
    kSource,       // const T*
    kDestination,  // T* pDst...
    kInOut,        // T*
    kConstant,     // T
    kLength,       // elements
    kTapsLength,
    kScaleFactor,
    kRounding,
    kOrder,  // log2 of a transform's length
    kFlag,   // of a transform's normalisation
    kHint,
    kIndex,      // int* below kTapsLength
    kSize,       // int* that receives bytes
    kBuffer,     // Zpp8u* work area
    kObject,     // a specification or a state
    kObjectOut,  // where its pointer goes
};

struct Argument {
    std::string name;
    const Element* type;  // null for objects
    int pointers;
    bool constant;
    Role role;

    bool isVector() const { return pointers == 1 && role != Role::kObject; }
    bool isWritten() const { return pointers == 2 || (isVector() && !constant); }
};

// Whether a text is like a pattern, in which * stands for any characters and ? for one.
bool like(const char* text, const char* pattern);

struct Function {
    std::string name;
    std::string result;
    std::string prototype;
    std::vector<Argument> arguments;
    Entry stub;
    const Record* record;

    bool matches(const char* pattern) const;
    bool has(Role role) const;
};

// In the order of the Dispatch table.
const std::vector<Function>& allFunctions();

// The entry stub of a function; null if there is none of that name.
Entry findStub(const std::string& name);

}  // namespace zpp::check
