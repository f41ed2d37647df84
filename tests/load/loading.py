"""Loads the built library into real processes. See CMakeLists.txt for the calls."""
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
REFUSAL = "Set zpp library error\n No zpp matching to CPU was found during the Waterfall\n"

# Processor model and features for QEMU, type, column, what the setters of flush-to-zero and of denormals-are-zero
# return. The vendor is GenuineVaren unless the row names another. QEMU in user mode has one logical processor, refuses
# the feature ht, and its every model has CPUID: type 7 and a processor without CPUID are left to the unit tests.
# The C library of Debian needs CMOV, which the models below pentium2 lack.
NO_SSE = -9998
PROCESSORS = [
    ("486,+cmov", 0, "px", NO_SSE),
    ("pentium,+cmov,-mmx", 1, "px", NO_SSE),
    ("pentium,+cmov", 2, "px", NO_SSE),
    ("pentium2,-mmx", 3, "px", NO_SSE),
    ("pentium2", 4, "px", NO_SSE),
    ("pentium3,-sse", 4, "px", NO_SSE),
    ("pentium3", 5, "a6", 0),
    ("qemu32,family=15,-pni", 6, "w7", 0),
    ("qemu32,family=15", 8, "w7", 0),
    ("qemu32,family=31", 8, "w7", 0),  # the extended family is not consulted
    ("qemu32", 9, "px", 0),
    ("qemu32,family=7", 16, "px", 0),
    ("qemu32,family=15,-sse2,-pni", 17, "px", 0),
    ("pentium3,vendor=GenuineOther", 0, "px", 0),
    ("qemu32,family=15,vendor=genuinevaren", 0, "px", 0),
    # px is tuned to AVX2, from QEMU 7.2 on; not without AVX, nor where the operating system does not let it be asked
    # for, though every other feature is there. QEMU then ends a program that uses AVX.
    ("max", 9, "px", 0),
    ("max,-avx", 9, "px", 0),
    ("max,-xsave", 9, "px", 0),
    ("max,vendor=GenuineOther", 0, "px", 0),
]


def run(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=120)
    return done.returncode, done.stdout, done.stderr


def expected_answers(processor_type, column, control):
    return [f"type {processor_type}",
            f"4.0.19.77 {column} zpps{column}l.lib v4.0 Oct 16 2003",
            f"4.0.10.17 {column} zppvm{column}l.lib v4.0 Oct 20 2003",
            f"flush to zero {control}, denormals are zero {control}"]


def expect_answers(command, processor_type, column, control=0, visits=1):
    status, out, error = run(*command)
    found = [line for line in out.splitlines() if "answers" not in line]
    expected = expected_answers(processor_type, column, control) * visits
    if status != 0 or found != expected:
        return [f"{' '.join(command)}: status {status}, not {expected}:\n{out}{error}"]
    print(f"{' '.join(command)}:", *out.splitlines(), sep=" | ")
    return []


def expect_refusal(*command):
    got = run(*command)
    if got != (127, "", REFUSAL):
        return [f"{' '.join(command)}: not refused: {got}"]
    print(f"{' '.join(command)}: refused with both texts and status 127")
    return []


# No processor in use has the vendor that is trusted with the faster columns: natively all are type 0.
def linked(*program):
    return expect_answers(program, 0, "px")


def opened(*program):
    return expect_answers(program, 0, "px", visits=2)


def static(refused, library, source, headers, emulator, *compiler):
    """A program that a user links by hand, in the ways in which the linker might leave the routine that binds behind."""
    emulator = [word for word in emulator.split("|") if word]
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        for number, flags in enumerate((["-static"], ["-O2"], ["-ffunction-sections", "-Wl,--gc-sections"])):
            program = os.path.join(folder, f"{number}.exe")
            status, out, error = run(*compiler, *flags, "-I", headers, source, library, "-lm", "-o", program)
            faults += expect_answers([*emulator, program], 0, "px") if status == 0 else [out + error]
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


def emulated(program, incomplete):
    qemu = shutil.which("qemu-i386")
    if qemu is None:
        print("skipped: qemu-i386 (Debian: qemu-user) is not installed; no processor type was tested")
        sys.exit(SKIPPED)
    faults = []
    for model, *expected in PROCESSORS:
        if "vendor=" not in model:
            model += ",vendor=GenuineVaren"
        faults += expect_answers([qemu, "-cpu", model, program], *expected)
    # Down the whole waterfall.
    return faults + expect_refusal(qemu, "-cpu", "qemu32,family=15,vendor=GenuineVaren", incomplete)


if __name__ == "__main__":
    checks = (linked, opened, static, refused, message_box, emulated)
    faults = {check.__name__: check for check in checks}[sys.argv[1]](*sys.argv[2:])
    print(*faults, sep="\n", end="\n" if faults else "")
    sys.exit(1 if faults else 0)
