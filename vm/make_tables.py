#!/usr/bin/env python3
"""Writes the tables and coefficients of the elementary functions: vm/make_tables.py [--check]

Each header vm/<function>_tables.h is a part of the sources; --check tells whether they are what this script makes.
Values are computed with 220 bits (Debian: python3-mpmath). Polynomials are the best ones for their weight (the exchange
algorithm of Remez), of which every coefficient is then rounded.
"""
import argparse
import pathlib
import sys

try:
    import mpmath  # noqa: F401
except ImportError:
    print(f"skipped: {sys.executable} has no mpmath (Debian: python3-mpmath), so the tables were not made")
    sys.exit(77)

from tables import (arcsine, arctangent, error_functions, exp, hyperbolic, inverse_hyperbolic, ln, log10, long, pow,
                    reduction, roots, sine)

FOLDER = pathlib.Path(__file__).resolve().parent

TABLES = {
    "arcsine": arcsine.tables,
    "arctangent": arctangent.tables,
    "cbrt": roots.cube_tables,
    "erf": error_functions.erf_tables,
    "erfc": error_functions.erfc_tables,
    "exp": exp.tables,
    "hyperbolic": hyperbolic.tables,
    "inverse_hyperbolic": inverse_hyperbolic.tables,
    "ln": ln.tables,
    "log10": log10.tables,
    "long_exp": long.exp_tables,
    "long_ln": long.ln_tables,
    "pow": pow.tables,
    "reduction": reduction.tables,
    "roots": roots.tables,
    "sine": sine.tables,
}


def header(name, parts):
    return (f"// Numbers of vm/{name}.h, made by vm/make_tables.py.\n// clang-format off\n#pragma once\n\n#include \"core/isa.h\"\n\n"
            "namespace zpp::ZPP_ISA {\n\n" + "\n".join(parts) + "\n}  // namespace zpp::ZPP_ISA\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--check", action="store_true", help="compare, and write nothing")
    options = parser.parse_args()
    wrong = []
    for name, make in TABLES.items():
        path, text = FOLDER / f"{name}_tables.h", header(name, make())
        if options.check and (not path.exists() or path.read_text() != text):
            wrong.append(path.name)
        elif not options.check:
            path.write_text(text)
    sys.exit(f"not what the script makes: {' '.join(wrong)}" if wrong else 0)


if __name__ == "__main__":
    main()
