// Cosine transforms of lengths above kMaxDirect that are no power of two: the Fourier transform of length n,
// half of an even length N or the odd length N itself, is a convolution (Bluestein, "A linear filtering
// approach to the computation of discrete Fourier transform", 1970). With b[j] = exp(-pi i j^2 / n),
//     X[k] = b[k] sum over j of (x[j] b[j]) conj(b[k - j]),
// computed by FFTs of a power of two, or three of them.
#pragma once

#include "transform/dct_passes.h"
#include "transform/exports.h"

namespace zpp::ZPP_ISA {

// a[j] = a[j] b[j]
template <int W = kLanes<double>>
inline void multiplyComplex(double* a, const double* b, size_t n) {
    size_t i = 0;
    for (; i + W <= n; i += W)
        storeComplex(a + 2 * i, twiddled(loadComplex<W>(a + 2 * i), loadComplex<W>(b + 2 * i)));
    if constexpr (W > 1)
        if (i < n) multiplyComplex<W / 2>(a + 2 * i, b + 2 * i, n - i);
}

// The numbers of a vector, each twice, in the order of memory.
template <class V>
ZPP_INLINE Halves<V> doubled(V v) {
    return interleaved(Halves<V>{v, v});
}

// a[j] = x[j] b[j], of real x.
inline void multiplyReal(const double* x, const double* b, double* a, size_t n) {
    forOverlapping(n, [=](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const Halves<V> pair = doubled(load<V>(x + i));
        store(a + 2 * i, pair.low * load<V>(b + 2 * i));
        store(a + 2 * i + width, pair.high * load<V>(b + 2 * i + width));
    });
}

// y from the products of V with what the twiddles hold, c exp(-2 pi i k / (4 N)) b[k] for k = 1 .. (N - 1) /
// 2 in vectors; N being odd.
inline void cosinesFromChirps(const double* v, double* y, size_t n, const double* twiddles, double c0) {
    y[0] = c0 * v[0];
    forOverlapping(n / 2, [=, &twiddles](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const Complex<V> t = Blocks<width>{const_cast<double*>(twiddles)}.load(0);
        twiddles += 2 * width;
        const Complex<V> p = twiddled(loadParts<V>(v + 2 * (i + 1)), t);
        store(y + i + 1, p.re);
        store(y + n - i - width, reverseLanes(-p.im));
    });
}
// The conjugate of what the inverse convolves.
inline void chirpsFromCosines(const double* y, double* v, size_t n, const double* twiddles, double c0) {
    v[0] = c0 * y[0];
    v[1] = 0;
    forOverlapping(n / 2, [=, &twiddles](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const Complex<V> t = Blocks<width>{const_cast<double*>(twiddles)}.load(0);
        twiddles += 2 * width;
        const Complex<V> p =
            twiddled(Complex<V>{load<V>(y + i + 1), reverseLanes(load<V>(y + n - i - width))}, t);
        storeParts(v + 2 * (i + 1), p.re, p.im);
    });
}

// x[j] = the real part of a[j] b[j].
inline void multiplyToReal(const double* a, const double* b, double* x, size_t n) {
    forOverlapping(n, [=](auto width, size_t i) ZPP_INLINE_LAMBDA {
        using V = Vec<double, width>;
        const Complex<V> p = loadParts<V>(a + 2 * i), q = loadParts<V>(b + 2 * i);
        store(x + i, mulSubFrom(p.im, q.im, p.re * q.re));
    });
}

// The FFT of a convolution.
inline const ZppsFFTSpec* convolverOf(const ZppsDCTSpec* spec) {
    return static_cast<const ZppsFFTSpec*>(spec->fft);
}

// The work buffer: what is convolved, then the buffer of the FFT.
struct ChirpWork {
    double* data;
    size_t length;  // of the convolution
    Zpp8u* fftBuffer;
    ChirpWork(Areas& areas, const ZppsDCTSpec* spec)
        : length(static_cast<size_t>(chirpLengths(spec->len).length)) {
        data = areas.take<double>(2 * length);
        fftBuffer = areas.take<Zpp8u>(static_cast<uint64_t>(convolverOf(spec)->bufSize));
    }
};

inline constexpr double kSineOf120 = 0.86602540378443864676;

// A convolution of 3 n numbers is one of three parts that radix-3 steps make and put together again. `thirds`
// holds for each vector blocks of exp(-2 pi i k / (3 n)) and its square.
inline void partInThree(double* data, size_t n, const double* thirds) {
    using V = Vec<double>;
    const Blocks<kLanes<double>> t{const_cast<double*>(thirds)};
    const Interleaved<kLanes<double>, false> a{data}, b{data + 2 * n}, c{data + 4 * n};
    for (size_t i = 0; i < n / kLanes<double>; ++i) {
        const Complex<V> x = a.load(i), y = b.load(i), z = c.load(i), s = y + z, d = (y - z) * kSineOf120;
        const Complex<V> m = {mulSubFrom(s.re, broadcast<V>(0.5), x.re),
                              mulSubFrom(s.im, broadcast<V>(0.5), x.im)};
        a.store(i, x + s);
        b.store(i, twiddled(Complex<V>{m.re + d.im, m.im - d.re}, t.load(2 * i)));
        c.store(i, twiddled(Complex<V>{m.re - d.im, m.im + d.re}, t.load(2 * i + 1)));
    }
}
inline void joinThree(double* data, size_t n, const double* thirds) {
    using V = Vec<double>;
    const Blocks<kLanes<double>> t{const_cast<double*>(thirds)};
    const Interleaved<kLanes<double>, false> a{data}, b{data + 2 * n}, c{data + 4 * n};
    for (size_t i = 0; i < n / kLanes<double>; ++i) {
        const Complex<V> x = a.load(i), y = twiddled(b.load(i), conjugate(t.load(2 * i))),
                         z = twiddled(c.load(i), conjugate(t.load(2 * i + 1))), s = y + z,
                         d = (y - z) * kSineOf120;
        const Complex<V> m = {mulSubFrom(s.re, broadcast<V>(0.5), x.re),
                              mulSubFrom(s.im, broadcast<V>(0.5), x.im)};
        a.store(i, x + s);
        b.store(i, Complex<V>{m.re - d.im, m.im + d.re});
        c.store(i, Complex<V>{m.re + d.im, m.im - d.re});
    }
}

// The spectrum of a convolution, in an order of its own.
template <class Transform>
inline void transformParts(double* data, size_t length, const ZppsFFTSpec* fft, Zpp8u* buffer,
                           Transform transform) {
    for (size_t i = 0; i < length; i += size_t{1} << fft->order) {
        auto* const part = reinterpret_cast<Zpp64fc*>(data) + i;
        transform(part, part, fft, buffer);
    }
}
inline void toSpectrum(double* data, size_t length, const ZppsDCTSpec* spec, Zpp8u* buffer) {
    if (spec->thirds != nullptr) partInThree(data, length / 3, spec->thirds);
    transformParts(data, length, convolverOf(spec), buffer, zppsFFTFwd_CToC_64fc);
}
inline void fromSpectrum(double* data, size_t length, const ZppsDCTSpec* spec, Zpp8u* buffer) {
    transformParts(data, length, convolverOf(spec), buffer, zppsFFTInv_CToC_64fc);
    if (spec->thirds != nullptr) joinThree(data, length / 3, spec->thirds);
}

// Convolves `used` numbers with the conjugate of the chirp.
inline void convolve(const ChirpWork& work, size_t used, const ZppsDCTSpec* spec) {
    memset(work.data + 2 * used, 0, 2 * (work.length - used) * sizeof *work.data);
    toSpectrum(work.data, work.length, spec, work.fftBuffer);
    multiplyComplex(work.data, spec->chirpSpectrum, work.length);
    fromSpectrum(work.data, work.length, spec, work.fftBuffer);
}

// The Fourier transform of n complex numbers, or where the chirp is conjugated the inverse one.
inline void transformByChirps(const ChirpWork& work, size_t n, const ZppsDCTSpec* spec) {
    multiplyComplex(work.data, spec->chirp, n);
    convolve(work, n, spec);
    multiplyComplex(work.data, spec->chirp, n);
}

// Both directions may be in place.
inline void forwardByChirps(const double* src, double* dst, const ZppsDCTSpec* spec, const ChirpWork& work) {
    const size_t n = static_cast<size_t>(spec->len);
    if (n % 2 == 0) {
        takeInOrder(src, work.data, n);
        transformByChirps(work, n / 2, spec);
        return cosinesFromPairs(work.data, dst, n, spec->twiddles, spec->c0);
    }
    // At the end of the data, where it is read before it is written over.
    double* const ordered = work.data + 2 * work.length - n;
    takeInOrder(src, ordered, n);
    multiplyReal(ordered, spec->chirp, work.data, n);
    convolve(work, n, spec);
    cosinesFromChirps(work.data, dst, n, spec->twiddles, spec->c0);
}
inline void inverseByChirps(const double* src, double* dst, const ZppsDCTSpec* spec, const ChirpWork& work) {
    const size_t n = static_cast<size_t>(spec->len);
    if (n % 2 == 0) {
        pairsFromCosines(src, work.data, n, spec->twiddles, spec->c0);
        transformByChirps(work, n / 2, spec);
    } else {
        chirpsFromCosines(src, work.data, n, spec->twiddles, spec->c0);
        convolve(work, n / 2 + 1, spec);
        multiplyToReal(work.data, spec->chirp, work.data, n);
    }
    putInOrder(work.data, dst, n);
}

}  // namespace zpp::ZPP_ISA
