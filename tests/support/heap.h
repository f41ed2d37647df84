// Stands between the library and the heap: makes any of its allocations fail, and counts what it holds.
#pragma once

#include <cstddef>

namespace zpp::test {

// For its life, the library's allocation number `n`, counted from 0, fails.
class FailingHeap {
  public:
    explicit FailingHeap(int n);
    ~FailingHeap();
};

// Blocks that were allocated and not freed since the program began, by the library and by the tests alike.
long liveBlocks();

}  // namespace zpp::test
