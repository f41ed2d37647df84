// Phases, and complex numbers in polar form.
#include "core/complex.h"
#include "core/scale.h"
#include "data/exact_angle.h"
#include "data/exports.h"
#include "vm/arctangent.h"
#include "vm/driver.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {
namespace {

// Of re and im.
struct Phase {
    static constexpr int kSources = 2, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&z)[2], V (&phase)[1]) {
        return Atan2::run<V>({z[1], z[0]}, phase);
    }
    static ZppStatus special(const double* z, double* phase) {
        *phase = angleOfAny(z[1], z[0]);
        return zppStatusOk;
    }
};

struct CartToPolar {
    static constexpr int kSources = 2, kDestinations = 2;

    template <class V>
    ZPP_INLINE static auto run(const V (&z)[2], V (&polar)[2]) {
        V phase[1];
        const auto special = Phase::run(z, phase);
        polar[0] = magnitude(Complex<V>{z[0], z[1]});
        polar[1] = phase[0];
        return special;
    }
    static ZppStatus special(const double* z, double* polar) {
        polar[0] = magnitude(Complex<double>{z[0], z[1]});
        return Phase::special(z, polar + 1);
    }
};

struct PolarToCart {
    static constexpr int kSources = 2, kDestinations = 2;

    template <class V>
    ZPP_INLINE static auto run(const V (&polar)[2], V (&z)[2]) {
        V turn[2];
        const auto special = SinCos::run<V>({polar[1]}, turn);
        z[0] = polar[0] * turn[1];
        z[1] = polar[0] * turn[0];
        return special;
    }
    static ZppStatus special(const double* polar, double* z) {
        double turn[2];
        SinCos::special(polar + 1, turn);
        z[0] = polar[0] * turn[1];
        z[1] = polar[0] * turn[0];
        return zppStatusOk;
    }
};

// Phases of integers times 2^-scaleFactor, before they are rounded. Those next to a half are special: the
// factor is then in -64 .. 2, as no phase but 0 is smaller than 2^-31.1.
class ScaledPhase {
  public:
    static constexpr int kSources = 2, kDestinations = 1;

    explicit ScaledPhase(int scaleFactor)
        : factor_(clamp(scaleFactor, -100, 100)), scale_(scaleMultiplier<double>(factor_)) {}

    template <class V>
    ZPP_INLINE auto run(const V (&z)[2], V (&phase)[1]) const {
        const auto zero = magnitude(z[0]) + magnitude(z[1]) == 0;
        const V scaled = angleOf(z[1], select(zero, broadcast<V>(1.0), z[0])) * scale_;
        const V bounded = max(min(scaled, broadcast<V>(0x1p32)), broadcast<V>(-0x1p32));
        constexpr double toInteger = 0x1.8p52;
        phase[0] = bounded;
        return magnitude(bounded - ((bounded + toInteger) - toInteger)) >= 0.5 - magnitude(bounded) * 0x1p-51;
    }
    ZppStatus special(const double* z, double* phase) const {
        const double im = magnitude(z[1]);
        const double scaled = angleOf(im, z[0]) * scale_, near = (scaled + 0x1p52) - 0x1p52;
        const double below = near > scaled ? near - 1 : near;
        const bool above = isAngleAbove(z[0], im, 2 * integerOf(below) + 1, factor_ - 1);
        *phase = __builtin_copysign(above ? below + 1 : below, z[1]);
        return zppStatusOk;
    }

  private:
    int factor_;
    double scale_;
};

}  // namespace

ZppStatus zppsPhase_64fc(const Zpp64fc* pSrc, Zpp64f* pDst, int len) {
    return evaluateElements<LastWarning>(Phase(), Vectors{{pSrc}, {pDst}}, len);
}
ZppStatus zppsPhase_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDst, int len) {
    return evaluateElements<LastWarning>(Phase(), Vectors{{pSrcRe, pSrcIm}, {pDst}}, len);
}
ZppStatus zppsPhase_32sc_Sfs(const Zpp32sc* pSrc, Zpp32s* pDst, int len, int scaleFactor) {
    return evaluateElements<LastWarning>(ScaledPhase(scaleFactor), Vectors{{pSrc}, {pDst}}, len);
}

ZppStatus zppsCartToPolar_64fc(const Zpp64fc* pSrc, Zpp64f* pDstMagn, Zpp64f* pDstPhase, int len) {
    return evaluateElements<LastWarning>(CartToPolar(), Vectors{{pSrc}, {pDstMagn, pDstPhase}}, len);
}
ZppStatus zppsCartToPolar_64f(const Zpp64f* pSrcRe, const Zpp64f* pSrcIm, Zpp64f* pDstMagn, Zpp64f* pDstPhase,
                              int len) {
    return evaluateElements<LastWarning>(CartToPolar(), Vectors{{pSrcRe, pSrcIm}, {pDstMagn, pDstPhase}},
                                         len);
}
ZppStatus zppsPolarToCart_64fc(const Zpp64f* pSrcMagn, const Zpp64f* pSrcPhase, Zpp64fc* pDst, int len) {
    return evaluateElements<LastWarning>(PolarToCart(), Vectors{{pSrcMagn, pSrcPhase}, {pDst}}, len);
}
ZppStatus zppsPolarToCart_64f(const Zpp64f* pSrcMagn, const Zpp64f* pSrcPhase, Zpp64f* pDstRe, Zpp64f* pDstIm,
                              int len) {
    return evaluateElements<LastWarning>(PolarToCart(), Vectors{{pSrcMagn, pSrcPhase}, {pDstRe, pDstIm}},
                                         len);
}

}  // namespace zpp::ZPP_ISA
