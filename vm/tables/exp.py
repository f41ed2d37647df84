"""Powers of two and the polynomial of the exponential."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial, rounded, scalar


def tables():
    step = mp.log(2) / 16
    heads = [rounded(mpf(2) ** (mpf(i) / 16)) for i in range(16)]
    tails = [mpf(2) ** (mpf(i) / 16) / head - 1 for i, head in enumerate(heads)]
    high = rounded(step)
    fine = mp.log(2) / 64
    fine_heads = [rounded(mpf(2) ** (mpf(i) / 64)) for i in range(64)]
    fine_tails = [mpf(2) ** (mpf(i) / 64) - head for i, head in enumerate(fine_heads)]
    fine_high = rounded(fine, 36)
    quotient = lambda r: (mp.exp(r) - 1 - r) / r**2 if r != 0 else mpf(1) / 2
    near, near_error = best_polynomial(quotient, 5, -step / 2, step / 2, lambda r: r**2)
    finer, finer_error = best_polynomial(quotient, 4, -fine / 2, fine / 2, lambda r: r**2)
    return [
        scalar("kExpStepHigh", high, "ln 2 / 16."),
        scalar("kExpStepLow", step - high, "And what it lacks."),
        array("kExpHead", heads, "2^(i / 16)."),
        array("kExpTail", tails, "What these lack, relative to them."),
        array("kExpPolynomial", near, f"(e^r - 1 - r) / r^2 for |r| <= ln 2 / 32: e^r to 2^{near_error:.1f}."),
        scalar("kExpFineStepHigh", fine_high, "ln 2 / 64, of 36 bits: its multiples are exact."),
        scalar("kExpFineStepLow", fine - fine_high, "And what it lacks."),
        array("kExpFineHead", fine_heads, "2^(i / 64)."),
        array("kExpFineTail", fine_tails, "What these lack."),
        array("kExpFinePolynomial", finer, f"(e^r - 1 - r) / r^2 for |r| <= ln 2 / 128: e^r to 2^{finer_error:.1f}."),
    ]
