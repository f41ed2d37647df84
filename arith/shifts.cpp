// Shifts of integers.
#include "arith/exports.h"
#include "core/elementwise.h"

namespace zpp::ZPP_ISA {
namespace {

inline ZppStatus checkShift(int val, const Zpp32s* pSrc, const Zpp32s* pDst, int len) {
    return firstError(checkVectors(len, pSrc, pDst), require(val >= 0, zppStatusNegativeShift));
}

}  // namespace

ZppStatus zppsLShiftC_32s(const Zpp32s* pSrc, int val, Zpp32s* pDst, int len) {
    if (const ZppStatus error = checkShift(val, pSrc, pDst, len)) return error;
    if (val > 31) return zeroed(pSrc, pDst, len);
    return elementwise([=](auto x) { return shiftLeft(x, val); }, pDst, len, pSrc);
}
ZppStatus zppsLShiftC_32s_I(int val, Zpp32s* pSrcDst, int len) {
    return zppsLShiftC_32s(pSrcDst, val, pSrcDst, len);
}
ZppStatus zppsRShiftC_32s(const Zpp32s* pSrc, int val, Zpp32s* pDst, int len) {
    if (const ZppStatus error = checkShift(val, pSrc, pDst, len)) return error;
    const int count = val < 31 ? val : 31;
    return elementwise([=](auto x) { return shiftRight(x, count); }, pDst, len, pSrc);
}
ZppStatus zppsRShiftC_32s_I(int val, Zpp32s* pSrcDst, int len) {
    return zppsRShiftC_32s(pSrcDst, val, pSrcDst, len);
}

}  // namespace zpp::ZPP_ISA
