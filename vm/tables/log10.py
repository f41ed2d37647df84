"""Of the decimal logarithm, in the intervals of the natural one."""
from mpmath import mp, mpf

from tables.mantissas import middles
from tables.numbers import array, best_polynomial, near_a_double, rounded, scalar

UNIT = mpf(2) ** -42


def parts(name, value, high, comment):
    return scalar(f"{name}High", high, comment) + "\n" + scalar(f"{name}Low", value - high, "And what it lacks.")


def tables():
    per_ln, of_2 = 1 / mp.log(10), mp.log10(2)
    inverses, logs = [], []
    for middle in middles(16, 9.5):
        log = mpf(0) if middle == 1 else near_a_double(lambda x: mp.power(10, -x), mp.log10(middle), UNIT, 53, 4000)
        inverses.append(rounded(mp.power(10, -log)))
        logs.append(log)
    exact = [-mp.log10(rounded(1 / middle, 20)) for middle in middles(128, 75.5)]
    fine_logs = [mp.nint(x / UNIT) * UNIT for x in exact]
    quotient = lambda r: (mp.log(1 + r) - r) / r**2 * per_ln if r != 0 else -per_ln / 2
    limit, fine_limit = mpf(1) / 32, mpf(1) / 256 + mpf(1) / 2**19
    near, near_error = best_polynomial(quotient, 8, -limit, limit, abs)
    finer, finer_error = best_polynomial(quotient, 5, -fine_limit, fine_limit, abs)
    return [
        parts("kLog10PerLn", per_ln, rounded(per_ln), "1 / ln 10."),
        scalar("kLog10PerLnHalf", rounded(per_ln, 26), "Its first 26 bits."),
        parts("kLog10Of2", of_2, mp.nint(of_2 / UNIT) * UNIT, "log10 2, a multiple of 2^-42."),
        array("kLog10Inverse", inverses, "Next to the inverses of the middles of the intervals."),
        array("kLog10Log", logs, "Minus the logarithms of these, multiples of 2^-42: right to 2^-64 of what they are of."),
        array("kLog10Polynomial", near, f"(log10(1 + r) - r / ln 10) / r^2 for |r| <= 1/32: right to 2^{near_error:.1f} r."),
        array("kLog10FineLog", fine_logs, "Minus the logarithms of kLnFineInverse, multiples of 2^-42."),
        array("kLog10FineTail", [x - log for x, log in zip(exact, fine_logs)], "And what these lack."),
        array("kLog10FinePolynomial", finer, f"The same for |r| <= 1/256: right to 2^{finer_error:.1f} r."),
    ]
