// FFT specifications: their tables, and what is asked of them.
#include "transform/fft_spec.h"

#include "transform/fft_large.h"
#include "transform/fft_roots.h"

namespace zpp::ZPP_ISA {
namespace {

// Hands out parts of a block, or without one only counts what they need.
class Arena {
  public:
    explicit Arena(double* block) : block_(block) {}
    double* take(size_t doubles) {
        double* part = block_ != nullptr ? block_ + used_ : nullptr;
        used_ += (doubles + 7) & ~size_t{7};
        return part;
    }
    size_t used() const { return used_; }

  private:
    double* block_;
    size_t used_ = 0;
};

inline void put(double* p, Complex<double> w) {
    p[0] = w.re;
    p[1] = w.im;
}

double* firstTable(Arena& arena, const Roots* roots, int order, bool complexOrder) {
    const size_t width = static_cast<size_t>(transformWidth(order));
    const size_t columns = (size_t{1} << order) / width;
    double* table = arena.take(2 * columns * (width - 1));
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

double* passTable(Arena& arena, const Roots* roots, int order) {
    double* table = arena.take(passTableSize(size_t{1} << order));
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

SplitRoots splitTable(Arena& arena, const Roots* roots, int order, int fineOrder) {
    const size_t fine = size_t{1} << fineOrder;
    const size_t coarse = order > fineOrder ? size_t{1} << (order - fineOrder) : 1;
    double* finePart = arena.take(2 * fine);
    double* coarsePart = arena.take(2 * coarse);
    if (roots != nullptr) {
        for (size_t i = 0; i < fine; ++i) put(finePart + 2 * i, roots->at(i, order));
        for (size_t i = 0; i < coarse; ++i) put(coarsePart + 2 * i, roots->at(i << fineOrder, order));
    }
    return {order, fineOrder, finePart, coarsePart};
}

// The fine part of split roots that vectors are loaded from: at least one vector long.
inline int fineOrderOf(int order) { return order / 2 < 3 ? 3 : order / 2; }

FftTables complexTables(Arena& arena, const Roots* roots, int order, bool complexOrder) {
    FftTables t{};
    t.order = order > kMaxBufferOrder ? kMaxBufferOrder : order;
    if (order <= kMaxPlainOrder) {
        int columnOrder = order;
        for (int width = transformWidth(order); width > 1; width /= 2) --columnOrder;
        t.first = firstTable(arena, roots, order, complexOrder);
        t.columns[0] = passTable(arena, roots, columnOrder);
        return t;
    }
    const LargeScratch s = largeScratch(t.order);
    t.columns[0] = passTable(arena, roots, s.columnOrder);
    t.columns[1] = s.rowOrder == s.columnOrder ? t.columns[0] : passTable(arena, roots, s.rowOrder);
    t.roots = splitTable(arena, roots, t.order, fineOrderOf(t.order));
    for (int i = t.order + 1; i <= order; ++i)
        t.huge[i - t.order - 1] = splitTable(arena, roots, i, fineOrderOf(i));
    return t;
}

void makeTables(ZppsFFTSpec* spec, Arena& arena, const Roots* roots) {
    const bool real = spec->id == kRealSpec;
    const int complexOrder = real && spec->order > 0 ? spec->order - 1 : spec->order;
    spec->complex = complexTables(arena, roots, complexOrder, spec->id != kSplitSpec);
    if (real) spec->real = splitTable(arena, roots, spec->order, fineOrderOf(spec->order));
}

// Bytes of work buffer, with room to align it; complex orders up to kMaxStackOrder need none.
int workSize(int order) {
    if (order <= kMaxStackOrder) return 0;
    if (order > kMaxBufferOrder) order = kMaxBufferOrder;
    const size_t doubles = order > kMaxPlainOrder ? largeScratch(order).total : size_t{2} << order;
    return static_cast<int>(doubles * sizeof(double) + kBufferAlignment);
}

// Sets the normalisation of a flag; false for a flag that does not exist.
bool setNormalisation(ZppsFFTSpec* spec, int flag) {
    const DoublePrecision precision;
    const double length = stored(static_cast<double>(size_t{1} << spec->order));
    spec->fwdNorm = flag == 1 || flag == 4;
    spec->invNorm = flag == 2 || flag == 4;
    if (spec->fwdNorm != 0 || spec->invNorm != 0)
        spec->scale = reciprocal(flag == 4 ? stored(__builtin_sqrt(length)) : length);
    return flag == 1 || flag == 2 || flag == 4 || flag == 8;
}

bool buildTables(ZppsFFTSpec* spec) {
    const Roots roots(spec->order);
    if (!roots.allocated()) return false;
    Arena size(nullptr);
    makeTables(spec, size, nullptr);
    spec->memory = allocateAligned(size.used() * sizeof(double) + kBufferAlignment);
    if (spec->memory == nullptr) return false;
    Arena arena(alignedTo(spec->memory, kBufferAlignment));
    makeTables(spec, arena, &roots);
    return true;
}

ZppStatus initSpec(ZppsFFTSpec** ppSpec, int order, int flag, int hint, SpecKind kind) {
    const ZppStatus range = require(order >= 0 && order <= kMaxOrder, zppStatusFftOrder);
    if (const ZppStatus error = firstError(checkPointers(ppSpec), range)) return error;
    ZppsFFTSpec* spec = static_cast<ZppsFFTSpec*>(allocateAligned(sizeof(ZppsFFTSpec)));
    if (spec == nullptr) return zppStatusAllocationFailed;
    *spec = ZppsFFTSpec{};
    spec->id = kind;
    spec->order = order;
    spec->hint = hint;
    ZppStatus error = require(setNormalisation(spec, flag), zppStatusFftFlag);
    if (error == zppStatusOk) error = require(buildTables(spec), zppStatusAllocationFailed);
    if (error != zppStatusOk) {
        freeAligned(spec->memory);
        freeAligned(spec);
        return error;
    }
    spec->bufSize = workSize(kind == kRealSpec ? order - 1 : order);
    *ppSpec = spec;
    return zppStatusOk;
}

ZppStatus freeSpec(ZppsFFTSpec* spec, SpecKind kind) {
    if (const ZppStatus error = checkSpec(spec, kind)) return error;
    freeAligned(spec->memory);
    // Through volatile, or the store before the release would be dropped.
    *const_cast<volatile int32_t*>(&spec->id) = 0;
    freeAligned(spec);
    return zppStatusOk;
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
