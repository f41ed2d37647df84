// Stands in for memcpy, which with some C libraries is a memmove: here areas that overlap come out wrong.
#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" {
void* __real_memcpy(void* dst, const void* src, std::size_t bytes);

// The linker sends every call of memcpy in the program here. (Compilers copy an object to itself by it.)
void* __wrap_memcpy(void* dst, const void* src, std::size_t bytes) {
    const auto to = reinterpret_cast<std::uintptr_t>(dst), from = reinterpret_cast<std::uintptr_t>(src);
    const std::uintptr_t distance = to < from ? from - to : to - from;
    if (distance == 0 || distance >= bytes) return __real_memcpy(dst, src, bytes);
    return std::memset(dst, 0xEE, bytes);
}
}
