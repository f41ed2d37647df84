#include "frame/dispatch.h"

#include "frame/shared.h"

namespace zpp {
namespace {

constexpr int kEnd = kColumns;  // ends a waterfall list
constexpr int kLevels = 3;

constexpr int kWaterfall[kLevels][kColumns + 1] = {
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

bool bindTable(const DispatchTable& table, ZppCpuType type, Isa isa) {
    if (table.count <= 0) return false;
    for (const int* column = kWaterfall[levelOf(type)]; *column != kEnd; ++column)
        if (fillColumn(table, *column, isa)) return true;
    return false;
}

bool bindLibrary() {
    if (bindTable(kDispatchTable, shared::zppGetCpuType(), bestIsa())) return true;
    reportRefusal();
    return false;
}

}  // namespace zpp
