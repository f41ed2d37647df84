// zpp-check: every question about a function on a machine.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "check/measure.h"
#include "check/session.h"
#include "check/watch.h"
#include "zpp.h"

namespace {
std::uint64_t chosenSeed = 20040;
}

std::uint64_t zpp::test::seed() { return chosenSeed; }

namespace zpp::check {
namespace {
int checkAll(const Options& options) {
    Session session(options);
    int functions = 0;
    for (const Function& f : allFunctions())
        if (f.matches(options.function.c_str())) ++functions, session.check(f);
    std::printf("%d functions on %zu builds: %ld calls, %zu failures\n", functions, session.bindings().size(),
                session.calls(), session.reports().size());
    return session.reports().empty() ? 0 : 1;
}
}  // namespace
}  // namespace zpp::check

int main(int, char** argv) {
    zpp::check::catchFaults();
    zpp::check::Options options;
    if (argv[1]) options.function = argv[1];
    return zpp::check::checkAll(options);
}
