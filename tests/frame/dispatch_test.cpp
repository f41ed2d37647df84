#include "frame/dispatch.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

#include "tests/support/binding.h"
#include "tests/support/processor.h"
#include "zpp/frame.h"

#ifdef _WIN32
#include <windows.h>
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID);
#endif

namespace zpp::test {
namespace {

void px() {}
void a6() {}
void w7() {}
void px2() {}
void a62() {}
void w72() {}
void tuned() {}
void tuned2() {}

// A table of two functions whose slots a test can look at.
struct SmallTable {
    Slot slots[2] = {};
    Record records[2] = {{&slots[0], {px, a6, w7}}, {&slots[1], {px2, a62, w72}}};
    Entry plainBuild[2] = {px, px2};
    Entry tunedBuild[2] = {tuned, tuned2};
    DispatchTable table = {records, 2, {plainBuild, nullptr, plainBuild, tunedBuild, nullptr}};
};

TEST(Dispatch, BindsTheColumnOfTheType) {
    for (ZppCpuType type = -1; type <= 18; ++type) {
        SmallTable small;
        const Column expected = type == 5 ? kA6 : type >= 6 && type <= 8 ? kW7 : kPx;
        EXPECT_EQ(bindTable(small.table, type, kX87Isa), expected) << type;
        EXPECT_EQ(small.slots[0], small.records[0].column[expected]) << type;
        EXPECT_EQ(small.slots[1], small.records[1].column[expected]) << type;
    }
}

TEST(Dispatch, FallsBackAlongTheWaterfall) {
    const struct {
        ZppCpuType type;
        std::vector<Column> incomplete;
        Column expected;
    } cases[] = {
        {zppCpuFamily15Sse2, {kW7}, kA6},      {zppCpuFamily15Sse2, {kW7, kA6}, kPx},
        {zppCpuFamily15Sse2, {kA6, kPx}, kW7}, {zppCpuFamily15Sse2, {kW7, kA6, kPx}, kColumns},
        {zppCpuFamily6Sse, {kA6}, kPx},        {zppCpuFamily6Sse, {kA6, kPx}, kColumns},
        {zppCpuFamily6Sse2, {kA6, kW7}, kPx},  {zppCpuFamily6Sse2, {kPx}, kColumns},
    };
    for (const auto& c : cases) {
        SmallTable small;
        for (const Column column : c.incomplete) small.records[1].column[column] = nullptr;
        EXPECT_EQ(bindTable(small.table, c.type, kX87Isa), c.expected);
        if (c.expected == kColumns) continue;
        EXPECT_EQ(small.slots[0], small.records[0].column[c.expected]);
        EXPECT_EQ(small.slots[1], small.records[1].column[c.expected]);
    }
}

TEST(Dispatch, StopsAtTheFirstMissingEntry) {
    SmallTable small;
    small.records[1].column[kA6] = nullptr;
    EXPECT_FALSE(fillColumn(small.table, kA6, kX87Isa));
    EXPECT_EQ(small.slots[0], a6);
    EXPECT_EQ(small.slots[1], nullptr);
}

TEST(Dispatch, RefusesAnEmptyTable) {
    SmallTable small;
    for (const int count : {0, -1}) {
        small.table.count = count;
        EXPECT_EQ(bindTable(small.table, zppCpuFamily15Sse2, kX87Isa), kColumns);
    }
}

TEST(Dispatch, TunesPxAlone) {
    SmallTable small;
    ASSERT_EQ(bindTable(small.table, zppCpuUnknown, kAvx2Isa), kPx);
    EXPECT_EQ(small.slots[0], tuned);
    EXPECT_EQ(small.slots[1], tuned2);
    ASSERT_EQ(bindTable(small.table, zppCpuFamily15Sse2, kAvx2Isa), kW7);
    EXPECT_EQ(small.slots[0], w7);
}

TEST(Dispatch, IsaVariableLowersTheTuning) {
    const struct {
        const char* value;
        Isa limit;
    } cases[] = {
        {"x87", kX87Isa},         {"sse2", kSse2Isa},    {"avx2", kAvx2Isa},   {"avx512", kAvx512Isa},
        {nullptr, kAvx512Isa},    {"", kAvx512Isa},      {"sse", kAvx512Isa},  {"avx", kAvx512Isa},
        {"AVX2", kAvx512Isa},     {"avx2 ", kAvx512Isa}, {" x87", kAvx512Isa}, {"x8", kAvx512Isa},
        {"x87,sse2", kAvx512Isa},
    };
    for (const auto& c : cases)
        EXPECT_EQ(limitOf(c.value), c.limit) << (c.value != nullptr ? c.value : "none");
}

TEST(Dispatch, TellsWhatTheLoadBoundAndWhy) {
    const struct {
        const char* what;
        std::uint32_t family, edx;
        int level;
        Column column;
    } cases[] = {{"family 5", 5, 0, 0, kPx}, {"SSE", 6, 1u << 25, 1, kA6}, {"SSE2", 15, 3u << 25, 2, kW7}};
    for (const auto& c : cases) {
        const CpuidRegisters varen = {1, 0x756E6547, 0x6E657261, 0x56656E69};
        const Processor processor{.leaves = {{0, varen}, {1, {c.family << 8, 0, 0, c.edx}}}};
        const ReplacedProcessor replaced(processor);
        EXPECT_TRUE(bindAnew()) << c.what;
        const BindingReason& reason = bindingReason();
        EXPECT_EQ(reason.type, zppGetCpuType()) << c.what;
        EXPECT_EQ(reason.level, c.level) << c.what;
        EXPECT_EQ(reason.column, c.column) << c.what;
        EXPECT_EQ(zppsGetLibVersion()->targetCpu, (Binding{c.column, kPlainestIsa}.columnName())) << c.what;
        EXPECT_EQ(reason.best, bestIsa()) << c.what;
        EXPECT_LE(reason.isa, reason.best) << c.what;
    }
    EXPECT_TRUE(bindAnew());
}

// Whether an export is compiled for each ISA build, in the order of the table.
#define ZPP_LIST(result, name, arguments) true,
#define ZPP_LIST_SHARED(result, name, arguments) false,
#define ZPP_LIST_COLUMN(result, name, arguments) false,
constexpr bool kBuiltForIsa[] = {
#include "zpp.h"
};
#undef ZPP_LIST
#undef ZPP_LIST_SHARED
#undef ZPP_LIST_COLUMN

// The table holds in each column the build of docs/architecture.md, in each build an entry of its own.
TEST(Dispatch, LibraryTableHoldsTheBuildOfEachColumn) {
#ifdef __i386__
    constexpr Isa kPlain = kX87Isa, kOfColumn[kColumns] = {kX87Isa, kSseIsa, kSse2Isa};
#else
    constexpr Isa kPlain = kSse2Isa, kOfColumn[kColumns] = {kSse2Isa, kSse2Isa, kSse2Isa};
#endif
    ASSERT_EQ(std::size(kBuiltForIsa), static_cast<std::size_t>(kDispatchTable.count));
    for (int i = 0; i < kDispatchTable.count; ++i) {
        const Record& record = kDispatchTable.records[i];
        std::set<Entry> builds;
        for (int isa = kPlain; isa < kIsaCount; ++isa) builds.insert(kDispatchTable.builds[isa][i]);
        EXPECT_EQ(builds.count(nullptr), 0u) << i;
        EXPECT_EQ(builds.size(), kBuiltForIsa[i] ? std::size_t{kIsaCount - kPlain} : 1u) << i;
        for (int column = 0; column < kColumns; ++column) {
            EXPECT_NE(record.column[column], nullptr) << i;
            if (kBuiltForIsa[i] || column == kPx) {
                EXPECT_EQ(record.column[column], kDispatchTable.builds[kOfColumn[column]][i]) << i;
            }
        }
    }
    EXPECT_TRUE(bindAnew());
}

// The steps of the waterfall with the table of the library itself: whatever an incomplete column has left in
// the slots before its gap, here the last record, the next complete one replaces.
TEST(Dispatch, LibraryTableFallsBack) {
    const struct {
        std::vector<Column> incomplete;
        Binding expected;
    } cases[] = {{{}, {kW7, kSse2Isa}}, {{kW7}, {kA6, kSseIsa}}, {{kW7, kA6}, {kPx, bestIsa()}}};
    for (const auto& c : cases) {
        std::vector<Record> records(kDispatchTable.records, kDispatchTable.records + kDispatchTable.count);
        for (const Column column : c.incomplete) records.back().column[column] = nullptr;
        DispatchTable table = kDispatchTable;
        table.records = records.data();
        makeSlotsWritable();
        ASSERT_EQ(bindTable(table, zppCpuFamily15Sse2Ht, bestIsa()), c.expected.column);
        EXPECT_TRUE(c.expected.isBound()) << c.expected;
        EXPECT_EQ(zppsGetLibVersion()->targetCpu, c.expected.columnName());
        EXPECT_EQ(zppvmGetLibVersion()->targetCpu, c.expected.columnName());
    }
    EXPECT_TRUE(bindAnew());
}

#ifdef _WIN32
TEST(Dispatch, IsLeftAloneByAllButTheAttachOfTheProcess) {
    const Binding w7 = {kW7, kSse2Isa}, native = {kPx, bindingReason().isa};
    w7.bind();
    for (const DWORD reason : {DLL_THREAD_ATTACH, DLL_THREAD_DETACH, DLL_PROCESS_DETACH}) {
        EXPECT_TRUE(DllMain(nullptr, reason, nullptr)) << reason;
        EXPECT_TRUE(w7.isBound()) << reason;
    }
    makeSlotsWritable();
    EXPECT_TRUE(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr));
    EXPECT_TRUE(native.isBound());
}
#endif

class Version : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Version);

TEST_P(Version, TellsTheBoundColumn) {
    const std::string column = GetParam().name().substr(0, 2);
    const struct {
        const ZppLibraryVersion* version;
        int majorBuild, build;
        std::string name, date;
    } cases[] = {
        {zppsGetLibVersion(), 19, 77, "zpps" + column + "l.lib", "Oct 16 2003"},
        {zppvmGetLibVersion(), 10, 17, "zppvm" + column + "l.lib", "Oct 20 2003"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.version->major, 4);
        EXPECT_EQ(c.version->minor, 0);
        EXPECT_EQ(c.version->majorBuild, c.majorBuild);
        EXPECT_EQ(c.version->build, c.build);
        const char padded[4] = {column[0], column[1], 0, 0};
        EXPECT_EQ(std::memcmp(c.version->targetCpu, padded, 4), 0);
        EXPECT_EQ(c.version->Name, c.name);
        EXPECT_STREQ(c.version->Version, "v4.0");
        EXPECT_EQ(c.version->BuildDate, c.date);
    }
}

}  // namespace
}  // namespace zpp::test
