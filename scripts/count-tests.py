#!/usr/bin/env python3
"""Counts the tests of a run: count-tests.py [--skipped="TARGET: REASON"] BUILD_DIRECTORY...

Reads ctest.xml (from ctest --output-junit) and the results that GoogleTest wrote beside the tests, tests/NAME.xml for
the ctest entry NAME, of each directory (the parts unit.1, unit.2 and so on are one run); prints a table by target, run, and column and ISA build (of entries without
such results, their kind), and as the last line the sum of all, in which a skipped target counts as one test. Exits with
1 where a test failed, or where a directory has no result of ctest or of a unit test.
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


def read(path, rows, row, elsewhere=()):
    for case in xml.parse(path).getroot().iter("testcase"):
        if case.get("name") in elsewhere:  # counted by its own cases
            continue
        result = outcome(case)
        rows[row(case)][result] += 1
        if result == "skipped":
            said = case.find("skipped").get("message") or ""
            reason = case.findtext("system-out") if said.startswith("SKIP_") else said
            print(f"{path}: skipped {case.get('name')}: {' '.join((reason or said).split())}")


def main(arguments):
    rows = collections.defaultdict(collections.Counter)
    reasons = [argument.removeprefix("--skipped=") for argument in arguments if argument.startswith("--skipped=")]
    directories = [argument for argument in arguments if not argument.startswith("--skipped=")]
    for reason in reasons:
        rows[reason.partition(":")[0], "all tests", ""]["skipped"] += 1
    complete = True
    for directory in map(pathlib.Path, directories):
        ctest, runs = directory / "ctest.xml", sorted(directory.glob("tests/*.xml"))
        if not ctest.exists() and not runs:
            continue  # a build without tests
        for path in (directory / "tests/unit.1.xml", ctest):
            if not path.exists():
                print(f"{path}: no result")
                complete = False
        for run in runs:
            read(run, rows, lambda case: (directory.name, re.sub(r"^unit\.\d+$", "unit", run.stem), binding(case)))
        if ctest.exists():
            read(ctest, rows, lambda case: (directory.name, "ctest", re.split(r"[._]", case.get("name"))[0]),
                 [run.stem for run in runs])
    total = sum(rows.values(), collections.Counter())
    print(f"{'target':24}{'run':20}{'tests':12}" + "".join(f"{name:>9}" for name in OUTCOMES))
    for (target, run, tests), counts in rows.items():
        print(f"{target:24}{run:20}{tests:12}" + "".join(f"{counts[name]:9}" for name in OUTCOMES))
    print(*reasons, sep="\n", end="\n" if reasons else "")
    print("{passed} passed, {failed} failed, {skipped} skipped".format_map(total))
    return 0 if complete and total["passed"] and not total["failed"] else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
