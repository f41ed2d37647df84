// FFT transforms.
#include "core/move.h"
#include "transform/fft_real.h"

namespace zpp::ZPP_ISA {
namespace {

// Narrower vectors serve short lengths only.
template <class In, class Out>
inline void transform(In in, Out out, int order, double* work, const FftTables& tables, double scale) {
    if (shortTransform(in, out, tables, scale)) return;
    if constexpr (sizeof(typename In::V) == kLanes<double> * sizeof(double)) {
        if (order <= kMaxPlainOrder)
            plainTransform(in, out, work, tables, scale);
        else
            hugeTransform(in, out, order, work, tables, scale);
    }
}

template <bool kInverse>
void transformInterleaved(const double* src, double* dst, int order, double* work, const FftTables& tables,
                          double scale) {
    withWidth(order, [=, &tables](auto width) {
        using Data = Interleaved<decltype(width)::value, kInverse>;
        transform(Data{const_cast<double*>(src)}, Data{dst}, order, work, tables, scale);
    });
}

inline double forwardScale(const ZppsFFTSpec* spec) { return spec->fwdNorm != 0 ? spec->scale : 1.0; }
inline double inverseScale(const ZppsFFTSpec* spec) { return spec->invNorm != 0 ? spec->scale : 1.0; }

// Calls body(work) with the work buffer of the call: on the stack where the caller need not give one.
template <class Body>
ZPP_INLINE ZppStatus withWork(const ZppsFFTSpec* spec, Zpp8u* pBuffer, Body body) {
    alignas(kBlockAlignment) double stack[size_t{2} << kMaxStackOrder];
    const WorkBuffer buffer(pBuffer, spec->bufSize);
    double* work = spec->bufSize == 0 ? stack : buffer.from<double>(kBlockAlignment);
    if (work == nullptr) return zppStatusAllocationFailed;
    body(work);
    return zppStatusOk;
}

template <bool kInverse>
ZppStatus complexTransform(const Zpp64fc* pSrc, Zpp64fc* pDst, const ZppsFFTSpec* spec, Zpp8u* pBuffer) {
    if (const ZppStatus error = firstError(checkSpec(spec, kComplexSpec), checkPointers(pSrc, pDst)))
        return error;
    const DoublePrecision precision;
    const double scale = kInverse ? inverseScale(spec) : forwardScale(spec);
    return withWork(spec, pBuffer, [=](double* work) {
        transformInterleaved<kInverse>(&pSrc->re, &pDst->re, spec->order, work, spec->complex, scale);
    });
}

// The inverse is the forward transform with the parts exchanged.
ZppStatus splitTransform(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstRe, Zpp64f* pDstIm,
                         const ZppsFFTSpec* spec, Zpp8u* pBuffer, double scale) {
    const DoublePrecision precision;
    return withWork(spec, pBuffer, [=](double* work) {
        withWidth(spec->order, [=](auto width) {
            using Data = Split<decltype(width)::value>;
            transform(Data{const_cast<double*>(pSrcRe), const_cast<double*>(pSrcIm)}, Data{pDstRe, pDstIm},
                      spec->order, work, spec->complex, scale);
        });
    });
}

ZppStatus checkSplit(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, const Zpp64f* pDstRe, const Zpp64f* pDstIm,
                     const ZppsFFTSpec* spec) {
    return firstError(checkSpec(spec, kSplitSpec), checkPointers(pSrcRe, pSrcIm, pDstRe, pDstIm));
}

enum Packing { kPack, kPerm, kCcs };

ZppStatus realForward(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* spec, Zpp8u* pBuffer,
                      Packing packing) {
    if (const ZppStatus error = firstError(checkSpec(spec, kRealSpec), checkPointers(pSrc, pDst)))
        return error;
    const DoublePrecision precision;
    const double scale = forwardScale(spec);
    const size_t n = size_t{1} << spec->order;
    if (n == 1) {
        pDst[0] = pSrc[0] * scale;
        if (packing == kCcs) pDst[1] = 0;
        return zppStatusOk;
    }
    return withWork(spec, pBuffer, [=](double* work) {
        // Half the scale, since the recombination gives the double.
        transformInterleaved<false>(pSrc, pDst, spec->order - 1, work, spec->complex, 0.5 * scale);
        const double first = 2 * (pDst[0] + pDst[1]), nyquist = 2 * (pDst[0] - pDst[1]);
        recombineAll<false>(pDst, pDst, n / 2, spec->real);
        if (packing == kPack) memmove(pDst + 1, pDst + 2, (n - 2) * sizeof(double));
        pDst[0] = first;
        pDst[packing == kPack ? n - 1 : packing == kPerm ? 1 : n] = nyquist;
        if (packing == kCcs) pDst[1] = pDst[n + 1] = 0;
    });
}

ZppStatus realInverse(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* spec, Zpp8u* pBuffer,
                      Packing packing) {
    if (const ZppStatus error = firstError(checkSpec(spec, kRealSpec), checkPointers(pSrc, pDst)))
        return error;
    const DoublePrecision precision;
    const double scale = inverseScale(spec);
    const size_t n = size_t{1} << spec->order;
    if (n == 1) {
        pDst[0] = pSrc[0] * scale;
        return zppStatusOk;
    }
    return withWork(spec, pBuffer, [=](double* work) {
        const double first = pSrc[0], nyquist = pSrc[packing == kPack ? n - 1 : packing == kPerm ? 1 : n];
        const double* pairs = pSrc;
        if (packing == kPack && pSrc == pDst) {
            memmove(pDst + 2, pDst + 1, (n - 2) * sizeof(double));
        } else if (packing == kPack) {
            pairs = pSrc - 1;
        }
        recombineAll<true>(pairs, pDst, n / 2, spec->real);
        pDst[0] = first + nyquist;
        pDst[1] = first - nyquist;
        transformInterleaved<true>(pDst, pDst, spec->order - 1, work, spec->complex, scale);
    });
}

}  // namespace

ZppStatus zppsFFTFwd_CToC_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return complexTransform<false>(pSrc, pDst, pSpec, pBuffer);
}
ZppStatus zppsFFTFwd_CToC_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstRe, Zpp64f* pDstIm,
                              const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    if (const ZppStatus error = checkSplit(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec)) return error;
    return splitTransform(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec, pBuffer, forwardScale(pSpec));
}
ZppStatus zppsFFTInv_CToC_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return complexTransform<true>(pSrc, pDst, pSpec, pBuffer);
}
ZppStatus zppsFFTInv_CToC_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstRe, Zpp64f* pDstIm,
                              const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    if (const ZppStatus error = checkSplit(pSrcRe, pSrcIm, pDstRe, pDstIm, pSpec)) return error;
    return splitTransform(pSrcIm, pSrcRe, pDstIm, pDstRe, pSpec, pBuffer, inverseScale(pSpec));
}

ZppStatus zppsFFTFwd_RToPack_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return realForward(pSrc, pDst, pSpec, pBuffer, kPack);
}
ZppStatus zppsFFTFwd_RToPerm_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return realForward(pSrc, pDst, pSpec, pBuffer, kPerm);
}
ZppStatus zppsFFTFwd_RToCCS_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return realForward(pSrc, pDst, pSpec, pBuffer, kCcs);
}
ZppStatus zppsFFTInv_PackToR_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return realInverse(pSrc, pDst, pSpec, pBuffer, kPack);
}
ZppStatus zppsFFTInv_PermToR_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return realInverse(pSrc, pDst, pSpec, pBuffer, kPerm);
}
ZppStatus zppsFFTInv_CCSToR_64f(const Zpp64f* pSrc, Zpp64f* pDst, const ZppsFFTSpec* pSpec, Zpp8u* pBuffer) {
    return realInverse(pSrc, pDst, pSpec, pBuffer, kCcs);
}

}  // namespace zpp::ZPP_ISA
