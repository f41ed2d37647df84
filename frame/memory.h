// The one allocator of the library.
#pragma once

#include <stddef.h>

namespace zpp {

// A block of `bytes` on a multiple of 32 bytes, or null. Released by freeAligned.
void* allocateAligned(size_t bytes);

// Releases a block of allocateAligned; does nothing with null.
void freeAligned(void* block);

}  // namespace zpp
