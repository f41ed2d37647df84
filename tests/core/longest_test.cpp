// The longest vectors: of 2^31 - 1 elements, or of 8 GiB where that is less. With 32 bits there are none, and
// AddressSanitizer has no room to watch them. One build stands for all, which count in the same types.
#if defined(__linux__) && defined(__x86_64__) && !defined(ZPP_UNDER_SANITIZERS)

#include <sys/mman.h>
#include <unistd.h>

#include <numeric>

#include "tests/data/convert_support.h"
#include "zpp/arith.h"
#include "zpp/stats.h"

namespace zpp::test {
namespace {

constexpr std::size_t kGib = std::size_t{1} << 30;

// Addresses that end before a page that cannot be read. Behind them there is one chunk of memory, over and
// over; but those where a vector ends, begins, or comes to a whole number of GiB have one of their own, which
// shows whether they were reached. Every vector ends where the addresses end.
class LongMemory {
  public:
    // No power of two, so that an index that loses its upper bits meets other numbers.
    static constexpr std::size_t kChunk = std::size_t{3} << 19;

    explicit LongMemory(std::size_t gibs) {
        for (std::size_t gib = 0; gib <= gibs; ++gib) own_.push_back((gib * kGib - (gib > 0)) / kChunk);
        const std::size_t chunks = own_.back() + 1;
        const int file = memfd_create("chunks", 0);
        void* all = mmap(nullptr, (chunks + 1) * kChunk, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        mapped_ = all != MAP_FAILED && ftruncate(file, static_cast<off_t>((gibs + 2) * kChunk)) == 0;
        end_ = static_cast<unsigned char*>(all) + chunks * kChunk;
        for (std::size_t i = 0; i < chunks && mapped_; ++i) {
            const auto place = std::find(own_.begin(), own_.end(), i) - own_.begin();
            mapped_ = mmap(chunk(i), kChunk, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED | MAP_POPULATE,
                           file, place * static_cast<off_t>(kChunk)) != MAP_FAILED;
        }
        close(file);
    }
    LongMemory(const LongMemory&) = delete;
    LongMemory& operator=(const LongMemory&) = delete;

    bool isMapped() const { return mapped_; }

    template <class T>
    T* vector(std::size_t len) const {
        return reinterpret_cast<T*>(end_ - len * sizeof(T));
    }
    // Every chunk = content, or those alone that are there once.
    void fill(const void* content) const {
        std::memcpy(chunk(1), content, kChunk);
        fillOwn(content);
    }
    void fillOwn(const void* content) const {
        for (const std::size_t i : own_) std::memcpy(chunk(i), content, kChunk);
    }

  private:
    unsigned char* chunk(std::size_t fromEnd) const { return end_ - (fromEnd + 1) * kChunk; }

    bool mapped_;
    unsigned char* end_;
    std::vector<std::size_t> own_;  // counted from the end
};

const LongMemory& source() {
    static const LongMemory memory(32);
    return memory;
}
const LongMemory& target() {
    static const LongMemory memory(8);
    return memory;
}

// Small integers, so that their sums are exact.
const std::vector<double>& numbers() {
    static const std::vector<double> values = [] {
        std::vector<double> v(LongMemory::kChunk / sizeof(double));
        for (std::size_t i = 0; i < v.size(); ++i) v[i] = static_cast<double>(i * 7919 % 1001) - 500;
        return v;
    }();
    return values;
}

// The maximum and the minimum are the last elements.
template <class T>
T* endingIn(T min, T max) {
    T* all = source().vector<T>(INT_MAX);
    all[INT_MAX - 2] = max;
    all[INT_MAX - 1] = min;
    return all;
}

class Longest : public testing::Test {
  protected:
    void SetUp() override {
        const long free = sysconf(_SC_AVPHYS_PAGES) / 1024 * sysconf(_SC_PAGESIZE) / 1024;
        if (free < 1024) GTEST_SKIP() << "only " << free << " MiB of memory are free";
        if (!source().isMapped()) GTEST_SKIP() << "no 32 GiB of addresses to be had";
        source().fill(numbers().data());
        bindAnew();
    }
};

constexpr std::size_t kWindow = 256;

// Where the vector begins, comes to a whole number of GiB, and ends.
template <class T>
std::vector<std::size_t> windows(std::size_t len) {
    std::vector<std::size_t> begins = {len - kWindow};
    for (std::size_t bytes = 0; bytes < (len - kWindow) * sizeof(T); bytes += kGib)
        begins.push_back((bytes + sizeof(T) - 1) / sizeof(T));
    return begins;
}

// The call writes there what it writes for so few elements.
template <class D, class... S, class Call>
void expectReached(const char* name, const Call& call) {
    const std::size_t len = std::min(std::size_t{INT_MAX}, 8 * kGib / std::max({sizeof(D), sizeof(S)...}));
    target().fillOwn(std::vector<unsigned char>(LongMemory::kChunk, 0xA5).data());
    D* dst = target().vector<D>(len);
    ASSERT_EQ(call(static_cast<int>(len), source().vector<S>(len)..., dst), zppStatusOk) << name;
    for (const std::size_t i : windows<D>(len)) {
        std::vector<D> expected(kWindow);
        call(kWindow, (source().vector<S>(len) + i)..., expected.data());
        EXPECT_EQ(std::memcmp(expected.data(), dst + i, kWindow * sizeof(D)), 0) << name << ", element " << i;
    }
}

TEST_F(Longest, AreWrittenToTheEnd) {
    if (!target().isMapped()) GTEST_SKIP() << "no 40 GiB of addresses to be had";
    expectReached<Zpp32s>("Set_32s", [](int len, Zpp32s* dst) { return zppsSet_32s(-2, dst, len); });
    expectReached<Zpp8u, Zpp8u>("Copy_8u", outOfPlace(zppsCopy_8u));
    expectReached<Zpp32f, Zpp8u>("Convert_8u32f", outOfPlace(zppsConvert_8u32f));
    expectReached<Zpp16s, Zpp32s>("Convert_32s16s", outOfPlace(zppsConvert_32s16s));
    expectReached<UInt24, UInt24>("SwapBytes_24u", outOfPlace(zppsSwapBytes_24u));
    expectReached<double, double, double>("Add_64f", outOfPlace(zppsAdd_64f));
    expectReached<Zpp64fc, Zpp64fc, Zpp64fc>("Mul_64fc", outOfPlace(zppsMul_64fc));
    expectReached<Zpp32s, Zpp32s, Zpp32s>("Add_32s_Sfs", outOfPlace(zppsAdd_32s_Sfs, 1));
    expectReached<Zpp32sc, Zpp32sc, Zpp32sc>("Mul_32sc_Sfs", outOfPlace(zppsMul_32sc_Sfs, 31));

    constexpr int len = 8 * kGib / sizeof(double);
    double* src = source().vector<double>(len);
    double* dst = target().vector<double>(len);
    const auto reversed = [](const double* p) {
        std::vector<double> window(p, p + kWindow);
        std::reverse(window.begin(), window.end());
        return window;
    };
    const auto at = [=](std::size_t i) { return std::vector<double>(dst + i, dst + i + kWindow); };
    EXPECT_EQ(zppsFlip_64f(src, dst, len), zppStatusOk);
    for (const std::size_t i : windows<double>(len))
        EXPECT_EQ(at(i), reversed(src + (len - kWindow - i))) << i;
    const auto first = reversed(dst), last = reversed(dst + (len - kWindow));
    EXPECT_EQ(zppsFlip_64f_I(dst, len), zppStatusOk);
    EXPECT_TRUE(at(0) == last && at(len - kWindow) == first);
}

TEST_F(Longest, AreReadToTheEnd) {
    // All chunks are alike: the vector is so many of them, and the end of one before.
    const std::vector<double>& one = numbers();
    const std::size_t whole = INT_MAX / one.size(), rest = INT_MAX % one.size();
    const double expected = static_cast<double>(whole) * std::accumulate(one.begin(), one.end(), 0.0) +
                            std::accumulate(one.end() - static_cast<long>(rest), one.end(), 0.0);
    double sum;
    EXPECT_EQ(zppsSum_64f(source().vector<double>(INT_MAX), INT_MAX, &sum), zppStatusOk);
    EXPECT_EQ(sum, expected);

    int minIndx, maxIndx;
    double min, max;
    const double* reals = endingIn(-1000.0, 1000.0);
    EXPECT_EQ(zppsMinMaxIndx_64f(reals, INT_MAX, &min, &minIndx, &max, &maxIndx), zppStatusOk);
    EXPECT_TRUE(min == -1000 && minIndx == INT_MAX - 1 && max == 1000 && maxIndx == INT_MAX - 2)
        << min << " at " << minIndx << ", " << max << " at " << maxIndx;
    EXPECT_EQ(zppsMaxIndx_64f(reals, INT_MAX, &max, &maxIndx), zppStatusOk);
    EXPECT_TRUE(max == 1000 && maxIndx == INT_MAX - 2) << max << " at " << maxIndx;

    Zpp32s lowest, highest;
    EXPECT_EQ(zppsMinMaxIndx_32s(endingIn(INT_MIN, INT_MAX), INT_MAX, &lowest, &minIndx, &highest, &maxIndx),
              zppStatusOk);
    EXPECT_TRUE(lowest == INT_MIN && minIndx == INT_MAX - 1 && highest == INT_MAX && maxIndx == INT_MAX - 2)
        << lowest << " at " << minIndx << ", " << highest << " at " << maxIndx;
}

TEST_F(Longest, AreCountedToTheEnd) {
    const std::vector<Zpp64fc> pairs(LongMemory::kChunk / sizeof(Zpp64fc), {1, 2});
    source().fill(pairs.data());
    Zpp64fc both;
    EXPECT_EQ(zppsSum_64fc(source().vector<Zpp64fc>(INT_MAX), INT_MAX, &both), zppStatusOk);
    EXPECT_TRUE(same(both, {INT_MAX, 2.0 * INT_MAX})) << shown(both);
    const std::vector<Zpp32s> largest(LongMemory::kChunk / sizeof(Zpp32s), INT_MAX);
    source().fill(largest.data());
    Zpp32s sum;
    EXPECT_EQ(zppsSum_32s_Sfs(source().vector<Zpp32s>(INT_MAX), INT_MAX, &sum, 31), zppStatusOk);
    EXPECT_EQ(sum, INT_MAX - 1);  // of 2^31 - 2 + 2^-31
}

}  // namespace
}  // namespace zpp::test
#endif
