"""Intervals of numbers that have the same first bits behind their exponents, 1 in the middle of its own."""
from mpmath import mpf


def intervals(count, place_of_1):
    """Their edges."""
    def edge(i):
        return 1 + (i - mpf(place_of_1)) / count * (1 if i >= place_of_1 else mpf(1) / 2)
    return [(edge(i), edge(i + 1)) for i in range(count)]


def middles(count, place_of_1):
    return [mpf(1) if low < 1 < high else (low + high) / 2 for low, high in intervals(count, place_of_1)]
