#include "tests/support/processor.h"

#include <gtest/gtest.h>

#include <utility>

namespace zpp::test {
namespace {

const Processor* current = nullptr;

CpuidRegisters leafOfCurrent(std::uint32_t leaf) {
    const auto found = current->leaves.find(leaf);
    return found == current->leaves.end() ? CpuidRegisters{} : found->second;
}

// What is asked of a processor that lacks the instruction would end the program on a real one.
bool has(std::uint32_t CpuidRegisters::*word, int bit) { return leafOfCurrent(1).*word >> bit & 1; }

}  // namespace

ReplacedProcessor::ReplacedProcessor(Processor processor) : processor_(std::move(processor)) {
    current = &processor_;
    cpuReader = {
        [] { return current->hasCpuid; },
        [](std::uint32_t leaf, std::uint32_t) {
            EXPECT_TRUE(current->hasCpuid) << "CPUID";
            return leafOfCurrent(leaf);
        },
        [] {
            EXPECT_TRUE(has(&CpuidRegisters::ecx, 27)) << "XGETBV without OSXSAVE";
            return current->extendedControl;
        },
        [] {
            EXPECT_TRUE(has(&CpuidRegisters::edx, 25)) << "FXSAVE without SSE";
            return current->mxcsrMask;
        },
    };
}

ReplacedProcessor::~ReplacedProcessor() { cpuReader = saved_; }

}  // namespace zpp::test
