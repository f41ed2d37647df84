// Vectors for the caller.
#include "frame/memory.h"
#include "frame/shared.h"

namespace zpp::shared {
namespace {

template <class Element>
Element* allocateVector(int len) {
    if (len <= 0) return nullptr;
    return static_cast<Element*>(allocateAligned(static_cast<uint64_t>(len) * sizeof(Element)));
}

}  // namespace

Zpp32s* zppsMalloc_32s(int len) { return allocateVector<Zpp32s>(len); }
Zpp64f* zppsMalloc_64f(int len) { return allocateVector<Zpp64f>(len); }
Zpp32sc* zppsMalloc_32sc(int len) { return allocateVector<Zpp32sc>(len); }
Zpp64fc* zppsMalloc_64fc(int len) { return allocateVector<Zpp64fc>(len); }
void zppsFree(void* ptr) { freeAligned(ptr); }

}  // namespace zpp::shared
