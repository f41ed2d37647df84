#include "tests/support/heap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>

#include "frame/memory.h"

#ifdef ZPP_UNDER_SANITIZERS
#include <sanitizer/asan_interface.h>
// A heap that is asked for too much returns null, as it does without the sanitizer.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
#else
#define ASAN_POISON_MEMORY_REGION(address, size)
#define ASAN_UNPOISON_MEMORY_REGION(address, size)
#endif

// zpp::allocateAligned and zpp::freeAligned: the linker sends the library's calls to __wrap_... here.
extern "C" {
void* __real__ZN3zpp15allocateAlignedEy(unsigned long long bytes);
void __real__ZN3zpp11freeAlignedEPv(void* block);
}

namespace zpp::test {
namespace {

std::atomic<int> allocationsLeft{INT_MAX};
std::atomic<long> live{0};
std::atomic<std::int32_t> releasedIdentifier{-1};

// A block lies between two zones of kPattern, all ones: as numbers NaNs, so that a result shows it where the
// library reads them, or what it never wrote in the block. The zone before begins with the block's size.
constexpr std::size_t kBefore = 64, kBehind = 0x10000;
constexpr unsigned char kPattern = 0xFF;

// Not empty.
bool isPattern(const unsigned char* first, const unsigned char* last) {
    return *first == kPattern && std::equal(first + 1, last, first);
}

class LeakWatcher : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { before_ = live; }
    void OnTestEnd(const testing::TestInfo& test) override {
        EXPECT_EQ(live, before_) << "blocks of the library after and before " << test.test_suite_name() << '.'
                                 << test.name();
    }
    long before_ = 0;
};
[[maybe_unused]] const bool watching = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeakWatcher);
    return true;
}();

}  // namespace

FailingHeap::FailingHeap(int n) { allocationsLeft = n; }
FailingHeap::~FailingHeap() { allocationsLeft = INT_MAX; }

long liveBlocks() { return live; }
std::int32_t lastReleasedIdentifier() { return releasedIdentifier; }

extern "C" void* __wrap__ZN3zpp15allocateAlignedEy(unsigned long long bytes) {
    if (allocationsLeft != INT_MAX && allocationsLeft-- == 0) return nullptr;
    if (bytes > PTRDIFF_MAX - kBefore - kBehind) {
        EXPECT_EQ(__real__ZN3zpp15allocateAlignedEy(bytes), nullptr) << "no heap has " << bytes << " bytes";
        return nullptr;
    }
    const auto size = static_cast<std::size_t>(bytes);
    void* zones = __real__ZN3zpp15allocateAlignedEy(kBefore + bytes + kBehind);
    if (zones == nullptr) return nullptr;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(zones) % kBlockAlignment, 0u);
    ++live;
    std::memset(zones, kPattern, kBefore + size + kBehind);
    std::memcpy(zones, &size, sizeof size);
    unsigned char* block = static_cast<unsigned char*>(zones) + kBefore;
    ASAN_POISON_MEMORY_REGION(block + size, kBehind);
    return block;
}

extern "C" void __wrap__ZN3zpp11freeAlignedEPv(void* released) {
    if (released == nullptr) return;
    auto* block = static_cast<unsigned char*>(released);
    std::size_t size;
    std::memcpy(&size, block - kBefore, sizeof size);
    ASAN_UNPOISON_MEMORY_REGION(block + size, kBehind);
    EXPECT_TRUE(isPattern(block - kBefore + sizeof size, block) &&
                isPattern(block + size, block + size + kBehind))
        << "The library wrote outside a block of its own, of " << size << " bytes.";
    if (size >= sizeof(std::int32_t)) {
        std::int32_t identifier;
        std::memcpy(&identifier, block, sizeof identifier);
        releasedIdentifier = identifier;
    }
    --live;
    __real__ZN3zpp11freeAlignedEPv(block - kBefore);
}

}  // namespace zpp::test
