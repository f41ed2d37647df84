"""Reads the object code of the library and of its ISA builds, and fails on what must not be there.

    object_code.py exports LIBRARY HEADERS COMPILER FLAGS...
    object_code.py linkage LIBRARY VERSION
    object_code.py objects ARCH BUILD OBJECTS...    of an ISA build, or of "frame"

TOOLS in the environment is what stands before the names of nm, objdump and as, for a library of Windows.
Each check returns its complaints and a line on what it has seen. That every check catches what it is for is tested in
object_code_test.py.
"""
import functools
import os
import re
import struct
import subprocess
import sys
from typing import NamedTuple

TOOLS = os.environ.get("TOOLS", "")
NM, OBJDUMP, AS = (TOOLS + name for name in ("nm", "objdump", "as"))
WINDOWS = "mingw" in TOOLS
C_PREFIX = "_" if "i686" in TOOLS else ""
VERSION = "" if WINDOWS else "ZPP_4"  # of the symbols


def output(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def report(faults, *lines):
    """Prints what was seen and what is wrong with it; returns the exit status."""
    print(*lines, *faults[:40], *[f"and {len(faults) - 40} more"] * (len(faults) > 40), sep="\n")
    return 1 if faults else 0


def is_64_bit(file):
    return "x86-64" in output(OBJDUMP, "-f", file)


# --- The built library -----------------------------------------------------------------------------------------


def preprocessed(headers, compiler, *flags):
    return output(*compiler, "-x", "c", "-E", "-P", f"{headers}/zpp.h", *flags)


def declared(headers, compiler):
    """The functions that a program sees, which must be those of the list mode too."""
    prototypes = re.sub(r"__attribute__\(\(\w+\)\)", "", preprocessed(headers, compiler))  # __cdecl
    seen = re.findall(r"^extern [^;(]*?(\w+)\s*\(", prototypes, re.M)
    macros = ["-DZPP_LIST(r,n,a)=EXPORT:n", "-DZPP_LIST_SHARED=ZPP_LIST", "-DZPP_LIST_COLUMN=ZPP_LIST"]
    listed = re.findall(r"EXPORT:(\w+)", preprocessed(headers, compiler, *macros))
    if not seen or seen != listed:
        sys.exit(f"the headers declare {len(seen)} functions, their list mode {len(listed)}: {set(seen) ^ set(listed)}")
    return seen


def exports_of_dll(library):
    """(address, size of a stub, name, version of the symbol); a DLL says nothing of sizes and versions."""
    tables = output(OBJDUMP, "-p", library)
    addresses = dict(re.findall(r"^\s\[ *(\d+)\] \+base\[ *\d+\] +([0-9a-f]+) Export RVA", tables, re.M))
    names = re.findall(r"^\s\[ *(\d+)\] (\S+)$", tables.partition("[Ordinal/Name Pointer] Table")[2], re.M)
    faults = [] if len(names) == len(addresses) else [f"{len(addresses)} addresses of {len(names)} names"]
    return faults, [(int(addresses[index], 16), 16, name, VERSION) for index, name in names]


def exports_of_elf(library):
    lines = output(NM, "-D", "-S", "--defined-only", "--with-symbol-versions", library).splitlines()
    rows = [line.split() for line in lines if not line.endswith(f" A {VERSION}")]  # the version itself
    faults = [f"exported, but no function: {' '.join(row)}" for row in rows if len(row) != 4 or row[2] != "T"]
    named = [(row, *row[3].partition("@@")[::2]) for row in rows if len(row) == 4]
    return faults, [(int(row[0], 16), int(row[1], 16), name, version) for row, name, version in named]


exports = exports_of_dll if WINDOWS else exports_of_elf


def check_slots(library, count):
    """On pages of their own, which the library makes read-only."""
    width, page = 8 if is_64_bit(library) else 4, 4096
    places = {name.removeprefix(C_PREFIX): int(address, 16)
              for address, name in re.findall(r"^(\w+) \w (\w*zpp_slots(?:_end)?)$", output(NM, library), re.M)}
    begin, end = places["zpp_slots"], places["zpp_slots_end"]
    right = begin % page == 0 and end % page == 0 and end - begin >= count * width
    return [] if right else [f"slots from {begin:x} to {end:x}"]


def check_marks(library, stubs):
    """Of x86-64 ELF: each stub begins as the target of an indirect jump, and the file says that all such targets do."""
    notes = output("readelf", "-nW", library)
    faults = [] if re.search(r"x86 feature: IBT, SHSTK", notes) else ["not marked for IBT and SHSTK"]
    region = [f"--start-address={stubs[0][0]}", f"--stop-address={stubs[-1][0] + 16}"]
    marked = re.findall(r"^ *(\w+):\t[0-9a-f ]+\tendbr64", output(OBJDUMP, "-dw", *region, library), re.M)
    marked = {int(address, 16) for address in marked}
    return faults + [f"begins without endbr64: {name}" for address, _, name, _ in stubs if address not in marked]


def check_exports(library, expected):
    """Exactly the expected functions, as stubs of 16 bytes one behind the other in the expected order."""
    faults, stubs = exports(library)
    stubs.sort()
    exported = [name for _, _, name, _ in stubs]
    faults += [f"exported, but not declared: {name}" for name in sorted(set(exported) - set(expected))]
    faults += [f"declared, but not exported: {name}" for name in sorted(set(expected) - set(exported))]
    if not faults:
        faults += [f"not in the order of the headers: {a}" for a, b in zip(exported, expected) if a != b][:1]
        faults += [f"{size} bytes: stub of {name}" for _, size, name, _ in stubs if size > 16]
        faults += [f"of version {version!r}: {name}" for _, _, name, version in stubs if version != VERSION]
        base = stubs[0][0]
        faults += [f"not 16 bytes behind the stub before it: {name}"
                   for i, (address, _, name, _) in enumerate(stubs) if address != base + 16 * i or address % 16 != 0]
    if not faults and is_64_bit(library) and not WINDOWS:
        faults += check_marks(library, stubs)
    return faults, f"{len(exported)} exports of {len(expected)} declared functions"


NEEDED = re.compile(r"libc\.so\.6|libm\.so\.6|ld-linux(-x86-64)?\.so\.2")


def pointers(library, section):
    """The functions that an array of pointers of the unrelocated file names."""
    width = 8 if is_64_bit(library) else 4
    dump = output("readelf", "-x", section, library)
    data = bytes.fromhex("".join(re.findall(r"^  0x[0-9a-f]+ ((?:[0-9a-f]{2,8} ?){1,4})", dump, re.M)).replace(" ", ""))
    names = {}
    for line in output(NM, "-C", "--defined-only", library).splitlines():
        address, kind, name = line.split(" ", 2)
        names.update({int(address, 16): name} if kind in "tT" else {})
    entries = [int.from_bytes(data[i:i + width], "little") for i in range(0, len(data), width)]
    return [names.get(entry, hex(entry)) for entry in entries]


SYSTEM_DLLS = {"KERNEL32.dll", "USER32.dll", "msvcrt.dll"}


def check_dll_linkage(library, version):
    """Needs system libraries alone, can be loaded anywhere, with no code that can be written to, and tells its version
    but no date."""
    headers = output(OBJDUMP, "-p", library)
    needed = re.findall(r"DLL Name: (\S+)", headers)
    faults = [f"needs {name}" for name in needed if name not in SYSTEM_DLLS]
    marks = ["DYNAMIC_BASE", "NX_COMPAT"] + ([] if C_PREFIX else ["HIGH_ENTROPY_VA"])
    faults += [f"lacks {mark}" for mark in marks if not re.search(rf"^\s+{mark}", headers, re.M)]
    with open(library, "rb") as file:
        data = file.read()
    texts = {"FileVersion": version, "ProductVersion": version, "ProductName": "libzpp", "OriginalFilename": "zpp.dll"}
    for name, text in texts.items():
        pattern = re.escape(f"{name}\0".encode("utf-16-le")) + b"(?:\0\0)*" + re.escape(f"{text}\0".encode("utf-16-le"))
        faults += [] if re.search(pattern, data) else [f"{name} is not {text}"]
    header, = struct.unpack_from("<I", data, 0x3C)
    date, = struct.unpack_from("<I", data, header + 8)
    faults += [f"has a date: {date}"] if date else []
    name = re.search(r"^Name\s+\S+ (\S+)$", headers, re.M)
    faults += [] if name and name.group(1) == "zpp.dll" else [f"is named {name and name.group(1)}"]
    return faults, f"needs {' '.join(needed)}"


def check_linkage(library, version):
    if WINDOWS:
        return check_dll_linkage(library, version)
    dynamic, headers = output("readelf", "-dW", library), output("readelf", "-lW", library)
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic)
    faults = [f"needs {name}" for name in needed if not NEEDED.fullmatch(name)]
    soname = re.findall(r"\(SONAME\).*\[(.*)\]", dynamic)
    faults += [] if soname == [f"libzpp.so.{version.split('.')[0]}"] else [f"soname {soname}"]
    tags = r"\b(TEXTREL|RPATH|RUNPATH|PREINIT_ARRAY|INIT|FINI|FINI_ARRAY)\b"
    faults += [f"has {tag}" for tag in re.findall(tags, dynamic)]
    segments = re.findall(r"^  (LOAD|GNU_STACK|GNU_RELRO) .* ([R ][W ][E ]) +0x", headers, re.M)
    if "GNU_RELRO" not in dict(segments) or "BIND_NOW" not in dynamic:
        faults.append("leaves its table of other libraries' functions writable")
    if "GNU_STACK" not in dict(segments):
        faults.append("says nothing of its stack, which is executable then")
    faults += [f"{kind} segment is {flags}" for kind, flags in segments
               if flags.endswith("E") and (kind == "GNU_STACK" or "W" in flags)]
    started = pointers(library, ".init_array")
    if started != ["zpp::(anonymous namespace)::attach()"]:
        faults.append(f"not the load routine alone runs at load: {started}")
    undefined = [line.split()[-1] for line in output(NM, "-D", "--undefined-only", library).splitlines()]
    faults += [f"takes from elsewhere: {name}" for name in undefined if "@GLIBC_" not in name]
    return faults, f"needs {' '.join(needed)}; {len(undefined)} symbols from outside"


