"""The inverse hyperbolic sine of small numbers."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial


def tables():
    limit = mpf(1) / 256
    odd = lambda t: (mp.asinh(mp.sqrt(t)) / mp.sqrt(t) - 1) / t if t != 0 else -mpf(1) / 6
    polynomial, error = best_polynomial(odd, 4, mpf(0), limit, lambda t: t)
    return [array("kAsinhPolynomial", polynomial,
                  f"(asinh(x) / x - 1) / x^2 in x^2 for |x| <= 1/16: asinh(x) / x to 2^{error:.1f}.")]
