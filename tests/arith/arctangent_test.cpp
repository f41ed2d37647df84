#include "tests/support/binding.h"
#include "tests/support/table.h"
#include "zpp/arith.h"
#include "zpp/vm.h"

namespace zpp::test {
namespace {

class Arctangents : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Arctangents);

TEST_P(Arctangents, AreThoseOfTheElementaryFunction) {
    unary("Arctan_64f", zppsArctan_64f, zppsArctan_64f_I, [](double x) {
        double result = 0;
        zppsAtan_64f_A53(&x, &result, 1);
        return result;
    });
}

}  // namespace
}  // namespace zpp::test
