#include <Eigen/Core>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

using Reals = Eigen::Map<Eigen::ArrayXd>;
using ConstReals = Eigen::Map<const Eigen::ArrayXd>;
using Complexes = Eigen::Map<Eigen::ArrayXcd>;
using ConstComplexes = Eigen::Map<const Eigen::ArrayXcd>;

ConstComplexes complex(const Zpp64fc* p, int len) {
    return {reinterpret_cast<const std::complex<double>*>(p), len};
}
Complexes complex(Zpp64fc* p, int len) { return {reinterpret_cast<std::complex<double>*>(p), len}; }

// dst = op(a), dst = op(a, b)
template <auto kOp>
void unary(const double* a, double* dst, int len) {
    Reals(dst, len) = kOp(ConstReals(a, len));
}
template <auto kOp>
void binary(const double* a, const double* b, double* dst, int len) {
    Reals(dst, len) = kOp(ConstReals(a, len), ConstReals(b, len));
}
template <auto kOp>
void binaryComplex(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len) {
    complex(dst, len) = kOp(complex(a, len), complex(b, len));
}
template <auto kOp>
double reduced(const double* a, int len) {
    return kOp(ConstReals(a, len));
}
template <auto kOp>
double reducedTwo(const double* a, const double* b, int len) {
    return kOp(ConstReals(a, len), ConstReals(b, len));
}
template <class S, class D>
void cast(const S* src, D* dst, int len) {
    Eigen::Map<Eigen::Array<D, Eigen::Dynamic, 1>>(dst, len) =
        Eigen::Map<const Eigen::Array<S, Eigen::Dynamic, 1>>(src, len).template cast<D>();
}
void set(double val, double* dst, int len) { Reals(dst, len).setConstant(val); }
void flip(const double* a, double* dst, int len) { Reals(dst, len) = ConstReals(a, len).reverse(); }

[[maybe_unused]] const Peers maps(
    ZPP_WHO, {
                 {"Add_64f", timed<binary<[](const auto& a, const auto& b) { return a + b; }>>},
                 {"Sub_64f", timed<binary<[](const auto& a, const auto& b) { return b - a; }>>},
                 {"Mul_64f", timed<binary<[](const auto& a, const auto& b) { return a * b; }>>},
                 {"Div_64f", timed<binary<[](const auto& a, const auto& b) { return b / a; }>>},
                 {"AddC_64f", timed<unary<[](const auto& a) { return a + 1.5; }>>},
                 {"MulC_64f", timed<unary<[](const auto& a) { return a * 1.5; }>>},
                 {"Add_64fc", timed<binaryComplex<[](const auto& a, const auto& b) { return a + b; }>>},
                 {"Mul_64fc", timed<binaryComplex<[](const auto& a, const auto& b) { return a * b; }>>},
                 {"Div_64fc", timed<binaryComplex<[](const auto& a, const auto& b) { return b / a; }>>},
                 {"Set_64f", timed<set>},
                 {"Flip_64f", timed<flip>},
                 {"Convert_32s32f", timed<cast<Zpp32s, float>>},
                 {"Convert_32s64f", timed<cast<Zpp32s, double>>},
                 {"Convert_32f64f", timed<cast<float, double>>},
                 {"Convert_64f32f", timed<cast<double, float>>},
             });

[[maybe_unused]] const Peers reductions(
    ZPP_WHO, {
                 {"Sum_64f", timed<reduced<[](const auto& a) { return a.sum(); }>>},
                 {"Norm_L1_64f", timed<reduced<[](const auto& a) { return a.abs().sum(); }>>},
                 {"Norm_L2_64f", timed<reduced<[](const auto& a) { return a.matrix().norm(); }>>},
                 {"Norm_Inf_64f", timed<reduced<[](const auto& a) { return a.abs().maxCoeff(); }>>},
                 {"Max_64f", timed<reduced<[](const auto& a) { return a.maxCoeff(); }>>},
                 {"DotProd_64f",
                  timed<reducedTwo<[](const auto& a, const auto& b) { return a.matrix().dot(b.matrix()); }>>},
             });

}  // namespace
}  // namespace zpp::bench
