#include "check/prototype.h"

#include <cctype>
#include <cstring>
#include <utility>

#include "check/rules.h"
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
    INTEGER(Zpp8u),        INTEGER(Zpp8s),      INTEGER(Zpp16u),     INTEGER(Zpp16s),  INTEGER(Zpp32u),
    INTEGER(Zpp32s),       INTEGER(Zpp64u),     INTEGER(Zpp16f),     INTEGER(int),     INTEGER(ZppStatus),
    INTEGER(ZppRoundMode), INTEGER(ZppCmpOp),   FLOATING(Zpp32f),    FLOATING(Zpp64f), PAIR(Zpp16sc, false),
    PAIR(Zpp32sc, false),  PAIR(Zpp32fc, true), PAIR(Zpp64fc, true),
};

// Of the rest nothing is taken for granted: rules.h.
Role roleOf(const Argument& a) {
    if (a.type == nullptr)
        return a.pointers == 1 ? Role::kObject : a.pointers == 2 ? Role::kObjectOut : Role::kUnknown;
    if (a.pointers == 0) return Role::kNumber;
    if (a.pointers != 1) return Role::kUnknown;
    if (a.constant) return Role::kSource;
    if (a.name == "pSize") return Role::kSize;
    if (a.name == "pBuffer") return Role::kBuffer;
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

// "arith" for the headers .../zpp/arith.h and .../zpp/arith/x.h.
std::string folderOf(const std::string& header) {
    const std::size_t begin = header.rfind("zpp") + 4;
    return header.substr(begin, header.find_first_of("/\\.", begin) - begin);
}

// Whether a text is like the first of the patterns.
bool likeOne(const char* text, const char* pattern) {
    if (*pattern == '*') return likeOne(text, pattern + 1) || (*text != 0 && likeOne(text + 1, pattern));
    const bool ended = *pattern == 0 || *pattern == ' ';
    if (*text == 0 || ended) return *text == 0 && ended;
    return (*pattern == '?' || *pattern == *text) && likeOne(text + 1, pattern + 1);
}

}  // namespace

bool like(const char* text, const char* patterns) {
    while (!likeOne(text, patterns)) {
        patterns = std::strchr(patterns, ' ');
        if (patterns++ == nullptr) return false;
    }
    return true;
}

Function parseFunction(const std::string& result, const std::string& name, const std::string& arguments) {
    Function f = {name, result, result + ' ' + name + arguments, {}, nullptr, nullptr, nullptr};
    if (arguments == "(void)") return f;
    std::size_t begin = 1;
    while (begin < arguments.size()) {
        const std::size_t end = arguments.find_first_of(",)", begin);
        f.arguments.push_back(parseArgument(arguments.substr(begin, end - begin)));
        begin = end + 1;
    }
    return f;
}

bool Function::matches(const char* patterns) const { return like(name.c_str(), patterns); }

bool Function::has(Role role) const {
    for (const Argument& a : arguments)
        if (a.role == role) return true;
    return false;
}

bool Function::has(const char* argument) const {
    for (const Argument& a : arguments)
        if (a.name == argument) return true;
    return false;
}

const std::vector<Function>& allFunctions() {
// An entry is expanded in the header that it stands in.
#define ZPP_LIST(result, name, arguments) \
    {#result, #name, #arguments, reinterpret_cast<Entry>(&name), __FILE__},
#define ZPP_LIST_SHARED ZPP_LIST
#define ZPP_LIST_COLUMN ZPP_LIST
    static const struct {
        const char *result, *name, *arguments;
        Entry stub;
        const char* header;
    } kDeclarations[] = {
#include "zpp.h"
    };
#undef ZPP_LIST
#undef ZPP_LIST_SHARED
#undef ZPP_LIST_COLUMN
    static const std::vector<Function> functions = [] {
        std::vector<Function> list;
        const Record* record = kDispatchTable.records;
        for (const auto& declared : kDeclarations) {
            list.push_back(parseFunction(declared.result, declared.name, declared.arguments));
            list.back().stub = declared.stub;
            list.back().record = record++;
            list.back().rules = rulesOf(folderOf(declared.header), declared.name);
        }
        return list;
    }();
    return functions;
}

}  // namespace zpp::check
