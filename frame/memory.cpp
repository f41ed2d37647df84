#include "frame/memory.h"

#include <stdlib.h>
#include <string.h>

#include "frame/shared.h"

namespace zpp {
namespace {

constexpr size_t kAlignment = 32;
// The word just below the block holds the address that the heap gave.
constexpr size_t kOverhead = kAlignment + sizeof(void*);

template <class Element>
Element* allocateVector(int len) {
    if (len <= 0 || static_cast<size_t>(len) > (SIZE_MAX - kOverhead) / sizeof(Element)) return nullptr;
    return static_cast<Element*>(allocateAligned(static_cast<size_t>(len) * sizeof(Element)));
}

}  // namespace

void* allocateAligned(size_t bytes) {
    if (bytes > SIZE_MAX - kOverhead) return nullptr;
    void* raw = malloc(bytes + kOverhead);
    if (raw == nullptr) return nullptr;
    const uintptr_t address = (reinterpret_cast<uintptr_t>(raw) + kOverhead - 1) & ~(kAlignment - 1);
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

namespace zpp::shared {

Zpp32s* zppsMalloc_32s(int len) { return allocateVector<Zpp32s>(len); }
Zpp64f* zppsMalloc_64f(int len) { return allocateVector<Zpp64f>(len); }
Zpp32sc* zppsMalloc_32sc(int len) { return allocateVector<Zpp32sc>(len); }
Zpp64fc* zppsMalloc_64fc(int len) { return allocateVector<Zpp64fc>(len); }
void zppsFree(void* ptr) { freeAligned(ptr); }

}  // namespace zpp::shared
