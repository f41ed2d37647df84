"""Arctangents of points between which quotients lie by the first bits of their exponent and mantissa."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial, rounded, scalar

# The rows begin at half octaves; the first has all smaller quotients, the last all larger ones.
EDGES = [mpf(2 + i % 2) * mpf(2) ** (i // 2 - 5) for i in range(1, 16)]
# A difference of the bits of two doubles is the logarithm of their quotient to so many octaves.
BLUR = mpf(2) ** mpf("0.0861")


def bounds(row):
    """The least and the largest angle of a row."""
    least = mpf(0) if row == 0 else mp.atan(EDGES[row - 1] / BLUR)
    return least, mp.pi / 2 if row == 15 else mp.atan(EDGES[row] * BLUR)


def points():
    """Of each row the tangent c of about its middle, of 26 bits, and the arctangent of that, a multiple of 2^-51."""
    unit, found = mpf(2) ** -51, [(mpf(0), mpf(0))]
    for row in range(1, 16):
        middle = rounded(mp.tan(sum(bounds(row)) / 2), 26)
        step = 17 * mp.ldexp(1, mp.frexp(middle)[1] - 26)
        angles = {middle + k * step: mp.atan(middle + k * step) / unit for k in range(-6000, 6001)}
        best = min(angles, key=lambda c: abs(angles[c] - mp.nint(angles[c])))
        found.append((best, mp.nint(angles[best]) * unit))
    return found


def largest(f):
    """f of the largest angle to a row's point."""
    return max(f(max(high - angle, angle - low)) for (low, high), (_, angle) in zip(map(bounds, range(16)), POINTS))


def by_index(rows):
    """In the order of what the index has of the bits."""
    return [rows[(i - 6) % 16] for i in range(16)]


POINTS = points()


def tables():
    odd = lambda t: (mp.atan(mp.sqrt(t)) / mp.sqrt(t) - 1) / t if t != 0 else -mpf(1) / 3
    polynomial, error = best_polynomial(odd, 5, mpf(0), largest(mp.tan) ** 2, lambda t: t)
    return [
        scalar("kPiLow", mp.pi - rounded(mp.pi), "What the double next to pi lacks."),
        array("kArctangentPoint", by_index([c for c, _ in POINTS]), "Points of 26 bits."),
        array("kArctangent", by_index([a for _, a in POINTS]), "Their arctangents, multiples of 2^-51: right to 2^-61."),
        array("kArctangentPolynomial", polynomial,
              f"(atan(r) / r - 1) / r^2 in r^2 for |r| <= {mp.nstr(largest(mp.tan), 3)}: atan(r) / r to 2^{error:.1f}."),
    ]
