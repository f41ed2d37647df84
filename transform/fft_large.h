// Transforms of orders above kMaxPlainOrder.
//
// Four-step scheme: the data are a matrix of N1 rows and N2 columns. Groups of columns, two cache lines wide,
// are transformed in the cache, multiplied by w_N^(n2 k1), and put as rows into the work buffer; then the
// same is done to the columns of that, whose results are rows of the destination.
#pragma once

#include "transform/fft_kernel.h"

namespace zpp::ZPP_ISA {

// Vectors in a group of columns: 8 complex numbers are 128 bytes.
template <int W>
inline constexpr size_t kGroup = W >= 8 ? 1 : 8 / W;

// A group of columns of a matrix whose rows are `pitch` blocks apart: block q + kGroup r is in row r.
template <int W, class Matrix>
struct Columns {
    using V = typename Matrix::V;
    static constexpr bool kComplexOrder = Matrix::kComplexOrder;
    Matrix matrix;
    size_t pitch;

    // Rows are too far apart for the processor to foresee, so the next group is called for.
    ZPP_INLINE Complex<V> load(size_t i) const {
        matrix.prefetch(block(i) + kGroup<W>);
        return matrix.load(block(i));
    }
    ZPP_INLINE void store(size_t i, Complex<V> v) const { matrix.store(block(i), v); }

