#include <climits>
#include <cstring>

#include "frame/memory.h"
#include "tests/support/binding.h"
#include "tests/support/heap.h"
#include "zpp/frame.h"

namespace zpp::test {
namespace {

class Memory : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Memory);

template <class T>
void expectAllocates(T* (*allocate)(int)) {
    const long before = liveBlocks();
    for (const int len : {1, 2, 3, 5, 7, 8, 100, 1000, 4097}) {
        T* block = allocate(len);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 32, 0u);
        std::memset(static_cast<void*>(block), 0xFF,
                    static_cast<std::size_t>(len) * sizeof(T));  // for the sanitizer
        EXPECT_EQ(liveBlocks(), before + 1);
        zppsFree(block);
        EXPECT_EQ(liveBlocks(), before);
    }
    const FailingHeap heap(0);
    for (const int len : {0, -1, INT_MIN, 1}) EXPECT_EQ(allocate(len), nullptr) << len;
}

TEST_P(Memory, AllocatesAligned) {
    expectAllocates(zppsMalloc_32s);
    expectAllocates(zppsMalloc_64f);
    expectAllocates(zppsMalloc_32sc);
    expectAllocates(zppsMalloc_64fc);
    zppsFree(nullptr);
}

TEST(Allocator, RefusesWhatNoHeapHas) {
    constexpr unsigned long long all = SIZE_MAX;
    for (const auto bytes : {all / 2, all - 100, all - 71, all - 67, all - 8, all, all << 1, ULLONG_MAX})
        EXPECT_EQ(allocateAligned(bytes), nullptr) << bytes;
}

#ifdef __i386__
TEST_P(Memory, RefusesSizesBeyondTheAddressSpace) {
    // 2^28 elements of 16 bytes are 2^32 bytes: none, in 32-bit arithmetic.
    for (const int len : {1 << 28, (1 << 28) + 1, INT_MAX}) EXPECT_EQ(zppsMalloc_64fc(len), nullptr) << len;
    EXPECT_EQ(zppsMalloc_64f(INT_MAX), nullptr);
}
#endif

}  // namespace
}  // namespace zpp::test
