"""Starts of inverse roots from the bits of a number, and the polynomials that bring them to 20 bits."""
import struct

from mpmath import mp, mpf

from tables.numbers import array, best_polynomial

POINTS = 1000  # in an octave


def bits(x):
    return struct.unpack("<q", struct.pack("<d", x))[0]


def extremes(start, n):
    """Of 1 - x y^n, where the bits of y are those of a start less the n-th part of those of x."""
    found = []
    for x in (2.0**k * (1 + i / POINTS) for k in range(n) for i in range(POINTS)):
        y = struct.unpack("<d", struct.pack("<q", start - bits(x) // n))[0]
        found.append(1 - x * y**n)
    return min(found), max(found)


def best_start(n):
    """The one of 20 bits for which 1 - x y^n is smallest, and the largest magnitude of that."""
    one, step = bits(1.0) // n * (n + 1), 2**44
    starts = range((one - 2**49) // step * step, one, step)
    best = min(starts, key=lambda start: max(map(abs, extremes(start, n))))
    return best, max(map(abs, extremes(best, n)))


def inverse_root(name, n, degree, start_places):
    start, limit = best_start(n)
    limit = mpf(limit) * mpf("1.0001")
    exact = lambda e: (1 - e) ** (-mpf(1) / n)
    polynomial, error = best_polynomial(exact, degree, -limit, limit)
    return [
        f"// The bits of 1 / x^(1/{n}) are about this less the {'half' if n == 2 else 'third'} of those of x.\n"
        f"inline constexpr int64_t {name}Start = 0x{start >> start_places:x};\n",
        array(name, polynomial, f"(1 - e)^(-1/{n}) for |e| <= {mp.nstr(limit, 3)}: to 2^{error:.1f}."),
    ]


def tables():
    return inverse_root("kInverseRoot", 2, 3, 0)


def cube_tables():
    return inverse_root("kInverseCubeRoot", 3, 4, 32)
