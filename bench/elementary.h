// Jobs of elementary functions: their arguments are of the range that the job's name stands for.
#pragma once

#include <algorithm>

#include "bench/jobs.h"

namespace zpp::bench {

// kLargest arguments, for first and second sources.
const double* argumentsOf(const char* job, int which);

template <size_t N>
struct JobName {
    char text[N];
    constexpr JobName(const char (&name)[N]) { std::copy(name, name + N, text); }
};

namespace {

// In the order of the prototypes: sources, a constant, destinations, the length.
template <JobName kJob, class R, class... P>
void timeInRange(benchmark::State& state, R (*f)(P...), int len) {
    int sources = 0, destinations = 0;
    const auto next = [&]<class T>() -> T {
        if constexpr (std::is_same_v<T, const double*>)
            return argumentsOf(kJob.text, sources++);
        else if constexpr (std::is_same_v<T, double*>)
            return vector<double>(kVectors - 1 - destinations++);
        else if constexpr (std::is_same_v<T, double>)
            return argumentsOf(kJob.text, 1)[0];
        else
            return len;
    };
    const std::tuple<P...> arguments{next.template operator()<P>()...};
    R (*volatile function)(P...) = f;
    for (auto iteration : state) {
        (void)iteration;
        std::apply(function, arguments);
        benchmark::ClobberMemory();
    }
}
template <JobName kJob, auto kFunction>
void timedInRange(benchmark::State& state, int len) {
    timeInRange<kJob>(state, +kFunction, len);
}

}  // namespace
}  // namespace zpp::bench
