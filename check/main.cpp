// zpp-check: every question about a function on a machine.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "check/broken.h"
#include "check/checker.h"
#include "check/faults.h"
#include "check/machine.h"
#include "check/measure.h"
#include "check/watch.h"
#include "zpp.h"

namespace {
std::uint64_t chosenSeed = 20040;
}

std::uint64_t zpp::test::seed() { return chosenSeed; }

namespace zpp::check {
namespace {

constexpr int kOk = 0, kFailed = 1, kUsageError = 2;

constexpr char kUsage[] =
    "usage: zpp-check [mode] [options]\n"
    "Without a mode: calls the functions with ordinary and special data at awkward lengths and places, "
    "watches\n"
    "their manners, and compares the results of all columns and ISA builds.\n"
    "  --list           functions, columns, ISA builds, and what is bound\n"
    "  --hash           a digest of all results that are promised to the last bit: the same on every "
    "machine\n"
    "  --bench          nanoseconds for each element (--length, 1024 if not given)\n"
    "  --self-test      checks functions that are broken on purpose\n"
    "  --function NAME  only this function; * stands for any characters\n"
    "  --column px|a6|w7, --isa x87|sse|sse2|avx2|avx512\n"
    "                   only this column, only this ISA build\n"
    "  --length N       only this length\n"
    "  --seed N         of the data\n"
    "Exit code: 0 all is well, 1 something is not, 2 the command line is wrong.\n";

std::vector<const Function*> selected(const Options& options) {
    std::vector<const Function*> functions;
    for (const Function& f : allFunctions())
        if (f.matches(options.function.c_str())) functions.push_back(&f);
    return functions;
}

int list(const Options& options) {
    for (const Function* f : selected(options)) {
        for (const char* name : {"px", "a6", "w7"})
            std::printf("%s ", f->record->column[name[0] == 'p'   ? kPx
                                                 : name[0] == 'a' ? kA6
                                                                  : kW7]
                                   ? name
                                   : "--");
        std::printf(" %s\n", f->prototype.c_str());
    }
    for (const test::Binding& binding : test::allBindings())
        std::printf("%-10s %s%s\n", binding.name().c_str(),
                    supportsIsa(binding.isa) ? "runs here" : "not on this machine",
                    &binding == &loadedBinding() ? ", bound" : "");
    return kOk;
}

int check(const Options& options) {
    Checker checker(options);
    const auto functions = selected(options);
    for (const Function* f : functions) checker.check(*f);
    if (!watchesVectors())
        std::printf("The upper halves of vector registers cannot be watched on this machine.\n");
    std::printf("%zu functions, %zu builds, %ld calls, %zu differences; seed %llu\n", functions.size(),
                checker.bindings().size(), checker.calls(), checker.reports().size(),
                static_cast<unsigned long long>(test::seed()));
    return checker.reports().empty() ? kOk : kFailed;
}

int hash(const Options& options) {
    const Checker checker(options);
    for (const Function* f : selected(options))
        if (const std::string missing = missingRule(*f); !missing.empty()) {
            std::printf("%s cannot be checked: %s\n", f->name.c_str(), missing.c_str());
            return kFailed;
        }
    std::uint64_t first = 0;
    int functions = 0;
    for (const test::Binding& binding : checker.bindings()) {
        checker.bind(binding);
        std::uint64_t digest = 0;
        functions = 0;
        for (const Function* f : selected(options)) functions += addToDigest(*f, digest);
        if (&binding == &checker.bindings().front()) first = digest;
        if (digest == first) continue;
        std::printf("%s gives %016llx, %s gives %016llx\n", checker.bindings().front().name().c_str(),
                    static_cast<unsigned long long>(first), binding.name().c_str(),
                    static_cast<unsigned long long>(digest));
        return kFailed;
    }
    std::printf("%016llx  %d functions, seed %llu\n", static_cast<unsigned long long>(first), functions,
                static_cast<unsigned long long>(test::seed()));
    return kOk;
}

int bench(const Options& options) {
    const Checker checker(options);
    const int length = options.length != 0 ? options.length : 1024;
    std::printf("nanoseconds an element, %d elements\n%-28s", length, "");
    for (const test::Binding& binding : checker.bindings()) std::printf(" %10s", binding.name().c_str());
    for (const Function* f : selected(options)) {
        const auto times = missingRule(*f).empty() ? timeCalls(checker, *f, length) : std::vector<double>();
        if (times.empty()) continue;
        std::printf("\n%-28s", f->name.c_str());
        for (const double time : times) std::printf(" %10.4g", time / length);
    }
    std::printf("\n");
    return kOk;
}

using Mode = int (*)(const Options&);

// False for an argument that is not understood.
bool parse(int argc, char** argv, Mode& mode, Options& options) {
    constexpr struct {
        const char* name;
        Mode mode;
    } kModes[] = {{"--list", list}, {"--hash", hash}, {"--bench", bench}, {"--self-test", [](const Options&) {
                                                                               return checkBrokenFunctions();
                                                                           }}};
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        bool known = false;
        for (const auto& candidate : kModes)
            if (name == candidate.name) mode = candidate.mode, known = true;
        if (known) continue;
        const char* value = i + 1 < argc ? argv[++i] : nullptr;
        if (value == nullptr) return false;
        char* end = nullptr;
        if (name == "--function")
            options.function = value;
        else if (name == "--column")
            options.column = value;
        else if (name == "--isa")
            options.isa = value;
        else if (name == "--length")
            options.length = static_cast<int>(std::strtol(value, &end, 0));
        else if (name == "--seed")
            chosenSeed = std::strtoull(value, &end, 0);
        else
            return false;
        if (end != nullptr && *end != 0) return false;
    }
    return options.length >= 0;
}

int run(int argc, char** argv) {
    Mode mode = check;
    Options options;
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kUsage, stdout);
        return kOk;
    }
    if (!parse(argc, argv, mode, options)) {
        std::fputs(kUsage, stderr);
        return kUsageError;
    }
    if (selected(options).empty() || Checker(options).bindings().empty()) {
        std::fputs("zpp-check: there is no such function, or no such build that runs here; see --list\n",
                   stderr);
        return kUsageError;
    }
    describeMachine(mode == hash ? stderr : stdout);  // digests are compared line by line
    catchFaults();
    return mode(options);
}

}  // namespace
}  // namespace zpp::check

int main(int argc, char** argv) { return zpp::check::run(argc, argv); }
