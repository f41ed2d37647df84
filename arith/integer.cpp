// Scaled integer arithmetic.
#include "arith/exports.h"
#include "core/scaled.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr auto multiply = [](auto a, auto b) ZPP_INLINE_LAMBDA { return products(a, b); };
constexpr auto addProduct = [](auto a, auto b, auto sum) ZPP_INLINE_LAMBDA {
    const auto plus = [](auto x, auto y) ZPP_INLINE_LAMBDA { return x + y; };
    return mapRegisters(plus, products(a, b), products(sum, inRegister<decltype(sum)>(1)));
};

// dividend / divisor * scale in a double, ready to be rounded to an integer of 32 bits. A quotient that is
// half an integer as a double need not be one: there the sign of the remainder decides. (Elsewhere the
// rounding to double makes no difference, as these halves are doubles and rounding keeps the order.)
struct DivideScaled {
    double scale;
    bool* zeroMet;

    template <class V>
    ZPP_INLINE V operator()(V divisor, V dividend) const {
        const auto zero = divisor == 0;
        if (any(zero)) [[unlikely]] {
            *zeroMet = true;
            divisor = select(zero, broadcast<V>(0x1p-100), divisor);  // out of the range at every scale
        }
        const V quotient = stored(dividend / divisor);
        const V scaled = min(max(stored(quotient * scale), broadcast<V>(-0x1p31)), broadcast<V>(0x1p31 - 1));
        constexpr double integers = 0x1.8p52;  // beside it doubles are integers
        const V fraction = scaled - stored(stored(scaled + integers) - integers);
        const auto half = fraction * fraction == 0.25;
        if (!any(half)) [[likely]]
            return scaled;
        // Such a quotient has 33 bits: with the divisor in two parts all is exact.
        constexpr double multiples = 0x1.8p68;  // beside it doubles are multiples of 2^16
        const V high = stored(stored(divisor + multiples) - multiples);
        const V remainder = mulSubFrom(quotient, divisor - high, dividend - quotient * high);
        const V direction = remainder * divisor * 0x1p100;
        const V quarter = min(max(direction, broadcast<V>(-0.25)), broadcast<V>(0.25));
        return select(half, scaled + quarter, scaled);
    }
};

}  // namespace

ZppStatus zppsAdd_32s_Sfs(const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledSum<Sum>(pSrc1, pSrc2, pDst, len, scaleFactor);
}
ZppStatus zppsAdd_32s_ISfs(const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsAdd_32s_Sfs(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}
ZppStatus zppsSub_32s_Sfs(const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledSum<Difference>(pSrc2, pSrc1, pDst, len, scaleFactor);
}
ZppStatus zppsSub_32s_ISfs(const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsSub_32s_Sfs(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}
ZppStatus zppsMul_32s_Sfs(const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledProduct<Lanes64::kProducts>(multiply, pDst, len, scaleFactor, pSrc1, pSrc2);
}
ZppStatus zppsMul_32s_ISfs(const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsMul_32s_Sfs(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}

ZppStatus zppsDiv_32s_Sfs(const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pDst, int len, int scaleFactor) {
    bool zeroMet = false;
    // Quotients lie within 2^-31 ... 2^31: at 2^64 and 2^-64 all saturate or vanish.
    const DivideScaled divide{powerOfTwo<double>(-clamp(scaleFactor, -64, 64)), &zeroMet};
    const ZppStatus error = elementwiseSteps<kLanes<double>>(
        [=](auto lanes, const Zpp32s* divisors, const Zpp32s* dividends) ZPP_INLINE_LAMBDA {
            constexpr int n = decltype(lanes)::value;
            return divide(loadAsDoubles<n>(divisors), loadAsDoubles<n>(dividends));
        },
        [](Zpp32s* p, auto v) ZPP_INLINE_LAMBDA { storeAsInts<Rounding::kNearest>(p, v); }, pDst, len, pSrc1,
        pSrc2);
    return zeroMet ? zppStatusDivByZero : error;
}
ZppStatus zppsDiv_32s_ISfs(const Zpp32s* pSrc, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsDiv_32s_Sfs(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}

ZppStatus zppsAddC_32s_Sfs(const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledSum<Sum>(pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsAddC_32s_ISfs(Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsAddC_32s_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}
ZppStatus zppsSubC_32s_Sfs(const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledSum<Difference>(pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsSubC_32s_ISfs(Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsSubC_32s_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}
ZppStatus zppsSubCRev_32s_Sfs(const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledSum<Reversed<Difference>>(pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsSubCRev_32s_ISfs(Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsSubCRev_32s_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}
ZppStatus zppsMulC_32s_Sfs(const Zpp32s* pSrc, Zpp32s val, Zpp32s* pDst, int len, int scaleFactor) {
    return scaledProductC<Lanes64::kProducts>(multiply, pSrc, val, pDst, len, scaleFactor);
}
ZppStatus zppsMulC_32s_ISfs(Zpp32s val, Zpp32s* pSrcDst, int len, int scaleFactor) {
    return zppsMulC_32s_Sfs(pSrcDst, val, pSrcDst, len, scaleFactor);
}

ZppStatus zppsAddProduct_32s_Sfs(const Zpp32s* pSrc1, const Zpp32s* pSrc2, Zpp32s* pSrcDst, int len,
                                 int scaleFactor) {
    return scaledProduct<Lanes64::kAny>(addProduct, pSrcDst, len, scaleFactor, pSrc1, pSrc2, pSrcDst);
}

}  // namespace zpp::ZPP_ISA