# --- The objects of one build: a check returns its complaints, how much it has seen, and of what ----------------


def check_symbols(isa, objects):
    """Nothing that the linker could merge with, or that could call, another build."""
    own = re.compile(rf"_Z(?:GV|T[VTISC])?(?:Z?N[VKrRO]*)+3zpp{len(isa)}{isa}(?=\d|L|[A-Z])")
    other = re.compile(r"3zpp(?:3x87|3sse|4sse2|4avx2|6avx512)(?=\d|L|[A-Z])")
    thunk = re.compile(r"__x86\.get_pc_thunk\.\w+|DW\.ref\.\w+")  # the compiler's, of integer instructions only
    faults, count = [], 0
    for path in objects:
        for line in output(NM, path).splitlines():
            kind, name = line.split()[-2:]
            name = name.removeprefix(C_PREFIX)
            if kind == "U":
                if name.startswith("zpp") or (other.search(name) and not own.match(name)):
                    faults.append(f"{path}: calls out of its build: {name}")
            elif (kind.isupper() or kind in "vwu") and not thunk.fullmatch(name):
                count += 1
                if not own.match(name):
                    faults.append(f"{path}: visible outside zpp::{isa}: {kind} {name}")
    return faults, count, "symbols of its own"


class Instruction(NamedTuple):
    address: int
    text: str
    relocated: bool
    mnemonic = property(lambda self: self.text.split(" ")[-2:][0])
    operands = property(lambda self: self.text.partition(" ")[2])


