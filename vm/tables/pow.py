"""Of the power: logarithms of short inverses, and the polynomials behind them."""
import struct

from mpmath import mp, mpf

from tables.mantissas import intervals
from tables.numbers import array, best_polynomial, rounded

UNIT = mpf(2) ** -42


def short_inverse(low, high):
    """The inverse with which z inverse - 1 is least between these, and a double for each double z."""
    best = None
    for bits in range(4, 10):
        around = int(mp.nint(mp.ldexp(2 / (low + high), bits)))
        for inverse in (mp.ldexp(i, -bits) for i in (around - 1, around, around + 1)):
            largest = max(abs(low * inverse - 1), abs(high * inverse - 1))
            # The last bits of the product and of the difference.
            exact = largest < mp.ldexp(2 if low > 1 else 1, -bits)
            if exact and (best is None or largest < best[0]):
                best = largest, inverse
    return best[1]


def with_bits_of(tail, inverse):
    """A tail, of which the last 20 bits are the first of an inverse, exclusive or those of 1."""
    def bits(x):
        return struct.unpack("<Q", struct.pack("<d", x))[0]
    code = (bits(float(inverse)) ^ bits(1.0)) >> 44
    if code == 0:
        return mpf(0)
    assert bits(float(inverse)) << 20 & (2**64 - 1) == 0
    near = bits(float(rounded(tail))) & ~0xFFFFF
    options = [struct.unpack("<d", struct.pack("<Q", near + step * 2**20 | code))[0] for step in (-1, 0, 1)]
    return min((mpf(x) for x in options), key=lambda x: abs(x - tail))


def columns(count, place_of_1):
    """Logarithms and tails, and the largest z inverse - 1."""
    logs, tails, largest = [], [], mpf(0)
    for low, high in intervals(count, place_of_1):
        inverse = mpf(1) if low < 1 < high else short_inverse(low, high)
        largest = max(largest, abs(low * inverse - 1), abs(high * inverse - 1))
        exact = -mp.log(inverse)
        logs.append(mp.nint(exact / UNIT) * UNIT)
        tails.append(with_bits_of(exact - logs[-1], inverse))
    return logs, tails, largest


def tables():
    logs, tails, limit = columns(32, 18.5)
    fine_logs, fine_tails, fine_limit = columns(128, 75.5)
    cubic = lambda r: (mp.log(1 + r) - r + r**2 / 2) / r**3 if abs(r) > 1e-20 else mpf(1) / 3 - r / 4
    quartic = lambda r: (cubic(r) - mpf(1) / 3) / r if abs(r) > 1e-20 else -mpf(1) / 4
    near, near_error = best_polynomial(quartic, 6, -limit, limit, lambda r: abs(r)**3)
    finer, finer_error = best_polynomial(cubic, 5, -fine_limit, fine_limit, lambda r: r**2)
    return [
        array("kPowLog", logs, "Minus the logarithms of the inverses, multiples of 2^-42."),
        array("kPowTail", tails, "What these lack; in its last 20 bits the first of the inverse, exclusive or those of 1."),
        array("kPowPolynomial", near, f"(ln(1 + r) - r + r^2 / 2 - r^3 / 3) / r^4 for |r| <= {float(limit):.4f}: to 2^{near_error:.1f} r."),
        array("kPowFineLog", fine_logs, "The same for 128 intervals."),
        array("kPowFineTail", fine_tails, "The same."),
        array("kPowFinePolynomial", finer, f"(ln(1 + r) - r + r^2 / 2) / r^3 for |r| <= {float(fine_limit):.4f}: to 2^{finer_error:.1f} r."),
    ]
