#include "frame/memory.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

namespace zpp {
namespace {

// The word just below the block holds the address that the heap gave.
constexpr size_t kOverhead = kBlockAlignment + sizeof(void*);

}  // namespace

void* allocateAligned(unsigned long long bytes) {
    if (bytes > SIZE_MAX - kOverhead) return nullptr;
    void* raw = malloc(static_cast<size_t>(bytes) + kOverhead);
    if (raw == nullptr) return nullptr;
    const uintptr_t address = (reinterpret_cast<uintptr_t>(raw) + kOverhead - 1) & ~(kBlockAlignment - 1);
    void* block = reinterpret_cast<void*>(address);
    memcpy(static_cast<char*>(block) - sizeof raw, &raw, sizeof raw);
    return block;
}

void freeAligned(void* block) {
    if (block == nullptr) return;
    void* raw;
    memcpy(&raw, static_cast<char*>(block) - sizeof raw, sizeof raw);
    free(raw);
}

}  // namespace zpp
