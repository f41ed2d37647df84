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

// Quotients times a power of two as doubles, ready to be rounded to integers of 32 bits. One that is half an
// integer as a double need not be one: there the sign of the remainder decides. (Elsewhere the rounding to
// double makes no difference, as these halves are doubles and rounding keeps the order.)
struct DivideScaled {
    double scale;
    bool* zeroMet;

    template <class Lanes>
    ZPP_INLINE auto operator()(Lanes, const Zpp32s* pDivisor, const Zpp32s* pDividend) const {
        constexpr int n = Lanes::value;
        auto divisor = loadManyAsDoubles<n>(pDivisor);
        const auto dividend = loadManyAsDoubles<n>(pDividend);
        if (any(foldRegisters(product, divisor) == 0)) [[unlikely]] {
            *zeroMet = true;
            divisor = mapRegisters(notZero, divisor);
        }
        const auto quotient = mapRegisters(divide, dividend, divisor);
        const auto scaled =
            mapRegisters([this](auto q) ZPP_INLINE_LAMBDA { return bounded(stored(q * scale)); }, quotient);
        if (!any(foldRegisters(largest, mapRegisters(squaredFraction, scaled)) == 0.25)) [[likely]]
            return scaled;
        return mapRegisters(besideHalf, scaled, quotient, dividend, divisor);
    }

    static constexpr auto product = [](auto a, auto b) ZPP_INLINE_LAMBDA { return a * b; };
    static constexpr auto largest = [](auto a, auto b) ZPP_INLINE_LAMBDA { return max(a, b); };
    static constexpr auto divide = [](auto a, auto b) ZPP_INLINE_LAMBDA { return stored(a / b); };

    // Instead of 0 what takes a quotient but 0 out of the range at every scale, and raises no exception.
    static constexpr auto notZero = [](auto divisor) ZPP_INLINE_LAMBDA {
        return select(divisor == 0, broadcast<decltype(divisor)>(0x1p-100), divisor);
    };

    template <class V>
    ZPP_INLINE static V bounded(V v) {
        return min(max(v, broadcast<V>(-0x1p31)), broadcast<V>(0x1p31 - 1));
    }

    // At most 1/4, and that in a half.
    static constexpr auto squaredFraction = [](auto scaled) ZPP_INLINE_LAMBDA {
        constexpr double integers = 0x1.8p52;  // beside it doubles are integers
        const auto fraction = scaled - stored(stored(scaled + integers) - integers);
        return fraction * fraction;
    };

    // A quarter more or less in the halves that are not exact. Their quotient has 33 bits: with the divisor
    // in two parts all is exact.
    static constexpr auto besideHalf = [](auto scaled, auto quotient, auto dividend,
                                          auto divisor) ZPP_INLINE_LAMBDA {
        using V = decltype(scaled);
        constexpr double multiples = 0x1.8p68;  // beside it doubles are multiples of 2^16
        const V high = stored(stored(divisor + multiples) - multiples);
        const V remainder = mulSubFrom(quotient, divisor - high, dividend - quotient * high);
        const V direction = remainder * divisor * 0x1p100;
        const V quarter = min(max(direction, broadcast<V>(-0.25)), broadcast<V>(0.25));
        return select(squaredFraction(scaled) == 0.25, scaled + quarter, scaled);
    };
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
    return withWarning(zppStatusDivByZero, [=](bool* zeroMet) {
        // Quotients lie within 2^-31 ... 2^31: at 2^64 and 2^-64 all saturate or vanish.
        const DivideScaled divide{powerOfTwo<double>(-clamp(scaleFactor, -64, 64)), zeroMet};
        return elementwiseSteps<kLanes<int32_t>, false, kLanes<double>>(
            divide, [](Zpp32s* p, auto v) ZPP_INLINE_LAMBDA { storeManyAsInts<Rounding::kNearest>(p, v); },
            pDst, len, pSrc1, pSrc2);
    });
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
