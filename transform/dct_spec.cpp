// DCT specifications: their tables, and what is asked of them.
#include "transform/dct_direct.h"
#include "transform/dct_large.h"
#include "transform/dct_roots.h"
#include "transform/fft_tables.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr long double kRootOf2 = 1.41421356237309504880168872420969807857L;

// sqrt(2 / len)
long double scaleOf(const ZppsDCTSpec& spec) { return kRootOf2 / sqrtl(static_cast<long double>(spec.len)); }

// The tables are taken by all of these functions, and filled where there are roots: root(k) is
// exp(-2 pi i k / (4 len)) in extended precision.

// Blocks as cosinesFromPairs() takes them.
template <class Root>
double* pairTwiddles(Areas& areas, const ZppsDCTSpec& spec, const Root* root) {
    const size_t count = static_cast<size_t>(spec.len) / 4;
    const Overlapping o(count);
    double* const table = areas.take<double>(kBlocksOfTwiddles * 2 * o.width * o.vectors);
    if (root == nullptr) return table;
    const long double half = scaleOf(spec) / 2, turned = half / kRootOf2;
    double* p = table;
    for (size_t i = 0; i < o.vectors; ++i, p += kBlocksOfTwiddles * 2 * o.width)
        for (size_t l = 0; l < o.width; ++l) {
            const uint64_t k = o.first(count, i) + l + 1;
            const Complex<long double> a = (*root)(k), b = (*root)(5 * k);
            const Complex<long double> g = {a.re + b.im, a.im - b.re}, h = {a.re - b.im, a.im + b.re};
            const Complex<double> blocks[] = {
                rounded(g * half), rounded(h * half),
                rounded(Complex<long double>{g.re - g.im, g.re + g.im} * turned),
                rounded(Complex<long double>{h.re - h.im, h.re + h.im} * turned)};
            for (size_t j = 0; j < kBlocksOfTwiddles; ++j) {
                p[2 * j * o.width + l] = blocks[j].re;
                p[(2 * j + 1) * o.width + l] = blocks[j].im;
            }
        }
    return table;
}

// c t b, of odd lengths: the angles of t and b are k and 2 k^2.
template <class Root>
double* chirpTwiddles(Areas& areas, const ZppsDCTSpec& spec, const Root* root) {
    const size_t count = static_cast<size_t>(spec.len) / 2;
    const Overlapping o(count);
    double* const table = areas.take<double>(2 * o.width * o.vectors);
    if (root == nullptr) return table;
    double* p = table;
    for (size_t i = 0; i < o.vectors; ++i, p += 2 * o.width)
        for (size_t l = 0; l < o.width; ++l) {
            const uint64_t k = o.first(count, i) + l + 1;
            const Complex<double> w = rounded((*root)(k + 2 * k * k) * scaleOf(spec));
            p[l] = w.re, p[o.width + l] = w.im;
        }
    return table;
}

// exp(-pi i j^2 / n), the angle of which is 2 j^2, or 4 j^2 for n = len / 2; its conjugate for the inverse of
// even lengths. Its spectrum is made where there is an FFT for it.
template <class Root>
void chirpTables(Areas& areas, ZppsDCTSpec& spec, const Root* root) {
    const ChirpLengths c = chirpLengths(spec.len);
    const bool even = spec.len % 2 == 0;
    const size_t count = c.inputs > c.outputs ? c.inputs : c.outputs, length = size_t{1} << c.order;
    spec.chirp = areas.take<double>(2 * count);
    spec.chirpSpectrum = areas.take<double>(2 * length);
    spec.twiddles = (even ? pairTwiddles<Root> : chirpTwiddles<Root>)(areas, spec, root);
    if (root == nullptr) return;
    const double sign = even && spec.id == kInverseDct ? -1 : 1;
    const long double shorter = 1 / static_cast<long double>(length);
    memset(spec.chirpSpectrum, 0, 2 * length * sizeof(double));
    for (uint64_t j = 0; j < count; ++j) {
        const Complex<double> b = rounded((*root)((even ? 4 : 2) * j * j));
        spec.chirp[2 * j] = b.re;
        spec.chirp[2 * j + 1] = sign * b.im;
        const size_t places[] = {j, j == 0 ? 0 : length - j};
        const size_t used[] = {c.outputs, c.inputs};
        for (const int i : {0, 1})
            if (j < used[spec.id == kForwardDct ? i : 1 - i]) {
                spec.chirpSpectrum[2 * places[i]] = static_cast<double>(b.re * shorter);
                spec.chirpSpectrum[2 * places[i] + 1] = static_cast<double>(-sign * b.im * shorter);
            }
    }
}

