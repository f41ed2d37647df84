// FFT specifications: their tables, and what is asked of them.
#include "transform/fft_tables.h"

namespace zpp::ZPP_ISA {
namespace {

auto tablesOf(const Roots* roots) {
    return [=](Areas& areas, ZppsFFTSpec& spec) {
        const bool real = spec.id == kRealSpec;
        const int complexOrder = real && spec.order > 0 ? spec.order - 1 : spec.order;
        spec.complex = complexTables(areas, roots, complexOrder, spec.id != kSplitSpec);
        if (real)
            spec.real = (spec.order <= kMaxWholeOrder ? wholeTable : splitTable)(areas, roots, spec.order);
    };
}

// Sets the normalisation of a flag; false for a flag that does not exist.
bool setNormalisation(ZppsFFTSpec& spec, int flag) {
    const DoublePrecision precision;
    const double length = stored(static_cast<double>(size_t{1} << spec.order));
    spec.fwdNorm = flag == 1 || flag == 4;
    spec.invNorm = flag == 2 || flag == 4;
    if (spec.fwdNorm != 0 || spec.invNorm != 0)
        spec.scale = reciprocal(flag == 4 ? stored(__builtin_sqrt(length)) : length);
    return flag == 1 || flag == 2 || flag == 4 || flag == 8;
}

// False where memory is short.
bool fillTables(ZppsFFTSpec* spec) {
    if (spec->order <= kMaxOrderWithoutTables) return true;
    const ExtendedPrecision precision;
    const bool real = spec->id == kRealSpec, whole = real && spec->order <= kMaxWholeOrder;
    const Roots roots(spec->order, whole ? spec->order : tableOrder(real ? spec->order - 1 : spec->order));
    if (!roots.allocated()) return false;
    placeObject(*spec, kBlockAlignment, spec, tablesOf(&roots));
    return true;
}

ZppStatus initSpec(ZppsFFTSpec** ppSpec, int order, int flag, int hint, SpecKind kind) {
    const ZppStatus range = require(order >= 0 && order <= kMaxOrder, zppStatusFftOrder);
    if (const ZppStatus error = firstError(checkPointers(ppSpec), range)) return error;
    ZppsFFTSpec header{};
    header.id = kind;
    header.order = order;
    header.hint = hint;
    header.bufSize = workSize(kind == kRealSpec ? order - 1 : order);
    const bool flagKnown = setNormalisation(header, flag);
    ZppsFFTSpec* spec = allocateObject(header, tablesOf(nullptr));
    if (spec == nullptr) return zppStatusAllocationFailed;
    ZppStatus error = require(flagKnown, zppStatusFftFlag);
    if (error == zppStatusOk) error = require(fillTables(spec), zppStatusAllocationFailed);
    if (error == zppStatusOk)
        *ppSpec = spec;
    else
        releaseObject(spec);
    return error;
}

ZppStatus freeSpec(ZppsFFTSpec* spec, SpecKind kind) {
    const ZppStatus error = checkSpec(spec, kind);
    if (error == zppStatusOk) releaseObject(spec);
    return error;
}

ZppStatus getBufSize(const ZppsFFTSpec* spec, int* pSize, SpecKind kind) {
    if (const ZppStatus error = firstError(checkPointers(spec, pSize), checkSpec(spec, kind))) return error;
    *pSize = spec->bufSize;
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsFFTInitAlloc_C_64fc(ZppsFFTSpec** ppSpec, int order, int flag, int hint) {
    return initSpec(ppSpec, order, flag, hint, kComplexSpec);
}
ZppStatus zppsFFTInitAlloc_C_64f(ZppsFFTSpec** ppSpec, int order, int flag, int hint) {
    return initSpec(ppSpec, order, flag, hint, kSplitSpec);
}
ZppStatus zppsFFTInitAlloc_R_64f(ZppsFFTSpec** ppSpec, int order, int flag, int hint) {
    return initSpec(ppSpec, order, flag, hint, kRealSpec);
}

ZppStatus zppsFFTFree_C_64fc(ZppsFFTSpec* pSpec) { return freeSpec(pSpec, kComplexSpec); }
ZppStatus zppsFFTFree_C_64f(ZppsFFTSpec* pSpec) { return freeSpec(pSpec, kSplitSpec); }
ZppStatus zppsFFTFree_R_64f(ZppsFFTSpec* pSpec) { return freeSpec(pSpec, kRealSpec); }

ZppStatus zppsFFTGetBufSize_C_64fc(const ZppsFFTSpec* pSpec, int* pSize) {
    return getBufSize(pSpec, pSize, kComplexSpec);
}
ZppStatus zppsFFTGetBufSize_C_64f(const ZppsFFTSpec* pSpec, int* pSize) {
    return getBufSize(pSpec, pSize, kSplitSpec);
}
ZppStatus zppsFFTGetBufSize_R_64f(const ZppsFFTSpec* pSpec, int* pSize) {
    return getBufSize(pSpec, pSize, kRealSpec);
}

}  // namespace zpp::ZPP_ISA
