// Stands between the program and the heap: counts what is allocated, and makes an allocation fail.
#pragma once

namespace zpp::check {

// Blocks that were allocated and not freed since the program began: the library's, and where the C++ runtime
// is linked into the program, its own. A difference counts the library's where nothing else allocates.
long liveBlocks();

// For its life, allocation number `n`, counted from 0, fails; none if n is negative.
class FailingHeap {
  public:
    explicit FailingHeap(int n);
    ~FailingHeap();
};

}  // namespace zpp::check