// cos(2 pi i / (4 len)), and with it the matrices of the even and of the odd results, or of their inverse.
template <class Root>
void directTables(Areas& areas, ZppsDCTSpec& spec, const Root* root) {
    const size_t n = static_cast<size_t>(spec.len);
    const Halfway half(n);
    spec.cosTable = areas.take<double>(4 * n);
    spec.matrices = areas.take<double>(half.matrixSize());
    if (root == nullptr) return;
    for (size_t i = 0; i < 4 * n; ++i) spec.cosTable[i] = rounded((*root)(i)).re;
    memset(spec.matrices, 0, half.matrixSize() * sizeof(double));
    double* p = spec.matrices;
    for (const size_t odd : {0, 1}) {
        const size_t size = odd != 0 ? half.odd : half.even, row = rowLength(size);
        for (size_t i = 0; i < size; ++i, p += row)
            for (size_t j = 0; j < size; ++j) {
                const size_t time = spec.id == kForwardDct ? i : j,
                             frequency = 2 * (spec.id == kForwardDct ? j : i) + odd;
                const long double c = frequency == 0 ? scaleOf(spec) / kRootOf2 : scaleOf(spec);
                p[j] = rounded((*root)((2 * time + 1) * frequency) * c).re;
            }
    }
}

template <class Root>
auto tablesOf(const Root* root, const Roots* fftRoots) {
    return [=](Areas& areas, ZppsDCTSpec& spec) {
        if (spec.pow2 != 0) {
            spec.fft = areas.take<FftTables>(1);
            const FftTables tables = complexTables(areas, fftRoots, orderOf(spec.len) - 1, true);
            if (spec.fft != nullptr) *spec.fft = tables;
            spec.pow2Table = spec.twiddles = pairTwiddles(areas, spec, root);
        } else if (spec.large != 0) {
            chirpTables(areas, spec, root);
        } else if (spec.small == 0) {
            directTables(areas, spec, root);
        }
    };
}
auto noTables() {
    struct None {
        Complex<long double> operator()(uint64_t) const { return {}; }
    };
    return tablesOf<None>(nullptr, nullptr);
}

// Fills the tables of a placed object.
template <class Root>
void place(ZppsDCTSpec* spec, Root root, const Roots* fftRoots) {
    placeObject(*spec, kBlockAlignment, spec, tablesOf(&root, fftRoots));
}

// False where memory is short.
bool fillTables(ZppsDCTSpec* spec) {
    if (spec->small != 0) return true;
    const ExtendedPrecision precision;
    if (spec->pow2 != 0) {
        const int order = orderOf(spec->len) + 2;
        const Roots roots(order);
        if (!roots.allocated()) return false;
        place(
            spec, [&, order](uint64_t k) { return roots.exact(k, order); }, &roots);
        return true;
    }
    const RootsOfAny roots(4 * static_cast<uint64_t>(spec->len));
    if (!roots.allocated()) return false;
    place(
        spec, [&](uint64_t k) { return roots.exact(k); }, nullptr);
    return true;
}

// The spectrum of the chirp in its place; false where memory is short.
bool transformChirp(ZppsDCTSpec* spec) {
    auto* const chirp = reinterpret_cast<Zpp64fc*>(spec->chirpSpectrum);
    const int order = chirpLengths(spec->len).order;
    return zppsFFTInitAlloc_C_64fc(&spec->convolver, order, 8, 0) == zppStatusOk &&
           zppsFFTFwd_CToC_64fc(chirp, chirp, spec->convolver, nullptr) == zppStatusOk;
}

