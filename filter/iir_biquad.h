// Cascades of second-order sections.
//
// Several sections are computed at once, in the lanes of registers: a section takes what the one before it
// gave kLag steps ago. The first section is in the highest lane and what goes in comes from above, so that
// all outputs move down by a lane to become inputs. With a lag of two steps only the delays of a section are
// waited for, as in one section alone.
#pragma once

#include "filter/iir_kernel.h"
#include "filter/iir_state.h"

namespace zpp::ZPP_ISA {

inline constexpr int kLag = 2;

// The elements 1 .. N-1 of `low`, and the first one of `high`.
template <int N, class V>
ZPP_INLINE V movedDown(V low, V high) {
    constexpr int doubles = sizeof(V) / sizeof(double) / N;  // of an element
    if constexpr (N == 1)
        return high;
    else if constexpr (sizeof(V) == 16)
        return shuffle<1, 2>(low, high);
    else if constexpr (sizeof(V) == 32 && doubles == 1)
        return shuffle<1, 2, 3, 4>(low, high);
    else if constexpr (sizeof(V) == 32)
        return shuffle<2, 3, 4, 5>(low, high);
    else if constexpr (doubles == 1)
        return shuffle<1, 2, 3, 4, 5, 6, 7, 8>(low, high);
    else
        return shuffle<2, 3, 4, 5, 6, 7, 8, 9>(low, high);
}

// One element in the lowest lane.
template <int N>
ZPP_INLINE auto inLowest(const double* x) {
    return broadcast<Vec<double, N>>(*x);
}
template <int N>
ZPP_INLINE auto inLowest(const Zpp64fc* x) {
    return repeated<Value<Zpp64fc, N>>(loadValue(x));
}

// The sections of a cascade in R registers of N.
template <class T, int N, int R>
struct Wave {
    using V = Value<T, N>;
    using F = Factor<T, N>;

    F b0[R], c1[R], c2[R], a1[R], a2[R];  // a1, a2: negative
    V d0[R], d1[R];
    V before[R], last[R];                              // outputs
    Vec<double, sizeof(V) / sizeof(double)> begin[R];  // the step with which a section begins

    ZPP_INLINE Wave(const T* taps, size_t sections, const T* line) {
        constexpr int lanes = N * R;
        T b0s[lanes] = {}, c1s[lanes] = {}, c2s[lanes] = {}, a1s[lanes] = {}, a2s[lanes] = {};
        T d0s[lanes] = {}, d1s[lanes] = {};
        for (size_t k = 0; k < sections; ++k, taps += kSectionTaps, line += kSectionDelays) {
            const size_t lane = lanes - 1 - k;
            b0s[lane] = taps[0];
            store(&c1s[lane], inputFactor(taps + 3, taps + 1, taps));
            store(&c2s[lane], inputFactor(taps + 4, taps + 2, taps));
            a1s[lane] = taps[3];
            a2s[lane] = taps[4];
            d0s[lane] = line[0];
            d1s[lane] = line[1];
        }
#pragma GCC unroll 4
        for (int r = 0; r < R; ++r) {
            b0[r] = loadFactor<N>(b0s + r * N);
            c1[r] = loadFactor<N>(c1s + r * N);
            c2[r] = loadFactor<N>(c2s + r * N);
            a1[r] = negative(loadFactor<N>(a1s + r * N));
            a2[r] = negative(loadFactor<N>(a2s + r * N));
            d0[r] = loadValue<N>(d0s + r * N);
            d1[r] = loadValue<N>(d1s + r * N);
            before[r] = last[r] = V{};
            constexpr int doubles = sizeof(V) / sizeof(double) / N;
            for (int i = 0; i < N * doubles; ++i) {
                const int lane = r * N + i / doubles;
                begin[r][i] = kLag * (lanes - 1 - lane);
            }
        }
    }

    ZPP_INLINE void save(T* line, size_t sections) const {
        T d0s[N * R], d1s[N * R];
#pragma GCC unroll 4
        for (int r = 0; r < R; ++r) {
            store(d0s + r * N, d0[r]);
            store(d1s + r * N, d1[r]);
        }
        for (size_t k = 0; k < sections; ++k, line += kSectionDelays) {
            line[0] = d0s[N * R - 1 - k];
            line[1] = d1s[N * R - 1 - k];
        }
    }

