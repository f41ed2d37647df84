#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/columns.h"
#include "tests/support/random.h"
#include "zpp/frame.h"

namespace zpp::test {

std::uint64_t seed() {
    static const std::uint64_t value = [] {
        const char* given = std::getenv("ZPP_SEED");
        return given != nullptr ? std::strtoull(given, nullptr, 0) : 20040u;
    }();
    return value;
}

// Whether the load bound the library as --bound=NAME asks; without it any binding will do.
bool boundAsAsked(const std::string& argument) {
    if (argument.empty()) return true;
    for (const Binding& binding : allBindings())
        if (binding.isBound() && "--bound=" + binding.name() == argument) {
            std::printf("bound at load: %s, of a processor of type %d\n", zppsGetLibVersion()->targetCpu,
                        zppGetCpuType());
            return true;
        }
    std::printf("%s, but at load %s was bound\n", argument.c_str(), zppsGetLibVersion()->targetCpu);
    return false;
}

}  // namespace zpp::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::printf("ZPP_SEED=%llu\n", static_cast<unsigned long long>(zpp::test::seed()));
    if (!zpp::test::boundAsAsked(argc > 1 ? argv[1] : "")) return 1;
    return RUN_ALL_TESTS();
}
