// The tables of the FFT: taken from the areas of an object, and filled where there are roots.
#pragma once

#include "transform/fft_large.h"
#include "transform/fft_roots.h"

namespace zpp::ZPP_ISA {

// What the orders 0 to 3 need instead of tables: the first tables of orders 2 and 3 for vectors of two, which
// is what they run in where there are vectors, and the first quarter of the roots of order 3. The signs of
// the zeros are those of the tables.
inline constexpr int kMaxOrderWithoutTables = 3;
inline constexpr double kHalfRoot = 0.70710678118654752440;
inline constexpr double kFirstOf4[] = {1, -0.0, -0.0, -1};
inline constexpr double kFirstOf8[] = {1, kHalfRoot, -0.0, -kHalfRoot, -0.0, -kHalfRoot, -1, -kHalfRoot};
inline constexpr double kRootsOf8[] = {1, -0.0, kHalfRoot, -kHalfRoot};

inline void put(double* p, Complex<double> w) {
    p[0] = w.re;
    p[1] = w.im;
}

// The tables are taken, and filled where there are roots to fill them with.

inline const double* firstTable(Areas& areas, const Roots* roots, int order, bool complexOrder) {
    if (order <= kMaxOrderWithoutTables) return order == 3 ? kFirstOf8 : kFirstOf4;
    const size_t width = static_cast<size_t>(transformWidth(order));
    const size_t columns = (size_t{1} << order) / width;
    double* table = areas.take<double>(2 * columns * (width - 1));
    if (roots == nullptr) return table;
    const RoundedRoots all = roots->all(order);
    double* p = table;
    for (size_t i = 0; i < columns; i += width)
        for (size_t k = 1; k < width; ++k, p += 2 * width)
            for (size_t l = 0; l < width; ++l) {
                const int element = elementOfLane(static_cast<int>(width), static_cast<int>(l), complexOrder);
                const Complex<double> w = all[(i + static_cast<size_t>(element)) * k];
                p[l] = w.re;
                p[width + l] = w.im;
            }
    return table;
}

inline double* passTable(Areas& areas, const Roots* roots, int order) {
    double* table = areas.take<double>(passTableSize(size_t{1} << order));
    if (roots == nullptr) return table;
    double* out = table;
    for (size_t n = size_t{1} << order; n > 8;) {
        const size_t radix = passRadix(n);
        const RoundedRoots all = roots->all(order);
        for (size_t p = 0; p < n / radix; ++p)
            for (size_t k = 1; k < radix; ++k, out += 2) put(out, all[p * k]);
        order -= radix == 8 ? 3 : 2;
        n /= radix;
    }
    return table;
}

inline SplitRoots wholeTable(Areas& areas, const Roots* roots, int order) {
    if (order <= kMaxOrderWithoutTables) return {order, order, kRootsOf8, nullptr};
    const size_t count = size_t{1} << (order - 2);
    double* table = areas.take<double>(2 * count);
    if (roots != nullptr) {
        const RoundedRoots all = roots->all(order);
        for (size_t i = 0; i < count; ++i) put(table + 2 * i, all[i]);
    }
    return {order, order, table, nullptr};
}

// The fine part is at least one vector long. Small fine angles cost memory and gain accuracy: see turned().
inline SplitRoots splitTable(Areas& areas, const Roots* roots, int order) {
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

inline FftTables complexTables(Areas& areas, const Roots* roots, int order, bool complexOrder) {
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

// The order of the roots that the tables above are full of.
inline int tableOrder(int order) {
    if (order <= kMaxPlainOrder) return order;
    return largeScratch(order > kMaxBufferOrder ? kMaxBufferOrder : order).columnOrder;
}

// Bytes of work buffer, with room to align it; complex orders up to kMaxStackOrder need none.
inline int workSize(int order) {
    if (order <= kMaxStackOrder) return 0;
    if (order > kMaxBufferOrder) order = kMaxBufferOrder;
    const size_t doubles = order > kMaxPlainOrder ? largeScratch(order).total : size_t{2} << order;
    return static_cast<int>(doubles * sizeof(double) + kBlockAlignment);
}

}  // namespace zpp::ZPP_ISA