// The bytes of work buffer.
uint64_t workBytes(const ZppsDCTSpec& spec) {
    if (spec.small != 0) return 0;
    if (spec.large == 0) return 8 * static_cast<uint64_t>(spec.len) + kDctAlignment;
    const int order = chirpLengths(spec.len).order;
    return (uint64_t{16} << order) + static_cast<uint64_t>(workSize(order)) + kBlockAlignment;
}

// The numbers of a specification; bufSize is set where it is an int.
ZppsDCTSpec headerOf(int len, int hint, DctKind kind) {
    const DoublePrecision precision;
    ZppsDCTSpec spec{};
    spec.id = kind;
    spec.len = len;
    spec.hint = hint;
    const bool pow2 = (len & (len - 1)) == 0;
    spec.small = pow2 && len <= kMaxSmall;
    spec.pow2 = pow2 && len > kMaxSmall;
    spec.pow2Large = pow2 && orderOf(len) - 1 > kMaxPlainOrder;
    spec.large = !pow2 && len > kMaxDirect;
    if (spec.small != 0) return spec;
    spec.c0 = reciprocal(stored(__builtin_sqrt(static_cast<double>(len))));
    spec.c = stored(product(static_cast<double>(kRootOf2), spec.c0));
    return spec;
}

void release(ZppsDCTSpec* spec) {
    if (spec->convolver != nullptr) zppsFFTFree_C_64fc(spec->convolver);
    releaseObject(spec);
}

ZppStatus initSpec(ZppsDCTSpec** ppDCTSpec, int len, int hint, DctKind kind) {
    if (const ZppStatus error = checkVectors(len, ppDCTSpec)) return error;
    ZppsDCTSpec header = headerOf(len, hint, kind);
    const uint64_t bytes = workBytes(header);
    if (bytes > INT32_MAX) return zppStatusSizeError;
    header.bufSize = static_cast<int32_t>(bytes);
    ZppsDCTSpec* const spec = allocateObject(header, noTables());
    if (spec == nullptr) return zppStatusAllocationFailed;
    if (!fillTables(spec) || (spec->large != 0 && !transformChirp(spec))) {
        release(spec);
        return zppStatusAllocationFailed;
    }
    *ppDCTSpec = spec;
    return zppStatusOk;
}

ZppStatus freeSpec(ZppsDCTSpec* spec, DctKind kind) {
    const ZppStatus error = checkSpec(spec, kind);
    if (error == zppStatusOk) release(spec);
    return error;
}

ZppStatus getBufSize(const ZppsDCTSpec* spec, int* pSize, DctKind kind) {
    if (const ZppStatus error = firstError(checkPointers(spec, pSize), checkSpec(spec, kind))) return error;
    *pSize = spec->bufSize;
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsDCTFwdInitAlloc_64f(ZppsDCTSpec** ppDCTSpec, int len, int hint) {
    return initSpec(ppDCTSpec, len, hint, kForwardDct);
}
ZppStatus zppsDCTInvInitAlloc_64f(ZppsDCTSpec** ppDCTSpec, int len, int hint) {
    return initSpec(ppDCTSpec, len, hint, kInverseDct);
}
ZppStatus zppsDCTFwdFree_64f(ZppsDCTSpec* pDCTSpec) { return freeSpec(pDCTSpec, kForwardDct); }
ZppStatus zppsDCTInvFree_64f(ZppsDCTSpec* pDCTSpec) { return freeSpec(pDCTSpec, kInverseDct); }
ZppStatus zppsDCTFwdGetBufSize_64f(const ZppsDCTSpec* pDCTSpec, int* pSize) {
    return getBufSize(pDCTSpec, pSize, kForwardDct);
}
ZppStatus zppsDCTInvGetBufSize_64f(const ZppsDCTSpec* pDCTSpec, int* pSize) {
    return getBufSize(pDCTSpec, pSize, kInverseDct);
}

}  // namespace zpp::ZPP_ISA
