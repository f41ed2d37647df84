#include "check/arena.h"

#include <algorithm>

namespace zpp::check {
namespace {

constexpr unsigned char kPattern = 0xA5;

bool isPattern(const unsigned char* first, const unsigned char* last) {
    return std::all_of(first, last, [](unsigned char c) { return c == kPattern; });
}

}  // namespace

void Arena::reserve(std::size_t bytes) {
    if (upTo_ != nullptr && upTo_->size() >= bytes) return;
    upTo_ = std::make_unique<test::Guarded<unsigned char>>(2 * bytes, test::Edge::kEnd);
    from_ = std::make_unique<test::Guarded<unsigned char>>(2 * bytes, test::Edge::kStart);
}

unsigned char* Arena::place(const std::vector<unsigned char>& content, Place where, std::size_t elementSize) {
    bytes_ = content.size();
    reserve(bytes_ + elementSize + kMargin);
    if (where == Place::kEnd) {
        data_ = upTo_->end() - bytes_;
        first_ = data_ - kMargin;
        last_ = data_ + bytes_;
    } else {
        first_ = from_->data();
        data_ = where == Place::kShifted ? first_ + elementSize : first_;
        last_ = data_ + bytes_ + kMargin;
    }
    std::memset(first_, kPattern, static_cast<std::size_t>(last_ - first_));
    if (bytes_ != 0) std::memcpy(data_, content.data(), bytes_);
    return data_;
}

bool Arena::intact() const { return isPattern(first_, data_) && isPattern(data_ + bytes_, last_); }

bool Arena::holds(const std::vector<unsigned char>& content) const {
    return bytes_ == 0 || std::memcmp(data_, content.data(), bytes_) == 0;
}

}  // namespace zpp::check