LINE = re.compile(r"^ *([0-9a-f]+):\t([0-9a-f ]+)(?:\t([^\t]*))?(\t.*)?$")
PREFIX = re.compile(r"^(?:(?:rep\w*|lock|data16|addr16|[c-gs]s|notrack|bnd|rex\S*) +)+")


@functools.lru_cache(maxsize=None)
def functions(path):
    """(name, instructions) of each function, with the parts that the compiler moved away as functions of their own."""
    found = []
    for line in output(OBJDUMP, "-drw", path).splitlines():
        header, row = re.match(r"[0-9a-f]+ <(.+)>:$", line), LINE.match(line)
        if header:
            found.append((header.group(1), []))
        elif row:
            words = PREFIX.sub("", (row.group(3) or "(bad)").split("#")[0] + " ").split("<")[0].split()
            found[-1][1].append(Instruction(int(row.group(1), 16), " ".join(words) or "(prefix)", bool(row.group(4))))
    return found


def bodies(objects):
    """(path and name, instructions) of each function."""
    return [(f"{path}: {name}", body) for path in objects for name, body in functions(path)]


def instructions(objects):
    """(path, function, address and text; instruction)."""
    return [(f"{name}: {it.address:x}: {it.text}", it) for name, body in bodies(objects) for it in body]


