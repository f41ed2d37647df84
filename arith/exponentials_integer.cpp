// Exponentials of integers, scaled.
#include "arith/exports.h"
#include "core/checks.h"
#include "vm/environment.h"
#include "vm/long_exp.h"

namespace zpp::ZPP_ISA {
namespace {

// e^x 2^-scaleFactor is an integer of 1 to 31 bits for 22 arguments at most. They begin at the first one of a
// row of 32, which has those of the arguments in it; before it all are below a half, behind it all are too
// large.
class ScaledExponentials {
  public:
    explicit ScaledExponentials(int scaleFactor) {
        const Environment environment;
        first_ = static_cast<int32_t>(__builtin_floor((scaleFactor - 1.0) * 0.69314718055994530942));
        const LongExp e = longExp(first_);
        // 1/2 to 2; each further value is 1.44 bits longer.
        Long value = scaled(e.value, powerOfTwo<double>(static_cast<int>(e.exponent - scaleFactor)));
        for (int32_t& scaledValue : row_) {
            const bool fits = value.high < 0x1p31;
            const double integer = fits ? rounded(value) : 0x1p31;
            scaledValue = integer < 0x1p31 ? static_cast<int32_t>(integer) : INT32_MAX;
            if (fits) value = value * Long{kLongE[0][0], kLongE[0][1]};
        }
    }

    int32_t operator()(int32_t x) const {
        return x < first_ ? 0 : row_[(x > first_ + 31 ? first_ + 31 : x) - first_];
    }

  private:
    int32_t first_, row_[32];
};

ZppStatus exponentials(const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    if (const ZppStatus error = checkVectors(len, pSrc, pDst)) return error;
    const ScaledExponentials scaled(scaleFactor);
    for (int i = 0; i < len; ++i) pDst[i] = scaled(pSrc[i]);
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsExp_32s_Sfs(const Zpp32s* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    return exponentials(pSrc, pDst, len, scaleFactor);
}
ZppStatus zppsExp_32s_ISfs(Zpp32s* pSrcDst, int len, int scaleFactor) {
    return exponentials(pSrcDst, pSrcDst, len, scaleFactor);
}

}  // namespace zpp::ZPP_ISA
