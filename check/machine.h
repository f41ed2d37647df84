// What a report of a fault begins with.
#pragma once

#include <cstdio>

#include "tests/support/columns.h"

namespace zpp::check {

// Version, target, processor, and what the load has bound and why; to be called before anything else is
// bound.
void describeMachine(std::FILE* file);

// What the load has bound, as the first call of this finds it; null if that is no column as a whole.
const test::Binding* loadedBinding();

}  // namespace zpp::check
