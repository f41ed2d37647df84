// Memory between two pages that cannot be read.
#pragma once

#include <cstddef>

namespace zpp::test {

// Whole pages that lie elsewhere; false if the system refuses.
bool makeWritable(void* pages, std::size_t bytes);

class GuardedPages {
  public:
    // Whole pages, at least as many bytes as asked for.
    explicit GuardedPages(std::size_t bytes);
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;
    ~GuardedPages();

    // From now on they can be read only.
    void protect();

    unsigned char* begin() const { return begin_; }
    unsigned char* end() const { return begin_ + bytes_; }

  private:
    std::size_t bytes_;
    unsigned char* begin_;
};

}  // namespace zpp::test
