// Reductions of vectors to a number, behind their checks: a null pointer, then the length. Every build,
// target and alignment computes in one order, so that the bits are the same everywhere: of kRunning running
// values, all +0 at first, double i goes into value i mod kRunning, and at the end each half goes into the
// one before it until one is left. A complex number is two doubles, and one pair is left. No product is fused
// with its sum.
//
//     sumOf(term, finish, pDst, len, pSrc...)           finish(the sum of term(src...))
//     sumOfComplex(term, finish, pDst, len, pSrc...)    the same where term takes complex numbers
//     largestOf, largestOfComplex                       the largest term above 0, NaN left out
//
// Terms are made of registers or single doubles. sumOf takes complex numbers as their parts; a real source
// beside a complex one stands beside both parts of it. A term of sumOfComplex may be real, and then there are
// kRunning such values. finish makes an element of the result, or a part of it, of a double.
#pragma once

#include "core/checks.h"
#include "core/simd_partial.h"

namespace zpp::ZPP_ISA {

// The most that pays: with AVX-512 16 are two registers, and the latency of an addition is seen; 64 take
// longer to fold.
inline constexpr int kRunning = 32;

// Of builds that have not the registers for all running values: the blocks of a strip, in which all of them
// take their turn. It stays in the first-level cache.
inline constexpr size_t kStripBlocks = 32;

// How many of R registers of running values, of type V, a loop works on: half of the registers are for terms.
template <int R, class V>
constexpr int atOnce() {
    constexpr int most = kVectorBytes == 0 ? R : kRegisters / 2 * kVectorBytes / static_cast<int>(sizeof(V));
    return most < R ? most : R;
}

// running[r] = combine(running[r], terms(i + r N)) for blocks of `stride` elements from i to `end`.
template <int N, int R, class V, class Terms, class Combine>
ZPP_INLINE void reduceBlocks(V* running, size_t i, size_t end, size_t stride, Terms terms, Combine combine) {
    V registers[R];
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) registers[r] = running[r];
    for (; i < end; i += stride)
#pragma GCC unroll 32
        for (int r = 0; r < R; ++r) registers[r] = combine(registers[r], terms(i + r * N));
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) running[r] = registers[r];
}

// All elements into R registers of N, one register after the other. terms(i) makes a register of the elements
// from i on, terms(i, n) of the first n of them, or all where N is less; its other lanes change nothing.
template <int N, int R, class V, class Terms, class Combine>
ZPP_INLINE void reduceAll(V (&running)[R], size_t count, Terms terms, Combine combine) {
    constexpr size_t block = N * R, strip = kStripBlocks * block;
    constexpr int group = atOnce<R, V>();
    const size_t rest = count % block, whole = count - rest;
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) running[r] = V{};
    if constexpr (kVectorBytes > 0 && group == R) {
        reduceBlocks<N, R>(running, 0, whole, block, terms, combine);
        if (rest > 0)
#pragma GCC unroll 32
            for (size_t r = 0; r < R; ++r)
                running[r] = combine(running[r], terms(whole + r * N, rest > r * N ? rest - r * N : 0));
    } else {
        for (size_t i = 0; i < whole; i += strip)
#pragma GCC unroll 1
            for (size_t r = 0; r < R; r += group) {
                const size_t end = whole - i < strip ? whole : i + strip;
                reduceBlocks<N, group>(running + r, i + r * N, end + r * N, block, terms, combine);
                inMemory(running);
            }
        size_t i = whole;
        for (; i + N <= count; i += N) running[(i - whole) / N] = combine(running[(i - whole) / N], terms(i));
        if constexpr (N > 1)
            if (i < count) running[(i - whole) / N] = combine(running[(i - whole) / N], terms(i, count - i));
    }
}

// The upper half of R registers into the lower one, and so on until `Left` are left.
template <int R, int Left, class V, class Combine>
ZPP_INLINE void foldHalves(V* running, Combine combine) {
    if constexpr (R > Left) {
        constexpr int half = R / 2;
#pragma GCC unroll 16
        for (int r = 0; r < half; ++r) running[r] = combine(running[r], running[r + half]);
        foldHalves<half, Left>(running, combine);
    }
}

