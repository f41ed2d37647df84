// FFT specifications: their tables, and what is asked of them.
#include "transform/fft_spec.h"

#include "transform/fft_large.h"
#include "transform/fft_roots.h"

namespace zpp::ZPP_ISA {
namespace {

// What the orders 0 to 3 need instead of tables: the first tables of orders 2 and 3 for vectors of two, which
// is what they run in where there are vectors, and the first quarter of the roots of order 3. The signs of
// the zeros are those of the tables.
constexpr int kMaxOrderWithoutTables = 3;
constexpr double kHalfRoot = 0.70710678118654752440;
constexpr double kFirstOf4[] = {1, -0.0, -0.0, -1};
constexpr double kFirstOf8[] = {1, kHalfRoot, -0.0, -kHalfRoot, -0.0, -kHalfRoot, -1, -kHalfRoot};
constexpr double kRootsOf8[] = {1, -0.0, kHalfRoot, -kHalfRoot};

inline void put(double* p, Complex<double> w) {
    p[0] = w.re;
    p[1] = w.im;
}

// The tables are taken, and filled where there are roots to fill them with.

const double* firstTable(Areas& areas, const Roots* roots, int order, bool complexOrder) {
    if (order <= kMaxOrderWithoutTables) return order == 3 ? kFirstOf8 : kFirstOf4;
    const size_t width = static_cast<size_t>(transformWidth(order));
    const size_t columns = (size_t{1} << order) / width;
    double* table = areas.take<double>(2 * columns * (width - 1));
    if (roots == nullptr) return table;
    double* p = table;
    for (size_t i = 0; i < columns; i += width)
        for (size_t k = 1; k < width; ++k, p += 2 * width)
            for (size_t l = 0; l < width; ++l) {
                const int element = elementOfLane(static_cast<int>(width), static_cast<int>(l), complexOrder);
                const Complex<double> w = roots->at((i + static_cast<size_t>(element)) * k, order);
                p[l] = w.re;
                p[width + l] = w.im;
            }
    return table;
}

double* passTable(Areas& areas, const Roots* roots, int order) {
    double* table = areas.take<double>(passTableSize(size_t{1} << order));
    if (roots == nullptr) return table;
    double* out = table;
    for (size_t n = size_t{1} << order; n > 8;) {
        const size_t radix = passRadix(n);
        for (size_t p = 0; p < n / radix; ++p)
            for (size_t k = 1; k < radix; ++k, out += 2) put(out, roots->at(p * k, order));
        order -= radix == 8 ? 3 : 2;
        n /= radix;
    }
    return table;
}

SplitRoots wholeTable(Areas& areas, const Roots* roots, int order) {
    if (order <= kMaxOrderWithoutTables) return {order, order, kRootsOf8, nullptr};
    const size_t count = size_t{1} << (order - 2);
    double* table = areas.take<double>(2 * count);
    for (size_t i = 0; roots != nullptr && i < count; ++i) put(table + 2 * i, roots->at(i, order));
    return {order, order, table, nullptr};
}

// The fine part is at least one vector long. Small fine angles cost memory and gain accuracy: see turned().
SplitRoots splitTable(Areas& areas, const Roots* roots, int order) {
    const int fineOrder = order / 2 - 2 < 3 ? 3 : order / 2 - 2;
    const size_t fine = size_t{1} << fineOrder, coarse = size_t{1} << (order - fineOrder);
    double* finePart = areas.take<double>(2 * fine);
    double* coarsePart = areas.take<double>(4 * coarse);
    if (roots != nullptr) {
        for (size_t i = 0; i < fine; ++i) put(finePart + 2 * i, roots->lessOne(i, order));
        for (size_t i = 0; i < coarse; ++i) {
            put(coarsePart + 4 * i, roots->at(i << fineOrder, order));
            put(coarsePart + 4 * i + 2, roots->rest(i << fineOrder, order));
        }
    }
    return {order, fineOrder, finePart, coarsePart};
}

FftTables complexTables(Areas& areas, const Roots* roots, int order, bool complexOrder) {
    FftTables t{};
    t.order = order > kMaxBufferOrder ? kMaxBufferOrder : order;
    if (order <= kMaxPlainOrder) {
        int columnOrder = order;
        for (int width = transformWidth(order); width > 1; width /= 2) --columnOrder;
        t.first = firstTable(areas, roots, order, complexOrder);
        t.columns[0] = passTable(areas, roots, columnOrder);
        return t;
    }
    const LargeScratch s = largeScratch(t.order);
    t.columns[0] = passTable(areas, roots, s.columnOrder);
    t.columns[1] = s.rowOrder == s.columnOrder ? t.columns[0] : passTable(areas, roots, s.rowOrder);
    t.roots = splitTable(areas, roots, t.order);
    t.huge = areas.take<SplitRoots>(static_cast<uint64_t>(order - t.order));
    for (int i = t.order + 1; i <= order; ++i) {
        const SplitRoots huge = splitTable(areas, roots, i);
        if (t.huge != nullptr) t.huge[i - t.order - 1] = huge;
    }
    return t;
}

auto tablesOf(const Roots* roots) {
    return [=](Areas& areas, ZppsFFTSpec& spec) {
        const bool real = spec.id == kRealSpec;
        const int complexOrder = real && spec.order > 0 ? spec.order - 1 : spec.order;
        spec.complex = complexTables(areas, roots, complexOrder, spec.id != kSplitSpec);
        if (real)
            spec.real = (spec.order <= kMaxWholeOrder ? wholeTable : splitTable)(areas, roots, spec.order);
    };
}

// Bytes of work buffer, with room to align it; complex orders up to kMaxStackOrder need none.
int workSize(int order) {
    if (order <= kMaxStackOrder) return 0;
    if (order > kMaxBufferOrder) order = kMaxBufferOrder;
    const size_t doubles = order > kMaxPlainOrder ? largeScratch(order).total : size_t{2} << order;
    return static_cast<int>(doubles * sizeof(double) + kBlockAlignment);
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
    const Roots roots(spec->order);
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
