#include <cmath>
#include <map>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/objects.h"
#include "tests/support/random.h"
#include "tests/support/x87.h"
#include "zpp/transform.h"

namespace zpp::test {
namespace {

class Dct : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Dct);

using Doubles = std::vector<double>;

// The functions of a direction.
struct Direction {
    const char* name;
    bool inverse;
    ZppStatus (*init)(ZppsDCTSpec**, int len, int hint);
    ZppStatus (*free)(ZppsDCTSpec*);
    ZppStatus (*bufSize)(const ZppsDCTSpec*, int*);
    ZppStatus (*transform)(const double*, double*, const ZppsDCTSpec*, Zpp8u*);
};
const Direction kForward = {
    "forward", false, zppsDCTFwdInitAlloc_64f, zppsDCTFwdFree_64f, zppsDCTFwdGetBufSize_64f, zppsDCTFwd_64f};
const Direction kInverse = {
    "inverse", true, zppsDCTInvInitAlloc_64f, zppsDCTInvFree_64f, zppsDCTInvGetBufSize_64f, zppsDCTInv_64f};
const Direction* const kDirections[] = {&kForward, &kInverse};

class Spec {
  public:
    Spec(const Direction& direction, int len) : direction_(direction) {
        EXPECT_EQ(direction.init(&spec_, len, 0), zppStatusOk) << len;
        EXPECT_EQ(direction.bufSize(spec_, &bufSize_), zppStatusOk);
    }
    Spec(const Spec&) = delete;
    ~Spec() { EXPECT_EQ(direction_.free(spec_), zppStatusOk); }
    operator ZppsDCTSpec*() const { return spec_; }
    std::size_t bufSize() const { return static_cast<std::size_t>(bufSize_); }

  private:
    const Direction& direction_;
    ZppsDCTSpec* spec_ = nullptr;
    int bufSize_ = -1;
};

// The result, from and to vectors at pages that cannot be read.
Doubles run(const Direction& d, const Doubles& in, const ZppsDCTSpec* spec, Zpp8u* buffer,
            Edge edge = Edge::kEnd) {
    Guarded<double> src(in, edge), dst(in.size(), edge);
    src.protect();
    const long blocks = liveBlocks();
    EXPECT_EQ(d.transform(src, dst, spec, buffer), zppStatusOk) << d.name << " " << in.size();
    EXPECT_EQ(liveBlocks(), blocks);
    EXPECT_TRUE(dst.intact()) << d.name << " " << in.size();
    return dst.values();
}

// The definition: c(k) cos(pi (2n + 1) k / (2N)), for all angles of a length.
class Cosines {
  public:
    explicit Cosines(std::size_t n) : n_(n), table_(4 * n) {
        for (std::size_t i = 0; i < 4 * n; ++i)
            table_[i] =
                std::cos(std::acos(-1.0L) / 2 * static_cast<long double>(i) / static_cast<long double>(n)) *
                std::sqrt(2.0L / static_cast<long double>(n));
    }
    long double at(std::size_t time, std::size_t frequency) const {
        const auto i = static_cast<std::size_t>((2 * std::uint64_t{time} + 1) * frequency % (4 * n_));
        return frequency == 0 ? table_[0] * std::sqrt(0.5L) : table_[i];
    }
    long double element(const Direction& d, const Doubles& in, std::size_t i) const {
        long double sum = 0;
        for (std::size_t j = 0; j < n_; ++j) sum += in[j] * (d.inverse ? at(i, j) : at(j, i));
        return sum;
    }