// Folded until `Left` numbers are left, in a register of N or more, or beside each other as a complex number.
template <int N, int Left, int R, class V, class Combine>
ZPP_INLINE auto foldRegisters(V (&running)[R], Combine combine) {
    foldHalves<R, (Left > N ? Left : 1)>(running, combine);
    if constexpr (Left > N)
        return Complex<V>{running[0], running[1]};
    else
        return running[0];
}
template <int Left, class V, class Combine>
ZPP_INLINE auto foldLanes(V v, Combine combine) {
    if constexpr (sizeof(V) > Left * sizeof(double))
        return foldLanes<Left>(combine(lowHalf(v), highHalf(v)), combine);
    else if constexpr (Left == 1)
        return v;
    else
        return Complex<double>{v[0], v[1]};
}
template <int Left, class V, class Combine>
ZPP_INLINE Complex<double> foldLanes(Complex<V> v, Combine combine) {
    if constexpr (std::is_same_v<V, double>)
        return v;
    else
        return foldLanes<Left>(combine(evenLanes(v.re, v.im), oddLanes(v.re, v.im)), combine);
}

constexpr auto itself = [](auto x) ZPP_INLINE_LAMBDA { return x; };
constexpr auto addTerm = [](auto sum, auto term) ZPP_INLINE_LAMBDA { return stored(sum + term); };
constexpr auto takeLarger = [](auto most, auto term) ZPP_INLINE_LAMBDA { return max(term, most); };

// Elements as numbers, one or two each.
template <class T>
inline constexpr int kParts = 1 + requires(T x) {
    x.re;
};
template <class T>
ZPP_INLINE const auto* partsOf(const T* p) {
    if constexpr (kParts<T> == 2)
        return &p->re;
    else
        return p;
}

template <class D, class Finish, class Result>
ZPP_INLINE void putResult(D* pDst, Finish finish, Result result) {
    if constexpr (kParts<D> == 2) {
        pDst->re = finish(result.re);
        pDst->im = finish(result.im);
    } else {
        *pDst = finish(result);
    }
}

// The N numbers from i on, of elements of `Parts` of them: real ones stand beside both parts.
template <int N, int Parts, class S, class... Count>
ZPP_INLINE Vec<double, N> loadParts(const S* p, size_t i, Count... count) {
    if constexpr (kParts<S> == Parts)
        return loadAsDoubles<N>(partsOf(p) + i, count...);
    else
        return eachTwice<N>(loadAsDoubles<(N + 1) / 2>(p + i / 2, count / 2 ...));
}

template <class Combine, class Term, class Finish, class D, class... S>
ZPP_INLINE ZppStatus reduce(Combine combine, Term term, Finish finish, D* pDst, int len, const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) return error;
    const DoublePrecision precision;
    constexpr int n = kLanes<double>, parts = (1 | ... | kParts<S>) > 1 ? 2 : 1;
    Vec<double> running[kRunning / n];
    reduceAll<n>(
        running, parts * static_cast<size_t>(len),
        [=](size_t i, auto... count)
            ZPP_INLINE_LAMBDA { return term(loadParts<n, parts>(pSrc, i, count...)...); },
        combine);
    putResult(pDst, finish, foldLanes<kParts<D>>(foldRegisters<n, kParts<D>>(running, combine), combine));
    return zppStatusOk;
}

template <class Combine, class Term, class Finish, class D, class... S>
ZPP_INLINE ZppStatus reduceComplex(Combine combine, Term term, Finish finish, D* pDst, int len,
                                   const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) return error;
    const DoublePrecision precision;
    constexpr int n = kLanes<double>, parts = kParts<D>;
    const auto terms = [=](size_t i, auto... count)
                           ZPP_INLINE_LAMBDA { return term(loadComplex<n>(partsOf(pSrc + i), count...)...); };
    decltype(terms(0)) running[kRunning / n / parts];
    reduceAll<n>(running, static_cast<size_t>(len), terms, combine);
    const auto sums = foldRegisters<n, 1>(running, combine);
    if constexpr (parts == 2)
        putResult(pDst, finish, foldLanes<2>(sums, combine));
    else
        putResult(pDst, finish, foldLanes<1>(naturalOrder(sums), combine));
    return zppStatusOk;
}

template <class... Arguments>
inline ZppStatus sumOf(Arguments... arguments) {
    return reduce(addTerm, arguments...);
}
template <class... Arguments>
inline ZppStatus sumOfComplex(Arguments... arguments) {
    return reduceComplex(addTerm, arguments...);
}
template <class... Arguments>
inline ZppStatus largestOf(Arguments... arguments) {
    return reduce(takeLarger, arguments...);
}
template <class... Arguments>
inline ZppStatus largestOfComplex(Arguments... arguments) {
    return reduceComplex(takeLarger, arguments...);
}

}  // namespace zpp::ZPP_ISA
