// Sums of logarithms, as the logarithm of a product: significands are multiplied, exponents are added as
// integers.
//
// Element i goes into product i mod 16, whatever the width of the build, and at the end each half of the
// products into the one before it: so builds that have the same bits of the logarithm have the same bits of
// the sum. Each product rounds by 2^-53 of itself, which is 2^-53 in the sum.
#include "core/checks.h"
#include "core/simd_convert.h"
#include "stats/exports.h"
#include "vm/environment.h"
#include "vm/exp.h"
#include "vm/ln.h"

namespace zpp::ZPP_ISA {
namespace {

constexpr size_t kProducts = 16, kBlock = 4 * kProducts;
// After so many blocks products are below 2^512.
constexpr size_t kStrip = 128;

class RunningProducts {
  public:
    RunningProducts() {
        for (V& p : products_) p = broadcast<V>(1.0);
    }

    // The elements of a block that are no positive normal numbers; with any of them the products mean
    // nothing.
    template <class S>
    ZPP_INLINE uint64_t multiply(const S* block) {
        uint64_t others = 0;
#pragma GCC unroll 64
        for (size_t i = 0; i < kBlock; i += kLanes<double>) {
            const V x = loadAsDoubles<kLanes<double>>(block + i);
            const auto other = ((x >= Ln::kLeast) & (x <= Ln::kMost)) == 0;
            others |= laneBits(other) << i;
            products_[i % kProducts / kLanes<double>] *=
                significand(select(other, broadcast<V>(1.0), x), exponents_);
        }
        removed_ += kBlock;
        return others;
    }

    void normalise() {
        for (V& p : products_) p = significand(p, exponents_);
        removed_ += kProducts;
    }

    void multiplyBySubnormal(double x) {
        // 2^1022 x, without an operation on a subnormal number, which takes processors long.
        const double normal = bitCast<double>(bitCast<int64_t>(x) | 0x3FF0000000000000) - 1;
        ofSubnormals_ = significand(significand(normal, more_) * ofSubnormals_, more_);
        more_ -= 1022;
        removed_ += 2;
    }

    // The sum of the logarithms.
    double logarithm() {
        normalise();
        double product[kProducts];
        int64_t exponent[kLanes<double>];
        memcpy(product, products_, sizeof product);
        memcpy(exponent, &exponents_, sizeof exponent);
        for (size_t half = kProducts / 2; half > 0; half /= 2)
            for (size_t i = 0; i < half; ++i) product[i] *= product[i + half];
        product[0] *= ofSubnormals_;
        int64_t sum = more_ - 1023 * removed_;
        for (const int64_t e : exponent) sum += e;
        if (-900 < sum && sum < 900)
            return lnOrdinary(product[0] * powerOfTwo<double>(static_cast<int>(sum)));
        return static_cast<double>(sum) * 0.69314718055994530942 + lnOrdinary(product[0]);
    }

  private:
    using V = Vec<double>;
    using I = Vec<int64_t>;

    template <class T, class Exponents>
    ZPP_INLINE static T significand(T x, Exponents& exponents) {
        const auto bits = bitCast<Exponents>(x);
        exponents += bitCast<Exponents>(asUnsigned(bits) >> 52);
        return bitCast<T>((bits & 0xFFFFFFFFFFFFF) | 0x3FF0000000000000);
    }

    V products_[kProducts / kLanes<double>];
    I exponents_ = {};  // with 1023 for each that was taken off
    double ofSubnormals_ = 1;
    int64_t more_ = 0, removed_ = 0;
};

// The sum of the logarithms that products have not.
struct OtherLogarithms {
    double sum = 0;
    ZppStatus warning = zppStatusOk;

    void take(double x, RunningProducts& products) {
        if (x > 0 && x < 1) return products.multiplyBySubnormal(x);
        double ln;
        const ZppStatus ofElement = Ln::special(&x, &ln);
        sum += ln;
        if (ofElement == zppStatusDomain)
            warning = zppStatusLnNegativeArg;
        else if (ofElement == zppStatusSingularity && warning == zppStatusOk)
            warning = zppStatusLnZeroArg;
    }
};

template <class S>
ZppStatus sumOfLogarithms(const S* pSrc, int len, double* pSum) {
    if (const ZppStatus error = checkVectors(len, pSrc, pSum)) return error;
    const Environment environment;
    RunningProducts products;
    OtherLogarithms others;
    const size_t n = static_cast<size_t>(len);
    for (size_t i = 0; i < n; i += kBlock) {
        const size_t count = n - i < kBlock ? n - i : kBlock;
        double last[kBlock];
        if (count < kBlock)
            for (size_t k = 0; k < kBlock; ++k) last[k] = k < count ? pSrc[i + k] : 1;
        uint64_t special = count < kBlock ? products.multiply(last) : products.multiply(pSrc + i);
        for (; special != 0; special &= special - 1)
            others.take(pSrc[i + __builtin_ctzll(special)], products);
        if ((i / kBlock + 1) % kStrip == 0) products.normalise();
    }
    *pSum = products.logarithm() + others.sum;
    return others.warning;
}

}  // namespace

ZppStatus zppsSumLn_64f(const Zpp64f* pSrc, int len, Zpp64f* pSum) {
    return sumOfLogarithms(pSrc, len, pSum);
}
ZppStatus zppsSumLn_32f64f(const Zpp32f* pSrc, int len, Zpp64f* pSum) {
    return sumOfLogarithms(pSrc, len, pSum);
}

}  // namespace zpp::ZPP_ISA
