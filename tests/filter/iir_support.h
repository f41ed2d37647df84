// What the tests of the IIR filters share: the functions of each type pair and shape, and a filter.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <type_traits>
#include <vector>

#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"
#include "zpp/filter.h"

namespace zpp::test {

// One row: a type pair, and how states of one shape are made. `order` is the number of sections of a cascade.
template <class T, class D>
struct IirKind {
    using Sample = T;
    using Data = D;
    static constexpr bool kComplex = std::is_same_v<T, Zpp64fc>;
    static constexpr bool kSingle = !std::is_same_v<T, D>;

    const char* name;
    bool cascade;
    int id;
    ZppStatus (*getStateSize)(int, int*);
    ZppStatus (*init)(ZppsIIRState**, const T*, int, const T*, Zpp8u*);
    ZppStatus (*initAlloc)(ZppsIIRState**, const T*, int, const T*);
    ZppStatus (*free)(ZppsIIRState*);
    ZppStatus (*setTaps)(const T*, ZppsIIRState*);
    ZppStatus (*getDlyLine)(const ZppsIIRState*, T*);
    ZppStatus (*setDlyLine)(ZppsIIRState*, const T*);
    ZppStatus (*filter)(const D*, D*, int, ZppsIIRState*);
    ZppStatus (*filterInPlace)(D*, int, ZppsIIRState*);
    ZppStatus (*filterOne)(D, D*, ZppsIIRState*);

