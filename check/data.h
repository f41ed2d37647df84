// What the vectors and constants of a call hold.
#pragma once

#include <vector>

#include "check/prototype.h"
#include "tests/support/random.h"

namespace zpp::check {

enum class Data {
    kOrdinary,  // many magnitudes, and many ties of rounding
    kSpecial,   // three numbers of four from the edges of its type: NaN, Inf, zeros, subnormals, extremes
    kUniform,   // floating numbers in [-1, 1), integers as kOrdinary, middling scale factors
    kPatterns,  // any bits
};

const char* nameOf(Data data);

std::vector<unsigned char> makeElements(const Element& type, std::size_t count, Data data,
                                        test::Random& random);

int makeScaleFactor(Data data, test::Random& random);

}  // namespace zpp::check
