// The columns and ISA builds that tests bind the library to.
#pragma once

#include <string>
#include <vector>

#include "frame/dispatch.h"

namespace zpp::test {

struct Binding {
    Column column;
    Isa isa;  // the build that stands in the column; for px the one that host tuning would choose

    std::string columnName() const;
    std::string isaName() const;
    std::string name() const { return columnName() + '_' + isaName(); }  // such as px_avx2
    void bind() const;                                                   // ends the program if it cannot
    bool isBound() const;  // whether all slots are as bind() makes them
};

// Opens the slots for a test that writes them; the library itself writes them once. The next binding closes
// them.
void makeSlotsWritable();

// The binding of the load once more.
bool bindAnew();

// Every column and ISA build of the target.
const std::vector<Binding>& allBindings();

// Those that this machine can run.
const std::vector<Binding>& runnableBindings();

}  // namespace zpp::test
