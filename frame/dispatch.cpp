#include "frame/dispatch.h"

#include <string.h>

#include "frame/shared.h"

namespace zpp {
namespace {

constexpr Column kEnd = kColumns;  // ends a waterfall list
constexpr int kLevels = 3;

constexpr Column kWaterfall[kLevels][kColumns + 1] = {
    {kPx, kEnd, kEnd, kEnd},
    {kA6, kPx, kEnd, kEnd},
    {kW7, kA6, kPx, kEnd},
};

// Only the listed types are trusted with the faster columns.
int levelOf(ZppCpuType type) {
    switch (type) {
        case zppCpuFamily6Sse:
            return 1;
        case zppCpuFamily15Sse2:
        case zppCpuFamily15Sse2Ht:
        case zppCpuFamily15Sse3:
            return 2;
        default:
            return 0;
    }
}

constinit BindingReason reason = {};

}  // namespace

bool fillColumn(const DispatchTable& table, int column, Isa isa) {
    for (int i = 0; i < table.count; ++i) {
        const Record& record = table.records[i];
        const Entry entry = record.column[column];
        if (entry == nullptr) return false;
        *record.slot = column == kPx ? table.builds[isa][i] : entry;
    }
    return true;
}

Column bindTable(const DispatchTable& table, ZppCpuType type, Isa isa) {
    if (table.count <= 0) return kColumns;
    const Column* column = kWaterfall[levelOf(type)];
    while (*column != kEnd && !fillColumn(table, *column, isa)) ++column;
    return *column;
}

Isa limitOf(const char* value) {
    constexpr struct {
        const char* name;
        Isa isa;
    } kLimits[] = {{"x87", kX87Isa}, {"sse2", kSse2Isa}, {"avx2", kAvx2Isa}};
    if (value != nullptr)
        for (const auto& limit : kLimits)
            if (strcmp(value, limit.name) == 0) return limit.isa;
    return kAvx512Isa;
}

bool bindLibrary() {
    IsaVariable room;
    const ZppCpuType type = shared::zppGetCpuType();
    reason = {type, levelOf(type), kColumns, bestIsa(), bestIsa(limitOf(readIsaVariable(room)))};
    reason.column = bindTable(kDispatchTable, type, reason.isa);
    if (reason.column == kColumns) {
        reportRefusal();
        return false;
    }
    protectSlots();
    return true;
}

const BindingReason& bindingReason() { return reason; }

}  // namespace zpp