    std::size_t taps(int order) const {
        return static_cast<std::size_t>(cascade ? 6 * order : 2 * (order + 1));
    }
    std::size_t delays(int order) const { return static_cast<std::size_t>(cascade ? 2 * order : order); }
};

// Calls check(kind) for each pair and shape.
template <class Check>
void forEachKind(Check check) {
    const auto run = [&](const auto& kind) {
        SCOPED_TRACE(kind.name);
        check(kind);
    };
#define KIND(T, D, x, made, cascade, id)     \
    IirKind<T, D>{#made,                     \
                  cascade,                   \
                  id,                        \
                  zppsIIRGetStateSize##made, \
                  zppsIIRInit##made,         \
                  zppsIIRInitAlloc##made,    \
                  zppsIIRFree##x,            \
                  zppsIIRSetTaps##x,         \
                  zppsIIRGetDlyLine##x,      \
                  zppsIIRSetDlyLine##x,      \
                  zppsIIR##x,                \
                  zppsIIR##x##_I,            \
                  zppsIIROne##x}
    run(KIND(Zpp64f, Zpp64f, _64f, _64f, false, 0x49493133));
    run(KIND(Zpp64f, Zpp64f, _64f, _BiQuad_64f, true, 0x49493134));
    run(KIND(Zpp64fc, Zpp64fc, _64fc, _64fc, false, 0x49493135));
    run(KIND(Zpp64fc, Zpp64fc, _64fc, _BiQuad_64fc, true, 0x49493136));
    run(KIND(Zpp64f, Zpp32f, 64f_32f, 64f_32f, false, 0x49493137));
    run(KIND(Zpp64f, Zpp32f, 64f_32f, 64f_BiQuad_32f, true, 0x49493138));
    run(KIND(Zpp64fc, Zpp32fc, 64fc_32fc, 64fc_32fc, false, 0x49493139));
    run(KIND(Zpp64fc, Zpp32fc, 64fc_32fc, 64fc_BiQuad_32fc, true, 0x49493230));
#undef KIND
}

// A number of any of the types.
template <class T>
T number(double re, double im = 0) {
    if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(re);
    else
        return {static_cast<decltype(T::re)>(re), static_cast<decltype(T::im)>(im)};
}
template <class T>
T randomNumber(Random& random, double size = 1) {
    const double re = random.uniform(-size, size);
    return number<T>(re, random.uniform(-size, size));
}
template <class T>
std::vector<T> randomNumbers(std::size_t n, std::uint64_t stream) {
    Random random(stream);
    std::vector<T> values(n);
    for (T& x : values) x = randomNumber<T>(random);
    return values;
}

// Taps of stable filters, with an a0 that is not 1: the sum of the other a is below it.
template <class Kind>
std::vector<typename Kind::Sample> randomTaps(const Kind& kind, int order, std::uint64_t stream) {
    using T = typename Kind::Sample;
    Random random(stream);
    std::vector<T> taps;
    const auto add = [&](int count) {
        for (int i = 0; i <= count; ++i) taps.push_back(randomNumber<T>(random, 2));
        taps.push_back(number<T>(-1.7, 0.9));
        for (int i = 0; i < count; ++i) taps.push_back(randomNumber<T>(random, 1.2 / count));
    };
    if (kind.cascade)
        for (int i = 0; i < order; ++i) add(2);
    else
        add(order);
    return taps;
}

// A filter in a buffer of exactly the stated size, behind `offset` bytes; real cascades always begin at a
// multiple of 16 bytes.
template <class Kind>
class IirFilter {
  public:
    using T = typename Kind::Sample;
    using D = typename Kind::Data;

    const Kind& kind;
    std::vector<T> taps, line;  // as given
    ZppsIIRState* state = nullptr;

    IirFilter(const Kind& k, int order, int offset = 0)
        : kind(k),
          taps(randomTaps(k, order, 1)),
          line(randomNumbers<T>(k.delays(order), 2)),
          buffer_(sizeFor(order) + static_cast<std::size_t>(tail(offset))) {
        EXPECT_EQ(kind.init(&state, taps.data(), order, line.data(), buffer_), zppStatusOk);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(state) % 16, 0U);
    }
    ~IirFilter() {
        const auto before = buffer_.values();
        EXPECT_EQ(kind.free(state), zppStatusOk);
        EXPECT_TRUE(sameBits(before, buffer_.values()) && buffer_.intact());
        EXPECT_TRUE(
            std::all_of(buffer_.end() - spare_, buffer_.end(), [](Zpp8u byte) { return byte == 0xA5; }));
    }
    IirFilter(const IirFilter&) = delete;
    IirFilter& operator=(const IirFilter&) = delete;

    std::vector<T> delayLine() const {
        Guarded<T> values(line.size());
        EXPECT_EQ(kind.getDlyLine(state, values), zppStatusOk);
        return values.values();
    }

    // The signal from the first delay line on, in blocks of the lengths that nextLen gives; a length of 0 is
    // one sample by filterOne.
    std::vector<D> run(const std::vector<D>& signal, bool inPlace, const std::function<int()>& nextLen) {
        EXPECT_EQ(kind.setDlyLine(state, line.data()), zppStatusOk);
        Guarded<D> src(signal), dst(signal);
        for (int done = 0, n; done < src.len(); done += n) {
            const int asked = nextLen();
            n = std::min(std::max(asked, 1), src.len() - done);
            EXPECT_EQ(asked == 0 ? kind.filterOne(src[done], dst + done, state)
                      : inPlace  ? kind.filterInPlace(dst + done, n, state)
                                 : kind.filter(src + done, dst + done, n, state),
                      zppStatusOk);
        }
        EXPECT_TRUE(dst.intact());
        EXPECT_TRUE(sameBits(signal, src.values()));
        return dst.values();
    }
    std::vector<D> runWhole(const std::vector<D>& signal, bool inPlace = false) {
        return run(signal, inPlace, [&] { return static_cast<int>(signal.size()); });
    }

  private:
    // Bytes behind the state, so that with the buffer's end at a page it begins at an address of its own.
    int tail(int offset) {
        const int size = static_cast<int>(sizeFor(orderOf()));
        spare_ = kind.cascade && !Kind::kComplex ? (16 - size % 16) % 16 : offset;
        return spare_;
    }
    int orderOf() const { return static_cast<int>(kind.cascade ? line.size() / 2 : line.size()); }
    std::size_t sizeFor(int order) const {
        int size = 0;
        EXPECT_EQ(kind.getStateSize(order, &size), zppStatusOk);
        return static_cast<std::size_t>(size);
    }

    int spare_ = 0;
    Guarded<Zpp8u> buffer_;
};

}  // namespace zpp::test
