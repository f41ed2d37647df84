"""Loads the built library into real processes. See CMakeLists.txt for the calls."""
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

import object_code

SKIPPED = 77
REFUSAL = "Set zpp library error\n No zpp matching to CPU was found during the Waterfall\n"

# For each QEMU: processor model and features, type, column, ISA build, and on i386 what the setters of flush-to-zero and
# of denormals-are-zero return. The vendor is GenuineVaren unless the row names another. QEMU in user mode has one logical
# processor, refuses the feature ht, and its every model has CPUID: type 7 and a processor without CPUID are left to the
# unit tests. The C library of Debian needs CMOV, which the models below pentium2 lack. QEMU ends a program that uses
# AVX where the model has none, or where the operating system has not enabled it.
NO_SSE = -9998
PROCESSORS = {
    "qemu-i386": [
        ("486,+cmov", 0, "px", "x87", NO_SSE),
        ("pentium,+cmov,-mmx", 1, "px", "x87", NO_SSE),
        ("pentium,+cmov", 2, "px", "x87", NO_SSE),
        ("pentium2,-mmx", 3, "px", "x87", NO_SSE),
        ("pentium2", 4, "px", "x87", NO_SSE),
        ("pentium3,-sse", 4, "px", "x87", NO_SSE),
        ("pentium3", 5, "a6", "sse"),
        ("qemu32,family=15,-pni", 6, "w7", "sse2"),
        ("qemu32,family=15", 8, "w7", "sse2"),
        ("qemu32,family=31", 8, "w7", "sse2"),  # the extended family is not consulted
        ("qemu32", 9, "px", "sse2"),
        ("qemu32,family=7", 16, "px", "sse2"),
        ("qemu32,family=15,-sse2,-pni", 17, "px", "x87"),
        ("pentium3,vendor=GenuineOther", 0, "px", "x87"),
        ("qemu32,family=15,vendor=genuinevaren", 0, "px", "sse2"),
        # AVX2 from QEMU 7.2 on; not where the operating system does not let it be asked for, though all else is there.
        ("max", 9, "px", "avx2"),
        ("max,-avx", 9, "px", "sse2"),
        ("max,-xsave", 9, "px", "sse2"),
        ("max,vendor=GenuineOther", 0, "px", "avx2"),
    ],
    "qemu-x86_64": [
        ("qemu64,family=6,-sse2,-pni", 5, "a6", "sse2"),
        ("qemu64,family=15,-pni", 6, "w7", "sse2"),
        ("qemu64,family=15", 8, "w7", "sse2"),
        ("max,family=15", 8, "w7", "sse2"),
        ("qemu64,family=6", 9, "px", "sse2"),
        ("qemu64,family=6,vendor=GenuineOther", 0, "px", "sse2"),
        ("max,family=6", 9, "px", "avx2"),
        ("max,family=6,-avx", 9, "px", "sse2"),
    ],
}

# The builds that px may take, with what Linux calls their features, and the values of ZPP_ISA that lower it to none.
TUNINGS = {"x87": "", "sse2": "sse2", "avx2": "avx2 fma bmi2 f16c popcnt sse4_2 avx",
           "avx512": "avx512f avx512dq avx512bw avx512vl"}
NO_TUNING = ["sse", "AVX2", "x87" * 1000]


def run(*command, **environment):
    done = subprocess.run(command, capture_output=True, text=True, timeout=120, env={**os.environ, **environment})
    return done.returncode, done.stdout, done.stderr


def build_at(library, offset):
    """The ISA build of zppsAdd_64f that lies so many bytes behind its stub."""
    named = re.findall(r"^(\w+) [Tt] (?:_?(zppsAdd_64f)|zpp::(\w+)::zppsAdd_64f\(.*)(?:@.*)?$",
                       object_code.output(object_code.NM, "-C", library), re.M)
    stub = sum(int(address, 16) for address, name, _ in named if name)
    return {int(address, 16) - stub: build for address, _, build in named}.get(offset, f"none, at {offset}")


def native_builds():
    """Those that px may take on this machine, the best one last. On 64 bits sse2 is the plainest."""
    with open("/proc/cpuinfo", encoding="ascii") as file:
        flags = set(re.search(r"^flags\s*:(.*)$", file.read(), re.M).group(1).split())
    names = list(TUNINGS)
    count = next((i for i, name in enumerate(names) if not flags.issuperset(TUNINGS[name].split())), len(names))
    return names[:count]


# No processor in use has the vendor that is trusted with the faster columns: natively all are type 0.
def expect_answers(library, command, kind=0, column="px", build=None, control=0, visits=1, first=(), **environment):
    status, out, error = run(*command, **environment)
    out = re.sub(r"zppsAdd_64f leads (-?\d+) bytes on", lambda lead: f"build {build_at(library, int(lead[1]))}", out)
    found = [line for line in out.splitlines() if "answers" not in line]
    expected = [f"build {build or native_builds()[-1]}", f"type {kind}",
                f"4.0.19.77 {column} zpps{column}l.lib v4.0 Oct 16 2003",
                f"4.0.10.17 {column} zppvm{column}l.lib v4.0 Oct 20 2003",
                f"flush to zero {control}, denormals are zero {control}"]
    what = f"{' '.join(command)} {environment or ''}"[:400]
    if status != 0 or found != [*first, *expected * visits]:
        return [f"{what}: status {status}, not {first} and {visits} times {expected}:\n{out}{error}"]
    print(f"{what}:", *out.splitlines(), sep=" | ")
    return []


