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

// How many of R running values of type V, of N lanes, a loop works on: half of the registers are for terms.
template <int N, int R, class V>
constexpr int atOnce() {
    constexpr int most = kRegisters / 2 * N * static_cast<int>(sizeof(double)) / static_cast<int>(sizeof(V));
    return kVectorBytes == 0 || most > R ? R : most;
}

// Zero, made in whole registers: of a struct that is {} GCC 12 stores pieces, which then are loaded whole.
template <class V>
ZPP_INLINE V zero() {
    V v;
    if constexpr (requires { v.re; })
        v.re = v.im = decltype(v.re){};
    else
        v = V{};
    return v;
}

// running[r] = combine(running[r], terms(j + r)) for the first of `stride` registers from j on, to `end`.
template <int R, class V, class Terms, class Combine>
ZPP_INLINE void reduceBlocks(V* running, size_t j, size_t end, size_t stride, Terms terms, Combine combine) {
    V registers[R];
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) registers[r] = running[r];
    for (; j < end; j += stride)
#pragma GCC unroll 32
        for (size_t r = 0; r < R; ++r) registers[r] = combine(registers[r], terms(j + r));
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) running[r] = registers[r];
}

template <class V, int R>
ZPP_INLINE void clear(V (&running)[R]) {
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) running[r] = zero<V>();
}

// All elements into R registers of N, one register after the other. terms(j) makes register j of the vector,
// terms(j, n) one of the first n elements of it, or of all where N is less; its other lanes change nothing.
template <int N, int R, class V, class Terms, class Combine>
ZPP_INLINE void reduceAll(V (&running)[R], size_t count, Terms terms, Combine combine) {
    constexpr int group = atOnce<N, R, V>();
    const size_t rest = count % (N * R), whole = (count - rest) / N;
    if constexpr (kVectorBytes > 0 && group == R) {
        reduceBlocks<R>(running, 0, whole, R, terms, combine);
        if (rest > 0)
#pragma GCC unroll 32
            for (size_t r = 0; r < R; ++r)
                running[r] = combine(running[r], terms(whole + r, rest > r * N ? rest - r * N : 0));
    } else {
        constexpr size_t strip = kStripBlocks * R;
        for (size_t j = 0; j < whole; j += strip)
#pragma GCC unroll 1
            for (size_t r = 0; r < R; r += group) {
                const size_t end = whole - j < strip ? whole : j + strip;
                reduceBlocks<group>(running + r, j + r, end + r, R, terms, combine);
                inMemory(running);
            }
        const size_t full = rest / N;
        for (size_t r = 0; r < full; ++r) running[r] = combine(running[r], terms(whole + r));
        if constexpr (N > 1)
            if (rest % N > 0) running[full] = combine(running[full], terms(whole + full, rest % N));
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
    foldHalves<R, (Left + N - 1) / N>(running, combine);
    if constexpr (Left > N)
        return Complex<V>{running[0], running[1]};
    else
        return running[0];
}
template <int Left, class V, class Combine>
ZPP_INLINE auto foldToParts(V v, Combine combine) {
    if constexpr (sizeof(V) > Left * sizeof(double))
        return foldToParts<Left>(combine(lowHalf(v), highHalf(v)), combine);
    else if constexpr (Left == 1)
        return v;
    else
        return Complex<double>{v[0], v[1]};
}
template <int Left, class V, class Combine>
ZPP_INLINE Complex<double> foldToParts(Complex<V> v, Combine combine) {
    if constexpr (std::is_same_v<V, double>)
        return v;
    else
        return foldToParts<Left>(combine(evenLanes(v.re, v.im), oddLanes(v.re, v.im)), combine);
}

constexpr auto addTerm = [](auto sum, auto term) ZPP_INLINE_LAMBDA { return stored(sum + term); };
constexpr auto takeLarger = [](auto most, auto term) ZPP_INLINE_LAMBDA { return max(term, most); };

template <class D, class Finish, class Result>
ZPP_INLINE void putResult(D* pDst, Finish finish, Result result) {
    if constexpr (kParts<D> == 2) {
        pDst->re = finish(result.re);
        pDst->im = finish(result.im);
    } else {
        *pDst = finish(result);
    }
}

// Whether all elements are complex or none, of parts of this type.
template <class Part, class S, class... Others>
inline constexpr bool kAlike = std::is_same_v<decltype(*partsOf<const S>(nullptr)), const Part&> &&
                               (... && std::is_same_v<S, Others>);

// The lanes of sums. To widen singles to 512 bits takes the processor two steps.
template <class... S>
inline constexpr int kSumLanes = kVectorBytes == 64 && kAlike<float, S...> ? 4 : kLanes<double>;

// Register j of N numbers, of elements of `Parts` of them: real ones stand beside both parts.
template <int N, int Parts, class S, class... Count>
ZPP_INLINE Vec<double, N> loadParts(const S* p, size_t j, Count... count) {
    if constexpr (kParts<S> == Parts)
        return loadAsDoubles<N>(partsOf(p) + j * N, count...);
    else
        return eachTwice<N>(loadAsDoubles<(N + 1) / 2>(p + (N > 1 ? j * (N / 2) : j / 2), count / 2 ...));
}

// How many doubles lie before the first whose address is a multiple of a register, of a vector that is long
// enough for it to pay that no load behind them crosses a line of the cache.
template <int N, class... Others>
ZPP_INLINE size_t headOf(size_t count, const double* p, Others...) {
    const uintptr_t address = reinterpret_cast<uintptr_t>(p);
    if (count < 2048 || address % sizeof(double) != 0) [[likely]]
        return 0;
    return (N - address / sizeof(double) % N) % N;
}

// The first `count` doubles in the last of N lanes, 0 in the others; count < N.
template <int N>
ZPP_INLINE Vec<double, N> loadAsLast(const double* p, size_t count) {
    double lanes[2 * N] = {};
    for (size_t i = 0; i < count; ++i) lanes[N + i] = p[i];
    return load<Vec<double, N>>(lanes + count);
}

// Each number in the place so many behind it, the last ones in the first places.
template <int N, int R>
ZPP_INLINE void turn(Vec<double, N> (&registers)[R], size_t places) {
    double values[(R + 1) * N];
    store(values, registers[R - 1]);
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) store(values + (r + 1) * N, registers[r]);
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) registers[r] = load<Vec<double, N>>(values + (r + 1) * N - places);
}
template <int N, int R>
ZPP_INLINE void turn(Complex<Vec<double, N>> (&registers)[R], size_t places) {
    Vec<double, N> re[R], im[R];
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) re[r] = registers[r].re, im[r] = registers[r].im;
    turn<N>(re, places);
    turn<N>(im, places);
