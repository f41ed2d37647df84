#include <algorithm>
#include <cstring>
#include <regex>

#include "bench/bench.h"

namespace zpp::bench {
namespace {

std::regex wantedJob(""), wantedWho("");

// Takes --job=REGEX and --who=REGEX out of the arguments.
bool readWanted(const std::string& argument) {
    for (auto& [option, expression] : {std::pair{"--job=", &wantedJob}, {"--who=", &wantedWho}})
        if (argument.starts_with(option)) {
            *expression = std::regex(argument.substr(std::strlen(option)));
            return true;
        }
    return false;
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
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
