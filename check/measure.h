// Digests and times of functions.
#pragma once

#include "check/checker.h"

namespace zpp::check {

// A digest of all results of the function as it is bound, or of nothing (false) where they are not promised
// to the last bit.
bool addToDigest(const Function& f, std::uint64_t& digest);

// Nanoseconds of one call at this length, for each of the checker's bindings; empty where there is no such
// call.
std::vector<double> timeCalls(const Checker& checker, const Function& f, int length);

}  // namespace zpp::check
