"""Numbers of vm/long_exp.h and vm/long_ln.h."""
from mpmath import mp, mpf

from .numbers import array, best_polynomial, number, rounded


def in_two(x):
    head = rounded(x)
    return head, x - head


def pairs(name, values, comment):
    rows = ",\n".join("    {" + ", ".join(number(part) for part in in_two(x)) + "}" for x in values)
    return f"// {comment}\ninline constexpr double {name}[][2] = {{\n{rows}\n}};\n"


def exp_tables():
    parts, rest = [], mp.log(2)
    for _ in range(4):
        parts.append(rounded(rest, 21))
        rest -= parts[-1]
    return [
        array("kLnOf2Parts", [*parts, rest], "ln 2 in parts of 21 bits, and the rest."),
        pairs("kLongExpSeries", [1 / mp.factorial(j) for j in range(1, 10)], "1 / j! from j = 1 on."),
        pairs("kLongE", [mp.e], "e."),
    ]


def ln_tables():
    limit = mpf(1) / 256 + mpf(1) / 2**19
    first = [1, -mpf(1) / 2, mpf(1) / 3]
    series = lambda r: sum((-1) ** (j + 1) * r ** (j - 4) / j for j in range(4, 32))
    rest, error = best_polynomial(series, 6, -limit, limit, lambda r: r**4)
    return [
        pairs("kLongLnFirst", first, "The first coefficients of ln(1 + r) / r."),
        array("kLongLnRest", rest, f"Those behind them, for |r| <= 1/256: of ln(1 + r) 2^{error:.1f} is missed."),
        pairs("kLongDecibels", [10 / mp.log(10)], "10 / ln 10."),
    ]
