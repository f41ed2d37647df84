// The Dispatch table and the binding of the slots to one of its columns.
#pragma once

#include <stddef.h>

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

// The slots of kDispatchTable, which fill pages of their own: see stubs.S.
extern "C" Slot zpp_slots[], zpp_slots_end[];
inline size_t slotsBytes() {
    return reinterpret_cast<uintptr_t>(zpp_slots_end) - reinterpret_cast<uintptr_t>(zpp_slots);
}

// Makes the slots read-only; one per loader. A system that refuses it takes nothing but this protection away.
void protectSlots();

// Writes every slot from one column; px takes the entries of `isa`. False if the column is incomplete.
bool fillColumn(const DispatchTable& table, int column, Isa isa);

// Binds the table for a processor along the waterfall of its level. Returns the column, kColumns if none is
// complete.
Column bindTable(const DispatchTable& table, ZppCpuType type, Isa isa);

// The build that px takes at most for a value of the environment variable ZPP_ISA, which lowers the host
// tuning; kAvx512Isa, which is no limit, for none (null) and for every value that is not the name of a build
// that px may take.
Isa limitOf(const char* value);

// What the load routine does: binds kDispatchTable for the processor that the process runs on, once and for
// all.
bool bindLibrary();

// What the load has bound, and why.
struct BindingReason {
    ZppCpuType type;  // of the processor
    int level;        // of the type: how far up the waterfall begins
    Column column;    // the first complete one
    Isa best;         // the best build for px that the machine runs
    Isa isa;          // the build that px takes: `best`, or what ZPP_ISA lowers it to
};
const BindingReason& bindingReason();

// The value of ZPP_ISA, in `room` where the system wants some; null if it is not set, may not be trusted, or
// is longer than all names. One per loader.
using IsaVariable = char[8];
const char* readIsaVariable(IsaVariable& room);

// The two texts of a refused load.
inline constexpr char kRefusalText[] = " No zpp matching to CPU was found during the Waterfall";
inline constexpr char kRefusalCaption[] = "Set zpp library error";

// Reports a refused load to the user; one per loader, beside its attach routine.
void reportRefusal();

}  // namespace zpp
