"""The polynomial of the arcsine."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial, rounded, scalar


def tables():
    sixth = mpf(1) / 6
    f = lambda z: ((mp.asin(mp.sqrt(z)) / mp.sqrt(z) - 1) / z - sixth) / z if z != 0 else mpf(3) / 40
    polynomial, error = best_polynomial(f, 12, mpf(0), mpf(1) / 4, lambda z: z**2)
    return [
        scalar("kSixth", sixth, "1 / 6."),
        scalar("kSixthLow", sixth - rounded(sixth), "What it lacks."),
        scalar("kSixthHalf", rounded(sixth, 26), "1 / 6 in 26 bits."),
        scalar("kSixthRest", sixth - rounded(sixth, 26), "What these lack."),
        array("kArcsinePolynomial", polynomial,
              f"(asin(u) - u - u^3 / 6) / u^5 in u^2 for |u| <= 1/2: asin(u) / u to 2^{error:.1f}."),
    ]