# What the assembler is told of the processor of a build: it refuses the instructions and registers that are not of it;
# in the builds for AVX the encoding without VEX too, which is slow beside the other.
PLAIN = {False: "i686+387", True: "generic64+nommx+ibt"}  # by whether it has 64 bits
AVX2 = "+popcnt+avx2+fma+f16c+bmi2"
BEYOND = {"sse": "+sse", "sse2": "+sse2", "avx2": AVX2, "avx512": AVX2 + "+avx512f+avx512dq+avx512bw+avx512vl"}
EVIDENCE = {"frame": "^cpuid", "x87": "^fld|^fmul", "sse": r"%xmm\d|^cmov|^fu?comi", "sse2": "^(?:add|mul)pd|^padd",
            "avx2": r"%ymm\d", "avx512": r"%zmm\d"}
# The frame asks before it uses what an i586 may lack, and does so in functions of their own.
ASKED = re.compile("(updateMxcsr|zppSetFlushToZero|zppSetDenormAreZeros).*: (stmxcsr|ldmxcsr) |"
                   "readMxcsrMask.*: fxsave |readExtendedControl.*: xgetbv$")


def refusals(isa, texts, is_64):
    """The texts among these that the assembler refuses, and why."""
    processor = PLAIN[is_64] + BEYOND.get(isa, "") if is_64 or isa in BEYOND else "i586+387"
    strict = ["-msse-check=error"] if isa.startswith("avx") else []
    # The compiler writes tzcnt as `rep bsf`, which an older processor runs as bsf: of zero it uses no result anyway.
    lines = [re.sub(r"^tzcnt", "bsf", re.sub(r" ([0-9a-f]+)$", r" 0x\1", text)) + "\n" for text in texts]
    command = [AS, "--64" if is_64 else "--32", f"-march={processor}", "-mindex-reg", *strict, "-o", os.devnull]
    done = subprocess.run(command, input="".join(lines), stderr=subprocess.PIPE, text=True)
    errors = re.findall(r"^{standard input}:(\d+): (Error: .*)$", done.stderr, re.M)
    if done.returncode != 0 and not errors:
        sys.exit(done.stderr)
    return {texts[int(line) - 1]: why for line, why in errors}


def check_instructions(isa, objects):
    """Only instructions and registers of the build, and some that show what it is for."""
    rows = instructions(objects)
    refused = refusals(isa, sorted({it.text for _, it in rows}), is_64_bit(objects[0]))
    faults = [f"{what}: {refused[it.text]}" for what, it in rows
              if it.text in refused and not (isa == "frame" and ASKED.search(what))]
    return faults, sum(bool(re.search(EVIDENCE[isa], it.text)) for _, it in rows), "instructions peculiar to the build"


UPPER = re.compile(r"%[yz]mm\d")


def leaves_dirty(body):
    """The address of a return, or of a jump out of the function, that some path reaches without vzeroupper after a
    use of a register's upper half. A callee is taken to leave them as it found them."""
    at = {it.address: i for i, it in enumerate(body)}
    seen, work = set(), [(0, False)]
    while work:
        i, dirty = work.pop()
        if i >= len(body) or (i, dirty) in seen:
            continue
        seen.add((i, dirty))
        it = body[i]
        dirty = it.mnemonic not in ("vzeroupper", "vzeroall") and (dirty or bool(UPPER.search(it.operands)))
        jump = it.mnemonic.startswith("j")
        target = None if it.relocated or not jump else at.get(int(it.operands, 16)) if it.operands[0] != "*" else None
        if jump and it.operands[0] == "*" and not it.relocated and len(body) > i + 1:
            work += [(k, dirty) for k in range(len(body))]  # a switch: it may go anywhere
        elif it.mnemonic.startswith("ret") or (jump and target is None):
            if dirty:
                return it.address
        elif jump:
            work.append((target, dirty))
        if not it.mnemonic.startswith(("jmp", "ret", "ud2")):
            work.append((i + 1, dirty))
    return None


