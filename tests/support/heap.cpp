#include "tests/support/heap.h"

#include <atomic>
#include <climits>

extern "C" {
void* __real_malloc(std::size_t bytes);
void __real_free(void* block);
}

namespace zpp::test {
namespace {

std::atomic<int> allocationsLeft{INT_MAX};
std::atomic<long> live{0};

}  // namespace

FailingHeap::FailingHeap(int n) { allocationsLeft = n; }
FailingHeap::~FailingHeap() { allocationsLeft = INT_MAX; }

long liveBlocks() { return live; }

// The linker sends every call of malloc and free in the program here; C++ new and delete are in a library of
// their own.
extern "C" void* __wrap_malloc(std::size_t bytes) {
    if (allocationsLeft != INT_MAX && allocationsLeft-- == 0) return nullptr;
    void* block = __real_malloc(bytes);
    if (block != nullptr) ++live;
    return block;
}

extern "C" void __wrap_free(void* block) {
    if (block != nullptr) --live;
    __real_free(block);
}

}  // namespace zpp::test
