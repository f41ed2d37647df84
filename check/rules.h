// What the prototypes do not say. A new export that follows the conventions needs nothing here.
#pragma once

#include <string>
#include <vector>

#include "check/prototype.h"

namespace zpp::check {

// What the sizes and the choices of one call follow from.
struct Case {
    int length;
    int variant;  // chooses among flags and the like; odd: optional arguments are left out

    int taps(const Function& f) const;
    int order() const;  // log2 of length, rounded down
    int flag() const;   // 1, 2, 4 or 8
};

std::vector<int> lengthsOf(const Function& f);

// How many elements (bytes, for work buffers) the vector has.
std::size_t elementsOf(const Function& f, const Argument& a, const Case& c);

bool mayBeNull(const Function& f, const Argument& a);

// Whether a destination may be the same array as a source.
bool mayShare(const Function& f);

// How far the results of all columns, ISA builds and targets agree.
enum class Promise {
    kBits,    // to the last bit, whatever the bits mean
    kValues,  // to the last bit, but any NaN is as good as another
    kBound,   // to a multiple of the number of terms
};
Promise promiseOf(const Function& f);

// Whether the function releases the object that it takes.
bool releasesObject(const Function& f);

// The filter state or FFT specification of one call; everything in it goes through the entry stubs.
class Object {
  public:
    Object(const Function& f, const Case& c);  // makes one if the function takes one
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object();

    void* get() const { return object_; }
    void adopt(void* made) { object_ = made; }
    void forget() { object_ = nullptr; }
    // What the accessors give.
    std::vector<unsigned char> content() const;

  private:
    const Function& f_;
    Case case_;
    void* object_ = nullptr;
};

// The functions that are no functions of vectors: their own check, null for all others. The check gives what
// is wrong, or nothing. The function is bound to the column of this name.
using OwnCheck = std::string (*)(const Function& f, const std::string& column);
OwnCheck ownCheckOf(const Function& f);

}  // namespace zpp::check