#pragma GCC unroll 32
    for (int r = 0; r < R; ++r) registers[r] = {re[r], im[r]};
}

// The head goes where the end of a block would be, the blocks begin behind it, and at the end the running
// values are turned into their places.
template <int N, int Left, class V, class Put, class Term, class Combine, class... S>
[[gnu::noinline]] ZppStatus reduceBehindHead(size_t head, size_t count, Put put, Term term, Combine combine,
                                             S... src) {
    const DoublePrecision precision;
    V running[kRunning / N];
    clear(running);
    V& last = running[kRunning / N - 1];
    last = combine(last, term(loadAsLast<N>(src, head)...));
    const auto terms = [=](size_t j, auto... n)
                           ZPP_INLINE_LAMBDA { return term(loadAsDoubles<N>(src + head + j * N, n...)...); };
    reduceAll<N>(running, count - head, terms, combine);
    turn<N>(running, head);
    put(foldRegisters<N, Left>(running, combine));
    return zppStatusOk;
}

// All numbers of `len` elements of `Parts` each, folded until `Left` are left, which `put` takes.
template <int N, int Parts, int Left, class Put, class Term, class Combine, class... S>
ZPP_INLINE ZppStatus reduceParts(int len, Put put, Term term, Combine combine, const S*... pSrc) {
    using V = decltype(term((void(pSrc), Vec<double, N>{})...));
    const size_t count = Parts * static_cast<size_t>(len);
    if constexpr (N > 2 && kAlike<double, S...>)
        if (const size_t head = headOf<N>(count, partsOf(pSrc)...))
            return reduceBehindHead<N, Left, V>(head, count, put, term, combine, partsOf(pSrc)...);
    const DoublePrecision precision;
    V running[kRunning / N];
    clear(running);
    const auto terms = [=](size_t j, auto... n)
                           ZPP_INLINE_LAMBDA { return term(loadParts<N, Parts>(pSrc, j, n...)...); };
    reduceAll<N>(running, count, terms, combine);
    put(foldRegisters<N, Left>(running, combine));
    return zppStatusOk;
}

template <class Combine, class Term, class Finish, class D, class... S>
ZPP_INLINE ZppStatus reduce(Combine combine, Term term, Finish finish, D* pDst, int len, const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) return error;
    constexpr int n = kSumLanes<S...>, parts = (1 | ... | kParts<S>) > 1 ? 2 : 1, left = kParts<D>;
    const auto put = [=](auto folded)
                         ZPP_INLINE_LAMBDA { putResult(pDst, finish, foldToParts<left>(folded, combine)); };
    return reduceParts<n, parts, left>(len, put, term, combine, pSrc...);
}

template <class Combine, class Term, class Finish, class D, class... S>
ZPP_INLINE ZppStatus reduceComplex(Combine combine, Term term, Finish finish, D* pDst, int len,
                                   const S*... pSrc) {
    if (const ZppStatus error = checkVectors(len, pSrc..., pDst)) return error;
    const DoublePrecision precision;
    constexpr int n = kSumLanes<S...>, parts = kParts<D>;
    const auto terms = [=](size_t j, auto... count) ZPP_INLINE_LAMBDA {
        return term(loadComplex<n>(partsOf(pSrc + j * n), count...)...);
    };
    decltype(terms(0)) running[kRunning / n / parts];
    clear(running);
    reduceAll<n>(running, static_cast<size_t>(len), terms, combine);
    const auto sums = foldRegisters<n, 1>(running, combine);
    if constexpr (parts == 2)
        putResult(pDst, finish, foldToParts<2>(sums, combine));
    else
        putResult(pDst, finish, foldToParts<1>(naturalOrder(sums), combine));
    return zppStatusOk;
}

template <class... Arguments>
ZPP_INLINE ZppStatus sumOf(Arguments... arguments) {
    return reduce(addTerm, arguments...);
}
template <class... Arguments>
ZPP_INLINE ZppStatus sumOfComplex(Arguments... arguments) {
    return reduceComplex(addTerm, arguments...);
}
template <class... Arguments>
ZPP_INLINE ZppStatus largestOf(Arguments... arguments) {
    return reduce(takeLarger, arguments...);
}
template <class... Arguments>
ZPP_INLINE ZppStatus largestOfComplex(Arguments... arguments) {
    return reduceComplex(takeLarger, arguments...);
}

}  // namespace zpp::ZPP_ISA
