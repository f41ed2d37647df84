// Memory for the vectors of a call, between pages that cannot be read, used again for every call.
#pragma once

#include <memory>
#include <vector>

#include "tests/support/guarded.h"

namespace zpp::check {

enum class Place { kEnd, kStart, kShifted };  // before a page, behind one, one element further

class Arena {
  public:
    // The content there, with a pattern around it.
    unsigned char* place(const std::vector<unsigned char>& content, Place where, std::size_t elementSize);

    // Whether the pattern is as it was.
    bool intact() const;
    bool holds(const std::vector<unsigned char>& content) const;
    std::vector<unsigned char> content() const { return {data_, data_ + bytes_}; }
    const unsigned char* data() const { return data_; }
    std::size_t bytes() const { return bytes_; }

  private:
    static constexpr std::size_t kMargin = 256;
    void reserve(std::size_t bytes);

    // The same size of memory up to a page, and from one on.
    std::unique_ptr<test::Guarded<unsigned char>> upTo_, from_;
    unsigned char *data_ = nullptr, *first_ = nullptr, *last_ = nullptr;
    std::size_t bytes_ = 0;
};

}  // namespace zpp::check
