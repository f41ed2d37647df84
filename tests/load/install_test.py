"""Tests the library in the hands of other projects.

    install_test.py package|parent|refusals CMAKE SOURCE BINARY VERSION C_COMPILER CXX_COMPILER [C and C++ flags]

"package" installs it into a prefix, moves the prefix, and builds and runs programs of the consumer folder with it.
"parent" does the same as a part of the project in the parent folder, once as a shared and once as a static library, from
a copy of the sources. One ISA build and the frame are compiled again; the others get their flags in the same place, and
their objects are those of BINARY.
"refusals" configures it with what it cannot be built by.
RUNNER in the environment is the command that runs programs of Windows, its words separated by bars.
"""
import filecmp
import os
import re
import shutil
import subprocess
import sys
import tempfile

MODE, CMAKE, SOURCE, BINARY, VERSION, C, CXX, *FLAGS = sys.argv[1:]
FLAGS = " ".join(FLAGS).split()
CONSUMER, PARENT = (os.path.join(SOURCE, "tests", "load", name) for name in ("consumer", "parent"))
GENERATOR = "Ninja" if shutil.which("ninja") else "Unix Makefiles"
RUNNER = [word for word in os.environ.get("RUNNER", "").split("|") if word]
WINDOWS = bool(RUNNER)
SUFFIX = ".exe" if WINDOWS else ""
STATIC = ["-static-libgcc", "-static-libstdc++", "-Wl,-Bstatic"] if WINDOWS else []  # the libraries of the compiler
STRICT = ["-pedantic-errors", "-Wall", "-Wextra", "-Werror"]


def run(*command, **environment):
    done = subprocess.run(command, env={**os.environ, **environment}, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}: status {done.returncode}\n{done.stdout}")
    return done.stdout


def runs_right(program):
    out = run(*RUNNER, program)
    if "consumer: right v4.0" not in out:
        sys.exit(f"{program}: {out}")
    print(f"{os.path.basename(program)}: {out.strip()}")


def check_files(prefix):
    def files(folder):
        return {os.path.relpath(os.path.join(where, name), folder) for where, _, names in os.walk(folder) for name in names}

    expected = {name for name in files(os.path.join(SOURCE, "include")) if name.endswith(".h")}
    found = files(os.path.join(prefix, "include"))
    if not expected or found != expected:
        sys.exit(f"headers: {sorted(found ^ expected)}")
    if WINDOWS:
        places = [os.path.relpath(os.path.join(where, name), prefix) for where, _, names in os.walk(prefix)
                  for name in names if "zpp.dll" in name]
        if sorted(places) != ["bin/zpp.dll", "lib/libzpp.dll.a"]:
            sys.exit(f"library: {places}")
        print(f"{len(found)} headers; {' '.join(places)}")
        return
    library = [where for where, _, names in os.walk(prefix) if "libzpp.so" in names]
    major = VERSION.split(".")[0]
    links = [os.path.join(*library, name) for name in ("libzpp.so", f"libzpp.so.{major}")]
    names = [os.readlink(link) for link in links]
    if len(library) != 1 or names != [f"libzpp.so.{major}", f"libzpp.so.{VERSION}"]:
        sys.exit(f"library: {library} {names}")
    print(f"{len(found)} headers; libzpp.so -> {' -> '.join(names)}")


def beside_the_library(prefix, program):
    """Where a program finds the library: on Windows, in its own folder."""
    if WINDOWS:
        shutil.copy(os.path.join(prefix, "bin", "zpp.dll"), os.path.dirname(program))
    return program


def with_check(prefix):
    """zpp-check runs from there, begins with its version and ends with its one line; Wine says things in between."""
    out = run(*RUNNER, os.path.join(prefix, "bin", "zpp-check" + SUFFIX), "--function", "zppsAdd_64f").replace("\r", "")
    last = re.search(r"^1 functions, \d+ builds, \d+ calls, 0 differences.*$", out, re.M)
    if not re.search(f"^zpp-check {VERSION}, ", out, re.M) or not last:
        sys.exit(f"zpp-check: {out}")
    print(last.group())


def with_cmake(prefix, build):
    windows = ["-DCMAKE_SYSTEM_NAME=Windows", "-DCMAKE_EXE_LINKER_FLAGS=-static"] if WINDOWS else []
    out = run(CMAKE, "-S", CONSUMER, "-B", build, "-G", GENERATOR,
              f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_C_COMPILER={C}", f"-DCMAKE_CXX_COMPILER={CXX}",
              f"-DCMAKE_C_FLAGS={' '.join(FLAGS)}", f"-DCMAKE_CXX_FLAGS={' '.join(FLAGS)}", *windows)
    if f"found zpp {VERSION} in {prefix}" not in out:
        sys.exit(out)
    run(CMAKE, "--build", build)
    for name in ("consumer_c", "consumer_cpp"):
        runs_right(beside_the_library(prefix, os.path.join(build, name + SUFFIX)))


