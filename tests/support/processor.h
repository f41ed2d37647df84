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

class ReplacedProcessor {
  public:
    explicit ReplacedProcessor(const Processor& processor);
    ~ReplacedProcessor();

  private:
    CpuReader saved_ = cpuReader;
};

}  // namespace zpp::test
