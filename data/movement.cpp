// Initialisation and movement. Elements of the same size are one operation on their bytes; floating elements
// are never loaded as such, since the x87 unit would change a signalling NaN on the way.
#include "core/move.h"

#include "core/elementwise.h"
#include "data/exports.h"

namespace zpp::ZPP_ISA {
namespace {

template <class T>
inline ZppStatus copy(const T* pSrc, T* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    copyElements(pSrc, pDst, static_cast<size_t>(len));
    return zppStatusOk;
}

template <class T>
inline ZppStatus move(const T* pSrc, T* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    moveElements(pSrc, pDst, static_cast<size_t>(len));
    return zppStatusOk;
}

template <class T>
inline ZppStatus set(const T& val, T* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pDst)) return error;
    fillElements(val, pDst, static_cast<size_t>(len));
    return zppStatusOk;
}

template <class T>
inline ZppStatus zero(T* pDst, int len) {
    if (const ZppStatus error = checkVectors(len, pDst)) return error;
    zeroElements(pDst, static_cast<size_t>(len));
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsCopy_8u(const Zpp8u* pSrc, Zpp8u* pDst, int len) { return copy(pSrc, pDst, len); }
ZppStatus zppsCopy_16s(const Zpp16s* pSrc, Zpp16s* pDst, int len) { return copy(pSrc, pDst, len); }
ZppStatus zppsCopy_16sc(const Zpp16sc* pSrc, Zpp16sc* pDst, int len) { return copy(pSrc, pDst, len); }
ZppStatus zppsCopy_32f(const Zpp32f* pSrc, Zpp32f* pDst, int len) { return copy(pSrc, pDst, len); }
ZppStatus zppsCopy_32fc(const Zpp32fc* pSrc, Zpp32fc* pDst, int len) { return copy(pSrc, pDst, len); }
ZppStatus zppsCopy_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) { return copy(pSrc, pDst, len); }
ZppStatus zppsCopy_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) { return copy(pSrc, pDst, len); }

ZppStatus zppsMove_8u(const Zpp8u* pSrc, Zpp8u* pDst, int len) { return move(pSrc, pDst, len); }
ZppStatus zppsMove_16s(const Zpp16s* pSrc, Zpp16s* pDst, int len) { return move(pSrc, pDst, len); }
ZppStatus zppsMove_16sc(const Zpp16sc* pSrc, Zpp16sc* pDst, int len) { return move(pSrc, pDst, len); }
ZppStatus zppsMove_32f(const Zpp32f* pSrc, Zpp32f* pDst, int len) { return move(pSrc, pDst, len); }
ZppStatus zppsMove_32fc(const Zpp32fc* pSrc, Zpp32fc* pDst, int len) { return move(pSrc, pDst, len); }
ZppStatus zppsMove_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) { return move(pSrc, pDst, len); }
ZppStatus zppsMove_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) { return move(pSrc, pDst, len); }

ZppStatus zppsSet_32s(Zpp32s val, Zpp32s* pDst, int len) { return set(val, pDst, len); }
ZppStatus zppsSet_32sc(Zpp32sc val, Zpp32sc* pDst, int len) { return set(val, pDst, len); }
ZppStatus zppsSet_64f(Zpp64f val, Zpp64f* pDst, int len) { return set(val, pDst, len); }
ZppStatus zppsSet_64fc(Zpp64fc val, Zpp64fc* pDst, int len) { return set(val, pDst, len); }

ZppStatus zppsZero_64f(Zpp64f* pDst, int len) { return zero(pDst, len); }
ZppStatus zppsZero_64fc(Zpp64fc* pDst, int len) { return zero(pDst, len); }

ZppStatus zppsFlip_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return flipped([](auto v) { return reverseLanes(v); }, reinterpret_cast<uint64_t*>(pDst), len,
                   reinterpret_cast<const uint64_t*>(pSrc));
}

ZppStatus zppsFlip_64f_I(Zpp64f* pSrcDst, int len) {
    if (const ZppStatus error = checkVectors(len, pSrcDst)) return error;
    reverseElements(reinterpret_cast<uint64_t*>(pSrcDst), static_cast<size_t>(len));
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
