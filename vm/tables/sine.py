"""Sines, cosines and their polynomials."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial, rounded, scalar


def nearly_exact_angle(angle, unit, trials):
    """A multiple of a unit to be added to an angle, with which its sine and cosine are nearest to doubles."""
    def missed(d):
        sine, cosine = mp.sin(angle + d), mp.cos(angle + d)
        return max(abs(rounded(sine) / sine - 1), abs(rounded(cosine) / cosine - 1))
    return min((83 * k * unit for k in range(-trials, trials + 1)), key=missed)


def tables():
    step = mp.pi / 16
    first = rounded(step)
    second = rounded(step - first, 30)
    quarter = [nearly_exact_angle(i * step, mpf(2) ** -46, 6000) for i in range(1, 8)]
    offsets = [mpf(0), *quarter, mpf(0), *[-d for d in reversed(quarter)]]
    sines = [mpf(0) if i == 0 else rounded(mp.sin(i * step + d)) for i, d in enumerate(offsets)]
    cosines = [mpf(0) if i == 8 else rounded(mp.cos(i * step + d)) for i, d in enumerate(offsets)]
    limit = (step / 2 + mpf(2) ** -27) ** 2
    odd = lambda t: (mp.sin(mp.sqrt(t)) / mp.sqrt(t) - 1) / t if t != 0 else -mpf(1) / 6
    even = lambda t: ((mp.cos(mp.sqrt(t)) - 1) / t + mpf(1) / 2) / t if t != 0 else mpf(1) / 24
    fine = mp.pi / 64
    parts, rest = [], fine
    for _ in range(3):
        parts.append(rounded(rest, 28))
        rest -= parts[-1]
    fine_sines = [mpf(0) if i == 0 else rounded(mp.sin(i * fine)) for i in range(64)]
    fine_sine_tails = [mpf(0) if i == 0 else mp.sin(i * fine) - x for i, x in enumerate(fine_sines)]
    fine_cosines = [mpf(0) if i == 32 else rounded(mp.cos(i * fine), 26) for i in range(64)]
    fine_cosine_tails = [mpf(0) if i == 32 else mp.cos(i * fine) - x for i, x in enumerate(fine_cosines)]
    fine_limit = (fine / 2) ** 2
    fine_sine, fine_sine_error = best_polynomial(odd, 2, mpf(0), fine_limit, lambda t: t)
    fine_cosine, fine_cosine_error = best_polynomial(even, 1, mpf(0), fine_limit, lambda t: t**2)
    sine, sine_error = best_polynomial(odd, 3, mpf(0), limit, lambda t: t)
    cosine, cosine_error = best_polynomial(even, 2, mpf(0), limit, lambda t: t**2)
    eighth = (mp.pi / 4) ** 2
    wide_sine, wide_sine_error = best_polynomial(odd, 5, mpf(0), eighth, lambda t: t)
    wide_cosine, wide_cosine_error = best_polynomial(even, 5, mpf(0), eighth, lambda t: t**2)
    return [
        scalar("kPi16First", first, "pi / 16, in three parts, of which the second has 30 bits: see vm/sine.h."),
        scalar("kPi16Second", second, "The second."),
        scalar("kPi16Third", step - first - second, "The third."),
        array("kSineOffset", offsets, "What is added to i pi / 16 for a sine and a cosine that are doubles to 2^-60."),
        array("kSine", sines, "The sines of the sums."),
        array("kCosine", cosines, "Their cosines."),
        array("kPi64", [*parts, rest], "pi / 64 in parts of 28 bits, and the rest."),
        array("kSineFine", fine_sines, "The sines of i pi / 64."),
        array("kSineFineTail", fine_sine_tails, "What these lack."),
        array("kCosineFine", fine_cosines, "The cosines, of 26 bits."),
        array("kCosineFineTail", fine_cosine_tails, "What these lack."),
        array("kSineFinePolynomial", fine_sine, f"As below for |r| <= pi / 128: sin(r) / r to 2^{fine_sine_error:.1f}."),
        array("kCosineFinePolynomial", fine_cosine, f"As below: cos(r) to 2^{fine_cosine_error:.1f}."),
        array("kSinePolynomial", sine, f"(sin(r) / r - 1) / r^2 in r^2 for |r| <= pi / 32: sin(r) / r to 2^{sine_error:.1f}."),
        array("kCosinePolynomial", cosine, f"(cos(r) - 1 + r^2 / 2) / r^4 in r^2: cos(r) to 2^{cosine_error:.1f}."),
        array("kWideSinePolynomial", wide_sine, f"As these for |r| <= pi / 4: sin(r) / r to 2^{wide_sine_error:.1f}."),
        array("kWideCosinePolynomial", wide_cosine, f"As these: cos(r) to 2^{wide_cosine_error:.1f}."),
    ]
