// The elementary functions beside exact values, and arguments at which kernels are wrong first.
#pragma once

#include <span>
#include <vector>

#include "tests/support/random.h"
#include "tests/support/rounded.h"

namespace zpp::test {

struct Elementary {
    const char* name;
    // Of n elements; functions of one argument do not look at y.
    void (*call)(const double* x, const double* y, double* results, int n);
    Wide (*exact)(Wide x, Wide y);
    long double (*near)(long double x, long double y);  // to some thousandths of a unit in the last place
    double bound;                                       // in units of the last place
    double least, most;                                 // of arguments with a finite result
    double low, high;                                   // of ordinary arguments
    double step;                                        // at multiples of which kernels take another way
    double (*second)(double x, Random& random) = nullptr;
};

std::span<const Elementary> elementaryFunctions();

struct ElementaryArguments {
    std::vector<double> x, y;
};

// A quarter each of ordinary arguments, of arguments from all binades, of neighbours of the multiples of the
// step, and of neighbours of mantissas of 8 bits; behind the ends of the domain and published worst cases.
ElementaryArguments drawArguments(const Elementary& f, std::size_t count, Random& random);

}  // namespace zpp::test
