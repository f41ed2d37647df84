#include "tests/support/pages.h"

#include <cstdlib>
#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace zpp::test {
namespace {

#ifdef _WIN32
std::size_t pageBytes() {
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    return system.dwPageSize;
}
void* reserve(std::size_t bytes) { return VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS); }
bool allowWriting(void* pages, std::size_t bytes) {
    return VirtualAlloc(pages, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}
bool forbidWriting(void* pages, std::size_t bytes) {
    DWORD before;
    return VirtualProtect(pages, bytes, PAGE_READONLY, &before) != 0;
}
void release(void* pages, std::size_t) { VirtualFree(pages, 0, MEM_RELEASE); }
#else
std::size_t pageBytes() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }
void* reserve(std::size_t bytes) {
    void* pages = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}
bool allowWriting(void* pages, std::size_t bytes) {
    return mprotect(pages, bytes, PROT_READ | PROT_WRITE) == 0;
}
bool forbidWriting(void* pages, std::size_t bytes) { return mprotect(pages, bytes, PROT_READ) == 0; }
void release(void* pages, std::size_t bytes) { munmap(pages, bytes); }
#endif

}  // namespace

#ifdef _WIN32
bool makeWritable(void* pages, std::size_t bytes) {
    DWORD before;
    return VirtualProtect(pages, bytes, PAGE_READWRITE, &before) != 0;
}
#else
bool makeWritable(void* pages, std::size_t bytes) { return allowWriting(pages, bytes); }
#endif

GuardedPages::GuardedPages(std::size_t bytes) {
    const std::size_t page = pageBytes();
    bytes_ = (bytes + page - 1) / page * page;
    auto* first = static_cast<unsigned char*>(reserve(bytes_ + 2 * page));
    if (first == nullptr) throw std::bad_alloc();
    begin_ = first + page;
    if (!allowWriting(begin_, bytes_)) {
        release(first, bytes_ + 2 * page);
        throw std::bad_alloc();
    }
}

GuardedPages::~GuardedPages() {
    const std::size_t page = pageBytes();
    release(begin_ - page, bytes_ + 2 * page);
}

void GuardedPages::protect() {
    if (!forbidWriting(begin_, bytes_)) std::abort();
}

}  // namespace zpp::test
