// The exported functions, read from the public headers, with the arguments of each.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "frame/dispatch.h"

namespace zpp::check {

struct Rules;  // rules.h

struct Element {
    const char* name;  // as in the headers
    std::size_t size;
    std::size_t part;  // bytes of each number: of a complex type, half the size
    bool floating;
};

// What an argument is for, by its type and, of the non-const pointers, by its name.
enum class Role {
    kUnknown,      // no call can be made
    kNumber,       // T, which may be a complex one
    kSource,       // const T*
    kDestination,  // T* pDst...
    kInOut,        // T*
    kSize,         // int* pSize: receives bytes
    kBuffer,       // Zpp8u* pBuffer: a work area
    kObject,       // a specification or a state
    kObjectOut,    // where its pointer goes
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

inline constexpr std::size_t kMaxArguments = 12;

// Whether a text is like one of the patterns, which spaces part; in a pattern * stands for any characters and
// ? for one.
bool like(const char* text, const char* patterns);

struct Function {
    std::string name;
    std::string result;
    std::string prototype;
    std::vector<Argument> arguments;
    Entry stub;
    const Record* record;
    const Rules* rules;  // of the folder of the library that the function is in; null if it has none

    bool matches(const char* patterns) const;
    bool has(Role role) const;
    bool has(const char* argument) const;
};

// A function from the text of its declaration.
Function parseFunction(const std::string& result, const std::string& name, const std::string& arguments);

// In the order of the Dispatch table.
const std::vector<Function>& allFunctions();

}  // namespace zpp::check
