#include <cmath>
#include <complex>
#include <map>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/heap.h"
#include "tests/support/random.h"
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

class Fft : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Fft);

const Kind kHugeKinds[] = ZPP_FFT_KINDS(huge_fft);

// A transform of any kind, on complex numbers: real ones take the real parts of the input and fill in the
// upper half of the spectrum, or take the lower half and give the signal as real parts.
struct Transform {
    const char* name;
    const Kind& kind;
    bool inverse;
    std::vector<Zpp64fc> (*run)(const std::vector<Zpp64fc>& in, const ZppsFFTSpec* spec, Zpp8u* buffer,
                                bool inPlace);
    ZppStatus (*runOn)(double* data, const ZppsFFTSpec* spec);  // the one source and destination, no buffer
};

template <auto call>
std::vector<Zpp64fc> runComplex(const std::vector<Zpp64fc>& in, const ZppsFFTSpec* spec, Zpp8u* buffer,
                                bool inPlace) {
    Guarded<Zpp64fc> src(in), dst(in.size());
    Zpp64fc* out = inPlace ? src : dst;
    EXPECT_EQ(call(src, out, spec, buffer), zppStatusOk);
    EXPECT_TRUE(src.intact() && dst.intact());
    return inPlace ? src.values() : dst.values();
}

template <auto call>
std::vector<Zpp64fc> runSplit(const std::vector<Zpp64fc>& in, const ZppsFFTSpec* spec, Zpp8u* buffer,
                              bool inPlace) {
    Guarded<double> re(in.size()), im(in.size(), Edge::kStart), dstRe(in.size(), Edge::kStart),
        dstIm(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) re.data()[i] = in[i].re, im.data()[i] = in[i].im;
    double *outRe = inPlace ? re : dstRe, *outIm = inPlace ? im : dstIm;
    EXPECT_EQ(call(re, im, outRe, outIm, spec, buffer), zppStatusOk);
    EXPECT_TRUE(re.intact() && im.intact() && dstRe.intact() && dstIm.intact());
    std::vector<Zpp64fc> result;
    for (std::size_t i = 0; i < in.size(); ++i) result.push_back({outRe[i], outIm[i]});
    return result;
}

template <auto call, Layout layout>
std::vector<Zpp64fc> runForward(const std::vector<Zpp64fc>& in, const ZppsFFTSpec* spec, Zpp8u* buffer,
                                bool inPlace) {
    const std::size_t n = in.size(), size = packedSize(layout, n);
    Guarded<double> src(inPlace ? size : n), dst(size);
    for (std::size_t i = 0; i < n; ++i) src[i] = in[i].re;
    double* out = inPlace ? src : dst;
    EXPECT_EQ(call(src, out, spec, buffer), zppStatusOk);
    EXPECT_TRUE(src.intact() && dst.intact());
    const auto result = unpacked(layout, out, n);
    EXPECT_TRUE(result[0].im == 0 && result[n / 2].im == 0);
    return result;
}

template <auto call, Layout layout>
std::vector<Zpp64fc> runInverse(const std::vector<Zpp64fc>& in, const ZppsFFTSpec* spec, Zpp8u* buffer,
                                bool inPlace) {
    const std::size_t n = in.size();
    Guarded<double> src(packed(layout, in)), dst(n);
    if (layout == kCcs) src[1] = src[n / 2 * 2 + 1] = NAN;  // is not looked at
    double* out = inPlace ? src : dst;
    EXPECT_EQ(call(src, out, spec, buffer), zppStatusOk);
    EXPECT_TRUE(src.intact() && dst.intact());
    std::vector<Zpp64fc> result;
    for (std::size_t i = 0; i < n; ++i) result.push_back({out[i], 0});
    return result;
}

template <auto call, class Data>
inline constexpr bool kTakes = std::is_invocable_v<decltype(call), Data, Data, const ZppsFFTSpec*, Zpp8u*>;

template <auto call>
ZppStatus runOn(double* data, const ZppsFFTSpec* spec) {
    auto* pairs = reinterpret_cast<Zpp64fc*>(data);
    if constexpr (kTakes<call, Zpp64fc*>)
        return call(pairs, pairs, spec, nullptr);
    else if constexpr (kTakes<call, double*>)
        return call(data, data, spec, nullptr);
    else
        return call(data, data, data, data, spec, nullptr);
}