def check_uppers(isa, objects):
    using = [(name, body) for name, body in bodies(objects) if any(UPPER.search(it.operands) for it in body)]
    left = [(name, leaves_dirty(body)) for name, body in using]
    faults = [f"{name}: no vzeroupper on a path to {address:x}" for name, address in left if address is not None]
    return faults, len(using), "functions with upper halves"


ALIGNED = re.compile(r"v?(movap[sd]|movdqa(32|64)?|movntp[sd]|movntdqa?)|fxsave|fxrstor")
# With an operand in memory these want it aligned too, unless in VEX or EVEX encoding.
PACKED = re.compile(r"(?!mov|cvt|pinsr)\w*(?:p[sd]|[bwq]|[^s]d)|por|pxor|pandn")
REALIGNED = re.compile(r"\$0xf+[ec8]?0,%esp")


def check_stack(isa, objects):
    """On i386: who needs an aligned place on the stack makes it, for the caller may not have aligned its own."""
    whole, faults = {}, []
    for name, body in bodies(objects):
        whole.setdefault(name.split(".cold")[0], []).extend(body)
    for name, body in whole.items():
        needs = [it for it in body if "(%esp" in it.operands and (
            ALIGNED.fullmatch(it.mnemonic)
            or (it.mnemonic[0] != "v" and "%xmm" in it.operands and PACKED.fullmatch(it.mnemonic)))]
        if needs and not any(it.mnemonic == "and" and REALIGNED.match(it.operands) for it in body):
            faults.append(f"{name}: {needs[0].address:x}: {needs[0].text}")
    return faults, len(whole), "functions and their stacks"


def check_moves(isa, objects):
    """On 64-bit Windows: the compiler takes the stack to be aligned for registers of more than 16 bytes. It streams
    nothing there (movnt): that is done by kernels, which look at the address."""
    moves = [(what, it) for what, it in instructions(objects)
             if it.mnemonic[0] == "v" and "mov" in it.mnemonic and re.search(r"%[yz]mm", it.operands)
             and not (it.mnemonic.startswith("vmovnt") and "sp)" not in it.operands)]
    return [what for what, it in moves if ALIGNED.fullmatch(it.mnemonic)], len(moves), "moves of long registers"


def check_constructors(isa, objects):
    """Nothing runs at load but the routine of the loader."""
    faults = [f"{path}: runs at load: {name}" for path in objects if "attach_elf" not in path
              for name in re.findall(r"^ *\d+ (\.(?:ctors|init_array|CRT)\S*)", output(OBJDUMP, "-h", path), re.M)]
    return faults, len(objects), "objects and their constructors"


def check_objects(arch, isa, *objects):
    checks = [check_instructions, check_constructors]
    checks += [check_symbols] if isa != "frame" else []
    checks += [check_uppers] if isa.startswith("avx") else []
    checks += [check_stack] if arch == "i386" else []
    checks += [check_moves] if arch == "x86_64" and WINDOWS and isa.startswith("avx") else []
    results = [check(isa, objects) for check in checks]
    faults = [fault for faults, count, what in results for fault in faults + ([] if count else [f"no {what}"])]
    return faults, "\n".join(f"{isa}: {count} {what}" for _, count, what in results)


def check_library(library, headers, *compiler):
    expected = declared(headers, compiler)
    faults, summary = check_exports(library, expected)
    return faults + check_slots(library, len(expected)), summary


def main(check, *arguments):
    faults, summary = {"exports": check_library, "linkage": check_linkage, "objects": check_objects}[check](*arguments)
    return report(faults, summary)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
