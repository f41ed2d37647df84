// What the tests of multi-rate FIR filters share: the functions of each type pair, and a signal to be
// filtered with what is expected of it.
#pragma once

#include <ostream>

#include "tests/filter/fir_support.h"
#include "tests/support/draws.h"

namespace zpp::test {

// In the order of the arguments.
struct MultiRate {
    int tapsLen, up, upPhase, down, downPhase;

    bool isSingleRate() const { return up == 1 && down == 1; }
    std::size_t window() const { return static_cast<std::size_t>((tapsLen - 1) / up + 1); }
};
inline std::ostream& operator<<(std::ostream& out, const MultiRate& r) {
    return out << r.tapsLen << " taps, " << r.up << " (" << r.upPhase << ") to " << r.down << " ("
               << r.downPhase << ")";
}

template <class T, class D>
struct MultiRatePair {
    FirPair<T, D> states;
    ZppStatus (*getStateSize)(int, int, int, int*);
    ZppStatus (*init)(ZppsFIRState**, const T*, int, int, int, int, int, const D*, Zpp8u*);
    ZppStatus (*initAlloc)(ZppsFIRState**, const T*, int, int, int, int, int, const D*);
    ZppStatus (*direct)(const T*, T*, int, const T*, int, int, int, int, int, T*) = nullptr;
    ZppStatus (*directInPlace)(T*, int, const T*, int, int, int, int, int, T*) = nullptr;

    ZppStatus initIn(ZppsFIRState** pp, const T* taps, const MultiRate& r, const D* line,
                     Zpp8u* buffer) const {
        return init(pp, taps, r.tapsLen, r.up, r.upPhase, r.down, r.downPhase, line, buffer);
    }
    ZppStatus allocate(ZppsFIRState** pp, const T* taps, const MultiRate& r, const D* line) const {
        return initAlloc(pp, taps, r.tapsLen, r.up, r.upPhase, r.down, r.downPhase, line);
    }
    ZppStatus filterDirectly(const T* src, T* dst, int n, const T* taps, const MultiRate& r, T* line) const {
        return src == dst ? directInPlace(dst, n, taps, r.tapsLen, r.up, r.upPhase, r.down, r.downPhase, line)
                          : direct(src, dst, n, taps, r.tapsLen, r.up, r.upPhase, r.down, r.downPhase, line);
    }
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

// Taps and samples. Roundings of one sign add up, which random ones do not.
struct MultiRateInput {
    const char* name;
    double (*tap)(Random&, std::size_t);
    double (*sample)(Random&, std::size_t);
};
inline constexpr auto anyNumber = [](Random& random, std::size_t) { return random.uniform(); };
inline const MultiRateInput kMultiRateInputs[] = {
    {"ordinary", anyNumber, anyNumber},
    {"roundings of one sign", [](Random&, std::size_t) { return 1.0; },
     [](Random&, std::size_t n) { return n % 256 < 4 ? 1 : 0x1.001p-53; }},
    {"beyond numbers", anyNumber,
     [](Random& random, std::size_t n) { return n == 3    ? kInf
                                                : n == 90 ? kNan
                                                          : random.uniform(); }},
};

template <class T, class D>
struct Problem {
    const MultiRatePair<T, D>& pair;
    const MultiRate rates;
    std::vector<T> taps;
    std::vector<D> past, signal;  // x(-1), x(-2), ... and x(0), x(1), ...

    Problem(const MultiRatePair<T, D>& p, const MultiRate& r, int blocks,
            const MultiRateInput& input = kMultiRateInputs[0])
        : pair(p),
          rates(r),
          taps(elements<T>(static_cast<std::size_t>(r.tapsLen), 1, input.tap)),
          past(randomElements<D>(r.window(), 2)),
          signal(elements<D>(static_cast<std::size_t>(blocks * r.down), 3, input.sample)) {}

    int blocks() const { return static_cast<int>(signal.size()) / rates.down; }

