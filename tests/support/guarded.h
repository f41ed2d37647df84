// A vector that ends directly before, or begins directly behind, a page that cannot be read, so that an
// access beyond it ends the test; on its other side lies a pattern that intact() looks after.
#pragma once

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "tests/support/pages.h"

namespace zpp::test {

enum class Edge { kEnd, kStart };

template <class T>
class Guarded {
  public:
    explicit Guarded(std::size_t size, Edge edge = Edge::kEnd)
        : size_(size), pages_(size * sizeof(T) + 1) {  // never without a pattern
        std::fill(pages_.begin(), pages_.end(), kPattern);
        data_ = reinterpret_cast<T*>(edge == Edge::kEnd ? pages_.end() - size * sizeof(T) : pages_.begin());
    }
    explicit Guarded(const std::vector<T>& values, Edge edge = Edge::kEnd) : Guarded(values.size(), edge) {
        assign(values);
    }
    Guarded(std::initializer_list<T> values) : Guarded(std::vector<T>(values)) {}

    void assign(const std::vector<T>& values) { std::memcpy(data_, values.data(), size_ * sizeof(T)); }
    std::vector<T> values() const { return std::vector<T>(data_, data_ + size_); }

    // From now on a write into the vector ends the test too.
    void protect() { pages_.protect(); }

    T* data() { return data_; }
    const T* data() const { return data_; }
    operator T*() { return data_; }
    std::size_t size() const { return size_; }
    int len() const { return static_cast<int>(size_); }
    T* begin() { return data_; }
    T* end() { return data_ + size_; }

    // Whether nothing outside the vector was written.
    bool intact() const {
        const auto* first = reinterpret_cast<const unsigned char*>(data_);
        const auto* last = reinterpret_cast<const unsigned char*>(data_ + size_);
        return isPattern(pages_.begin(), first) && isPattern(last, pages_.end());
    }

    // Whether, besides, nothing was ever written into the vector: for destinations after an error.
    bool untouched() const { return isPattern(pages_.begin(), pages_.end()); }

  private:
    static constexpr unsigned char kPattern = 0xA5;

    static bool isPattern(const unsigned char* first, const unsigned char* last) {
        return std::all_of(first, last, [](unsigned char c) { return c == kPattern; });
    }

    std::size_t size_;
    GuardedPages pages_;
    T* data_;
};

}  // namespace zpp::test
