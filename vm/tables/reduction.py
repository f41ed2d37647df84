"""The bits of the inverse of a turn."""
from mpmath import mp, mpf


def tables():
    mp.prec = 1400
    bits = int(mp.floor(mp.ldexp(1 / (2 * mp.pi), 64 * 20)))
    mp.prec = 220
    words = [0] + [bits >> 64 * (19 - i) & (2**64 - 1) for i in range(20)]
    lines = [", ".join(f"0x{word:016x}" for word in words[i : i + 4]) for i in range(0, len(words), 4)]
    return ["// 1 / (2 pi), behind 64 zeros.\ninline constexpr uint64_t kInverseTurn[] = {\n    " + ",\n    ".join(lines) + "\n};\n"]
