// What the tests of the FIR filters share: the functions of each type pair, the convolution sum, and a
// filter.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <type_traits>
#include <vector>

#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"
#include "zpp/filter.h"

namespace zpp::test {

template <class T, class D>
struct FirPair {
    static constexpr bool kComplex = std::is_same_v<T, Zpp64fc>;

    const char* name;
    int singleRate, multiRate;
    ZppStatus (*getStateSize)(int, int*);
    ZppStatus (*init)(ZppsFIRState**, const T*, int, const D*, Zpp8u*);
    ZppStatus (*initAlloc)(ZppsFIRState**, const T*, int, const D*);
    ZppStatus (*free)(ZppsFIRState*);
    ZppStatus (*getTaps)(const ZppsFIRState*, T*);
    ZppStatus (*setTaps)(const T*, ZppsFIRState*);
    ZppStatus (*getDlyLine)(const ZppsFIRState*, D*);
    ZppStatus (*setDlyLine)(ZppsFIRState*, const D*);
    ZppStatus (*filter)(const D*, D*, int, ZppsFIRState*);
    ZppStatus (*filterInPlace)(D*, int, ZppsFIRState*);
    ZppStatus (*filterOne)(D, D*, ZppsFIRState*);
};

// Calls check(pair) for each pair.
template <class Check>
void forEachPair(Check check) {
    const auto run = [&](const auto& pair) {
        SCOPED_TRACE(pair.name);
        check(pair);
    };
#define PAIR(T, D, x, singleRate, multiRate) \
    FirPair<T, D>{#x,                        \
                  singleRate,                \
                  multiRate,                 \
                  zppsFIRGetStateSize##x,    \
                  zppsFIRInit##x,            \
                  zppsFIRInitAlloc##x,       \
                  zppsFIRFree##x,            \
                  zppsFIRGetTaps##x,         \
                  zppsFIRSetTaps##x,         \
                  zppsFIRGetDlyLine##x,      \
                  zppsFIRSetDlyLine##x,      \
                  zppsFIR##x,                \
                  zppsFIR##x##_I,            \
                  zppsFIROne##x}
    run(PAIR(Zpp64f, Zpp64f, _64f, 0x46493133, 0x46493135));
    run(PAIR(Zpp64fc, Zpp64fc, _64fc, 0x46493134, 0x46493136));
    run(PAIR(Zpp64f, Zpp32f, 64f_32f, 0x46493137, 0x46493139));
    run(PAIR(Zpp64fc, Zpp32fc, 64fc_32fc, 0x46493138, 0x46493230));
#undef PAIR
}

// A wrong specification inside a state is the one way to make its transforms fail.
inline int*& specificationOf(ZppsFIRState* state) {
    struct Header {
        int id;
        void *taps, *delayBuffer;
        int tapsLen, directLimit;
        int* spec;
    };
    return reinterpret_cast<Header*>(state)->spec;
}
inline int& identifierOf(ZppsFIRState* state) { return *reinterpret_cast<int*>(state); }

// Every call returned `expected`.
inline void expectAll(ZppStatus expected, std::initializer_list<ZppStatus> returned) {
    for (std::size_t i = 0; i < returned.size(); ++i)
        EXPECT_EQ(returned.begin()[i], expected) << "call " << i;
}

using LongComplex = std::complex<long double>;
inline LongComplex asLong(long double x) { return x; }
inline LongComplex asLong(Zpp64fc x) { return {x.re, x.im}; }
inline LongComplex asLong(Zpp32fc x) { return {x.re, x.im}; }

// n elements whose numbers are next(random, i).
template <class T, class Next>
std::vector<T> elements(std::size_t n, std::uint64_t stream, Next next) {
    Random random(stream);
    std::vector<T> values(n);
    for (std::size_t i = 0; i < n; ++i) {
        if constexpr (std::is_floating_point_v<T>) {
            values[i] = static_cast<T>(next(random, i));
        } else {
            values[i].re = static_cast<decltype(T::re)>(next(random, i));
            values[i].im = static_cast<decltype(T::im)>(next(random, i));
        }
    }
    return values;
}
template <class T>
std::vector<T> randomElements(std::size_t n, std::uint64_t stream) {
    return elements<T>(n, stream, [](Random& random, std::size_t) { return random.uniform(); });
}

// The convolution sum, written out, and for each output the sum of the products' magnitudes.
struct Convolution {
    std::vector<LongComplex> sums;
    std::vector<long double> magnitudes;
    long double energy;     // norm of the taps times norm of all samples
    long double roundings;  // of a sum, at most

    // `past` holds x(-1), x(-2), ...
    template <class T, class D>
    Convolution(const std::vector<T>& taps, const std::vector<D>& past, const std::vector<D>& signal)
        : sums(signal.size()), magnitudes(signal.size()) {
        const std::size_t terms = taps.size(), chain = std::is_floating_point_v<T> ? 40 : 130;
        roundings = static_cast<long double>(std::min(terms, chain) + terms / 32 + 1);
        const auto norm = [](const auto& values) {
            long double sum = 0;
            for (const auto& x : values) sum += std::norm(asLong(x));
            return sum;
        };
        energy = std::sqrt(norm(taps) * (norm(past) + norm(signal)));
        for (std::size_t n = 0; n < signal.size(); ++n)
            for (std::size_t k = 0; k < terms; ++k) {
                const LongComplex h = asLong(taps[k]), x = asLong(k <= n ? signal[n - k] : past[k - n - 1]);
                sums[n] += LongComplex(h.real() * x.real() - h.imag() * x.imag(),
                                       h.real() * x.imag() + h.imag() * x.real());
                magnitudes[n] += std::sqrt(std::norm(h) * std::norm(x));
            }
    }

    // Whether `actual` is within the error bound of the sums, and not finite where they are not.
    template <class D>
    testing::AssertionResult isNear(const std::vector<D>& actual) const {
        return check(actual, [&](std::size_t n) { return roundings * 0x1p-53L * magnitudes[n]; });
    }
    // Whether it is within four roundings of the norms, as results of the FFT are.
    template <class D>
    testing::AssertionResult isNearByNorm(const std::vector<D>& actual) const {
        return check(actual, [&](std::size_t) { return 4 * 0x1p-53L * energy; });
    }

  private:
    template <class D, class Bound>
    testing::AssertionResult check(const std::vector<D>& actual, Bound bound) const {
        constexpr bool single = std::is_same_v<D, Zpp32f> || std::is_same_v<D, Zpp32fc>;
        if (actual.size() != sums.size()) return testing::AssertionFailure() << "sizes differ";
        for (std::size_t n = 0; n < sums.size(); ++n) {
            const LongComplex y = asLong(actual[n]), distance = y - sums[n];
            const long double error = std::max(std::fabs(distance.real()), std::fabs(distance.imag()));
            const long double allowed =
                bound(n) + (single ? 0x1p-24L * std::abs(sums[n]) + 0x1p-149L : 0x1p-1074L);
            if (std::isfinite(magnitudes[n]) ? !(error <= allowed) || std::isnan(distance.imag())
                                             : std::isfinite(y.real()) && std::isfinite(y.imag()))
                return testing::AssertionFailure()
                       << "output " << n << " is off by " << error << ", allowed " << allowed;
        }
        return testing::AssertionSuccess();
    }
};

// A filter with random taps and a random past.
template <class T, class D>
class Filter {
  public:
    static constexpr int kAllocated = -1;

    const FirPair<T, D>& pair;
    std::vector<T> taps;
    std::vector<D> past;
    ZppsFIRState* state = nullptr;

    // Allocated, so that it may have an FFT path, or in a buffer with `spare` bytes behind the state.
    explicit Filter(const FirPair<T, D>& p, int tapsLen, int spare = kAllocated)
        : pair(p),
          taps(randomElements<T>(static_cast<std::size_t>(tapsLen), 1)),
          past(randomElements<D>(taps.size(), 2)),
          own_(spare == kAllocated ? 0 : sizeFor(tapsLen)),
          buffer_(own_ + static_cast<std::size_t>(std::max(spare, 0))) {
        EXPECT_EQ(spare == kAllocated ? pair.initAlloc(&state, taps.data(), tapsLen, past.data())
                                      : pair.init(&state, taps.data(), tapsLen, past.data(), buffer_),
                  zppStatusOk);
    }
    ~Filter() {
        const auto before = buffer_.values();
        EXPECT_EQ(pair.free(state), zppStatusOk);
        EXPECT_TRUE(sameBits(before, buffer_.values()) && buffer_.intact());
        EXPECT_TRUE(std::all_of(buffer_ + own_, buffer_.end(), [](Zpp8u byte) { return byte == 0xA5; }));
    }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    std::vector<D> runWhole(const std::vector<D>& signal, bool inPlace = false) {
        return run(signal, inPlace, [&] { return static_cast<int>(signal.size()); });
    }

    // The signal from the past on, in blocks of the lengths that nextLen gives; a length of 0 is one sample
    // by filterOne.
    std::vector<D> run(const std::vector<D>& signal, bool inPlace, const std::function<int()>& nextLen) {
        EXPECT_EQ(pair.setDlyLine(state, past.data()), zppStatusOk);
        Guarded<D> src(signal), dst(signal);
        for (int done = 0, n; done < src.len(); done += n) {
            const int asked = nextLen();
            n = std::min(std::max(asked, 1), src.len() - done);
            EXPECT_EQ(asked == 0 ? pair.filterOne(src[done], dst + done, state)
                      : inPlace  ? pair.filterInPlace(dst + done, n, state)
                                 : pair.filter(src + done, dst + done, n, state),
                      zppStatusOk);
        }
        EXPECT_TRUE(dst.intact());
        EXPECT_TRUE(sameBits(signal, src.values()));
        return dst.values();
    }

    ZppStatus setTaps(const std::vector<T>& values) {
        taps = values;
        return pair.setTaps(taps.data(), state);
    }
    ZppStatus renewTaps(std::uint64_t stream) { return setTaps(randomElements<T>(taps.size(), stream)); }

    // Whether the state holds the taps, and the delay line that follows the past and this signal.
    testing::AssertionResult remembers(const std::vector<D>& signal = {}) const {
        std::vector<D> all(signal.rbegin(), signal.rend());
        all.insert(all.end(), past.begin(), past.end());
        all.resize(past.size());
        Guarded<T> tapsOut(taps.size());
        Guarded<D> lineOut(past.size());
        EXPECT_EQ(pair.getTaps(state, tapsOut), zppStatusOk);
        EXPECT_EQ(pair.getDlyLine(state, lineOut), zppStatusOk);
        const auto tapsHeld = sameBits(taps, tapsOut.values());
        return tapsHeld ? sameBits(all, lineOut.values()) : tapsHeld;
    }

  private:
    std::size_t sizeFor(int tapsLen) const {
        int size = 0;
        EXPECT_EQ(pair.getStateSize(tapsLen, &size), zppStatusOk);
        return static_cast<std::size_t>(size);
    }

    std::size_t own_;
    Guarded<Zpp8u> buffer_;
};

}  // namespace zpp::test
