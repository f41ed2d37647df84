"""Builds the library again in other folders: the files must be the same, byte for byte.

    reproducible.py CMAKE SOURCE BINARY LIBRARY ISA C_COMPILER CXX_COMPILER

With debug information, which tells of folders most, the frame is made in two. Of the shipped file, the frame and one ISA
build are made again and linked with the objects of the others: those come from the same sources, by the same rules.
"""
import filecmp
import os
import shutil
import sys
import tempfile

from object_code import output as run, report

CMAKE, SOURCE, BINARY, LIBRARY, ISA, C, CXX = sys.argv[1:]
NO_SOURCES = shutil.ignore_patterns("build", ".*")


def build(folder, build_type, *targets):
    """Copies the sources, configures them, builds what is named; returns the build's folder."""
    shutil.copytree(SOURCE, folder, ignore=NO_SOURCES)
    binary = os.path.join(folder, "out")
    run(CMAKE, "-S", folder, "-B", binary, "-G", "Ninja", f"-DCMAKE_BUILD_TYPE={build_type}", "-DZPP_BUILD_TESTS=OFF",
        f"-DCMAKE_C_COMPILER={C}", f"-DCMAKE_CXX_COMPILER={CXX}", "-DCMAKE_CXX_COMPILER_LAUNCHER=")  # no cache
    run(CMAKE, "--build", binary, "--target", *targets)
    return binary


def objects(binary, target):
    top = os.path.join(binary, "CMakeFiles", f"{target}.dir")
    return sorted(os.path.relpath(os.path.join(where, name), binary)
                  for where, _, names in os.walk(top) for name in names if name.endswith(".o"))


def differences(first, second, files):
    print(f"{len(files)} files of {first} and {second}")
    _, different, missing = filecmp.cmpfiles(first, second, files, shallow=False)
    return [f"{first} and {second} differ in {name}" for name in different + missing] + ([] if files else ["no files"])


def relink(binary):
    """Runs the command that links the library, with the objects of BINARY where there are none."""
    for where, _, names in os.walk(os.path.join(BINARY, "CMakeFiles")):
        for name in names:
            copy = os.path.join(binary, os.path.relpath(os.path.join(where, name), BINARY))
            if name.endswith(".o") and not os.path.exists(copy):
                os.makedirs(os.path.dirname(copy), exist_ok=True)
                shutil.copy2(os.path.join(where, name), copy)
    name = os.path.basename(os.path.realpath(LIBRARY))
    link = run("ninja", "-t", "commands", name, cwd=binary).splitlines()[-1]
    run("sh", "-c", link, cwd=binary)
    return [name]


def main():
    with tempfile.TemporaryDirectory() as folder:
        first, second = (build(os.path.join(folder, name), "RelWithDebInfo", "zpp_frame") for name in ("a", "another"))
        faults = differences(first, second, objects(first, "zpp_frame"))
        again = build(os.path.join(folder, "again"), "Release", "zpp_frame", f"zpp_{ISA}")
        faults += differences(BINARY, again, objects(BINARY, "zpp_frame") + objects(BINARY, f"zpp_{ISA}"))
        faults += differences(BINARY, again, relink(again))
    return report(faults)


if __name__ == "__main__":
    sys.exit(main())