def expect_refusal(*command):
    got = run(*command)
    if got != (127, "", REFUSAL):
        return [f"{' '.join(command)}: not refused: {got}"]
    print(f"{' '.join(command)}: refused with both texts and status 127")
    return []


def linked(*program_and_library):
    *program, library = program_and_library
    return expect_answers(library, program)


def opened(*program):
    return expect_answers(program[-1], program, visits=2)


def tuned(arch, *program):
    """ZPP_ISA lowers what px takes, never raises it, and is not heard by a program with more rights than its user."""
    builds, faults = native_builds(), []
    for value in [*TUNINGS, *NO_TUNING]:
        build = value if value in builds else builds[-1]
        if arch == "x86_64" and build == "x87":
            build = "sse2"
        faults += expect_answers(program[-1], program, build=build, visits=2, ZPP_ISA=value)
    return faults + ([] if object_code.WINDOWS else tuned_with_rights(*program))


def tuned_with_rights(client, library):
    with tempfile.TemporaryDirectory() as folder:
        if os.geteuid() != 0 or os.statvfs(folder).f_flag & os.ST_NOSUID:
            print("left out: only root can make a program that runs with the rights of another, where that is allowed")
            return []
        if "libasan" in object_code.output("readelf", "-dW", client):
            print("left out: under AddressSanitizer a program looks at itself, which this one may not")
            return []
        os.chmod(folder, 0o755)
        command = [shutil.copy(file, folder) for file in (client, library)]
        os.chown(command[0], 65534, 65534)
        os.chmod(command[0], 0o4755)
        os.chmod(command[1], 0o755)
        return expect_answers(library, command, visits=2, first=["more rights than the user"], ZPP_ISA="sse2")


def sealed(*program):
    """A write into a slot ends the program, be it the first or the last one."""
    faults = []
    exports = object_code.exports(program[-1])[1]
    for _, _, name, *_ in (min(exports), max(exports)):
        got = run(*program, name)
        print(f"writes into the slot of {name}: {got}")
        faults += [] if got[:2] == (0, "fault at the slot\n") else [f"no fault: {name}"]
    return faults


def static(refused, library, source, headers, emulator, *compiler):
    """A program that a user links by hand, in the ways in which the linker might leave the routine that binds behind."""
    emulator = [word for word in emulator.split("|") if word]
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        for number, flags in enumerate((["-static"], ["-O2"], ["-ffunction-sections", "-Wl,--gc-sections"])):
            program = os.path.join(folder, f"{number}.exe")
            status, out, error = run(*compiler, *flags, "-I", headers, source, library, "-lm", "-o", program)
            faults += [out + error] if status != 0 else expect_answers(program, [*emulator, program])
    if not emulator:
        return faults + expect_refusal(refused)
    os.environ.pop("DISPLAY", None)  # the message box, which the DLL's test shows and reads, would wait for its button
    got = run(*emulator, refused)[:2]
    return faults + ([] if got == (127, "") else [f"{refused}: not refused: {got}"])


def refused(program, client, library):
    return expect_refusal(program) + expect_refusal(client, library)


MESSAGE_BOX = """\
caption [Set zpp library error] owner 0
Button [OK]
Static [ No zpp matching to CPU was found during the Waterfall]
LoadLibrary fails, error 1114
"""
BOX_CALL = r'MessageBoxA\(0+,\w+ " No zpp matching to CPU was found during the Waterfall",\w+ "Set zpp library error",0*10\)'


def message_box(*program):
    """In Wine, which also tells of the calls of system libraries: the beep cannot be heard otherwise. On a desktop of its
    own, for that of the other tests has no display."""
    display = shutil.which("xvfb-run")
    if display is None:
        print("skipped: xvfb-run (Debian: xvfb, xauth) is not installed; the message box was not shown")
        sys.exit(SKIPPED)
    os.environ["ZPP_WINE_DESKTOP"] = "display"
    traced = f"{shlex.join(program[:-2])} cmd /c exit && WINEDEBUG=+relay {shlex.join(program)}"
    status, out, error = run(display, "-a", "sh", "-c", traced)
    calls = re.findall(r"Call user32\.(Message\w+\(.*\)) ret=", error)
    right = len(calls) == 2 and re.fullmatch(r"MessageBeep\(0*10\)", calls[0]) and re.fullmatch(BOX_CALL, calls[1])
    if status != 0 or out != MESSAGE_BOX or not right:
        return [f"{' '.join(program)}: status {status}, {calls}, and not {MESSAGE_BOX}but {out}"]
    print(f"{' '.join(program)}: {calls}", out, sep="\n")
    return []


def emulated(tool, library, program, *incomplete):
    qemu = shutil.which(tool)
    if qemu is None:
        print(f"skipped: {tool} (Debian: qemu-user) is not installed; no processor type was tested")
        sys.exit(SKIPPED)
    faults = []
    for model, *expected in PROCESSORS[tool]:
        if "vendor=" not in model:
            model += ",vendor=GenuineVaren"
        faults += expect_answers(library, [qemu, "-cpu", model, program], *expected)
    for program in incomplete:  # down the whole waterfall
        faults += expect_refusal(qemu, "-cpu", "qemu32,family=15,vendor=GenuineVaren", program)
    return faults


if __name__ == "__main__":
    os.environ.pop("ZPP_ISA", None)
    checks = (linked, opened, tuned, sealed, static, refused, message_box, emulated)
    sys.exit(object_code.report({check.__name__: check for check in checks}[sys.argv[1]](*sys.argv[2:])))
