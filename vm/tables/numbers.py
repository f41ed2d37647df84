"""Numbers of 220 bits (Debian: python3-mpmath), best polynomials, and how both are written in C++."""
from mpmath import mp, mpf

mp.prec = 220


def rounded(x, bits=53):
    """The nearest number of so many bits."""
    if x == 0:
        return mpf(0)
    mantissa, exponent = mp.frexp(x)
    return mp.ldexp(mp.nint(mp.ldexp(mantissa, bits)), exponent - bits)


def best_polynomial(f, degree, low, high, weight=lambda x: mpf(1)):
    """The coefficients of the polynomial p, of which the largest weight(x) |p(x) - f(x)| is least, and log2 of that."""
    count = degree + 2
    points = [(low + high) / 2 - (high - low) / 2 * mp.cos(mp.pi * i / (count - 1)) for i in range(count)]
    points = [x if weight(x) > weight(high) / 10**6 else x + (high - low) / 50 for x in points]
    for _ in range(12):
        matrix, right = mp.matrix(count, count), mp.matrix(count, 1)
        for i, x in enumerate(points):
            for j in range(degree + 1):
                matrix[i, j] = x**j
            matrix[i, degree + 1] = (-1) ** i / weight(x)
            right[i] = f(x)
        solved = mp.lu_solve(matrix, right)
        coefficients = [solved[j] for j in range(degree + 1)]
        error = lambda x: weight(x) * (mp.polyval(coefficients[::-1], x) - f(x))
        last = [abs(error(x)) for x in points]
        points = extremes(error, points, low, high)
        now = [abs(error(x)) for x in points]
        if max(now) < min(now) * mpf("1.001"):
            break
    return coefficients, float(mp.log(max(now), 2))


def extremes(error, points, low, high):
    """Where the error is largest between each two of its signs' changes."""
    found = []
    for i, x in enumerate(points):
        left = points[i - 1] if i > 0 else low
        right = points[i + 1] if i + 1 < len(points) else high
        sign = mp.sign(error(x))
        a, b = (left + x) / 2 if i > 0 else low, (right + x) / 2 if i + 1 < len(points) else high
        grid = [a + (b - a) * j / 24 for j in range(25)]
        best = max(range(25), key=lambda j: sign * error(grid[j]))
        a, b = grid[max(best - 1, 0)], grid[min(best + 1, 24)]
        for _ in range(20):  # golden section would do; thirds are as good
            c, d = a + (b - a) / 3, b - (b - a) / 3
            if sign * error(c) > sign * error(d):
                b = d
            else:
                a = c
        found.append((a + b) / 2)
    return found


def number(x):
    return float(x).hex() if x != 0 else "0"


def array(name, values, comment):
    lines, line = [], "   "
    for value in values:
        text = f" {number(value)},"
        if len(line) + len(text) > 110:
            lines.append(line)
            line = "   "
        line += text
    lines.append(line.rstrip(","))
    return f"// {comment}\ninline constexpr double {name}[] = {{\n" + "\n".join(lines) + "\n};\n"


def scalar(name, value, comment):
    return f"// {comment}\ninline constexpr double {name} = {number(value)};\n"


def near_a_double(f, middle, unit, bits, trials):
    """Of the multiples of a unit next to a middle that of which f is nearest to a number of so many bits."""
    around = mp.nint(middle / unit)
    def missed(k):
        value = f(k * unit)
        return abs(rounded(value, bits) / value - 1)
    # In long steps: those of neighbours go by the same parts of a bit again and again.
    return min((around + 4099 * k for k in range(-trials, trials + 1)), key=missed) * unit
