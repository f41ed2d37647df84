#include <cmath>
#include <complex>
#include <deque>
#include <map>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/heap.h"
#include "tests/support/random.h"
#include "tests/support/x87.h"
#include "tests/transform/fft_support.h"
#include "tests/transform/packed_support.h"

// The transforms once more, as an ISA build of the test's own in which orders from 18 on take the way of
// those that have no buffer of their length, 27 to 30.
#define ZPP_ISA huge_fft
#define ZPP_FFT_MAX_BUFFER_ORDER 17
#include "transform/fft.cpp"
#include "transform/fft_spec.cpp"

namespace zpp::test {
namespace {

using Exact = std::complex<long double>;
using Elements = std::vector<Zpp64fc>;

class Fft : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Fft);

const Kind kHugeKinds[] = ZPP_FFT_KINDS(huge_fft);

// A transform from one or two arrays to as many.
struct Transform {
    const char* name;
    const Kind& kind;
    Layout from, to;
    ZppStatus (*call)(double* const* src, double* const* dst, const ZppsFFTSpec*, Zpp8u* buffer);

    bool inverse() const { return name[0] == 'I'; }
    bool real() const { return from == kReal || to == kReal; }
    std::size_t arrays() const { return from == kTwoArrays ? 2 : 1; }
};

template <auto f>
ZppStatus call(double* const* src, double* const* dst, const ZppsFFTSpec* spec, Zpp8u* buffer) {
    if constexpr (std::is_invocable_v<decltype(f), Zpp64fc*, Zpp64fc*, const ZppsFFTSpec*, Zpp8u*>)
        return f(reinterpret_cast<Zpp64fc*>(src[0]), reinterpret_cast<Zpp64fc*>(dst[0]), spec, buffer);
    else if constexpr (std::is_invocable_v<decltype(f), double*, double*, const ZppsFFTSpec*, Zpp8u*>)
        return f(src[0], dst[0], spec, buffer);
    else
        return f(src[0], src[1], dst[0], dst[1], spec, buffer);
}
#define TRANSFORM(space, kind, name, from, to) \
    { #name, kind, from, to, call < space::zppsFFT##name> }
#define TRANSFORMS(space, kinds)                                              \
    {                                                                         \
        TRANSFORM(space, kinds[0], Fwd_CToC_64fc, kPairs, kPairs),            \
            TRANSFORM(space, kinds[0], Inv_CToC_64fc, kPairs, kPairs),        \
            TRANSFORM(space, kinds[1], Fwd_CToC_64f, kTwoArrays, kTwoArrays), \
            TRANSFORM(space, kinds[1], Inv_CToC_64f, kTwoArrays, kTwoArrays), \
            TRANSFORM(space, kinds[2], Fwd_RToPack_64f, kReal, kPack),        \
            TRANSFORM(space, kinds[2], Inv_PackToR_64f, kPack, kReal),        \
            TRANSFORM(space, kinds[2], Fwd_RToPerm_64f, kReal, kPerm),        \
            TRANSFORM(space, kinds[2], Inv_PermToR_64f, kPerm, kReal),        \
            TRANSFORM(space, kinds[2], Fwd_RToCCS_64f, kReal, kCcs),          \
            TRANSFORM(space, kinds[2], Inv_CCSToR_64f, kCcs, kReal)           \
    }
const Transform kTransforms[] = TRANSFORMS(, kKinds), kHugeTransforms[] = TRANSFORMS(huge_fft, kHugeKinds);

// The result of a transform, each array of which ends or begins at a page that cannot be read.
Elements run(const Transform& t, Elements in, const ZppsFFTSpec* spec, Zpp8u* buffer, bool inPlace) {
    const std::size_t n = in.size(), inSize = sizeIn(t.from, n), outSize = sizeIn(t.to, n);
    std::deque<Guarded<double>> src, dst;
    double *from[2], *to[2];
    for (std::size_t i = 0; i < t.arrays(); ++i) {
        src.emplace_back(inPlace ? std::max(inSize, outSize) : inSize, i == 0 ? Edge::kEnd : Edge::kStart);
        dst.emplace_back(outSize, i == 0 ? Edge::kStart : Edge::kEnd);
        from[i] = src[i];
        to[i] = inPlace ? src[i] : dst[i];
        const auto numbers = packed(t.from, in);
        std::copy(numbers.begin(), numbers.end(), from[i]);
        for (Zpp64fc& x : in) x.re = x.im;  // what the second of two arrays holds
    }
    if (t.from == kCcs) from[0][1] = from[0][n / 2 * 2 + 1] = NAN;  // is not looked at
    const long blocks = liveBlocks();
    EXPECT_EQ(t.call(from, to, spec, buffer), zppStatusOk) << t.name;
    EXPECT_EQ(liveBlocks(), blocks) << t.name;
    for (std::size_t i = 0; i < t.arrays(); ++i) EXPECT_TRUE(src[i].intact() && dst[i].intact()) << t.name;
    Elements result = unpacked(t.to, to[0], n);
    for (std::size_t i = 0; t.to == kTwoArrays && i < n; ++i) result[i].im = to[1][i];
    EXPECT_TRUE(t.to != kCcs || (result[0].im == 0 && result[n / 2].im == 0)) << t.name;
    return result;
}

// exp(-2 pi i k / 2^order)
Exact root(std::size_t k, int order) {
    const long double angle = -2 * 3.14159265358979323846264338327950288L * static_cast<long double>(k);
    return std::polar(1.0L, std::ldexp(angle, -order));
}

// The spectrum, exact but for the last bits of long double.
std::vector<Exact> spectrumOf(std::vector<Exact> x, int order) {
    const std::size_t n = x.size();
    std::vector<Exact> y(n), roots;
    for (std::size_t k = 0; k < n / 2; ++k) roots.push_back(root(k, order));
    for (std::size_t half = n / 2, s = 1; half > 0; half /= 2, s *= 2, swap(x, y))
        for (std::size_t p = 0; p < half; ++p)
            for (std::size_t q = 0; q < s; ++q) {
                const Exact a = x[q + s * p], b = x[q + s * (p + half)], d = a - b, w = roots[p * s];
                y[q + 2 * s * p] = a + b;
                y[q + s * (2 * p + 1)] = {d.real() * w.real() - d.imag() * w.imag(),
                                          d.real() * w.imag() + d.imag() * w.real()};
            }
    return x;
}

TEST(FftOracle, IsTheSumThatDefinesTheTransform) {
    for (int order = 0; order <= 6; ++order) {
        const std::size_t n = std::size_t{1} << order;
        Random random;
        std::vector<Exact> x(n);
        for (Exact& e : x) e = {random.uniform(), random.uniform()};
        const auto spectrum = spectrumOf(x, order);
        for (std::size_t k = 0; k < n; ++k) {
            Exact sum = 0;
            for (std::size_t i = 0; i < n; ++i) sum += x[i] * root(i * k & (n - 1), order);
            EXPECT_LT(std::abs(sum - spectrum[k]), 1e-17L * static_cast<long double>(n)) << order;
        }
    }
}

// Signals: random ones, those of a flat spectrum of random phase, and from 0 on a unit impulse at n / 2^data
// - 1.
enum Data { kRandom = -2, kFlat = -1, kLast = 0, kMiddle = 1, kQuarter = 2 };

struct Example {
    Elements signal;
    std::vector<Exact> spectrum;
};

// Numbers of so few bits that the mean of two is exact.
double coarse(long double x) { return static_cast<double>(std::ldexp(std::rint(std::ldexp(x, 49)), -49)); }

const Example& example(int order, int data) {
    static std::map<std::pair<int, int>, Example> made;
    Example& e = made[{order, data}];
    if (!e.signal.empty()) return e;
    const std::size_t n = std::size_t{1} << order;
    Random random(static_cast<std::uint64_t>(order));
    std::vector<Exact> x(n);
    if (data >= 0) x[(n >> data) - 1] = 1;
    if (data == kRandom)
        for (Exact& v : x) v = {random.uniform(), random.uniform()};
    if (data == kFlat) {
        for (Exact& v : x)
            v = std::polar(1 / std::sqrt(static_cast<long double>(n)), random.uniform(-4, 4) * 1.0L);
        x = spectrumOf(x, order);  // or the inverse of another flat spectrum
    }
    for (Exact& v : x) {
        e.signal.push_back({coarse(v.real()), coarse(v.imag())});
        v = {e.signal.back().re, e.signal.back().im};
    }
    e.spectrum = spectrumOf(x, order);
    return e;
}

// What a transform takes, and what it makes of it: a real one the real part of the signal to the symmetric
// part of the spectrum; an inverse one the conjugate of the signal (its symmetric part) to that of the
// spectrum (its real part).
Elements inputOf(const Transform& t, const Example& e) {
    const std::size_t n = e.signal.size();
    Elements in = e.signal;
    for (std::size_t k = 0; k < n && t.inverse(); ++k) {
        const Zpp64fc mirrored = t.real() ? e.signal[(n - k) % n] : Zpp64fc{in[k].re, -in[k].im};
        in[k] = {(e.signal[k].re + mirrored.re) / 2, (mirrored.im - e.signal[k].im) / 2};
    }
    return in;
}
Exact expectedOf(const Transform& t, const Example& e, std::size_t k) {
    const Exact x = e.spectrum[k];
    if (!t.real()) return t.inverse() ? std::conj(x) : x;
    const std::size_t n = e.signal.size();
    return t.inverse() ? Exact(x.real()) : (x + std::conj(e.spectrum[(n - k) % n])) / 2.0L;
}

// The promise of the header: (2 + order) 2^-53 of the largest result. The worst that was met in any build is
// XX.
testing::AssertionResult isAccurate(const Transform& t, const Example& e, const Elements& result, int order,
                                    double scale = 1) {
    long double worst = 0, largest = 0;
    for (std::size_t k = 0; k < result.size(); ++k) {
        const Exact expected = expectedOf(t, e, k) * static_cast<long double>(scale);
        const long double error = std::norm(expected - Exact{result[k].re, result[k].im});
        if (std::isnan(error)) return testing::AssertionFailure() << t.name << ": NaN at " << k;
        worst = std::max(worst, error);
        largest = std::max(largest, std::norm(expected));
    }
    const auto bits = static_cast<double>(std::sqrt(worst / largest) * 0x1p53L);
    if (bits <= 2 + order) return testing::AssertionSuccess();
    return testing::AssertionFailure() << t.name << ": error of " << bits << " 2^-53, order " << order;
}

// Every length of one buffer, in every flag, with and without a buffer, in place and not.
TEST_P(Fft, ShortTransforms) {
    for (int order = 0; order <= 11; ++order)
        for (const Transform& t : kTransforms) {
            for (const int flag : {8, 1, 2, 4}) {
                const Example& e = example(order, kRandom);
                const double n = std::ldexp(1, order);
                const bool scaled = flag == 4 || flag == (t.inverse() ? 2 : 1);
                const double scale = !scaled ? 1 : flag == 4 ? 1 / std::sqrt(n) : 1 / n;
                const Spec spec(t.kind, order, flag);
                const auto in = inputOf(t, e), result = run(t, in, spec, nullptr, false);
                EXPECT_TRUE(isAccurate(t, e, result, order, scale)) << flag;
                EXPECT_TRUE(sameBits(result, run(t, in, spec, nullptr, true))) << t.name << " " << order;
                if (flag != 8) continue;
                Guarded<Zpp8u> buffer(spec.bufSize());
                EXPECT_TRUE(sameBits(result, run(t, in, spec, buffer, false))) << t.name << " " << order;
                EXPECT_TRUE(buffer.intact()) << t.name << " " << order;
            }
            for (int data = kFlat; data <= order; ++data) {
                const Example& e = example(order, data);
                EXPECT_TRUE(
                    isAccurate(t, e, run(t, inputOf(t, e), Spec(t.kind, order), nullptr, false), order))
                    << data;
            }
        }
}

struct Long {
    int order;
    Data data;
};

template <std::size_t n>
void expectAccurate(const Transform (&transforms)[n], std::initializer_list<Long> rows) {
    for (const auto& [order, data] : rows)
        for (const Transform& t : transforms) {
            const Example& e = example(order, data);
            const Spec spec(t.kind, order);
            Guarded<Zpp8u> buffer(spec.bufSize());
            EXPECT_TRUE(isAccurate(t, e, run(t, inputOf(t, e), spec, buffer, order % 2 == 0), order)) << data;
            EXPECT_TRUE(buffer.intact()) << t.name << " " << order;
        }
}

TEST_P(Fft, LongTransforms) {
    expectAccurate(kTransforms, {{12, kFlat},
                                 {13, kRandom},
                                 {15, kFlat},
                                 {16, kFlat},
                                 {16, kLast},
                                 {17, kMiddle},
                                 {18, kFlat},
                                 {19, kLast}});
}

TEST(HugeFft, LongTransforms) { expectAccurate(kHugeTransforms, {{18, kFlat}, {19, kRandom}, {20, kLast}}); }

// An impulse early in the signal meets but one twiddle on the way to the first results, which are the roots
// of unity then. Their parts are rounded once, from at least three more bits.
void expectRoots(const Transform& t, int order, std::size_t at, std::size_t count) {
    Elements in(std::size_t{1} << order);
    in[at].re = 1;
    const auto result = run(t, in, Spec(t.kind, order), nullptr, false);
    long double worst = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const Exact error = root(at * k & (in.size() - 1), order) - Exact{result[k].re, result[k].im};
        worst = std::max({worst, std::abs(error.real()), std::abs(error.imag())});
    }
    EXPECT_LE(worst, 0.65L * 0x1p-53L) << t.name << " " << order << ", impulse at " << at;
}

TEST_P(Fft, RoundsTwiddlesOnce) {
    for (const Transform& t : {kTransforms[0], kTransforms[2], kTransforms[8]})
        for (int order = t.real() ? 4 : 16; order <= 19; ++order)
            for (const std::size_t at : {1, t.real() ? 1 : (1 << order / 2) - 1})
                expectRoots(t, order, at, std::size_t{1} << (t.real() ? order - 1 : order - order / 2));
}

TEST(HugeFft, RoundsTwiddlesOnce) {
    for (const Transform& t : {kHugeTransforms[0], kHugeTransforms[2]})
        for (const std::size_t at : {0x55555, 0x7FFFF}) expectRoots(t, 20, at, 2);
}

// Whatever the caller's x87 unit rounds to, the results are the same, and its word stays.
TEST_P(Fft, ComputesWithTheBitsOfDoubles) {
    for (const std::uint16_t word : x87Words())
        for (const int order : {0, 1, 5, 9, 13, 16})
            for (const Transform& t : kTransforms) {
                const auto in = inputOf(t, example(order, kRandom));
                const auto expected = run(t, in, Spec(t.kind, order, 4), nullptr, false);
                const X87ControlWord narrow(word);
                const auto result = run(t, in, Spec(t.kind, order, 4), nullptr, false);
                EXPECT_EQ(x87ControlWord(), word) << t.name;
                EXPECT_TRUE(sameBits(expected, result)) << t.name << " " << order;
            }
}

TEST_P(Fft, ChecksTransforms) {
    Guarded<double> data(4096);
    double *const none[] = {nullptr, nullptr}, *const some[] = {data, data};
    for (const Transform& t : kTransforms) {
        EXPECT_EQ(t.call(none, none, nullptr, nullptr), zppStatusNullPointer) << t.name;
        for (const Kind& kind : kKinds) {
            const Spec spec(kind, 11);
            const auto status = &t.kind == &kind ? zppStatusNullPointer : zppStatusContextMismatch;
            EXPECT_EQ(t.call(none, none, spec, nullptr), status) << t.name;
        }
        const Spec spec(t.kind, 11);
        const FailingHeap heap(0);
        EXPECT_EQ(t.call(some, some, spec, nullptr), zppStatusAllocationFailed) << t.name;
        EXPECT_TRUE(data.untouched()) << t.name;
    }
    const Spec spec(kKinds[0], 11);
    std::vector<Zpp8u> buffer(spec.bufSize());
    const FailingHeap heap(0);
    EXPECT_EQ(kTransforms[0].call(some, some, spec, buffer.data()), zppStatusOk);
}

}  // namespace
}  // namespace zpp::test
