// Goertzel's recurrence.
#include <math.h>

#include "core/checks.h"
#include "core/complex.h"
#include "transform/exports.h"

namespace zpp::ZPP_ISA {
namespace {

void recur(const Zpp64fc* src, int len, Zpp64fc* val, double frequency) {
    const double omega = 6.283185307179586 * frequency;
    const double c = cos(omega), s = sin(omega), k = 2 * c;
    double re1 = 0, im1 = 0, re2 = 0, im2 = 0;
    for (int n = 0; n < len; ++n) {
        const double re = (k * re1 - re2) + src[n].re, im = (k * im1 - im2) + src[n].im;
        re2 = re1, im2 = im1, re1 = re, im1 = im;
    }
    val->re = c * re1 - s * im1 - re2;
    val->im = c * im1 + s * re1 - im2;
}

bool inRange(double frequency) { return frequency >= 0 && frequency < 1; }

}  // namespace

ZppStatus zppsGoertz_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pVal, Zpp64f rFreq) {
    if (const ZppStatus error =
            firstError(checkVectors(len, pSrc, pVal), require(inRange(rFreq), zppStatusRelativeFrequency)))
        return error;
    recur(pSrc, len, pVal, rFreq);
    return zppStatusOk;
}

ZppStatus zppsGoertzTwo_64fc(const Zpp64fc* pSrc, int len, Zpp64fc* pVal, const Zpp64f* rFreq) {
    if (const ZppStatus error = checkVectors(len, pSrc, pVal, rFreq)) return error;
    if (!inRange(rFreq[0]) || !inRange(rFreq[1])) return zppStatusRelativeFrequency;
    for (const int i : {0, 1}) recur(pSrc, len, pVal + i, rFreq[i]);
    return zppStatusOk;
}

}  // namespace zpp::ZPP_ISA
