// Windows.
#include "core/checks.h"
#include "gen/exports.h"
#include "gen/window_bartlett.h"
#include "gen/window_cosine.h"
#include "gen/window_kaiser.h"

namespace zpp::ZPP_ISA {
namespace {

template <class T>
ZppStatus checkWindow(const T* pSrc, const T* pDst, int len) {
    return firstError(checkPointers(pSrc, pDst), require(len >= 3, zppStatusSizeError));
}

template <class T>
ZppStatus bartlett(const T* pSrc, T* pDst, int len) {
    if (const ZppStatus error = checkWindow(pSrc, pDst, len)) return error;
    const Environment environment;
    return applyWindow(BartlettWindow(len), pSrc, pDst, len);
}

template <class Kind, class T>
[[gnu::noinline]] ZppStatus cosine(Kind kind, const T* pSrc, T* pDst, int len) {
    if (const ZppStatus error = checkWindow(pSrc, pDst, len)) return error;
    const Environment environment;
    return applyWindow(CosineWindow<Kind>(kind, len), pSrc, pDst, len);
}

template <class T>
ZppStatus blackmanOpt(const T* pSrc, T* pDst, int len) {
    if (len < 4) return zppStatusSizeError;
    if (const ZppStatus error = checkWindow(pSrc, pDst, len)) return error;
    const Environment environment;
    return cosine(Blackman{optimalAlpha(len)}, pSrc, pDst, len);
}

template <class T>
ZppStatus kaiser(const T* pSrc, T* pDst, int len, double alpha) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    const Environment environment;
    if (magnitude(alpha) * (len - 1) * 0.5 > 308) return zppStatusKaiserTooHuge;
    return applyWindow(KaiserWindow(alpha, len), pSrc, pDst, len);
}

}  // namespace

ZppStatus zppsWinBartlett_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) { return bartlett(pSrc, pDst, len); }
ZppStatus zppsWinBartlett_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return bartlett(pSrc, pDst, len);
}
ZppStatus zppsWinBartlett_64f_I(Zpp64f* pSrcDst, int len) { return bartlett(pSrcDst, pSrcDst, len); }
ZppStatus zppsWinBartlett_64fc_I(Zpp64fc* pSrcDst, int len) { return bartlett(pSrcDst, pSrcDst, len); }

ZppStatus zppsWinHann_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return cosine(Hann(), pSrc, pDst, len);
}
ZppStatus zppsWinHann_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return cosine(Hann(), pSrc, pDst, len);
}
ZppStatus zppsWinHann_64f_I(Zpp64f* pSrcDst, int len) { return cosine(Hann(), pSrcDst, pSrcDst, len); }
ZppStatus zppsWinHann_64fc_I(Zpp64fc* pSrcDst, int len) { return cosine(Hann(), pSrcDst, pSrcDst, len); }

ZppStatus zppsWinHamming_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return cosine(Hamming(), pSrc, pDst, len);
}
ZppStatus zppsWinHamming_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return cosine(Hamming(), pSrc, pDst, len);
}
ZppStatus zppsWinHamming_64f_I(Zpp64f* pSrcDst, int len) { return cosine(Hamming(), pSrcDst, pSrcDst, len); }
ZppStatus zppsWinHamming_64fc_I(Zpp64fc* pSrcDst, int len) {
    return cosine(Hamming(), pSrcDst, pSrcDst, len);
}

ZppStatus zppsWinBlackman_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp64f alpha) {
    return cosine(Blackman{alpha}, pSrc, pDst, len);
}
ZppStatus zppsWinBlackman_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp64f alpha) {
    return cosine(Blackman{alpha}, pSrc, pDst, len);
}
ZppStatus zppsWinBlackman_64f_I(Zpp64f* pSrcDst, int len, Zpp64f alpha) {
    return cosine(Blackman{alpha}, pSrcDst, pSrcDst, len);
}
ZppStatus zppsWinBlackman_64fc_I(Zpp64fc* pSrcDst, int len, Zpp64f alpha) {
    return cosine(Blackman{alpha}, pSrcDst, pSrcDst, len);
}

ZppStatus zppsWinBlackmanStd_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return cosine(Blackman{-0.16}, pSrc, pDst, len);
}
ZppStatus zppsWinBlackmanStd_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return cosine(Blackman{-0.16}, pSrc, pDst, len);
}
ZppStatus zppsWinBlackmanStd_64f_I(Zpp64f* pSrcDst, int len) {
    return cosine(Blackman{-0.16}, pSrcDst, pSrcDst, len);
}
ZppStatus zppsWinBlackmanStd_64fc_I(Zpp64fc* pSrcDst, int len) {
    return cosine(Blackman{-0.16}, pSrcDst, pSrcDst, len);
}

ZppStatus zppsWinBlackmanOpt_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len) {
    return blackmanOpt(pSrc, pDst, len);
}
ZppStatus zppsWinBlackmanOpt_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return blackmanOpt(pSrc, pDst, len);
}
ZppStatus zppsWinBlackmanOpt_64f_I(Zpp64f* pSrcDst, int len) { return blackmanOpt(pSrcDst, pSrcDst, len); }
ZppStatus zppsWinBlackmanOpt_64fc_I(Zpp64fc* pSrcDst, int len) { return blackmanOpt(pSrcDst, pSrcDst, len); }

ZppStatus zppsWinKaiser_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, Zpp32f alpha) {
    return kaiser(pSrc, pDst, len, alpha);
}
ZppStatus zppsWinKaiser_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len, Zpp32f alpha) {
    return kaiser(pSrc, pDst, len, alpha);
}
ZppStatus zppsWinKaiser_64f_I(Zpp64f* pSrcDst, int len, Zpp32f alpha) {
    return kaiser(pSrcDst, pSrcDst, len, alpha);
}
ZppStatus zppsWinKaiser_64fc_I(Zpp64fc* pSrcDst, int len, Zpp32f alpha) {
    return kaiser(pSrcDst, pSrcDst, len, alpha);
}

}  // namespace zpp::ZPP_ISA
