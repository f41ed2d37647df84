// Floating-point arithmetic: beside the plain loop, and beside a memcpy that moves as many bytes, which is
// what the memory allows.
#include <cstring>

#include "bench/bench.h"
#include "bench/plain.h"

namespace zpp::bench {
namespace {

// Times `ours` and `theirs` on (source, source, destination, len), and a memcpy of the same traffic. A case
// moves `streams` vectors of T.
template <class T, class Ours, class Theirs>
void compare(const std::string& what, int streams, Ours ours, Theirs theirs) {
    const auto* a = reinterpret_cast<const T*>(source(0));
    const auto* b = reinterpret_cast<const T*>(source(1));
    auto* dst = reinterpret_cast<T*>(destination());
    for (const int len : kSizes) {
        const size_t bytes = sizeof(T) * static_cast<size_t>(streams) * static_cast<size_t>(len);
        add(what, "zpp", len, bytes, [=] { ours(a, b, dst, len); });
        add(what, "plain", len, bytes, [=] { theirs(a, b, dst, len); });
        add(what, "memcpy", len, bytes, [=] { memcpy(dst, a, bytes / 2); });
    }
}

// The same for functions of one source and a constant.
template <class T, class Ours, class Theirs>
void compareConstant(const std::string& what, T val, Ours ours, Theirs theirs) {
    compare<T>(
        what, 2, [=](auto* a, auto*, auto* dst, int len) { ours(a, val, dst, len); },
        [=](auto* a, auto*, auto* dst, int len) { theirs(a, val, dst, len); });
}

// A plain loop of the right type.
template <class T>
using Binary = void (*)(const T*, const T*, T*, int);
template <class T>
using WithConstant = void (*)(const T*, T, T*, int);

[[maybe_unused]] const bool registered = [] {
    compare<Zpp64f>("Add_64f", 3, zppsAdd_64f, plain::add);
    compare<Zpp64f>("Mul_64f", 3, zppsMul_64f, Binary<Zpp64f>{plain::multiply});
    compare<Zpp64f>("Div_64f", 3, zppsDiv_64f, Binary<Zpp64f>{plain::divide});
    compare<Zpp64f>("AddProduct_64f", 4, zppsAddProduct_64f, Binary<Zpp64f>{plain::addProduct});
    compareConstant<Zpp64f>("AddC_64f", 1.5, zppsAddC_64f, plain::addConstant);
    compareConstant<Zpp64f>("MulC_64f", 1.5, zppsMulC_64f, WithConstant<Zpp64f>{plain::multiplyConstant});

    const Zpp64fc val = {1.5, -0.5};
    compare<Zpp64fc>("Mul_64fc", 3, zppsMul_64fc, Binary<Zpp64fc>{plain::multiply});
    compare<Zpp64fc>("Div_64fc", 3, zppsDiv_64fc, Binary<Zpp64fc>{plain::divide});
    compare<Zpp64fc>("AddProduct_64fc", 4, zppsAddProduct_64fc, Binary<Zpp64fc>{plain::addProduct});
    compareConstant<Zpp64fc>("MulC_64fc", val, zppsMulC_64fc, WithConstant<Zpp64fc>{plain::multiplyConstant});

    compare<Zpp64f>(
        "Add_64f_I", 3, [](auto* a, auto*, auto* dst, int len) { zppsAdd_64f_I(a, dst, len); },
        [](auto* a, auto*, auto* dst, int len) { plain::add(a, dst, dst, len); });
    return true;
}();

}  // namespace
}  // namespace zpp::bench
