// What the processor does at its peak.
#pragma once

#include <cstddef>

namespace zpp::peers {

// Loads of these bytes, in registers of the greatest width.
void loadAll(const void* src, size_t bytes);

// About `count` products added up, as fast as the processor multiplies and adds.
double multiplyAdds(long long count);

}  // namespace zpp::peers
