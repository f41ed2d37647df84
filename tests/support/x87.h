// The control word of the x87 unit: 0x37F rounds to the 64 bits of long double (the state that programs begin
// with), 0x27F to the 53 of a double, 0x07F to 24.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

namespace zpp::test {

inline std::uint16_t x87ControlWord() {
    std::uint16_t word;
    __asm__ volatile("fnstcw %0" : "=m"(word));
    return word;
}

// Set for its life.
class X87ControlWord {
  public:
    explicit X87ControlWord(std::uint16_t word) { __asm__ volatile("fldcw %0" : : "m"(word) : "memory"); }
    ~X87ControlWord() { __asm__ volatile("fldcw %0" : : "m"(saved_) : "memory"); }
    X87ControlWord(const X87ControlWord&) = delete;
    X87ControlWord& operator=(const X87ControlWord&) = delete;

  private:
    const std::uint16_t saved_ = x87ControlWord();
};

// Whether a double that is only loaded and stored stays what it is at 24 bits. It does on hardware; QEMU
// rounds it.
inline bool loadsAreExact() {
    const X87ControlWord word(0x07F);
    const volatile double x = 1 + 0x1p-52;
    double y;
    __asm__ volatile("fldl %1; fstpl %0" : "=m"(y) : "m"(x));
    std::uint64_t bits;
    __builtin_memcpy(&bits, &y, sizeof bits);
    return (bits & 1) != 0;
}

// The words that functions are called with: the caller's may be any of them.
inline std::vector<std::uint16_t> x87Words() {
    if (loadsAreExact()) return {0x37F, 0x27F, 0x07F};
    std::puts("not at 24 bits: this x87 unit rounds what it loads, as an emulated one does");
    return {0x37F, 0x27F};
}

}  // namespace zpp::test
