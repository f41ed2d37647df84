// The errors of the elementary functions on every build of px, beside those of libm and of SLEEF. bench/ulp
// runs this program, prints its table and draws it.
//
// zpp_ulp [--count N] [--function NAME]. Written are lines "error <function> <who> <arguments> <largest
// error> <its argument>", errors in units of the last place, "differ <function> <arguments>" for those of
// which builds with a fused multiply-add have not the same bits, and "point <function> <who> <argument>
// <error>", the largest errors of parts of the ordinary arguments.
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench/peers/elementary.h"
#include "tests/support/columns.h"
#include "tests/vm/elementary.h"

namespace zpp::test {
std::uint64_t seed() { return 20040; }
}  // namespace zpp::test

namespace zpp::bench {
namespace {

using test::Elementary;
using test::Wide;

constexpr std::size_t kBlock = 4096, kParts = 400, kPeerArguments = std::size_t{1} << 20;

// What one library, or one build of ours, has been seen to do with a function.
struct Seen {
    std::string who;
    std::size_t arguments = 0;
    test::WorstError worst = {};
    std::array<float, kParts> parts = {};

    // Long double tells all errors to some thousandths; what may be the largest is measured anew.
    void add(const Elementary& f, double x, double y, double result, long double near) {
        ++arguments;
        const int exponent = std::max(std::ilogb(static_cast<double>(near)), -1022);
        const auto error = static_cast<double>(
            std::fabs(std::ldexp(static_cast<long double>(result) - near, 52 - exponent)));
        if (!(error < worst.ulps - .004)) worst.add(x, result, f.exact(Wide{x}, Wide{y}));
        const double place = (x - f.low) / (f.high - f.low);
        if (place >= 0 && place < 1) {
            float& largest = parts[static_cast<std::size_t>(place * kParts)];
            largest = std::fmax(largest, static_cast<float>(error));
        }
    }
    void print(const Elementary& f) const {
        std::printf("error %s %s %zu %.4f %a\n", f.name, who.c_str(), arguments, worst.ulps, worst.argument);
        for (std::size_t i = 0; i < kParts; ++i)
            std::printf("point %s %s %.6g %.4f\n", f.name, who.c_str(),
                        f.low + (f.high - f.low) * (static_cast<double>(i) + .5) / kParts,
                        static_cast<double>(parts[i]));
    }
};

struct Builds {
    std::vector<test::Binding> bindings;
    std::vector<Seen> seen;

    Builds() {
        for (const test::Binding& binding : test::runnableBindings())
            if (binding.columnName() == "px")
                bindings.push_back(binding), seen.push_back({binding.isaName()});
    }
};

void measure(const Elementary& f, std::size_t count) {
    test::Random random(std::hash<std::string>()(f.name));
    Builds builds;
    std::vector<Seen> peers;
    for (const ElementaryPeer& peer : elementaryPeers())
        if (std::strcmp(peer.function, f.name) == 0) peers.push_back({peer.who});
    std::size_t differing = 0;
    std::vector<long double> near(kBlock + 64);
    for (std::size_t done = 0; done < count; done += kBlock) {
        const test::ElementaryArguments a = drawArguments(f, kBlock, random);
        const std::size_t n = a.x.size();
        near.resize(n);
        for (std::size_t i = 0; i < n; ++i) near[i] = f.near(a.x[i], a.y[i]);
        std::vector<double> results(n), before;
        for (std::size_t b = 0; b < builds.bindings.size(); ++b) {
            builds.bindings[b].bind();
            f.call(a.x.data(), a.y.data(), results.data(), static_cast<int>(n));
            for (std::size_t i = 0; i < n; ++i) builds.seen[b].add(f, a.x[i], a.y[i], results[i], near[i]);
            if (!builds.seen[b].who.starts_with("avx")) continue;
            for (std::size_t i = 0; i < before.size(); ++i)
                differing +=
                    std::bit_cast<std::uint64_t>(before[i]) != std::bit_cast<std::uint64_t>(results[i]);
            before = results;
        }
        if (done >= kPeerArguments) continue;
        std::size_t p = 0;
        for (const ElementaryPeer& peer : elementaryPeers()) {
            if (std::strcmp(peer.function, f.name) != 0) continue;
            for (std::size_t i = 0; i < n; ++i)
                peers[p].add(f, a.x[i], a.y[i], peer.of2 ? peer.of2(a.x[i], a.y[i]) : peer.of1(a.x[i]),
                             near[i]);
            ++p;
        }
    }
    std::printf("domain %s %g %g\n", f.name, f.least, f.most);
    for (const Seen& seen : builds.seen) seen.print(f);
    for (const Seen& seen : peers) seen.print(f);
    std::printf("differ %s %zu\n", f.name, differing);
    std::fflush(stdout);
}

}  // namespace
}  // namespace zpp::bench

int main(int argc, char** argv) {
    std::size_t count = 1 << 20;
    std::string function;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--count") == 0) count = std::strtoull(argv[i + 1], nullptr, 10);
        if (std::strcmp(argv[i], "--function") == 0) function = argv[i + 1];
    }
    for (const zpp::test::Elementary& f : zpp::test::elementaryFunctions())
        if (function.empty() || function == f.name) zpp::bench::measure(f, count);
}
