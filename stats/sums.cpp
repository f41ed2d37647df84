// Sums, means and deviations.
#include "core/reduce.h"
#include "stats/exports.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto itself = [](auto x) { return x; };

}  // namespace

ZppStatus zppsSum_64f(const Zpp64f* pSrc, int len, Zpp64f* pSum) { return sumOf(itself, pSum, len, pSrc); }
ZppStatus zppsSum_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pSum) { return sumOf(itself, pSum, len, pSrc); }

}  // namespace zpp::ZPP_ISA