    // Whether `y` is the signal with zeros put in, filtered, of which the places of the outputs are kept.
    testing::AssertionResult isSolvedBy(const std::vector<D>& y) const {
        if (y.size() != static_cast<std::size_t>(blocks() * rates.up))
            return testing::AssertionFailure() << "sizes differ";
        for (std::size_t n = 0; n < y.size(); ++n) {
            const long place = rates.downPhase + static_cast<long>(n) * rates.down - rates.upPhase;
            LongComplex sum;
            long double magnitude = 0;
            // What is put in between adds nothing.
            for (long k = (place % rates.up + rates.up) % rates.up; k < rates.tapsLen; k += rates.up) {
                const long m = (place - k) / rates.up;
                const LongComplex h = asLong(taps[static_cast<std::size_t>(k)]);
                const LongComplex x = asLong(m < 0 ? past[static_cast<std::size_t>(-1 - m)]
                                                   : signal[static_cast<std::size_t>(m)]);
                sum += LongComplex(h.real() * x.real() - h.imag() * x.imag(),
                                   h.real() * x.imag() + h.imag() * x.real());
                magnitude += std::sqrt(std::norm(h) * std::norm(x));
            }
            const auto window = static_cast<long double>(rates.window());
            constexpr bool single = !std::is_same_v<T, D>;
            const long double allowed = (window / (pair.states.kComplex ? 2 : 4) + 3) * 0x1p-53L * magnitude +
                                        (single ? 0x1p-24L * std::abs(sum) + 0x1p-149L : 0x1p-1074L);
            const LongComplex off = asLong(y[n]) - sum;
            const long double error = std::max(std::fabs(off.real()), std::fabs(off.imag()));
            if (std::isfinite(magnitude) ? !(error <= allowed) || std::isnan(off.imag())
                                         : std::isfinite(off.real()) && std::isfinite(off.imag()))
                return testing::AssertionFailure()
                       << "output " << n << " is off by " << error << ", allowed " << allowed;
        }
        return testing::AssertionSuccess();
    }

    // The delay line behind the signal.
    std::vector<D> lineBehind() const {
        std::vector<D> all(signal.rbegin(), signal.rend());
        all.insert(all.end(), past.begin(), past.end());
        all.resize(past.size());
        return all;
    }

    // The outputs of the signal in runs of blocks as nextLen says; in place in an array with room for the
    // larger.
    template <class Run>
    std::vector<D> solve(bool inPlace, Run run, const std::function<int()>& nextLen) const {
        std::vector<D> result;
        for (int done = 0, n; done < blocks(); done += n) {
            n = std::min(std::max(nextLen(), 1), blocks() - done);
            const auto first = signal.begin() + done * rates.down;
            const auto outputs = static_cast<std::size_t>(n * rates.up);
            std::vector<D> inputs(first, first + n * rates.down);
            if (inPlace) inputs.resize(std::max(inputs.size(), outputs));
            Guarded<D> src(inputs), dst(outputs);
            if (!inPlace) src.protect();
            D* const y = inPlace ? src.data() : dst.data();
            EXPECT_EQ(run(src.data(), y, n), zppStatusOk);
            EXPECT_TRUE(src.intact() && dst.intact());
            result.insert(result.end(), y, y + outputs);
        }
        return result;
    }

    // By a state with the taps and the past, which it then has brought up to date.
    std::vector<D> solve(bool inPlace, ZppsFIRState* state, const std::function<int()>& nextLen) const {
        EXPECT_EQ(pair.states.setDlyLine(state, past.data()), zppStatusOk);
        const auto y = solve(
            inPlace,
            [&](const D* src, D* dst, int n) {
                return src == dst ? pair.states.filterInPlace(dst, n, state)
                                  : pair.states.filter(src, dst, n, state);
            },
            nextLen);
        Guarded<D> line(past.size());
        EXPECT_EQ(pair.states.getDlyLine(state, line), zppStatusOk);
        EXPECT_TRUE(line.intact() && same(lineBehind(), line.values()));
        return y;
    }
    std::vector<D> solveDirectly(bool inPlace, const std::function<int()>& nextLen) const {
        Guarded<T> line(past), h(taps);
        h.protect();
        const auto y = solve(
            inPlace,
            [&](const T* src, T* dst, int n) { return pair.filterDirectly(src, dst, n, h, rates, line); },
            nextLen);
        EXPECT_TRUE(line.intact() && same(lineBehind(), line.values()));
        return y;
    }
};

}  // namespace zpp::test
