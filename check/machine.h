// What a report of a fault begins with.
#pragma once

#include <cstdio>

#include "tests/support/columns.h"

namespace zpp::check {

// Version, target, processor, and what the load has bound and why.
void describeMachine(std::FILE* file);

// What the load has bound.
const test::Binding& loadedBinding();

}  // namespace zpp::check