template <auto call, Layout layout>
Transform transformOf(const char* name, const Kind (&kinds)[3]) {
    const bool inverse = name[0] == 'I';
    if constexpr (kTakes<call, Zpp64fc*>)
        return {name, kinds[0], inverse, runComplex<call>, runOn<call>};
    else if constexpr (layout == kFull)
        return {name, kinds[1], inverse, runSplit<call>, runOn<call>};
    else
        return {name, kinds[2], inverse, inverse ? runInverse<call, layout> : runForward<call, layout>,
                runOn<call>};
}
#define PAIR(space, kinds, forward, inverse, layout)               \
    transformOf<space::zppsFFT##forward, layout>(#forward, kinds), \
        transformOf<space::zppsFFT##inverse, layout>(#inverse, kinds)
#define TRANSFORMS(space, kinds)                                         \
    {                                                                    \
        PAIR(space, kinds, Fwd_CToC_64fc, Inv_CToC_64fc, kFull),         \
            PAIR(space, kinds, Fwd_CToC_64f, Inv_CToC_64f, kFull),       \
            PAIR(space, kinds, Fwd_RToPack_64f, Inv_PackToR_64f, kPack), \
            PAIR(space, kinds, Fwd_RToPerm_64f, Inv_PermToR_64f, kPerm), \
            PAIR(space, kinds, Fwd_RToCCS_64f, Inv_CCSToR_64f, kCcs)     \
    }
const Transform kTransforms[] = TRANSFORMS(, kKinds), kHugeTransforms[] = TRANSFORMS(huge_fft, kHugeKinds);

// A signal and its forward spectrum, which is exact but for the last bits of long double.
struct Example {
    std::vector<Zpp64fc> signal;
    std::vector<Exact> spectrum;
    double largest = 0;
};

Exact root(std::size_t k, int order) {
    const long double angle = -2 * 3.14159265358979323846264338327950288L * static_cast<long double>(k);
    return std::polar(1.0L, std::ldexp(angle, -order));
}

// `count` elements that are not zero, or with 0 all of them. The spectrum is the sum that defines it.
const Example& example(int order, std::size_t count) {
    static std::map<std::pair<int, std::size_t>, Example> made;
    Example& e = made[{order, count}];
    if (!e.signal.empty()) return e;
    const std::size_t n = std::size_t{1} << order;
    Random random(static_cast<std::uint64_t>(order));
    e.signal.resize(n);
    e.spectrum.resize(n);
    std::vector<Exact> roots;
    for (std::size_t k = 0; k < n; ++k) roots.push_back(root(k, order));
    for (std::size_t i = 0; i < (count == 0 ? n : count); ++i) {
        const std::size_t at = count == 0 ? i : static_cast<std::size_t>(random.below(n));
        e.signal[at] = {random.uniform(), random.uniform()};
    }
    for (std::size_t at = 0; at < n; ++at) {
        const Exact x = {e.signal[at].re, e.signal[at].im};
        if (x == Exact{}) continue;
        for (std::size_t k = 0; k < n; ++k) e.spectrum[k] += x * roots[at * k & (n - 1)];
    }
    for (const Exact& x : e.spectrum) e.largest = std::max(e.largest, static_cast<double>(std::abs(x)));
    return e;
}

// Input and expected result of a transform: for a real one the signal is the real part; an inverse one takes
// the conjugate of the signal (of a real one, the spectrum) to the conjugate of the spectrum (the signal).
// The error is relative to the largest result.
double worstError(const Transform& t, const Example& e, const std::vector<Zpp64fc>& result, double scale) {
    const std::size_t n = e.signal.size();
    double worst = 0;
    for (std::size_t k = 0; k < n; ++k) {
        Exact expected = e.spectrum[k];
        if (t.kind.real) expected = (expected + std::conj(e.spectrum[(n - k) % n])) / 2.0L;
        if (t.inverse) expected = std::conj(expected);
        if (t.kind.real && t.inverse) expected = e.signal[k].re * static_cast<long double>(n);
        const Exact error = expected * static_cast<long double>(scale) - Exact{result[k].re, result[k].im};
        if (std::isnan(std::abs(error))) return NAN;  // std::max would lose it
        worst = std::max(worst, static_cast<double>(std::abs(error)));
    }
    return worst / (scale * (t.kind.real && t.inverse ? static_cast<double>(n) : e.largest));
}

