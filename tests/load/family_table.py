#!/usr/bin/env python3
"""Compares README's table of families with the headers: family_table.py README INCLUDE

Of each folder the families together have as many functions as its header declares, and the last row has all."""
import collections
import pathlib
import re
import sys


def main():
    readme, include = map(pathlib.Path, sys.argv[1:])
    rows = re.findall(r"^\| ?(\w*) \| [^|]+ \| (\d+) \|$", readme.read_text(), re.M)
    stated = collections.Counter()
    for folder, count in rows:
        stated[folder] += int(count)
    total = stated.pop("", None)
    declared = collections.Counter()
    for header in (include / "zpp").rglob("*.h"):
        folder = header.relative_to(include / "zpp").parts[0].removesuffix(".h")
        declared[folder] += len(re.findall(r"^ZPP_EXPORT\w*\(", header.read_text(), re.M))
    declared = +declared
    wrong = [f"{folder}: README says {stated[folder]}, the headers {declared[folder]}"
             for folder in sorted(stated.keys() | declared.keys()) if stated[folder] != declared[folder]]
    if total != sum(declared.values()):
        wrong.append(f"all: README says {total}, the headers {sum(declared.values())}")
    print("\n".join(wrong) or f"{total} functions")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
