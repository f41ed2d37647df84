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

// The column that a bind takes, or kColumns, and that the slots hold its entries, or none.
void expectBinds(SmallTable& small, ZppCpuType type, Column expected) {
    EXPECT_EQ(bindTable(small.table, type, kX87Isa), expected) << type;
    for (int i = 0; i < 2 && expected != kColumns; ++i)
        EXPECT_EQ(small.slots[i], small.records[i].column[expected]) << type;
}

TEST(Dispatch, BindsTheColumnOfTheType) {
    for (ZppCpuType type = -1; type <= 18; ++type) {
        SmallTable small;
        expectBinds(small, type, type == 5 ? kA6 : type >= 6 && type <= 8 ? kW7 : kPx);
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
        expectBinds(small, c.type, c.expected);
    }
}

TEST(Dispatch, RefusesWhatIsMissing) {
    SmallTable small;
    small.records[1].column[kA6] = nullptr;
    EXPECT_FALSE(fillColumn(small.table, kA6, kX87Isa));
    EXPECT_EQ(small.slots[0], a6);
    EXPECT_EQ(small.slots[1], nullptr);
    for (const int count : {0, -1}) {
        small.table.count = count;
        expectBinds(small, zppCpuFamily15Sse2, kColumns);
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
    EXPECT_EQ(limitOf("x87"), kX87Isa);
    EXPECT_EQ(limitOf("sse2"), kSse2Isa);
    EXPECT_EQ(limitOf("avx2"), kAvx2Isa);
    EXPECT_EQ(limitOf(nullptr), kAvx512Isa);
    for (const char* value : {"avx512", "", "sse", "avx", "AVX2", "avx2 ", " x87", "x8", "x87,sse2"})
        EXPECT_EQ(limitOf(value), kAvx512Isa) << value;
}

TEST(Dispatch, TellsWhatTheLoadBoundAndWhy) {
    const struct {
        std::uint32_t family, edx;
        int level;
        Column column;
    } cases[] = {{5, 0, 0, kPx}, {6, 1u << 25, 1, kA6}, {15, 3u << 25, 2, kW7}};
    for (const auto& c : cases) {
        const ReplacedProcessor replaced({.leaves = {{0, kVaren}, {1, {c.family << 8, 0, 0, c.edx}}}});
        EXPECT_TRUE(bindAnew()) << c.family;
        const BindingReason& reason = bindingReason();
        EXPECT_EQ(reason.type, zppGetCpuType()) << c.family;
        EXPECT_EQ(reason.level, c.level) << c.family;
        EXPECT_EQ(reason.column, c.column) << c.family;
        EXPECT_EQ(zppsGetLibVersion()->targetCpu, (Binding{c.column, kPlainestIsa}.columnName())) << c.family;
        EXPECT_EQ(reason.best, bestIsa()) << c.family;
        EXPECT_LE(reason.isa, reason.best) << c.family;
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
    const auto expect = [](const ZppLibraryVersion& v, int majorBuild, int build, std::string part,
                           const char* date) {
        const std::string column = GetParam().name().substr(0, 2);
        const int numbers[] = {v.major, v.minor, v.majorBuild, v.build},
                  expected[] = {4, 0, majorBuild, build};
        const char padded[4] = {column[0], column[1], 0, 0};
        EXPECT_EQ(std::memcmp(numbers, expected, sizeof numbers), 0);
        EXPECT_EQ(std::memcmp(v.targetCpu, padded, 4), 0);
        EXPECT_EQ(v.Name, part + column + "l.lib");
        EXPECT_STREQ(v.Version, "v4.0");
        EXPECT_STREQ(v.BuildDate, date);
    };
    expect(*zppsGetLibVersion(), 19, 77, "zpps", "Oct 16 2003");
    expect(*zppvmGetLibVersion(), 10, 17, "zppvm", "Oct 20 2003");
}

}  // namespace
}  // namespace zpp::test
