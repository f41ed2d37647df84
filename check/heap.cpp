#include "check/heap.h"

#include <cstddef>

// The linker sends the calls of malloc and free here, those of the library among them.
extern "C" {
void* __real_malloc(std::size_t bytes);
void __real_free(void* block);
}

namespace zpp::check {
namespace {

long live = 0;
int left = -1;  // allocations before the one that fails

}  // namespace

long liveBlocks() { return live; }

FailingHeap::FailingHeap(int n) { left = n; }
FailingHeap::~FailingHeap() { left = -1; }

extern "C" void* __wrap_malloc(std::size_t bytes) {
    if (left >= 0 && left-- == 0) return nullptr;
    void* block = __real_malloc(bytes);
    if (block != nullptr) ++live;
    return block;
}

extern "C" void __wrap_free(void* block) {
    if (block != nullptr) --live;
    __real_free(block);
}

}  // namespace zpp::check
