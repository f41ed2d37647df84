#include "tests/support/repeated.h"

#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace zpp::test {

#if defined(__linux__) && SIZE_MAX > 0xFFFFFFFF

RepeatedPages::RepeatedPages(std::size_t bytes) : bytes_((bytes + kPeriod - 1) / kPeriod * kPeriod) {
    const int file = memfd_create("repeated", 0);
    void* const all = mmap(nullptr, bytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    bool mapped = file >= 0 && all != MAP_FAILED && ftruncate(file, kPeriod) == 0;
    for (std::size_t at = 0; mapped && at < bytes_; at += kPeriod)
        mapped = mmap(static_cast<char*>(all) + at, kPeriod, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED,
                      file, 0) != MAP_FAILED;
    if (file >= 0) close(file);
    if (mapped)
        begin_ = all;
    else
        whyNot_ = "the system does not map one page so often";
    if (!mapped && all != MAP_FAILED) munmap(all, bytes_);
}

RepeatedPages::~RepeatedPages() {
    if (begin_ != nullptr) munmap(begin_, bytes_);
}

#else

RepeatedPages::RepeatedPages(std::size_t bytes) : bytes_(bytes) {
    whyNot_ = "vectors of so many bytes are tested on 64-bit Linux, where one page is mapped often";
}
RepeatedPages::~RepeatedPages() = default;

#endif

}  // namespace zpp::test
