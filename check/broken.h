// The check of the checker.
#pragma once

#include <cstdint>

namespace zpp::check {

// Checks functions that are broken in one way each; prints what was not caught and returns the exit code.
int checkBrokenFunctions();

}  // namespace zpp::check
