#include <cstring>
#include <random>

#include "bench/bench.h"

namespace zpp::bench {
namespace {

Zpp64f* makeVector(unsigned seed) {
    constexpr int len = 4 * kLargest + 64;
    Zpp64f* vector = zppsMalloc_64f(len);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> magnitude(1, 2);
    for (int i = 0; i < len; ++i) vector[i] = random() & 1 ? magnitude(random) : -magnitude(random);
    return vector;
}

}  // namespace

Zpp64f* source(int which) {
    static Zpp64f* const vectors[] = {makeVector(1), makeVector(2)};
    return vectors[which];
}

Zpp64f* destination() {
    static Zpp64f* const vector = makeVector(3);
    return vector;
}

}  // namespace zpp::bench

int main(int argc, char** argv) {
    const ZppLibraryVersion* version = zppsGetLibVersion();
    benchmark::AddCustomContext("zpp_version", version->Version);
    benchmark::AddCustomContext("zpp_column", version->targetCpu);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
