// Stands between the library and its allocator: makes any allocation fail, counts the blocks that the library
// holds, and looks after the memory around them. A test fails that leaves blocks behind, or whose calls wrote
// outside one.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zpp::test {

// For its life, the library's allocation number `n`, counted from 0, fails.
class FailingHeap {
  public:
    explicit FailingHeap(int n);
    ~FailingHeap();
};

// Blocks that the library has allocated and not released since the program began.
long liveBlocks();

// The identifier word of the block that was released last, as it was then.
std::int32_t lastReleasedIdentifier();

}  // namespace zpp::test
