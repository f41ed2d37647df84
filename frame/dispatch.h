// The Dispatch table and the binding of the slots to one of its columns.
#pragma once

#include "frame/cpu.h"
#include "zpp/types.h"

namespace zpp {

using Entry = void (*)();
using Slot = Entry;

// Variant indices, also the columns of a record.
enum Column : int { kPx = 0, kA6 = 1, kW7 = 2, kColumns = 3 };

struct Record {
    Slot* slot;
    Entry column[kColumns];  // null: this column does not have the function
};

// One record per export, in the order of the public headers. `builds` holds, for each ISA build of this
// target, the entries that host tuning puts in place of those of px, in the order of the records; null for
// builds that the target does not have.
struct DispatchTable {
    const Record* records;
    int count;
    const Entry* builds[kIsaCount];
};

extern const DispatchTable kDispatchTable;

// Writes every slot from one column; px takes the entries of `isa`. False if the column is incomplete.
bool fillColumn(const DispatchTable& table, int column, Isa isa);

// Binds the table for a processor along the waterfall of its level. False if no column is complete.
bool bindTable(const DispatchTable& table, ZppCpuType type, Isa isa);

// What the load routine does: binds kDispatchTable for the processor that the process runs on.
bool bindLibrary();

// The two texts of a refused load.
inline constexpr char kRefusalText[] = " No zpp matching to CPU was found during the Waterfall";
inline constexpr char kRefusalCaption[] = "Set zpp library error";

// Reports a refused load to the user; one per loader, beside its attach routine.
void reportRefusal();

}  // namespace zpp