  private:
    std::size_t n_;
    std::vector<long double> table_;
};

// The promise of the header: an error below (2 + log2 N) 2^-52 of the largest result.
double allowed(std::size_t n, double largest) {
    return (2 + std::log2(static_cast<double>(n))) * 0x1p-52 * largest;
}

// All results of random signals and of impulses, by the definition.
TEST_P(Dct, IsTheSumThatDefinesIt) {
    std::vector<std::size_t> lengths = {171, 256, 341, 360, 512};
    for (std::size_t n = 1; n <= 130; ++n) lengths.push_back(n);
    for (const std::size_t n : lengths) {
        static std::map<std::size_t, Cosines> made;
        const Cosines& cosines = made.try_emplace(n, n).first->second;
        for (const Direction* d : kDirections) {
            const Spec spec(*d, static_cast<int>(n));
            for (const std::size_t impulse : {n, n / 3, n - 1}) {
                Doubles in(n);
                if (impulse < n)
                    in[impulse] = 1;
                else
                    in = Random(n).reals(n);
                const Doubles out = run(*d, in, spec, nullptr);
                long double worst = 0, largest = 0;
                for (std::size_t i = 0; i < n; ++i) {
                    const long double expected =
                        impulse < n ? d->inverse ? cosines.at(i, impulse) : cosines.at(impulse, i)
                                    : cosines.element(*d, in, i);
                    worst = std::max(worst, std::isnan(out[i]) ? INFINITY : std::fabs(out[i] - expected));
                    largest = std::max(largest, std::fabs(expected));
                }
                EXPECT_LE(worst, allowed(n, static_cast<double>(largest)))
                    << d->name << " " << n << " " << impulse;
            }
        }
    }
}

// Longer ones: all results of an impulse, some of a random signal, and that the inverse undoes the transform.
TEST_P(Dct, LongTransforms) {
    for (const std::size_t n : {1000, 1001, 4096, 8192, 10007, 20000, 65536, 131072}) {
        SCOPED_TRACE(n);
        static std::map<std::size_t, Cosines> made;
        const Cosines& cosines = made.try_emplace(n, n).first->second;
        Random random(n);
        const Doubles in = random.reals(n);
        Doubles impulse(n);
        const std::size_t at = n - n / 7;
        impulse[at] = 1;
        const Spec forward(kForward, static_cast<int>(n)), inverse(kInverse, static_cast<int>(n));
        for (const Direction* d : kDirections) {
            const Spec& spec = d->inverse ? inverse : forward;
            Guarded<Zpp8u> buffer(spec.bufSize());
            const Doubles out = run(*d, in, spec, buffer), response = run(*d, impulse, spec, buffer);
            EXPECT_TRUE(buffer.intact());
            for (std::size_t i : std::initializer_list<std::size_t>{
                     0, 1, n / 4, n / 2, n - 1, static_cast<std::size_t>(random.below(n))})
                EXPECT_NEAR(out[i], static_cast<double>(cosines.element(*d, in, i)), allowed(n, 2))
                    << d->name << i;
            double worst = 0;
            for (std::size_t i = 0; i < n; ++i) {
                const long double expected = d->inverse ? cosines.at(i, at) : cosines.at(at, i);
                worst = std::fmax(worst, static_cast<double>(std::fabs(response[i] - expected)));
            }
            EXPECT_LE(worst, allowed(n, std::sqrt(2 / static_cast<double>(n)))) << d->name;
        }
        const Doubles back = run(kInverse, run(kForward, in, forward, nullptr), inverse, nullptr);
        double worst = 0;
        for (std::size_t i = 0; i < n; ++i) worst = std::fmax(worst, std::fabs(back[i] - in[i]));
        EXPECT_LE(worst, 2 * allowed(n, 2));
    }
}

// In place, at any place of vectors and buffer, with the x87 unit in any state: the same bits.
TEST_P(Dct, GivesTheSameBitsEverywhere) {
    for (const std::size_t n : {1, 2, 4, 8, 3, 16, 31, 50, 64, 100, 101, 128, 171, 360, 512, 2048, 131072})
        for (const Direction* d : kDirections) {
            SCOPED_TRACE(testing::Message() << d->name << " " << n);
            const Spec spec(*d, static_cast<int>(n));
            const Doubles in = Random(n).reals(n), expected = run(*d, in, spec, nullptr);
            Guarded<double> both(in);
            EXPECT_EQ(d->transform(both, both, spec, nullptr), zppStatusOk);
            EXPECT_TRUE(sameBits(expected, both.values()));
            EXPECT_TRUE(sameBits(expected, run(*d, in, spec, nullptr, Edge::kStart)));
            if (n > 10000) continue;
            for (const std::size_t offset : {0, 1, 8, 15}) {
                Guarded<Zpp8u> buffer(spec.bufSize() + offset);
                EXPECT_TRUE(sameBits(expected, run(*d, in, spec, buffer.data() + offset)));
                EXPECT_TRUE(buffer.intact());
            }
            for (const std::uint16_t word : x87Words()) {
                const X87ControlWord narrow(word);
                const Spec made(*d, static_cast<int>(n));
                const Doubles result = run(*d, in, made, nullptr);
                EXPECT_EQ(x87ControlWord(), word);
                EXPECT_TRUE(sameBits(expected, result));
            }
        }
}

TEST_P(Dct, ChecksInOrder) {
    for (const Direction* d : kDirections) {
        SCOPED_TRACE(d->name);
        EXPECT_EQ(d->init(nullptr, 0, 0), zppStatusNullPointer);
        // Of the longest ones the work buffer has a size that is no int.
        for (const int len : {0, -1, INT_MIN, 1 << 28, 1 << 30, INT_MAX, (3 << 24) + 2, (1 << 25) + 1})
            expectRefused<ZppsDCTSpec>(zppStatusSizeError,
                                       [&](ZppsDCTSpec** pp) { return d->init(pp, len, 0); });
        const Spec spec(*d, 100), wrong(*kDirections[d->inverse ? 0 : 1], 100);
        double data[100] = {};
        int size = -1;
        EXPECT_EQ(d->free(nullptr), zppStatusNullPointer);
        EXPECT_EQ(d->free(wrong), zppStatusContextMismatch);
        EXPECT_EQ(d->bufSize(nullptr, &size), zppStatusNullPointer);
        EXPECT_EQ(d->bufSize(wrong, nullptr), zppStatusNullPointer);
        EXPECT_EQ(d->bufSize(wrong, &size), zppStatusContextMismatch);
        EXPECT_EQ(size, -1);
        EXPECT_EQ(d->transform(nullptr, nullptr, nullptr, nullptr), zppStatusNullPointer);
        EXPECT_EQ(d->transform(nullptr, nullptr, wrong, nullptr), zppStatusContextMismatch);
        EXPECT_EQ(d->transform(nullptr, data, spec, nullptr), zppStatusNullPointer);
        EXPECT_EQ(d->transform(data, nullptr, spec, nullptr), zppStatusNullPointer);
    }
}

struct Sized {
    int len, bufSize;    // -1: the method's own, but some
    int initialisation;  // allocations
    int transform;       // those of a call that has a buffer
};

TEST_P(Dct, AllocatesAllOrNothing) {
    for (const Direction* d : kDirections)
        for (const Sized& row : {Sized{1, 0, 1, 0},
                                 {8, 0, 1, 0},
                                 {16, 144, 2, 0},
                                 {128, 1040, 2, 0},
                                 {3, 40, 2, 0},
                                 {100, 816, 2, 0},
                                 {101, -1, 5, 0},
                                 {1002, -1, 5, 0},
                                 {65536, 524304, 2, 0},
                                 {131072, 1048592, 2, 1}}) {
            SCOPED_TRACE(testing::Message() << d->name << " " << row.len);
            expectAllOrNothing<ZppsDCTSpec>(
                row.initialisation, [&](ZppsDCTSpec** pp) { return d->init(pp, row.len, 5); }, d->free);
            const Spec spec(*d, row.len);
            EXPECT_TRUE(row.bufSize < 0 ? spec.bufSize() > 0
                                        : spec.bufSize() == static_cast<std::size_t>(row.bufSize))
                << spec.bufSize();
            const Doubles in(static_cast<std::size_t>(row.len));
            Guarded<double> dst(in.size());
            std::vector<Zpp8u> buffer(spec.bufSize());
            const auto status = [&](Zpp8u* given) {
                const FailingHeap heap(0);
                return d->transform(in.data(), dst, spec, given);
            };
            EXPECT_EQ(status(nullptr), spec.bufSize() > 0 ? zppStatusAllocationFailed : zppStatusOk);
            EXPECT_EQ(dst.untouched(), spec.bufSize() > 0);
            EXPECT_EQ(status(buffer.data()), row.transform > 0 ? zppStatusAllocationFailed : zppStatusOk);
        }
}

}  // namespace
}  // namespace zpp::test
