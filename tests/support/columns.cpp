#include "tests/support/columns.h"

#include <cstdlib>

#include "tests/support/pages.h"

namespace zpp::test {

std::string Binding::columnName() const {
    constexpr const char* kNames[] = {"px", "a6", "w7"};
    return kNames[column];
}

std::string Binding::isaName() const {
    constexpr const char* kNames[] = {"x87", "sse", "sse2", "avx2", "avx512"};
    return kNames[isa];
}

#ifdef _WIN32
// The loader calls DllMain for a library, not for a program of the same objects.
[[maybe_unused]] const bool bound = bindLibrary();
#endif

void makeSlotsWritable() {
    if (!makeWritable(zpp_slots, slotsBytes())) std::abort();
}

bool bindAnew() {
    makeSlotsWritable();
    return bindLibrary();
}

void Binding::bind() const {
    makeSlotsWritable();
    if (!fillColumn(kDispatchTable, column, isa)) std::abort();
    protectSlots();
}

bool Binding::isBound() const {
    for (int i = 0; i < kDispatchTable.count; ++i) {
        const Record& record = kDispatchTable.records[i];
        if (*record.slot != (column == kPx ? kDispatchTable.builds[isa][i] : record.column[column]))
            return false;
    }
    return true;
}

const std::vector<Binding>& allBindings() {
    static const std::vector<Binding> bindings = {
#ifdef __i386__
        {kPx, kX87Isa}, {kPx, kSse2Isa}, {kPx, kAvx2Isa}, {kPx, kAvx512Isa}, {kA6, kSseIsa}, {kW7, kSse2Isa},
#else
        {kPx, kSse2Isa}, {kPx, kAvx2Isa}, {kPx, kAvx512Isa}, {kA6, kSse2Isa}, {kW7, kSse2Isa},
#endif
    };
    return bindings;
}

const std::vector<Binding>& runnableBindings() {
    static const std::vector<Binding> bindings = [] {
        std::vector<Binding> runnable;
        for (const Binding& binding : allBindings())
            if (supportsIsa(binding.isa)) runnable.push_back(binding);
        return runnable;
    }();
    return bindings;
}

}  // namespace zpp::test
