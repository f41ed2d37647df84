// The one allocator of the library.
#pragma once

#include <stddef.h>

namespace zpp {

// What blocks begin on a multiple of: a cache line, and the widest vector.
constexpr size_t kBlockAlignment = 64;

// A block of `bytes`, or null. Released by freeAligned. (The tests stand between the library and these two
// functions, by their names in the objects, which are the same on all targets.)
void* allocateAligned(unsigned long long bytes);

// Releases a block of allocateAligned; does nothing with null.
void freeAligned(void* block);

}  // namespace zpp
