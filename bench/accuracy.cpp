// The errors of the transforms, beside FFTW's and those of a peer behind a pipe. bench/accuracy runs this
// program and prints the table.
//
// Written to standard output are lines: "case <kind> <direction> <data> <size>", where the size is an order,
// of cosine transforms a length, then for each library "error <who> <root mean square> <largest>", the first
// relative to that of the exact result, the second to its largest value, both in units of 2^-53. With --peer
// NAME the line "ask <kind> <direction> <numbers>" stands between them, is followed by so many doubles, and
// answered on standard input by the doubles of the result.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/support/columns.h"
#include "zpp/transform.h"

#ifdef ZPP_HAVE_FFTW
#include <fftw3.h>
#endif

namespace zpp::bench {
namespace {

using Exact = std::complex<long double>;
using Doubles = std::vector<double>;

struct Case {
    bool real, inverse;
    const char* data;
    int order;

    size_t n() const { return size_t{1} << order; }
    size_t half() const { return n() / 2; }
    const char* kind() const { return real ? "real" : "complex"; }
    const char* direction() const { return inverse ? "inverse" : "forward"; }
};

// sum over i of x[i] exp(-+ 2 pi i k / n), in long double: radix 2, every root by its own sine and cosine.
// Its error is below a hundredth of what is measured.
std::vector<Exact> transformed(std::vector<Exact> x, bool inverse) {
    const size_t n = x.size();
    std::vector<Exact> y(n), roots(n / 2);
    const long double step = (inverse ? 2 : -2) * 3.14159265358979323846264338327950288L / n;
    for (size_t k = 0; k < n / 2; ++k) roots[k] = std::polar(1.0L, step * static_cast<long double>(k));
    for (size_t half = n / 2, s = 1; half > 0; half /= 2, s *= 2, swap(x, y))
        for (size_t p = 0; p < half; ++p)
            for (size_t q = 0; q < s; ++q) {
                const Exact a = x[q + s * p], b = x[q + s * (p + half)], d = a - b, w = roots[p * s];
                y[q + 2 * s * p] = a + b;
                y[q + s * (2 * p + 1)] = {d.real() * w.real() - d.imag() * w.imag(),
                                          d.real() * w.imag() + d.imag() * w.real()};
            }
    return x;
}

// x made real, or the spectrum of something real.
void makeReal(std::vector<Exact>& x) {
    for (Exact& v : x) v = v.real();
}
void makeSymmetric(std::vector<Exact>& x) {
    for (size_t k = 0, n = x.size(); k <= n / 2; ++k) {
        if (k == 0 || 2 * k == n) x[k] = x[k].real();
        x[(n - k) % n] = std::conj(x[k]);
    }
}

// The input of a case, as doubles.
std::vector<Exact> inputOf(const Case& c) {
    std::vector<Exact> x(c.n());
    std::mt19937_64 random(static_cast<unsigned>(c.order));
    const auto uniform = [&] { return std::ldexp(static_cast<long double>(random() >> 11), -52) - 1; };
    if (c.data == std::string("impulse")) x.back() = x[c.real && c.inverse ? 1 : c.n() - 1] = 1;
    if (c.data == std::string("random"))
        for (Exact& v : x) v = {uniform(), uniform()};
    if (c.data == std::string("flat")) {
        const long double magnitude = 1 / std::sqrt(static_cast<long double>(c.n()));
        for (Exact& v : x) v = std::polar(magnitude, 3.14159265358979323846264338327950288L * uniform());
        if (c.real && c.inverse)
            for (Exact& v : x) v = v.real() < 0 ? -magnitude : magnitude;
        if (c.real && !c.inverse) {
            makeSymmetric(x);
            x[0] = x[c.half()] = magnitude;
        }
        x = transformed(std::move(x), !c.inverse);
    }
    if (c.real) c.inverse ? makeSymmetric(x) : makeReal(x);
    for (Exact& v : x) v = {static_cast<double>(v.real()), static_cast<double>(v.imag())};
    return x;
}

// The numbers on a side of the transform: of real kinds one side has only the real parts, and the other the
// elements 0 .. n / 2.
template <class T>
std::vector<T> numbersOf(const Case& c, const std::vector<Exact>& x, bool output) {
    std::vector<T> numbers;
    const bool onlyReal = c.real && c.inverse == output;
    for (size_t k = 0; k < (c.real && !onlyReal ? c.half() + 1 : c.n()); ++k) {
        numbers.push_back(static_cast<T>(x[k].real()));
        if (!onlyReal) numbers.push_back(static_cast<T>(x[k].imag()));
    }
    return numbers;
}

void check(bool succeeded, const char* what) {
    if (succeeded) return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

Doubles ours(const Case& c, const Doubles& in, size_t outputs) {
    Doubles out(outputs);
    ZppsFFTSpec* spec = nullptr;
    const auto* src = reinterpret_cast<const Zpp64fc*>(in.data());
    auto* dst = reinterpret_cast<Zpp64fc*>(out.data());
    if (c.real) {
        const auto call = c.inverse ? zppsFFTInv_CCSToR_64f : zppsFFTFwd_RToCCS_64f;
        check(zppsFFTInitAlloc_R_64f(&spec, c.order, 8, 0) == zppStatusOk &&
                  call(in.data(), out.data(), spec, nullptr) == zppStatusOk &&
                  zppsFFTFree_R_64f(spec) == zppStatusOk,
              "zpp");
    } else {
        const auto call = c.inverse ? zppsFFTInv_CToC_64fc : zppsFFTFwd_CToC_64fc;
        check(zppsFFTInitAlloc_C_64fc(&spec, c.order, 8, 0) == zppStatusOk &&
                  call(src, dst, spec, nullptr) == zppStatusOk && zppsFFTFree_C_64fc(spec) == zppStatusOk,
              "zpp");
    }
    return out;
}

#ifdef ZPP_HAVE_FFTW
Doubles fftw(const Case& c, Doubles in, size_t outputs) {
    Doubles out(outputs);
    auto *src = reinterpret_cast<fftw_complex*>(in.data()),
         *dst = reinterpret_cast<fftw_complex*>(out.data());
    const int n = 1 << c.order;
    const fftw_plan plan =
        !c.real     ? fftw_plan_dft_1d(n, src, dst, c.inverse ? FFTW_BACKWARD : FFTW_FORWARD, FFTW_ESTIMATE)
        : c.inverse ? fftw_plan_dft_c2r_1d(n, src, out.data(), FFTW_ESTIMATE)
                    : fftw_plan_dft_r2c_1d(n, in.data(), dst, FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    return out;
}
#endif

Doubles asked(const Case& c, const Doubles& in, size_t outputs) {
    Doubles out(outputs);
    std::printf("ask %s %s %zu\n", c.kind(), c.direction(), in.size());
    check(std::fwrite(in.data(), sizeof(double), in.size(), stdout) == in.size() &&
              std::fflush(stdout) == 0 && std::fread(out.data(), sizeof(double), outputs, stdin) == outputs,
          "the peer");
    return out;
}

// Of elements of one number or two.
template <class Results>
void report(const char* who, size_t step, const std::vector<long double>& exact, const Results& result) {
    long double errors = 0, squares = 0, worst = 0, largest = 0;
    for (size_t i = 0; i < exact.size(); i += step) {
        long double error = 0, square = 0;
        for (size_t j = i; j < i + step; ++j) {
            error += (result[j] - exact[j]) * (result[j] - exact[j]);
            square += exact[j] * exact[j];
        }
        check(error >= 0, who);  // and no NaN
        errors += error, squares += square;
        worst = std::max(worst, error), largest = std::max(largest, square);
    }
    check(squares > 0, who);
    std::printf("error %s %.4f %.4f\n", who, static_cast<double>(std::sqrt(errors / squares) * 0x1p53L),
                static_cast<double>(std::sqrt(worst / largest) * 0x1p53L));
}

void measure(const Case& c, const char* peer) {
    const std::vector<Exact> x = inputOf(c);
    const Doubles in = numbersOf<double>(c, x, false);
    const auto exact = numbersOf<long double>(c, transformed(x, c.inverse), true);
    const size_t step = c.real && c.inverse ? 1 : 2;
    std::printf("case %s %s %s %d\n", c.kind(), c.direction(), c.data, c.order);
    report("zpp", step, exact, ours(c, in, exact.size()));
#ifdef ZPP_HAVE_FFTW
    report("FFTW", step, exact, fftw(c, in, exact.size()));
#endif
    if (peer != nullptr) report(peer, step, exact, asked(c, in, exact.size()));
}

// sum over j of x[j] cos(pi (2 j + 1) k / (2 n)), or over k, times what makes the transform orthogonal: for
// powers of two by an FFT, else as it is defined.
std::vector<long double> cosines(const std::vector<long double>& x, bool inverse) {
    const size_t n = x.size();
    const long double turn = 6.28318530717958647692528676655900577L;
    const auto scale = [=](size_t k) {
        return std::sqrt((k == 0 ? 1.0L : 2.0L) / static_cast<long double>(n));
    };
    const auto angle = [=](size_t i) {
        return turn * static_cast<long double>(i) / static_cast<long double>(4 * n);
    };
    std::vector<long double> y(n);
    if ((n & (n - 1)) == 0) {  // the real part of the FFT of 2 n elements that half a sample turns
        std::vector<Exact> z(2 * n);
        for (size_t j = 0; j < n; ++j) z[j] = inverse ? std::polar(x[j] * scale(j), angle(j)) : x[j];
        z = transformed(std::move(z), inverse);
        for (size_t k = 0; k < n; ++k)
            y[k] = inverse ? z[k].real() : scale(k) * (z[k] * std::polar(1.0L, -angle(k))).real();
        return y;
    }
    std::vector<long double> table(4 * n);
    for (size_t i = 0; i < 4 * n; ++i) table[i] = std::cos(angle(i));
    for (size_t i = 0; i < n; ++i)
        for (size_t j = 0; j < n; ++j) {
            const size_t k = inverse ? j : i, time = inverse ? i : j;
            y[i] += scale(k) * x[j] * table[(2 * time + 1) * k % (4 * n)];
        }
    return y;
}

Doubles ourCosines(const Doubles& in, bool inverse) {
    Doubles out(in.size());
    ZppsDCTSpec* spec = nullptr;
    const int length = static_cast<int>(in.size());
    check((inverse ? zppsDCTInvInitAlloc_64f : zppsDCTFwdInitAlloc_64f)(&spec, length, 0) == zppStatusOk &&
              (inverse ? zppsDCTInv_64f : zppsDCTFwd_64f)(in.data(), out.data(), spec, nullptr) ==
                  zppStatusOk &&
              (inverse ? zppsDCTInvFree_64f : zppsDCTFwdFree_64f)(spec) == zppStatusOk,
          "zpp");
    return out;
}

#ifdef ZPP_HAVE_FFTW
// Scaled as ours, without another rounding; those of a first number of 0 for the inverse, which it weighs
// otherwise.
std::vector<long double> fftwCosines(Doubles in, bool inverse) {
    const size_t n = in.size();
    Doubles out(n);
    const fftw_plan plan = fftw_plan_r2r_1d(static_cast<int>(n), in.data(), out.data(),
                                            inverse ? FFTW_REDFT01 : FFTW_REDFT10, FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    std::vector<long double> scaled(out.begin(), out.end());
    for (size_t k = 0; k < n; ++k)
        scaled[k] *= std::sqrt((k == 0 && !inverse ? 0.25L : 0.5L) / static_cast<long double>(n));
    return scaled;
}
#endif

// Of short transforms several together: the errors of a few numbers are chance.
void measureCosines(int length, bool inverse) {
    std::mt19937_64 random(static_cast<unsigned>(length));
    std::vector<long double> exact, theirs;
    Doubles results;
    const auto append = [](auto& all, const auto& some) { all.insert(all.end(), some.begin(), some.end()); };
    for (int i = 0; i < 1 + 16384 / length; ++i) {
        Doubles in(static_cast<size_t>(length));
        for (double& x : in) x = std::ldexp(static_cast<double>(random() >> 11), -52) - 1;
        if (inverse) in[0] = 0;
        append(exact, cosines({in.begin(), in.end()}, inverse));
        append(results, ourCosines(in, inverse));
#ifdef ZPP_HAVE_FFTW
        append(theirs, fftwCosines(in, inverse));
#endif
    }
    std::printf("case cosine %s random %d\n", inverse ? "inverse" : "forward", length);
    report("zpp", 1, exact, results);
    if (!theirs.empty()) report("FFTW", 1, exact, theirs);
}

// The binding of this name, or with null what the load chose.
bool bind(const char* name) {
    if (name == nullptr) return true;
    for (const test::Binding& binding : test::runnableBindings())
        if (binding.name() == name) {
            binding.bind();
            return true;
        }
    std::fprintf(stderr, "no build %s runs here; there are:", name);
    for (const test::Binding& binding : test::runnableBindings())
        std::fprintf(stderr, " %s", binding.name().c_str());
    std::fprintf(stderr, "\n");
    return false;
}

}  // namespace
}  // namespace zpp::bench

int main(int argc, char** argv) {
    using namespace zpp::bench;
    const char *binding = nullptr, *peer = nullptr;
    int first = 3, last = 22;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--binding") == 0) binding = argv[i + 1];
        if (std::strcmp(argv[i], "--peer") == 0) peer = argv[i + 1];
        if (std::strcmp(argv[i], "--first") == 0) first = std::atoi(argv[i + 1]);
        if (std::strcmp(argv[i], "--last") == 0) last = std::atoi(argv[i + 1]);
    }
    if (first < 1 || last < first || last > 26 || !bind(binding)) return 2;
#ifndef ZPP_HAVE_FFTW
    std::printf("note without FFTW, which was not found when this was built\n");
#endif
    for (const bool real : {false, true})
        for (const bool inverse : {false, true})
            for (const char* data : {"random", "impulse", "flat"})
                for (int order = first; order <= last; ++order) measure({real, inverse, data, order}, peer);
    for (const bool inverse : {false, true}) {
        for (int order = first; order <= last; ++order) measureCosines(1 << order, inverse);
        for (const int length : {100, 360, 1000, 1001, 10007}) measureCosines(length, inverse);
    }
}