  private:
    size_t block(size_t i) const { return i / kGroup<W> * pitch + i % kGroup<W>; }
};

// The parts of the work buffer, in doubles.
struct LargeScratch {
    int rowOrder, columnOrder;  // N1 = 2^columnOrder, N2 = 2^rowOrder
    int stepOrder;              // a column's twiddles are those of every 2^stepOrder-th row, turned
    size_t data;                // the matrix between the steps
    size_t group;               // a group of columns; there are two of them
    size_t twiddles;            // of a group
    size_t total;
};

inline LargeScratch largeScratch(int order) {
    LargeScratch s;
    s.rowOrder = order / 2;
    s.columnOrder = order - s.rowOrder;
    s.stepOrder = (s.columnOrder - 1) / 2;
    const size_t width = kGroup<kLanes<double>> * static_cast<size_t>(kLanes<double>);
    s.data = size_t{2} << order;
    s.group = (2 * width) << s.columnOrder;
    s.twiddles = 2 * width * ((size_t{1} << s.stepOrder) + (size_t{2} << (s.columnOrder - s.stepOrder)));
    s.total = s.data + 2 * s.group + s.twiddles;
    return s;
}

// A root of unity, or the numbers of several: the sum of a coarse root and a part that is small where the
// fine angle is, so that the sum is rounded almost as if it were the only operation.
template <class V>
struct RootParts {
    Complex<V> coarse, rest;
};

// coarse + rest turned by a fine angle, whose root less 1 is `fine`.
template <class V>
ZPP_INLINE RootParts<V> turned(RootParts<V> w, Complex<V> fine) {
    const Complex<V> c = w.coarse;
    return {c,
            {mulSubFrom(c.im, fine.im, mulAdd(c.re, fine.re, w.rest.re)),
             mulAdd(c.im, fine.re, mulAdd(c.re, fine.im, w.rest.im))}};
}

template <class V>
ZPP_INLINE Complex<V> sum(RootParts<V> w) {
    return w.coarse + w.rest;
}

// A coarse root for all lanes: that of index k, whatever its fine angle.
template <class V>
ZPP_INLINE RootParts<V> coarseRoot(const SplitRoots& roots, size_t k) {
    const double* c = roots.coarse + 4 * (k >> roots.fineOrder);
    return {{broadcast<V>(c[0]), broadcast<V>(c[1])}, {broadcast<V>(c[2]), broadcast<V>(c[3])}};
}

// The root k, of the whole turn.
inline RootParts<double> rootAt(const SplitRoots& roots, size_t k) {
    const double* fine = roots.fine + 2 * (k & ((size_t{1} << roots.fineOrder) - 1));
    return turned<double>(coarseRoot<double>(roots, k & ((size_t{1} << roots.order) - 1)),
                          {fine[0], fine[1]});
}

// The roots k .. k + W - 1, k being a multiple of W, in the lanes of blocks of either order.
template <bool kComplexOrder, class V>
ZPP_INLINE Complex<V> rootsAt(const SplitRoots& roots, RootParts<V> coarse, size_t k) {
    constexpr int W = sizeof(V) / sizeof(double);
    Complex<V> fine = loadComplex<W>(roots.fine + 2 * (k & ((size_t{1} << roots.fineOrder) - 1)));
    if constexpr (!kComplexOrder) fine = {naturalOrder(fine.re), naturalOrder(fine.im)};
    return sum(turned(coarse, fine));
}

// The twiddles of W columns are those of the middle row of each step, in two parts, turned by the angle from
// the middle row. out[i] = w^(column (i - 2^stepOrder / 2)) - 1 for i < 2^stepOrder, then two blocks for each
// step.
template <int W, bool kComplexOrder>
inline void columnTwiddles(const SplitRoots& roots, const LargeScratch& s, size_t column, Blocks<W> out) {
    const size_t stepRows = size_t{1} << s.stepOrder, rows = size_t{1} << s.columnOrder;
    double* steps = out.from(stepRows).p;
    for (size_t l = 0; l < W; ++l) {
        const size_t n2 = column + static_cast<size_t>(elementOfLane(W, static_cast<int>(l), kComplexOrder));
        double* p = out.p + l;
        for (size_t i = 0; i < stepRows; ++i, p += 2 * W) {
            const RootParts<double> w = rootAt(roots, n2 * (i - stepRows / 2));
            p[0] = (w.coarse.re - 1) + w.rest.re;
            p[W] = w.coarse.im + w.rest.im;
        }
        p = steps + l;
        for (size_t row = stepRows / 2; row < rows; row += stepRows, p += 4 * W) {
            const RootParts<double> w = rootAt(roots, n2 * row);
            const Complex<double> v = sum(w);
            p[0] = v.re, p[W] = v.im;
            p[2 * W] = w.rest.re - (v.re - w.coarse.re);
            p[3 * W] = w.rest.im - (v.im - w.coarse.im);
        }
    }
}

// Multiplies a group of transformed columns, from column `first` on, by their twiddles and puts them as rows.
template <int W, bool kComplexOrder, class Data>
inline void putColumns(Blocks<W> group, Data data, Blocks<W> twiddles, const SplitRoots& roots,
                       const LargeScratch& s, size_t first) {
    using V = typename Blocks<W>::V;
    const size_t n1 = size_t{1} << s.columnOrder, stepRows = size_t{1} << s.stepOrder;
    for (size_t q = 0; q < kGroup<W>; ++q) {
        const size_t column = first + q * W;
        columnTwiddles<W, kComplexOrder>(roots, s, column, twiddles);
        for (size_t row = 0; row < n1; row += W) {
            const Blocks<W> step = twiddles.from(stepRows + 2 * (row >> s.stepOrder));
            const RootParts<V> middle = {step.load(0), step.load(1)};
            Complex<V> x[W];
#pragma GCC unroll 8
            for (size_t k = 0; k < W; ++k)
                x[k] = twiddled(group.load((row + k) * kGroup<W> + q),
                                sum(turned(middle, twiddles.load((row + k) & (stepRows - 1)))));
            transposeBlocks<kComplexOrder>(x);
#pragma GCC unroll 8
            for (size_t j = 0; j < W; ++j) data.store(((column + j) * n1 + row) / W, x[j]);
        }
    }
}

// A transform by the four-step scheme, with the matrix between the steps in `data`. `group` is the part of
// the work buffer behind the data.
template <class In, class Data, class Out>
inline void fourStep(In in, Data data, Out out, double* group, const FftTables& tables, double scale) {
    constexpr int W = sizeof(typename In::V) / sizeof(double);
    constexpr size_t g = kGroup<W>;
    const LargeScratch s = largeScratch(tables.order);
    const size_t n1 = size_t{1} << s.columnOrder, n2 = size_t{1} << s.rowOrder;
    const Blocks<W> a{group}, b{group + s.group}, twiddles{group + 2 * s.group};
    for (size_t i = 0; i < n2 / W; i += g) {
        const Columns<W, In> columns{in.from(i), n2 / W};
        passesFrom(columns, a, b, a, n1, g, tables.columns[0], 1.0);
        putColumns<W, In::kComplexOrder>(a, data, twiddles, tables.roots, s, i * W);
    }
    for (size_t i = 0; i < n1 / W; i += g) {
        const Columns<W, Data> columns{data.from(i), n1 / W};
        const Columns<W, Out> rows{out.from(i), n1 / W};
        passesFrom(columns, a, b, rows, n2, g, tables.columns[1], scale);
    }
}

// The second step reads and writes the same columns, so the destination serves for the matrix between the
// steps unless it is also the source. `work` holds largeScratch().total doubles.
template <class In, class Out>
inline void largeTransform(In in, Out out, double* work, const FftTables& tables, double scale) {
    constexpr int W = sizeof(typename In::V) / sizeof(double);
    double* group = work + largeScratch(tables.order).data;
    if (in == out)
        fourStep(in, Blocks<W>{work}, out, group, tables, scale);
    else
        fourStep(in, out.blocks(), out, group, tables, scale);
}

// Takes the two halves of n elements in turn, in place: p[2 i] = p[i], p[2 i + 1] = p[n / 2 + i].
// `work` holds `capacity` elements.
template <class T>
inline void interleaveHalves(T* p, size_t n, T* work, size_t capacity) {
    const size_t half = n / 2, quarter = n / 4;
    if (half > capacity) {
        for (size_t i = quarter; i < half; ++i) {
            const T t = p[i];
            p[i] = p[i + quarter];
            p[i + quarter] = t;
        }
        interleaveHalves(p, half, work, capacity);
        interleaveHalves(p + half, half, work, capacity);
        return;
    }
    memcpy(work, p, half * sizeof(T));
    for (size_t i = 0; i < half; ++i) {
        p[2 * i] = work[i];
        p[2 * i + 1] = p[half + i];
    }
}

template <int W, bool kExchange>
inline void interleaveHalves(Interleaved<W, kExchange> data, size_t n, double* work, size_t capacity) {
    interleaveHalves(reinterpret_cast<Zpp64fc*>(data.p), n, reinterpret_cast<Zpp64fc*>(work), capacity);
}

template <int W>
inline void interleaveHalves(Split<W> data, size_t n, double* work, size_t capacity) {
    interleaveHalves(data.re, n, work, 2 * capacity);
    interleaveHalves(data.im, n, work, 2 * capacity);
}

// A transform of an order above kMaxBufferOrder: radix-2 steps in place down to parts that have a work
// buffer. Sums give the even results, differences the odd ones, which are then taken in turn.
template <class In, class Out>
inline void hugeTransform(In in, Out out, int order, double* work, const FftTables& tables, double scale) {
    if (order == tables.order) return largeTransform(in, out, work, tables, scale);
    constexpr int W = sizeof(typename In::V) / sizeof(double);
    const size_t n = size_t{1} << order;
    const size_t blocks = n / 2 / W;
    const SplitRoots& roots = tables.huge[order - tables.order - 1];
    for (size_t i = 0; i < blocks; ++i) {
        const auto a = in.load(i), b = in.load(i + blocks);
        out.store(i, a + b);
        out.store(i + blocks, twiddled(a - b, rootsAt<In::kComplexOrder>(
                                                  roots, coarseRoot<typename In::V>(roots, i * W), i * W)));
    }
    hugeTransform(out, out, order - 1, work, tables, scale);
    hugeTransform(out.from(blocks), out.from(blocks), order - 1, work, tables, scale);
    interleaveHalves(out, n, work, size_t{1} << tables.order);
}

}  // namespace zpp::ZPP_ISA
