// Comparisons of vectors.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace zpp::test {

// Lengths around every vector and unroll width: tail only, body only, both.
inline const std::vector<int>& awkwardLengths() {
    static const std::vector<int> lengths = {1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 13, 15,  16,  17,  19,
                                             23, 31, 32, 33, 40, 47, 63, 64, 65, 71, 97, 127, 128, 129, 515};
    return lengths;
}

// Equal to the last bit; the message names the first element that is not.
template <class T>
testing::AssertionResult sameBits(const std::vector<T>& expected, const std::vector<T>& actual) {
    if (expected.size() != actual.size()) return testing::AssertionFailure() << "sizes differ";
    for (std::size_t i = 0; i < expected.size(); ++i)
        if (std::memcmp(&expected[i], &actual[i], sizeof(T)) != 0)
            return testing::AssertionFailure()
                   << "element " << i << " is " << testing::PrintToString(actual[i]) << ", expected "
                   << testing::PrintToString(expected[i]);
    return testing::AssertionSuccess();
}

}  // namespace zpp::test
