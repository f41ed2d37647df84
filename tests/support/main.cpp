#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "tests/support/random.h"

namespace zpp::test {

std::uint64_t seed() {
    static const std::uint64_t value = [] {
        const char* given = std::getenv("ZPP_SEED");
        return given != nullptr ? std::strtoull(given, nullptr, 0) : 20040u;
    }();
    return value;
}

}  // namespace zpp::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::printf("ZPP_SEED=%llu\n", static_cast<unsigned long long>(zpp::test::seed()));
    return RUN_ALL_TESTS();
}
