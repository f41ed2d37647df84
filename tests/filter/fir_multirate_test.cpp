#include <climits>
#include <numeric>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/draws.h"
#include "tests/support/objects.h"
#include "tests/support/rounded.h"

namespace zpp::test {
namespace {

class FirMultiRate : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(FirMultiRate);

// In the order of the arguments.
struct Rates {
    int tapsLen, up, upPhase, down, downPhase;

    std::size_t window() const { return static_cast<std::size_t>((tapsLen - 1) / up + 1); }
};
std::ostream& operator<<(std::ostream& out, const Rates& r) {
    return out << r.tapsLen << " taps, " << r.up << " (" << r.upPhase << ") to " << r.down << " ("
               << r.downPhase << ")";
}

const Rates kRates[] = {
    {3, 2, 0, 1, 0},    {1, 1, 0, 2, 1},         {5, 1, 0, 2, 0},          {1, 3, 2, 1, 0},
    {2, 5, 4, 3, 2},    {7, 5, 0, 3, 2},         {4, 4, 3, 4, 0},          {9, 4, 0, 4, 3},
    {13, 6, 5, 4, 1},   {24, 6, 1, 9, 8},        {48, 6, 0, 1, 0},         {383, 6, 3, 1, 0},
    {96, 1, 0, 6, 5},   {385, 1, 0, 6, 0},       {100, 3, 1, 2, 1},        {30, 7, 6, 11, 0},
    {64, 16, 3, 17, 5}, {940, 147, 146, 160, 0}, {147, 160, 20, 147, 100}, {6, 2, 1, 90, 70},
    {600, 2, 1, 3, 0},  {40, 1000, 999, 999, 3}, {3000, 2, 0, 5, 4},       {1025, 1, 0, 1, 0},
};

template <class T, class D>
struct MultiRatePair {
    FirPair<T, D> states;
    ZppStatus (*getStateSize)(int, int, int, int*);
    ZppStatus (*init)(ZppsFIRState**, const T*, int, int, int, int, int, const D*, Zpp8u*);
    ZppStatus (*initAlloc)(ZppsFIRState**, const T*, int, int, int, int, int, const D*);
    ZppStatus (*direct)(const T*, T*, int, const T*, int, int, int, int, int, T*) = nullptr;
    ZppStatus (*directInPlace)(T*, int, const T*, int, int, int, int, int, T*) = nullptr;
};

// Calls check(pair) for each pair.
template <class Check>
void forEachMultiRate(Check check) {
    forEachPair([&]<class T, class D>(const FirPair<T, D>& states) {
#define STATES(x) states, zppsFIRMRGetStateSize##x, zppsFIRMRInit##x, zppsFIRMRInitAlloc##x
#define PAIR(x) \
    MultiRatePair<T, D> { STATES(x), zppsFIRMR_Direct##x, zppsFIRMR_Direct##x##_I }
        if constexpr (std::is_same_v<D, Zpp64f>)
            check(PAIR(_64f));
        else if constexpr (std::is_same_v<D, Zpp64fc>)
            check(PAIR(_64fc));
        else if constexpr (std::is_same_v<D, Zpp32f>)
            check(MultiRatePair<T, D>{STATES(64f_32f)});
        else
            check(MultiRatePair<T, D>{STATES(64fc_32fc)});
#undef PAIR
#undef STATES
    });
}

template <class T>
Wide re(const T& x) {
    if constexpr (requires { x.re; })
        return x.re;
    else
        return x;
}
template <class T>
Wide im(const T& x) {
    if constexpr (requires { x.im; })
        return x.im;
    else
        return 0;
}

// What is expected of output n: the signal with zeros put in, met by all taps.
struct Expected {
    Wide re = 0, im = 0, magnitude = 0;
    long double allowed = 0;

    // `past` holds x(-1), x(-2), ...
    template <class T, class D>
    Expected(const Rates& r, const std::vector<T>& taps, const std::vector<D>& past,
             const std::vector<D>& signal, std::size_t n) {
        const long place = r.downPhase + static_cast<long>(n) * r.down;
        // The zeros that are put in add nothing.
        const long newest = ((place - r.upPhase) % r.up + r.up) % r.up;
        for (long k = newest; k < r.tapsLen; k += r.up) {
            const long m = (place - k - r.upPhase) / r.up;
            const D x = m >= 0 ? signal[static_cast<std::size_t>(m)] : past[static_cast<std::size_t>(-1 - m)];
            const T h = taps[static_cast<std::size_t>(k)];
            re += test::re(h) * test::re(x) - test::im(h) * test::im(x);
            im += test::re(h) * test::im(x) + test::im(h) * test::re(x);
            magnitude += std::sqrt(static_cast<long double>(std::norm(asLong(h))) * std::norm(asLong(x)));
        }
        const long double window = static_cast<long double>(r.window());
        const long double roundings = std::is_same_v<T, Zpp64fc> ? window / 2 + 3 : window / 4 + 3;
        constexpr bool single = std::is_same_v<D, Zpp32f> || std::is_same_v<D, Zpp32fc>;
        const auto m = static_cast<long double>(magnitude);
        allowed = roundings * 0x1p-53L * m + (single ? 0x1p-24L * m + 0x1p-149L : 0x1p-1074L);
    }

    template <class D>
    bool isNear(const D& y) const {
        const auto error = [](Wide a, Wide b) { return std::fabs(static_cast<long double>(a - b)); };
        if (std::isfinite(static_cast<long double>(magnitude)))
            return error(test::re(y), re) <= allowed && error(test::im(y), im) <= allowed;
        return !std::isfinite(static_cast<double>(test::re(y))) ||
               !std::isfinite(static_cast<double>(test::im(y)));
    }
};

template <class T, class D>
testing::AssertionResult areNear(const Rates& r, const std::vector<T>& taps, const std::vector<D>& past,
                                 const std::vector<D>& signal, const std::vector<D>& actual) {
    for (std::size_t n = 0; n < actual.size(); ++n) {
        const Expected expected(r, taps, past, signal, n);
        if (!expected.isNear(actual[n]))
            return testing::AssertionFailure()
                   << "output " << n << " is " << shown(actual[n]) << ", expected "
                   << static_cast<double>(expected.re) << ", " << static_cast<double>(expected.im);
    }
    return testing::AssertionSuccess();
}

// A signal of `blocks` blocks in an array with room for the outputs, run in blocks as nextLen says.
template <class D, class Run>
std::vector<D> inBlocks(const Rates& r, const std::vector<D>& signal, bool inPlace, Run run,
                        const std::function<int()>& nextLen) {
    const int blocks = static_cast<int>(signal.size()) / r.down;
    std::vector<D> result;
    for (int done = 0, n; done < blocks; done += n) {
        n = std::min(std::max(nextLen(), 1), blocks - done);
        const auto first = signal.begin() + done * r.down;
        const auto outputs = static_cast<std::size_t>(n * r.up);
        Guarded<D> src(std::vector<D>(first, first + n * r.down));
        if (inPlace) {
            auto values = src.values();
            values.resize(std::max(values.size(), outputs));
            Guarded<D> both(values);
            EXPECT_EQ(run(both.data(), both.data(), n), zppStatusOk);
            EXPECT_TRUE(both.intact());
            result.insert(result.end(), both.begin(), both.begin() + outputs);
        } else {
            Guarded<D> dst(outputs);
            src.protect();
            EXPECT_EQ(run(src.data(), dst.data(), n), zppStatusOk);
            EXPECT_TRUE(dst.intact());
            result.insert(result.end(), dst.begin(), dst.end());
        }
    }
    return result;
}

// The delay line after a signal.
template <class D>
std::vector<D> lineAfter(const std::vector<D>& past, const std::vector<D>& signal) {
    std::vector<D> all(signal.rbegin(), signal.rend());
    all.insert(all.end(), past.begin(), past.end());
    all.resize(past.size());
    return all;
}

TEST_P(FirMultiRate, IsTheFilteredSignalWithZerosPutIn) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        Random random(4);
        for (const Rates& r : kRates) {
            SCOPED_TRACE(testing::Message() << r);
            const auto taps = randomElements<T>(static_cast<std::size_t>(r.tapsLen), 1);
            const auto past = randomElements<D>(r.up == 1 && r.down == 1 ? taps.size() : r.window(), 2);
            const int blocks = 2 + 700 / std::max(r.up, r.down);
            const auto signal = randomElements<D>(static_cast<std::size_t>(blocks * r.down), 3);
            ZppsFIRState* state = nullptr;
            ASSERT_EQ(pair.initAlloc(&state, taps.data(), r.tapsLen, r.up, r.upPhase, r.down, r.downPhase,
                                     past.data()),
                      zppStatusOk);
            const auto filter = [&](const D* src, D* dst, int n) {
                return src == dst ? pair.states.filterInPlace(dst, n, state)
                                  : pair.states.filter(src, dst, n, state);
            };
            const auto someBlocks = [&] {
                return static_cast<int>(random.below(static_cast<std::uint64_t>(blocks)));
            };
            std::vector<D> whole;
            for (int variant = 0; variant < 4; ++variant) {
                EXPECT_EQ(pair.states.setDlyLine(state, past.data()), zppStatusOk);
                const auto y = inBlocks<D>(r, signal, variant % 2 != 0, filter,
                                           [&] { return variant < 2 ? blocks : someBlocks(); });
                if (variant == 0) {
                    whole = y;
                    EXPECT_TRUE(areNear(r, taps, past, signal, y));
                }
                EXPECT_TRUE(sameBits(whole, y)) << variant;
                std::vector<D> line(past.size());
                EXPECT_EQ(pair.states.getDlyLine(state, line.data()), zppStatusOk);
                EXPECT_TRUE(sameBits(lineAfter(past, signal), line));
            }
            EXPECT_EQ(pair.states.free(state), zppStatusOk);
            if constexpr (std::is_same_v<T, D>) {
                for (int variant = 0; variant < 4; ++variant) {
                    Guarded<D> line(past);
                    const auto direct = [&](const D* src, D* dst, int n) {
                        return src == dst ? pair.directInPlace(dst, n, taps.data(), r.tapsLen, r.up,
                                                               r.upPhase, r.down, r.downPhase, line)
                                          : pair.direct(src, dst, n, taps.data(), r.tapsLen, r.up, r.upPhase,
                                                        r.down, r.downPhase, line);
                    };
                    const auto y = inBlocks<D>(r, signal, variant % 2 != 0, direct,
                                               [&] { return variant < 2 ? blocks : someBlocks(); });
                    if (r.up == 1 && r.down == 1)
                        EXPECT_TRUE(areNear(r, taps, past, signal, y));
                    else
                        EXPECT_TRUE(sameBits(whole, y)) << variant;
                    EXPECT_TRUE(line.intact());
                    EXPECT_TRUE(sameBits(lineAfter(past, signal), line.values()));
                }
            }
        }
    });
}

}  // namespace
}  // namespace zpp::test
