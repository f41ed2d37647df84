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
// even lengths. What it is convolved with is the conjugate of it, whose spectrum takes its place later.
template <class Root>
void chirpTables(Areas& areas, ZppsDCTSpec& spec, const Root* root) {
    const ChirpLengths c = chirpLengths(spec.len);
    const bool even = spec.len % 2 == 0, forward = spec.id == kForwardDct;
    const uint64_t count = c.inputs > c.outputs ? c.inputs : c.outputs;
    spec.chirp = areas.take<double>(2 * count);
    spec.chirpSpectrum = areas.take<double>(2 * c.length);
    spec.twiddles = (even ? pairTwiddles<Root> : chirpTwiddles<Root>)(areas, spec, root);
    if (c.parts == 3) spec.thirds = areas.take<double>(4 * c.length / 3);
    if (root == nullptr) return;
    const double sign = even && !forward ? -1 : 1;
    const long double shorter = 1 / static_cast<long double>(c.length);
    const auto putConjugate = [&](uint64_t at, Complex<long double> b) {
        put(spec.chirpSpectrum + 2 * at, rounded(Complex<long double>{b.re, -b.im} * shorter));
    };
    memset(spec.chirpSpectrum, 0, static_cast<size_t>(2 * c.length) * sizeof(double));
    for (uint64_t j = 0; j < count; ++j) {
        const Complex<long double> w = (*root)((even ? 4 : 2) * j * j), b = {w.re, sign * w.im};
        put(spec.chirp + 2 * j, rounded(b));
        if (j < (forward ? c.outputs : c.inputs)) putConjugate(j, b);
        if (j > 0 && j < (forward ? c.inputs : c.outputs)) putConjugate(c.length - j, b);
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
            auto* const fft = areas.take<FftTables>(1);
            const FftTables tables = complexTables(areas, fftRoots, orderOf(spec.len) - 1, true);
            if (fft != nullptr) *fft = tables;
            spec.fft = fft;
            spec.pow2Table = pairTwiddles(areas, spec, root);
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

// As partInThree() takes them; false where memory is short.
bool fillThirds(ZppsDCTSpec* spec) {
    const uint64_t length = chirpLengths(spec->len).length;
    const RootsOfAny roots(length);
    if (!roots.allocated()) return false;
    constexpr int width = kLanes<double>;
    double* p = spec->thirds;
    for (uint64_t i = 0; i < length / 3; i += width)
        for (uint64_t power = 1; power <= 2; ++power, p += 2 * width)
            for (int l = 0; l < width; ++l) {
                const auto k = i + static_cast<uint64_t>(elementOfLane(width, l, true));
                const Complex<double> w = rounded(roots.exact(power * k));
                p[l] = w.re, p[width + l] = w.im;
            }
    return true;
}

// False where memory is short.
bool fillTables(ZppsDCTSpec* spec) {
    if (spec->small != 0) return true;
    const ExtendedPrecision precision;
    if (spec->pow2 != 0) {
        const int order = orderOf(spec->len) + 2;
        const Roots roots(order, tableOrder(order - 3));
        if (!roots.allocated()) return false;
        place(
            spec, [&, order](uint64_t k) { return roots.exact(k, order); }, &roots);
        return true;
    }
    const RootsOfAny roots(4 * static_cast<uint64_t>(spec->len));
    if (!roots.allocated()) return false;
    place(
        spec, [&](uint64_t k) { return roots.exact(k); }, nullptr);
    return spec->thirds == nullptr || fillThirds(spec);
}

// The FFT of the large method, and with it the spectrum of the chirp in its place; false where memory is
// short.
bool makeConvolver(ZppsDCTSpec* spec) {
    const DoublePrecision precision;
    const ChirpLengths c = chirpLengths(spec->len);
    ZppsFFTSpec* fft = nullptr;
    if (zppsFFTInitAlloc_C_64fc(&fft, c.order, 8, 0) != zppStatusOk) return false;
    spec->fft = fft;
    const WorkBuffer work(nullptr, fft->bufSize);
    if (fft->bufSize > 0 && work.block() == nullptr) return false;
    toSpectrum(spec->chirpSpectrum, static_cast<size_t>(c.length), spec, static_cast<Zpp8u*>(work.block()));
    return true;
}

// The bytes of work buffer.
uint64_t workBytes(const ZppsDCTSpec& spec) {
    if (spec.small != 0) return 0;
    if (spec.large == 0) return 8 * static_cast<uint64_t>(spec.len) + kDctAlignment;
    const ChirpLengths c = chirpLengths(spec.len);
    return 16 * c.length + static_cast<uint64_t>(workSize(c.order)) + kBlockAlignment;
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
    if (spec->large != 0 && spec->fft != nullptr) zppsFFTFree_C_64fc(static_cast<ZppsFFTSpec*>(spec->fft));
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
    if (!fillTables(spec) || (spec->large != 0 && !makeConvolver(spec))) {
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
