// A job is what a function does to vectors, and those who can do it are timed on the same ones: the library
// and its peers, which a table of each says, in the file of the family or of the peer.
#pragma once

#include <array>
#include <initializer_list>
#include <span>
#include <tuple>
#include <utility>

#include "bench/bench.h"

namespace zpp::bench {

using Timed = void (*)(benchmark::State&, int len);

// What an element takes part in.
struct Job {
    const char* name;
    size_t bytes;  // read and written for an element: what a copy of half as many takes is its limit
    Timed timed;
    bool huge = false;  // timed at kHuge elements too
};

struct Jobs {
    Jobs(std::initializer_list<Job> jobs);
};
struct Reductions {  // their limit is to load as many bytes
    Reductions(std::initializer_list<Job> jobs);
};

struct Peer {
    const char* job;
    Timed timed;
};
struct Peers {
    Peers(const char* who, std::initializer_list<Peer> peers);
};

// Vectors of the elements that a type stands for: numbers of ordinary size, and any bits of integers.
const void* vectorOf(const Zpp64f*, int which);
const void* vectorOf(const Zpp32f*, int which);
const void* vectorOf(const Zpp16f*, int which);  // halves
const void* vectorOf(const void*, int which);

// Peers are compiled with other flags, and must not share a copy of this.
namespace {

template <class T>
T* vector(int which) {
    if constexpr (requires(T x) { x.re; })
        return static_cast<T*>(
            const_cast<void*>(vectorOf(static_cast<const decltype(T::re)*>(nullptr), which)));
    else
        return static_cast<T*>(const_cast<void*>(vectorOf(static_cast<const T*>(nullptr), which)));
}

// The arguments in their order: pointers to constants are sources, others destinations; of integers, which
// a constant may come before, the first is the length, more of them are `more`, in turn.
struct Arguments {
    int len;
    const int* more;
    bool needsConstant = false;
    bool needsLength = true;
    int sources = 0, destinations = 0;

    // The last vectors; what has more destinations, as reductions have, writes single numbers.
    int nextDestination() { return kVectors - 1 - destinations++ % 2; }

    template <class P>
    P next() {
        if constexpr (std::is_pointer_v<P>) {
            using T = std::remove_pointer_t<P>;
            return vector<std::remove_const_t<T>>(std::is_const_v<T> ? sources++ : nextDestination());
        } else if constexpr (std::is_integral_v<P>) {
            if (std::exchange(needsConstant, false)) return 1000003;
            return std::exchange(needsLength, false) ? len : *more++;
        } else if constexpr (std::is_floating_point_v<P>) {
            return P{1.5};
        } else {
            using Part = decltype(P{}.re);
            return {static_cast<Part>(1.5), static_cast<Part>(-0.5)};
        }
    }
};

template <class R, class... P>
void timeCalls(benchmark::State& state, R (*f)(P...), int len, std::span<const int> more) {
    constexpr size_t integers = (0 + ... + std::is_integral_v<P>);
    Arguments next{len, more.data(), integers > 1 + more.size()};
    const std::tuple<P...> arguments{next.next<P>()...};
    R (*volatile function)(P...) = f;  // as a user calls it: nothing of it is known
    if constexpr (std::is_same_v<R, ZppStatus>)
        if (std::apply(function, arguments) < 0) state.SkipWithError("the call is refused");
    for (auto iteration : state) {
        (void)iteration;
        std::apply(function, arguments);
        benchmark::ClobberMemory();
    }
}

// Calls of a function, with these for the integers behind its length.
template <auto kFunction, int... kMore>
void timed(benchmark::State& state, int len) {
    static constexpr std::array<int, sizeof...(kMore)> kExtra = {kMore...};
    timeCalls(state, +kFunction, len, kExtra);
}

}  // namespace
}  // namespace zpp::bench