std::vector<Zpp64fc> inputOf(const Transform& t, const Example& e) {
    const std::size_t n = e.signal.size();
    std::vector<Zpp64fc> in = e.signal;
    if (!t.inverse) return in;
    for (std::size_t k = 0; k < n; ++k) {
        if (t.kind.real) {
            const Exact x = (e.spectrum[k] + std::conj(e.spectrum[(n - k) % n])) / 2.0L;
            in[k] = {static_cast<double>(x.real()), static_cast<double>(x.imag())};
        } else {
            in[k].im = -in[k].im;
        }
    }
    return in;
}

// The sum that defines the transform, in every flag, with and without a buffer, in place and not. The worst
// error is 4e-16 of the largest result; of the real inverse 7e-16, with the rounding of its input.
TEST_P(Fft, MatchesTheDefinition) {
    for (int order = 0; order <= 11; ++order)
        for (const Transform& t : kTransforms)
            for (const int flag : {8, 1, 2, 4}) {
                const Example& e = example(order, 0);
                const double n = std::ldexp(1, order);
                const bool scaled = flag == 4 || flag == (t.inverse ? 2 : 1);
                const double scale = !scaled ? 1 : flag == 4 ? 1 / std::sqrt(n) : 1 / n;
                const Spec spec(t.kind, order, flag);
                const auto in = inputOf(t, e);
                const auto result = t.run(in, spec, nullptr, false);
                EXPECT_LE(worstError(t, e, result, scale), 1e-15) << t.name << " " << order;
                EXPECT_TRUE(sameBits(result, t.run(in, spec, nullptr, true))) << t.name << " " << order;
                if (flag != 8) continue;
                Guarded<Zpp8u> buffer(spec.bufSize());
                EXPECT_TRUE(sameBits(result, t.run(in, spec, buffer, false))) << t.name << " " << order;
                EXPECT_TRUE(buffer.intact()) << t.name << " " << order;
            }
}

// Signals of three elements, whose spectra are known for any length. The largest result is then little above
// the others, the error relative to it near its worst: up to 8e-16.
template <std::size_t n>
void expectSparse(const Transform (&transforms)[n], std::initializer_list<int> orders) {
    for (const int order : orders)
        for (const Transform& t : transforms) {
            const Example& e = example(order, 3);
            const Spec spec(t.kind, order);
            Guarded<Zpp8u> buffer(spec.bufSize());
            const auto result = t.run(inputOf(t, e), spec, buffer, order % 2 == 0);
            EXPECT_LE(worstError(t, e, result, 1), 1e-15) << t.name << " " << order;
            EXPECT_TRUE(buffer.intact()) << t.name << " " << order;
        }
}

TEST_P(Fft, LongTransforms) { expectSparse(kTransforms, {12, 13, 15, 16, 17, 18, 19}); }

TEST(HugeFft, LongTransforms) { expectSparse(kHugeTransforms, {18, 19, 20}); }

TEST_P(Fft, ChecksTransforms) {
    const Spec specs[] = {Spec(kKinds[0], 11), Spec(kKinds[1], 11), Spec(kKinds[2], 11)};
    Guarded<double> data(4096);
    std::vector<Zpp8u> buffer(specs[0].bufSize());
    for (const Transform& t : kTransforms) {
        EXPECT_EQ(t.runOn(nullptr, nullptr), zppStatusNullPointer) << t.name;
        for (std::size_t i = 0; i < std::size(specs); ++i) {
            const bool own = &t.kind == &kKinds[i];
            EXPECT_EQ(t.runOn(nullptr, specs[i]), own ? zppStatusNullPointer : zppStatusContextMismatch)
                << t.name;
            if (own) {
                const FailingHeap heap(0);
                EXPECT_EQ(t.runOn(data, specs[i]), zppStatusAllocationFailed) << t.name;
            }
        }
    }
    EXPECT_TRUE(data.untouched());
    const FailingHeap heap(0);
    auto* x = reinterpret_cast<Zpp64fc*>(data.data());
    EXPECT_EQ(zppsFFTFwd_CToC_64fc(x, x, specs[0], buffer.data()), zppStatusOk);
}

}  // namespace
}  // namespace zpp::test
