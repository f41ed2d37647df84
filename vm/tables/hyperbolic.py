"""Polynomials of vm/hyperbolic.h."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial


def tables():
    limit = (mp.log(2) / 32) ** 2
    odd = lambda t: (mp.sinh(mp.sqrt(t)) / mp.sqrt(t) - 1) / t if t != 0 else mpf(1) / 6
    even = lambda t: ((mp.cosh(mp.sqrt(t)) - 1) / t - mpf(1) / 2) / t if t != 0 else mpf(1) / 24
    sine, sine_error = best_polynomial(odd, 2, mpf(0), limit, lambda t: t)
    cosine, cosine_error = best_polynomial(even, 1, mpf(0), limit, lambda t: t**2)
    return [
        array("kSinhPolynomial", sine, f"(sinh(r) / r - 1) / r^2 in r^2 for |r| <= ln 2 / 32: sinh(r) / r to 2^{sine_error:.1f}."),
        array("kCoshPolynomial", cosine, f"(cosh(r) - 1 - r^2 / 2) / r^4 in r^2: cosh(r) to 2^{cosine_error:.1f}."),
    ]