def with_pkg_config(prefix, build, tool):
    places = [where for where, _, names in os.walk(prefix) if "zpp.pc" in names]

    def ask(*question):
        return run(tool, *question, "zpp", PKG_CONFIG_LIBDIR=":".join(places), PKG_CONFIG_PATH="").split()

    if ask("--modversion") != [VERSION]:
        sys.exit(f"zpp.pc is of version {ask('--modversion')}")
    libraries = ask("--libs") + ([] if WINDOWS else ["-Wl,-rpath," + ask("--variable=libdir")[0]])
    for compiler, standard, source in ((C, "-std=c89", "consumer.c"), (CXX, "-std=c++20", "consumer.cpp")):
        program = os.path.join(build, f"pkg-config-{source}{SUFFIX or '.out'}")
        run(compiler, *FLAGS, standard, *STRICT, os.path.join(CONSUMER, source), *ask("--cflags"), *libraries, *STATIC, "-o", program)
        runs_right(beside_the_library(prefix, program))


def with_every_tool(prefix, folder):
    with_cmake(prefix, os.path.join(folder, "build"))
    tool = shutil.which("pkg-config")
    if tool is None:
        print("skipped: pkg-config is not installed; zpp.pc was not tested, the rest passed")
        sys.exit(77)
    with_pkg_config(prefix, folder, tool)


def package(folder):
    first, prefix = os.path.join(folder, "first"), os.path.join(folder, "moved", "prefix")
    run(CMAKE, "--install", BINARY, "--prefix", first)
    shutil.move(first, prefix)
    check_files(prefix)
    with_check(prefix)
    with_every_tool(prefix, folder)


def launcher(folder):
    """Of the compiler: copies the objects of the ISA builds that take longest."""
    path = os.path.join(folder, "compile")
    with open(path, "w") as script:
        script.write(f"""#!/bin/sh
object=$(expr "$*" : '.* -o \\([^ ]*\\)')
case $object in
    zpp/CMakeFiles/zpp_avx*.dir/*) exec cp "{BINARY}/${{object#zpp/}}" "$object" ;;
esac
exec "$@"
""")
    os.chmod(path, 0o755)
    return path


def parent(folder):
    """Compares the library, to the byte: a flag of the parent that reaches it shows in it, whatever it does, and so does
    the folder in which it is made, or time."""
    build, source = (os.path.join(folder, name) for name in ("parent-build", "source"))
    shutil.copytree(SOURCE, source, ignore=shutil.ignore_patterns("build", ".*"))
    for kind, shared in (("shared, by FetchContent", "ON"), ("static, by add_subdirectory", "OFF")):
        prefix = os.path.join(folder, shared)
        run(CMAKE, "-S", PARENT, "-B", build, "-G", GENERATOR, f"-DZPP={source}", f"-DBUILD_SHARED_LIBS={shared}",
            f"-DCMAKE_C_COMPILER={C}", f"-DCMAKE_CXX_COMPILER={CXX}", f"-DFLAGS={' '.join(FLAGS)}",
            f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher(folder)}")
        run(CMAKE, "--build", build)
        if shared == "ON":
            name = f"libzpp.so.{VERSION}"
            if not filecmp.cmp(os.path.join(build, "zpp", name), os.path.join(BINARY, name), shallow=False):
                sys.exit(f"{name} is another file as a part of the parent project, made in another folder")
            print(f"{name} is the file of this build, byte for byte")
        runs_right(os.path.join(build, "consumer"))
        run(CMAKE, "--install", build, "--prefix", prefix)
        shutil.move(build, build + ".away")  # the installed program has to find the installed library
        runs_right(os.path.join(prefix, "bin", "consumer"))
        shutil.move(build + ".away", build)
        print(f"{kind}: right in the build and installed")
    with_every_tool(prefix, folder)


REFUSALS = [  # what is refused, flags that make one of the compiler at hand, and what the message says
    ("another compiler", ["-DCMAKE_CXX_COMPILER_ID=MSVC", "-DCMAKE_CXX_COMPILER_FORCED=ON"], "this is MSVC."),
    ("clang-cl", ["-DCMAKE_CXX_SIMULATE_ID=MSVC", "-DCMAKE_CXX_COMPILER_ID=Clang", "-DCMAKE_CXX_COMPILER_FORCED=ON"],
     "this is Clang in the manner of MSVC."),
    ("another processor", ["-DCMAKE_CXX_FLAGS=-U__x86_64__ -U__i386__"], "this is a processor that is not x86."),
    ("x32", ["-DCMAKE_CXX_FLAGS=-U__i386__ -D__x86_64__ -D__ILP32__"], "this is the x32 ABI."),
    ("another system", ["-DCMAKE_CXX_FLAGS=-U__ELF__ -U__MINGW32__"], "this is a system without ELF that is not MinGW."),
]


def refusals(folder):
    for number, (what, flags, message) in enumerate(REFUSALS):
        done = subprocess.run([CMAKE, "-S", SOURCE, "-B", os.path.join(folder, str(number)), "-G", GENERATOR,
                               f"-DCMAKE_C_COMPILER={C}", f"-DCMAKE_CXX_COMPILER={CXX}", *flags],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if done.returncode == 0 or done.stderr.count("CMake Error") != 1 or message not in " ".join(done.stderr.split()):
            sys.exit(f"{what}: status {done.returncode}\n{done.stdout}{done.stderr}")
        print(f"{what}: {message}")


with tempfile.TemporaryDirectory() as place:
    {"package": package, "parent": parent, "refusals": refusals}[MODE](place)
