// What the prototypes do not say, stated in tables, one file for each folder of the library, or for a family
// of it. Nothing is taken for granted: a function for which something is not stated makes the run fail. The
// first row that fits holds.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "check/data.h"
#include "check/prototype.h"

namespace zpp::check {

using Bytes = std::vector<unsigned char>;

// What the sizes and the choices of one call follow from.
struct Case {
    int length;
    int variant;  // chooses among flags and the like; odd: an optional argument is left out
    Data data;
};

// How many elements (bytes, for work buffers) a vector has. The prototype states it for vectors pSrc... and
// pDst... of functions that take `len`, if it is `len`.
struct Extent {
    const char *functions, *arguments;
    std::function<std::size_t(const Function&, const Case&)> elements;
    std::size_t copies = 1;  // so often do they lie there, one copy behind the other
    std::size_t step = 0;    // of what its address must be a multiple; 0: of an element's size
};

// What a number may be that is passed, or that is found where a pointer leads.
struct Number {
    const char *functions, *arguments;
    double (*draw)(const Function&, const Case&, test::Random&);  // null: it may be anything
    std::span<const double> refused = {};
    int status = 0;  // with which they are refused
};

// Vectors for which a call may have null.
struct Optional {
    const char *functions, *arguments;
};

// How far the results of all columns, ISA builds and targets agree.
enum class Promise {
    kBits,    // to the last bit, whatever the bits mean
    kValues,  // to the last bit, but any NaN is as good as another
    kNear,    // floating numbers to a unit in the last place, but any NaN is as good as another
    kBound,   // to a multiple of the number of terms
};
struct Promised {
    const char* functions;
    Promise promise;
    double rest = 0;  // kNear: what numbers may differ by where terms cancel
};

// The objects that these functions take or make.
struct ObjectKind {
    const char* functions;
    std::function<void*(const Function&, const Case&)> make;
    std::function<void(void*)> release;
    Entry releaser;                                                        // the export behind it
    std::function<Bytes(const void*, const Function&, const Case&)> read;  // by all accessors; empty: none
    bool bounded = false;  // whether that is doubles, which agree as the results do
};

// Where others than those around every vector and unroll width are wanted.
struct Lengths {
    const char* functions;
    std::span<const int> lengths;
};

// The functions that are no functions of vectors. The check gives what is wrong, or nothing. The function is
// bound to the column of this name.
struct OwnCheck {
    const char* functions;
    std::string (*check)(const Function& f, const std::string& column);
};

struct Rules {
    const char* folder;
    std::span<const Promised> promises;
    std::span<const Extent> extents = {};
    std::span<const Number> numbers = {};
    std::span<const Optional> optional = {};
    std::span<const ObjectKind> objects = {};
    std::span<const Lengths> lengths = {};
    std::span<const OwnCheck> ownChecks = {};
    const char* neverShared = "";  // functions of which no destination may be the same array as a source
    const char* functions = "*";   // of the folder, that these rules are for
};

extern const Rules kFrameRules, kArithRules, kDataRules, kStatsRules, kGenRules, kIirRules, kFilterRules,
    kTransformRules, kVmRules;

// Null if there are none.
const Rules* rulesOf(const std::string& folder, const std::string& function);

// Which rule the function lacks, or why no call of it can be made; empty if all is stated.
std::string missingRule(const Function& f);

std::span<const int> lengthsOf(const Function& f);
const Extent* extentOf(const Function& f, const Argument& a);  // null if it is not stated
const Number* numberOf(const Function& f, const Argument& a);
const ObjectKind* objectOf(const Function& f);
const OwnCheck* ownCheckOf(const Function& f);
Promise promiseOf(const Function& f);
double restOf(const Function& f);
bool mayBeNull(const Function& f, const Argument& a);
bool releasesObject(const Function& f);

// What the objects begin with that the function refuses: all other kinds of objects, zeroed memory, and what
// one bit parts from an object that it takes.
std::vector<std::int32_t> refusedIdentifiers(const Function& f);

// For tables.
Extent stated(const char* functions, const char* arguments, int perLength, int more = 0);
double zero(const Function&, const Case&, test::Random&);
inline constexpr double kBelowOne[] = {0, -1};

}  // namespace zpp::check
