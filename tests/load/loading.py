"""Loads the built library into real processes. See CMakeLists.txt for the calls."""
import os
import re
import shutil
import subprocess
import sys

SKIPPED = 77
REFUSAL = "Set zpp library error\n No zpp matching to CPU was found during the Waterfall\n"

# Processor model and features for QEMU, type, column. The vendor is GenuineVaren unless the row names another.
# QEMU has no hyper-threading to show and always CPUID: unit tests cover type 7 and a processor without CPUID.
# The C library of Debian needs CMOV, which the models below pentium2 lack.
PROCESSORS = [
    ("486,+cmov", 0, "px"),
    ("pentium,+cmov,-mmx", 1, "px"),
    ("pentium,+cmov", 2, "px"),
    ("pentium2,-mmx", 3, "px"),
    ("pentium2", 4, "px"),
    ("pentium3,-sse", 4, "px"),
    ("pentium3", 5, "a6"),
    ("qemu32,family=15,-pni", 6, "w7"),
    ("qemu32,family=15", 8, "w7"),
    ("qemu32,family=31", 8, "w7"),  # the extended family is not consulted
    ("qemu32", 9, "px"),
    ("max", 9, "px"),
    ("qemu32,family=7", 16, "px"),
    ("qemu32,family=15,-sse2,-pni", 17, "px"),
    ("pentium3,vendor=GenuineOther", 0, "px"),
    ("qemu32,family=15,vendor=genuinevaren", 0, "px"),
]


def run(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=120)
    return done.returncode, done.stdout, done.stderr


def expect_answers(command, processor_type, column, visits=1):
    status, out, error = run(*command)
    found = [line for line in out.splitlines() if line.startswith("type ")]
    if status != 0 or found != [f"type {processor_type} column {column}"] * visits:
        return [f"{' '.join(command)}: status {status}, not type {processor_type} column {column}:\n{out}{error}"]
    print(f"{' '.join(command)}: {found[0]}, {out.splitlines()[-1]}")
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
    """In Wine, which also tells of the calls of system libraries: the beep cannot be heard otherwise."""
    display = shutil.which("xvfb-run")
    if display is None:
        print("skipped: xvfb-run (Debian: xvfb, xauth) is not installed; the message box was not shown")
        sys.exit(SKIPPED)
    os.environ["WINEDEBUG"] = "+relay"
    status, out, error = run(display, "-a", *program)
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
    for model, processor_type, column in PROCESSORS:
        if "vendor=" not in model:
            model += ",vendor=GenuineVaren"
        faults += expect_answers([qemu, "-cpu", model, program], processor_type, column)
    # Down the whole waterfall.
    return faults + expect_refusal(qemu, "-cpu", "qemu32,family=15,vendor=GenuineVaren", incomplete)


if __name__ == "__main__":
    checks = (linked, opened, refused, message_box, emulated)
    faults = {check.__name__: check for check in checks}[sys.argv[1]](*sys.argv[2:])
    print(*faults, sep="\n", end="\n" if faults else "")
    sys.exit(1 if faults else 0)
