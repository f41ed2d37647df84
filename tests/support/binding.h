// Runs a test once for each column and ISA build: a fixture that derives from BoundTest and is instantiated
// by ZPP_FOR_ALL_BINDINGS calls the library through its entry stubs, bound as its parameter says.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/support/columns.h"

namespace zpp::test {

std::ostream& operator<<(std::ostream& out, const Binding& binding);
std::string bindingName(const testing::TestParamInfo<Binding>& param);

class BoundTest : public testing::TestWithParam<Binding> {
  protected:
    void SetUp() override { GetParam().bind(); }
};

}  // namespace zpp::test

#define ZPP_FOR_ALL_BINDINGS(Fixture)                                                        \
    INSTANTIATE_TEST_SUITE_P(All, Fixture, testing::ValuesIn(zpp::test::runnableBindings()), \
                             zpp::test::bindingName)
