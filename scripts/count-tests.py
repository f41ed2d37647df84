#!/usr/bin/env python3
"""Counts the tests of a run: count-tests.py BUILD_DIRECTORY...

Reads ctest.xml (from ctest --output-junit) and tests/unit.xml (from GoogleTest) of each directory; prints a table of
the unit tests by target, column and ISA build, and as the last line the sum of all. Exits with 1 where a test failed,
or where a directory has no result.
"""
import collections
import pathlib
import re
import sys
import xml.etree.ElementTree as xml

OUTCOMES = ("passed", "failed", "skipped")


def outcome(case):
    if case.find("failure") is not None or case.get("status") == "fail":
        return "failed"
    if case.find("skipped") is not None or case.get("status") in ("notrun", "disabled"):
        return "skipped"
    return "passed"


def binding(case):
    """Such as px_avx2: what a unit test was bound to."""
    match = re.search(r"/((?:px|a6|w7)_\w+)$", case.get("name"))
    return match.group(1) if match else "(none)"


def read(path, rows, row):
    for case in xml.parse(path).getroot().iter("testcase"):
        if case.get("name") == "unit":  # counted by its own cases
            continue
        result = outcome(case)
        rows[row(case)][result] += 1
        if result == "skipped":
            said = case.find("skipped").get("message") or ""
            reason = case.findtext("system-out") if said.startswith("SKIP_") else said
            print(f"{path}: skipped {case.get('name')}: {' '.join((reason or said).split())}")


def main(directories):
    rows = collections.defaultdict(collections.Counter)
    complete = True
    for directory in map(pathlib.Path, directories):
        unit, ctest = directory / "tests/unit.xml", directory / "ctest.xml"
        if not ctest.exists() and not unit.exists():
            continue  # a build without tests
        for path, row in ((unit, binding), (ctest, lambda case: re.split(r"[._]", case.get("name"))[0])):
            if path.exists():
                read(path, rows, lambda case: (directory.name, row(case)))
            else:
                print(f"{path}: no result")
                complete = False
    total = sum(rows.values(), collections.Counter())
    print(f"{'target':24}{'tests':16}" + "".join(f"{name:>9}" for name in OUTCOMES))
    for (target, tests), counts in rows.items():
        print(f"{target:24}{tests:16}" + "".join(f"{counts[name]:9}" for name in OUTCOMES))
    print("{passed} passed, {failed} failed, {skipped} skipped".format_map(total))
    return 0 if complete and total["passed"] and not total["failed"] else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
