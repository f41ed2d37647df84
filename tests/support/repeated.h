// Vectors longer than memory: the same few pages over and over.
#pragma once

#include <cstddef>

namespace zpp::test {

class RepeatedPages {
  public:
    // At least as many bytes as asked for, all 0; none where the system cannot do it, and whyNot() says why.
    explicit RepeatedPages(std::size_t bytes);
    RepeatedPages(const RepeatedPages&) = delete;
    RepeatedPages& operator=(const RepeatedPages&) = delete;
    ~RepeatedPages();

    // What is written to the first so many bytes is found in all that follow.
    static constexpr std::size_t kPeriod = 1 << 20;

    void* begin() const { return begin_; }
    const char* whyNot() const { return whyNot_; }

  private:
    std::size_t bytes_;
    void* begin_ = nullptr;
    const char* whyNot_ = nullptr;
};

}  // namespace zpp::test
