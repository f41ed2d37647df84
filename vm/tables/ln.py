"""Inverses, logarithms and the polynomial of the natural logarithm."""
from mpmath import mp, mpf

from tables.mantissas import middles
from tables.numbers import array, best_polynomial, near_a_double, rounded, scalar


def tables():
    step = mp.log(2)
    unit = mpf(2) ** -42
    high = mp.nint(step / unit) * unit
    inverses, logs = [], []
    for middle in middles(16, 9.5):
        trials = 16000 if abs(middle - 1) < mpf(1) / 8 else 4000  # for small results
        log = mpf(0) if middle == 1 else near_a_double(lambda x: mp.exp(-x), mp.log(middle), unit, 53, trials)
        inverses.append(rounded(mp.exp(-log)))
        logs.append(log)
    fine_inverses = [rounded(1 / middle, 20) for middle in middles(128, 75.5)]
    fine_logs = [mp.nint(-mp.log(x) / unit) * unit for x in fine_inverses]
    fine_tails = [-mp.log(x) - log for x, log in zip(fine_inverses, fine_logs)]
    quotient = lambda r: (mp.log(1 + r) - r) / r**2 if r != 0 else -mpf(1) / 2
    limit, fine_limit = mpf(1) / 32, mpf(1) / 256 + mpf(1) / 2**19
    near, near_error = best_polynomial(quotient, 8, -limit, limit, abs)
    finer, finer_error = best_polynomial(quotient, 5, -fine_limit, fine_limit, abs)
    return [
        scalar("kLnOf2High", high, "ln 2, a multiple of 2^-42."),
        scalar("kLnOf2Low", step - high, "And what it lacks."),
        array("kLnInverse", inverses, "Next to the inverses of the middles of the intervals."),
        array("kLnLog", logs, "Minus the logarithms of these, multiples of 2^-42: right to 2^-64 of what they are of."),
        array("kLnFineInverse", fine_inverses, "Of 128 intervals, of 20 bits."),
        array("kLnFineLog", fine_logs, "Minus the logarithms of these, multiples of 2^-42."),
        array("kLnFineTail", fine_tails, "And what these lack."),
        array("kLnFinePolynomial", finer, f"For |r| <= 1/256: of ln(1 + r) 2^{finer_error:.1f} is missed."),
        array("kLnPolynomial", near, f"(ln(1 + r) - r) / r^2 for |r| <= 1/32: of ln(1 + r) 2^{near_error:.1f} is missed."),
    ]