    // One step: x into the first section. Of a block of len samples only the sections whose turn it is move
    // on, if `kEnds`.
    template <bool kEnds>
    ZPP_INLINE void step(V x, double t = 0, double len = 0) {
        V out[R];
#pragma GCC unroll 4
        for (int r = 0; r < R; ++r) {
            const V in = movedDown<N>(before[r], r + 1 < R ? before[r + 1 < R ? r + 1 : r] : x);
            out[r] = addProduct(b0[r], in, d0[r]);
            const V next0 = addProduct(a1[r], d0[r], d1[r] + multiplied(c1[r], in));
            const V next1 = addProduct(a2[r], d0[r], multiplied(c2[r], in));
            if constexpr (kEnds) {
                const auto turn = (begin[r] <= t) & (begin[r] > t - len);
                d0[r] = select(turn, next0, d0[r]);
                d1[r] = select(turn, next1, d1[r]);
            } else {
                d0[r] = next0;
                d1[r] = next1;
            }
        }
#pragma GCC unroll 4
        for (int r = 0; r < R; ++r) {
            before[r] = last[r];
            last[r] = out[r];
        }
    }
};

// A cascade of more than N (R - 1) sections, up to N R.
template <class T, int N, int R>
[[gnu::noinline]] void filterWave(const T* taps, size_t sections, T* line, const T* src, T* dst, size_t len) {
    Wave<T, N, R> wave(taps, sections, line);
    const size_t lead = kLag * (sections - 1), lowest = N * R - sections;
    T lanes[N];
    const auto put = [&](size_t t) ZPP_INLINE_LAMBDA {
        store(lanes, wave.last[0]);
        dst[t - lead] = lanes[lowest];
    };
    const auto ends = [&](size_t t, size_t end) ZPP_INLINE_LAMBDA {
        const T none{};
        for (; t < end; ++t) {
            wave.template step<true>(inLowest<N>(t < len ? src + t : &none), static_cast<double>(t),
                                     static_cast<double>(len));
            if (t >= lead) put(t);
        }
    };
    ends(0, lead);
    for (size_t t = lead; t < len; ++t) {
        wave.template step<false>(inLowest<N>(src + t));
        put(t);
    }
    ends(len > lead ? len : lead, len + lead);
    wave.save(line, sections);
}

// The widest registers, and how many of them a wave takes.
template <class T>
inline constexpr int kWaveLanes = kStep<T>;
inline constexpr int kWaveRegisters = kVectorBytes == 64 ? 2 : 4;

template <class T, int N, int R>
void filterGroup(const T* taps, size_t sections, T* line, const T* src, T* dst, size_t len) {
    if constexpr (N < kWaveLanes<T>) {
        if (sections > N) return filterGroup<T, 2 * N, R>(taps, sections, line, src, dst, len);
    } else if constexpr (R < kWaveRegisters) {
        if (sections > N * R) return filterGroup<T, N, R + 1>(taps, sections, line, src, dst, len);
    }
    filterWave<T, N, R>(taps, sections, line, src, dst, len);
}

// The shortest block for which it pays to set up a wave: of shorter ones each section is computed on its own.
// A single real one takes a wave too, with AVX, as compilers keep vectors in registers without moves that are
// waited for.
template <class T>
size_t waveLength(size_t sections) {
    constexpr size_t never = ~size_t{0};
    if (sections == 1) return kVectorBytes > 16 && std::is_same_v<T, Zpp64f> ? 64 : never;
    return 2 * sections + 8;
}

// Samples that go through all groups of sections before the next ones do.
inline constexpr size_t kCascadeChunk = 1024;

template <class T>
void filterSections(const T* taps, size_t sections, T* line, const T* src, T* dst, size_t len) {
    constexpr size_t most = kWaveLanes<T> * kWaveRegisters;
    while (sections > 0) {
        size_t count = kVectorBytes == 0 ? 1 : sections < most ? sections : most;
        const bool wave = len >= waveLength<T>(count);
        if (!wave) {
            count = 1;
            filterSmall<2>(taps, line, src, dst, len);
        } else if constexpr (kVectorBytes > 0) {
            filterGroup<T, (kWaveLanes<T> > 1 ? 2 : 1), 1>(taps, count, line, src, dst, len);
        }
        sections -= count;
        taps += count * kSectionTaps;
        line += count * kSectionDelays;
        src = dst;
    }
}

template <class T>
void filterCascade(const T* taps, size_t sections, T* line, const T* src, T* dst, size_t len) {
    for (size_t i = 0; i < len; i += kCascadeChunk)
        filterSections(taps, sections, line, src + i, dst + i,
                       len - i < kCascadeChunk ? len - i : kCascadeChunk);
}

}  // namespace zpp::ZPP_ISA
