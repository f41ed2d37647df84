// Replaces, for its life, what the library reads of the processor.
#pragma once

#include <cstdint>
#include <map>

#include "frame/cpu.h"

namespace zpp::test {

// A processor as CPUID shows it; `leaves` holds subleaf 0.
struct Processor {
    bool hasCpuid = true;
    std::map<std::uint32_t, CpuidRegisters> leaves;
    std::uint64_t extendedControl = 0;
    std::uint32_t mxcsrMask = 0xFFFF;
};

// Leaf 0 of the vendor that is trusted: "Genu" "ineV" "aren" in ebx, edx, ecx.
inline constexpr CpuidRegisters kVaren = {7, 0x756E6547, 0x6E657261, 0x56656E69};

class ReplacedProcessor {
  public:
    explicit ReplacedProcessor(Processor processor);
    ~ReplacedProcessor();

  private:
    Processor processor_;
    CpuReader saved_ = cpuReader;
};

}  // namespace zpp::test
