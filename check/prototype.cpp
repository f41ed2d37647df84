#include "check/prototype.h"

#include <cctype>

#include "zpp.h"

namespace zpp::check {
namespace {

#define INTEGER(T) \
    { #T, sizeof(T), sizeof(T), false }
#define FLOATING(T) \
    { #T, sizeof(T), sizeof(T), true }
#define PAIR(T, floating) \
    { #T, sizeof(T), sizeof(T) / 2, floating }
constexpr Element kElements[] = {
    INTEGER(Zpp8u),        INTEGER(Zpp8s),      INTEGER(Zpp16u),  INTEGER(Zpp16s),      INTEGER(Zpp32u),
    INTEGER(Zpp32s),       INTEGER(Zpp64u),     INTEGER(Zpp16f),  INTEGER(int),         INTEGER(ZppStatus),
    INTEGER(ZppRoundMode), FLOATING(Zpp32f),    FLOATING(Zpp64f), PAIR(Zpp16sc, false), PAIR(Zpp32sc, false),
    PAIR(Zpp32fc, true),   PAIR(Zpp64fc, true),
};

struct NamedRole {
    const char* name;
    int pointers;
    Role role;
};

// The arguments that are known by name.
constexpr NamedRole kNamedRoles[] = {
    {"len", 0, Role::kLength},          {"numIters", 0, Role::kLength},
    {"tapsLen", 0, Role::kTapsLength},  {"scaleFactor", 0, Role::kScaleFactor},
    {"rndMode", 0, Role::kRounding},    {"order", 0, Role::kOrder},
    {"flag", 0, Role::kFlag},           {"hint", 0, Role::kHint},
    {"pSize", 1, Role::kSize},          {"pBuffer", 1, Role::kBuffer},
    {"pDlyLineIndex", 1, Role::kIndex}, {"pState", 1, Role::kObject},
    {"pSpec", 1, Role::kObject},        {"ptr", 1, Role::kObject},
    {"ppState", 2, Role::kObjectOut},   {"ppSpec", 2, Role::kObjectOut},
};

// The others, by their type: a constant is called val or src, all else of type int has to be known by name.
Role roleOf(const Argument& a) {
    for (const NamedRole& known : kNamedRoles)
        if (a.name == known.name && a.pointers == known.pointers) return known.role;
    if (a.type == nullptr || a.pointers > 1) return Role::kUnknown;
    if (a.pointers == 0) return a.name == "val" || a.name == "src" ? Role::kConstant : Role::kUnknown;
    if (a.constant) return Role::kSource;
    return a.name.starts_with("pDst") ? Role::kDestination : Role::kInOut;
}

const Element* findElement(const std::string& name) {
    for (const Element& element : kElements)
        if (name == element.name) return &element;
    return nullptr;
}

// Such as "const Zpp64f* pSrc".
Argument parseArgument(const std::string& text) {
    Argument a = {"", nullptr, 0, false, Role::kUnknown};
    std::string type, word;
    for (const char c : text + ' ') {
        if (std::isalnum(static_cast<unsigned char>(c)) || c == '_') {
            word += c;
            continue;
        }
        if (word == "const")
            a.constant = true;
        else if (!word.empty())
            (type.empty() ? type : a.name) = word;
        word.clear();
        if (c == '*') ++a.pointers;
    }
    a.type = findElement(type);
    a.role = roleOf(a);
    return a;
}

Function parse(const char* result, const char* name, const std::string& arguments, Entry stub,
               const Record* record) {
    Function f = {name, result, std::string(result) + ' ' + name + arguments, {}, stub, record};
    if (arguments == "(void)") return f;
    std::size_t begin = 1;
    while (begin < arguments.size()) {
        const std::size_t end = arguments.find_first_of(",)", begin);
        f.arguments.push_back(parseArgument(arguments.substr(begin, end - begin)));
        begin = end + 1;
    }
    return f;
}

}  // namespace

bool like(const char* text, const char* pattern) {
    if (*pattern == '*') return like(text, pattern + 1) || (*text != 0 && like(text + 1, pattern));
    if (*text == 0 || *pattern == 0) return *text == *pattern;
    return (*pattern == '?' || *pattern == *text) && like(text + 1, pattern + 1);
}

bool Function::matches(const char* pattern) const { return like(name.c_str(), pattern); }

bool Function::has(Role role) const {
    for (const Argument& a : arguments)
        if (a.role == role) return true;
    return false;
}

const std::vector<Function>& allFunctions() {
    static const std::vector<Function> functions = [] {
        std::vector<Function> list;
        const Record* record = kDispatchTable.records;
#define ZPP_LIST(result, name, arguments) \
    list.push_back(parse(#result, #name, #arguments, reinterpret_cast<Entry>(&name), record++));
#define ZPP_LIST_SHARED ZPP_LIST
#define ZPP_LIST_COLUMN ZPP_LIST
#include "zpp.h"
#undef ZPP_LIST
#undef ZPP_LIST_SHARED
#undef ZPP_LIST_COLUMN
        return list;
    }();
    return functions;
}

Entry findStub(const std::string& name) {
    for (const Function& f : allFunctions())
        if (f.name == name) return f.stub;
    return nullptr;
}

}  // namespace zpp::check
