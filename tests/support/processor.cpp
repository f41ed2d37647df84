#include "tests/support/processor.h"

namespace zpp::test {
namespace {

const Processor* current = nullptr;

}  // namespace

ReplacedProcessor::ReplacedProcessor(const Processor& processor) {
    current = &processor;
    cpuReader = {
        [] { return current->hasCpuid; },
        [](std::uint32_t leaf, std::uint32_t) {
            const auto found = current->leaves.find(leaf);
            return found == current->leaves.end() ? CpuidRegisters{} : found->second;
        },
        [] { return current->extendedControl; },
        [] { return current->mxcsrMask; },
    };
}

ReplacedProcessor::~ReplacedProcessor() { cpuReader = saved_; }

}  // namespace zpp::test
