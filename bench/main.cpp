#include <algorithm>
#include <cstring>
#include <iostream>
#include <regex>

#include "bench/bench.h"

namespace zpp::bench {
namespace {

std::regex wantedJob(""), wantedWho("");
bool serves = false;

// Takes --job=REGEX, --who=REGEX and --serve out of the arguments.
bool readWanted(const std::string& argument) {
    if (argument == "--serve") return serves = true;
    for (auto& [option, expression] : {std::pair{"--job=", &wantedJob}, {"--who=", &wantedWho}})
        if (argument.starts_with(option)) {
            *expression = std::regex(argument.substr(std::strlen(option)));
            return true;
        }
    return false;
}

// Times the cases that each line of the input names, so that whoever writes the lines can let several
// processes take turns; answers with the report in JSON and a line that says "end".
int serve() {
    for (std::string cases; std::getline(std::cin, cases); std::cout << "\nend" << std::endl) {
        benchmark::JSONReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter, cases);
    }
    return 0;
}

}  // namespace

bool isWanted(const std::string& job, const std::string& who) {
    return std::regex_search(job, wantedJob) && std::regex_search(who, wantedWho);
}

}  // namespace zpp::bench

int main(int argc, char** argv) {
    const ZppLibraryVersion* version = zppsGetLibVersion();
    benchmark::AddCustomContext("zpp_version", version->Version);
    benchmark::AddCustomContext("zpp_column", version->targetCpu);
    argc = static_cast<int>(std::remove_if(argv + 1, argv + argc, zpp::bench::readWanted) - argv);
    zpp::bench::registerJobs();
    zpp::bench::registerTransforms();
    zpp::bench::registerFilters();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    if (zpp::bench::serves) return zpp::bench::serve();
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
