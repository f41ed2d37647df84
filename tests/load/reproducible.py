"""Builds the frame of the library in two folders, with debug information, which tells of folders most: the objects must
be the same, byte for byte. (The shipped file is made again by install.parent.)

    reproducible.py CMAKE SOURCE C_COMPILER CXX_COMPILER
"""
import filecmp
import os
import shutil
import sys
import tempfile

from object_code import output as run, report

CMAKE, SOURCE, C, CXX = sys.argv[1:]


def build(folder):
    """Copies the sources and builds the frame from them; returns the build's folder."""
    shutil.copytree(SOURCE, folder, ignore=shutil.ignore_patterns("build", ".*"))
    binary = os.path.join(folder, "out")
    run(CMAKE, "-S", folder, "-B", binary, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo", "-DZPP_BUILD_TESTS=OFF",
        f"-DCMAKE_C_COMPILER={C}", f"-DCMAKE_CXX_COMPILER={CXX}", "-DCMAKE_CXX_COMPILER_LAUNCHER=")  # no cache
    run(CMAKE, "--build", binary, "--target", "zpp_frame")
    return binary


def main():
    with tempfile.TemporaryDirectory() as folder:
        first, second = (build(os.path.join(folder, name)) for name in ("a", "another"))
        objects = [os.path.relpath(os.path.join(where, name), first)
                   for where, _, names in os.walk(first) for name in names if name.endswith(".o")]
        _, different, missing = filecmp.cmpfiles(first, second, objects, shallow=False)
    print(f"{len(objects)} objects")
    return report([f"{name} differs" for name in different + missing] + ([] if objects else ["no objects"]))


if __name__ == "__main__":
    sys.exit(main())
