"""Tables of vm/erf.h and vm/erfc.h, rows as vm/row.h takes them."""
from mpmath import mp, mpf

from tables.numbers import array, best_polynomial, near_a_double, rounded

TERMS = 28  # of Taylor series, which are the functions to 2^-75 and more throughout an interval
DEGREE = 13


def intervals(first, offset):
    """Between numbers that have the same two bits behind their exponents after an offset is added, from index 0 on."""
    edges = [mpf(first) * 2 ** (i // 4) * (4 + i % 4) / 4 - offset for i in range(17)]
    return list(zip(edges, edges[1:]))


def erf(x):
    return mp.erf(x)


def erf_series(c):
    """Of f'' = -2 x f'."""
    terms = [mp.erf(c), 2 / mp.sqrt(mp.pi) * mp.exp(-c * c)]
    for n in range(TERMS - 2):
        terms.append(-2 * (c * (n + 1) * terms[n + 1] + n * terms[n]) / ((n + 1) * (n + 2)))
    return terms


def erfcx(x):
    return mp.exp(x * x) * mp.erfc(x)


def erfcx_series(c):
    """Of f' = 2 x f - 2 / sqrt(pi). The recurrence loses most of its bits."""
    with mp.workprec(600):
        terms = [erfcx(c)]
        terms.append(2 * c * terms[0] - 2 / mp.sqrt(mp.pi))
        for n in range(1, TERMS - 1):
            terms.append(2 * (c * terms[n] + terms[n - 1]) / (n + 1))
    return [+term for term in terms]


def centre(f, middle):
    """Next to a middle, where f is a double to 2^-62."""
    if f is erf and middle > 3:  # so flat that a double is as near as one could wish
        target = rounded(f(middle))
        for _ in range(8):
            middle -= (f(middle) - target) / erf_series(middle)[1]
        return rounded(middle)
    return near_a_double(f, middle, mpf(2) ** (mp.floor(mp.log(middle, 2)) - 40), 53, 500)


def odd_polynomial(high, terms):
    """That of an odd function around 0: the terms of t^2 are in the second place, ..., and those between are 0."""
    rest = lambda u: mp.polyval(terms[:1:-2], u)
    coefficients, error = best_polynomial(rest, DEGREE // 2, mpf(0), high**2, lambda u: u)
    return [x for c in coefficients for x in (mpf(0), c)], error


def row(low, high, c, terms):
    """c, f(c), f'(c) in two parts, and the coefficients of what is left, divided by (x - c)^2."""
    if terms[0] == 0:
        coefficients, error = odd_polynomial(high, terms)
    else:
        rest = lambda t: mp.polyval(terms[:1:-1], t)
        coefficients, error = best_polynomial(rest, DEGREE, low - c, high - c, lambda t: t * t / terms[0])
    slope = rounded(terms[1], 26)
    return [c, rounded(terms[0]), slope, terms[1] - slope, *coefficients], error


def table(name, f, series, pieces, first_index):
    rows, worst = [], -1000.0
    for low, high in pieces:
        if f(low) == 0:
            c = mpf(0)
        elif low == 0:  # x - c is no double, and what it lacks is the less the smaller c is
            c = centre(f, high * mpf("0.24"))
        else:
            c = centre(f, (low + high) / 2)
        made, error = row(low, high, c, series(c))
        rows.append(made)
        worst = max(worst, error)
    turned = [rows[(i - first_index) % 16] for i in range(16)]
    comment = f"c, f(c), f'(c) of 26 bits and what that lacks, the polynomial: before rounding, 2^{worst:.1f} of f is missed."
    return [array(name, [x for one in turned for x in one], comment)]


def erf_tables():
    pieces = intervals(mpf(1) / 2, mpf(1) / 2)
    pieces[15] = (pieces[15][0], mpf(6))
    return table("kErfRows", erf, erf_series, pieces, 8)


def erfc_tables():
    pieces = intervals(2, mpf(7) / 4)
    pieces[14:] = [(pieces[14][0], mpf("27.5")), (mpf(0), mpf(1) / 4)]
    return table("kErfcRows", erfcx, erfcx_series, pieces, 0)
