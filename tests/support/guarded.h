// A vector that ends directly before, or begins directly behind, a page that cannot be read, so that an
// access beyond it ends the test; on its other side lies a pattern that intact() looks after.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <stdexcept>
#include <vector>

namespace zpp::test {

enum class Edge { kEnd, kStart };

template <class T>
class Guarded {
  public:
    explicit Guarded(std::size_t size, Edge edge = Edge::kEnd) : size_(size) {
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t bytes = size * sizeof(T);
        usable_ = (bytes / page + 2) * page;  // never without a pattern
        mapped_ = usable_ + 2 * page;
        void* pages = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED) throw std::bad_alloc();
        base_ = static_cast<unsigned char*>(pages);
        usableBase_ = base_ + page;
        if (mprotect(usableBase_, usable_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
        std::memset(usableBase_, kPattern, usable_);
        data_ = reinterpret_cast<T*>(edge == Edge::kEnd ? usableBase_ + usable_ - bytes : usableBase_);
    }
    explicit Guarded(const std::vector<T>& values, Edge edge = Edge::kEnd) : Guarded(values.size(), edge) {
        assign(values);
    }
    Guarded(std::initializer_list<T> values) : Guarded(std::vector<T>(values)) {}
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;
    ~Guarded() { munmap(base_, mapped_); }

    void assign(const std::vector<T>& values) { std::memcpy(data_, values.data(), size_ * sizeof(T)); }
    std::vector<T> values() const { return std::vector<T>(data_, data_ + size_); }

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
        return isPattern(usableBase_, first) && isPattern(last, usableBase_ + usable_);
    }

    // Whether, besides, nothing was ever written into the vector: for destinations after an error.
    bool untouched() const { return isPattern(usableBase_, usableBase_ + usable_); }

  private:
    static constexpr unsigned char kPattern = 0xA5;

    static bool isPattern(const unsigned char* first, const unsigned char* last) {
        for (; first != last; ++first)
            if (*first != kPattern) return false;
        return true;
    }

    std::size_t size_, usable_, mapped_;
    unsigned char* base_;
    unsigned char* usableBase_;
    T* data_;
};

}  // namespace zpp::test
