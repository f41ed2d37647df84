"""Reads the object code of the library and of its ISA builds, and fails on what must not be there.

    object_code.py exports LIBRARY HEADERS COMPILER FLAGS...
    object_code.py linkage LIBRARY VERSION
    object_code.py objects ARCH BUILD OBJECTS...    of an ISA build, or of "frame"

TOOLS in the environment is what stands before the names of nm and objdump, for a library of Windows.
Each check returns its complaints and a line on what it has seen. The tables of instructions are in
instruction_sets.py; that every check catches what it is for is tested in object_code_test.py.
"""
import functools
import os
import re
import struct
import subprocess
import sys
from typing import NamedTuple

import instruction_sets

TOOLS = os.environ.get("TOOLS", "")
NM, OBJDUMP = TOOLS + "nm", TOOLS + "objdump"
WINDOWS = "mingw" in TOOLS
C_PREFIX = "_" if "i686" in TOOLS else ""
VERSION = "" if WINDOWS else "ZPP_4"  # of the symbols


def output(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def is_64_bit_elf(library):
    return "elf64" in output(OBJDUMP, "-f", library)


# --- The built library -----------------------------------------------------------------------------------------


def declared(headers, compiler):
    """The functions that a program sees, which must be those of the list mode too."""
    preprocess = [*compiler, "-x", "c", "-E", "-P", f"{headers}/zpp.h"]
    prototypes = re.sub(r"__attribute__\(\(\w+\)\)", "", output(*preprocess))  # __cdecl
    seen = re.findall(r"^extern [^;(]*?(\w+)\s*\(", prototypes, re.M)
    macros = ["-DZPP_LIST(r,n,a)=EXPORT:n", "-DZPP_LIST_SHARED=ZPP_LIST", "-DZPP_LIST_COLUMN=ZPP_LIST"]
    listed = re.findall(r"EXPORT:(\w+)", output(*preprocess, *macros))
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
    rows = [line.split() for line in output(NM, "-D", "-S", "--defined-only", "--with-symbol-versions", library).splitlines()]
    rows = [row for row in rows if row[1:] != ["A", VERSION]]  # the version itself
    faults = [f"exported, but no function with a size: {' '.join(row)}" for row in rows if len(row) != 4 or row[2] != "T"]
    named = [(row, *row[3].partition("@@")[::2]) for row in rows if len(row) == 4]
    return faults, [(int(row[0], 16), int(row[1], 16), name, version) for row, name, version in named]


def check_slots(library, count):
    """On pages of their own, which the library makes read-only."""
    width, page = 4 if re.search(r"file format \S+-i386$", output(OBJDUMP, "-f", library), re.M) else 8, 4096
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
    faults, stubs = (exports_of_dll if WINDOWS else exports_of_elf)(library)
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
    if not faults and is_64_bit_elf(library):
        faults += check_marks(library, stubs)
    return faults, f"{len(exported)} exports of {len(expected)} declared functions"


NEEDED = re.compile(r"libc\.so\.6|libm\.so\.6|ld-linux(-x86-64)?\.so\.2")


def pointers(library, section):
    """The functions that an array of pointers of the unrelocated file names."""
    width = 8 if is_64_bit_elf(library) else 4
    dump = output("readelf", "-x", section, library)
    data = bytes.fromhex("".join(re.findall(r"^  0x[0-9a-f]+ ((?:[0-9a-f]{2,8} ?){1,4})", dump, re.M)).replace(" ", ""))
    names = {}
    for line in output(NM, "-C", "--defined-only", library).splitlines():
        address, kind, name = line.split(" ", 2)
        if kind in "tT":
            names[int(address, 16)] = name
    entries = [int.from_bytes(data[i:i + width], "little") for i in range(0, len(data), width)]
    return [names.get(entry, hex(entry)) for entry in entries]


SYSTEM_DLLS = {"KERNEL32.dll", "USER32.dll", "msvcrt.dll"}


def check_dll_linkage(library, version):
    """Needs system libraries alone, can be loaded anywhere, with no code that can be written to, and tells its version
    but no date."""
    headers = output(OBJDUMP, "-p", library)
    needed = re.findall(r"DLL Name: (\S+)", headers)
    faults = [f"needs {name}" for name in needed if name not in SYSTEM_DLLS]
    marks = [("DYNAMIC_BASE", "cannot be loaded at another address"), ("NX_COMPAT", "wants to run data")]
    marks += [] if C_PREFIX else [("HIGH_ENTROPY_VA", "cannot be loaded beyond 4 GB")]
    faults += [complaint for mark, complaint in marks if not re.search(rf"^\s+{mark}", headers, re.M)]
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
    dynamic = output("readelf", "-dW", library)
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic)
    faults = [f"needs {name}" for name in needed if not NEEDED.fullmatch(name)]
    soname = re.findall(r"\(SONAME\).*\[(.*)\]", dynamic)
    if soname != [f"libzpp.so.{version.split('.')[0]}"]:
        faults.append(f"soname {soname}")
    for tag in ("TEXTREL", "RPATH", "RUNPATH", "PREINIT_ARRAY"):
        if re.search(rf"\b{tag}\b", dynamic):
            faults.append(f"has {tag}")
    segments = re.findall(r"^  (LOAD|GNU_STACK|GNU_RELRO) .* ([R ][W ][E ]) +0x", output("readelf", "-lW", library), re.M)
    if "GNU_RELRO" not in dict(segments) or "BIND_NOW" not in dynamic:
        faults.append("leaves its table of other libraries' functions writable")
    if "GNU_STACK" not in dict(segments):
        faults.append("says nothing of its stack, which is executable then")
    faults += [f"{kind} segment is {flags}" for kind, flags in segments
               if flags.endswith("E") and (kind == "GNU_STACK" or "W" in flags)]
    started = pointers(library, ".init_array")
    if started != ["zpp::(anonymous namespace)::attach()"]:
        faults.append(f"not the load routine alone runs at load: {started}")
    faults += [f"runs at load or unload: {tag}" for tag in re.findall(r"\((INIT|FINI|FINI_ARRAY)\)", dynamic)]
    undefined = [line.split()[-1] for line in output(NM, "-D", "--undefined-only", library).splitlines()]
    faults += [f"takes from elsewhere: {name}" for name in undefined if "@GLIBC_" not in name]
    return faults, f"needs {' '.join(needed)}; {len(undefined)} symbols from outside"


# --- The objects of one ISA build ------------------------------------------------------------------------------


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
    if count == 0:
        faults.append("the objects define nothing")
    return faults, f"{isa}: {count} symbols of {len(objects)} objects"


class Instruction(NamedTuple):
    address: int
    code: bytes
    mnemonic: str
    operands: str
    relocated: bool

    def text(self):
        return f"{self.mnemonic} {self.operands}"


LINE = re.compile(r"^ *([0-9a-f]+):\t([0-9a-f ]+)(?:\t([^\t]*))?(\t.*)?$")
PREFIX = re.compile(r"^(?:(?:rep\w*|lock|data16|addr16|[c-gs]s|notrack|bnd|rex\S*|\{\w+\}) +)+")


@functools.lru_cache(maxsize=None)
def functions(path):
    """(name, instructions) of each function, with the parts that the compiler moved away as functions of their own."""
    found, body = [], None
    for line in output(OBJDUMP, "-drw", path).splitlines():
        header = re.match(r"[0-9a-f]+ <(.+)>:$", line)
        row = LINE.match(line)
        if header:
            body = []
            found.append((header.group(1), body))
        elif row:
            text = PREFIX.sub("", (row.group(3) or "(bad)").split("#")[0].strip() + " ").split(None, 1)
            operands = re.sub(r" *<.*>$", "", text[1].strip()) if len(text) > 1 else ""
            body.append(Instruction(int(row.group(1), 16), bytes.fromhex(row.group(2)),
                                    text[0] if text else "(prefix)", operands, row.group(4) is not None))
    return found


def check_instructions(isa, objects):
    """Only instructions on the list of the build, only its registers; and some that show what the build is for."""
    table = instruction_sets.TABLES[isa]
    faults, count, evidence = [], 0, 0
    for path in objects:
        for name, body in functions(path):
            for it in body:
                count += 1
                evidence += bool(table.evidence.search(it.text()))
                if not table.allows(it, name):
                    faults.append(f"{path}: {name}: {it.address:x}: {it.code.hex()} {it.text()}")
    if count == 0 or (evidence == 0 and not faults):
        faults.append(f"nothing seen that is peculiar to {isa}, in {count} instructions")
    return faults, f"{isa}: {count} instructions of {len(objects)} objects, {evidence} peculiar to the build"


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
    faults, count = [], 0
    for path in objects:
        for name, body in functions(path):
            if any(UPPER.search(it.operands) for it in body):
                count += 1
                address = leaves_dirty(body)
                if address is not None:
                    faults.append(f"{path}: {name}: no vzeroupper on a path to {address:x}")
    if count == 0:
        faults.append("no function uses an upper half")
    return faults, f"{isa}: {count} functions with upper halves"


ALIGNED = re.compile(r"v?(movap[sd]|movdqa(32|64)?|movntp[sd]|movntdqa?)|fxsave|fxrstor")
# With an operand in memory these want it aligned too, unless in VEX or EVEX encoding.
PACKED = re.compile(r"(?!mov|cvt|pinsr)\w*(?:p[sd]|[bwq]|[^s]d)|por|pxor|pandn")
REALIGNED = re.compile(r"\$0xf+[ec8]?0,%esp")


def check_stack(isa, objects):
    """On i386: who needs an aligned place on the stack makes it, for the caller may not have aligned its own."""
    faults, count, realigned = [], 0, 0
    for path in objects:
        bodies = {}
        for name, body in functions(path):
            bodies.setdefault(name.split(".cold")[0], []).extend(body)
        for name, body in bodies.items():
            count += 1
            makes = any(it.mnemonic == "and" and REALIGNED.match(it.operands) for it in body)
            realigned += makes
            needs = [it for it in body if "(%esp" in it.operands and (
                ALIGNED.fullmatch(it.mnemonic)
                or (it.mnemonic[0] != "v" and "%xmm" in it.operands and PACKED.fullmatch(it.mnemonic)))]
            if needs and not makes:
                faults.append(f"{path}: {name}: {needs[0].address:x}: {needs[0].text()}")
    if count == 0:
        faults.append("no function seen")
    return faults, f"{isa}: {count} functions, {realigned} align their stack"


def check_moves(isa, objects):
    """On 64-bit Windows: the compiler takes the stack to be aligned for registers of more than 16 bytes."""
    rows = [(path, name, it) for path in objects for name, body in functions(path) for it in body
            if it.mnemonic[0] == "v" and "mov" in it.mnemonic and re.search(r"%[yz]mm", it.operands)]
    faults = [f"{path}: {name}: {it.address:x}: {it.text()}" for path, name, it in rows if ALIGNED.fullmatch(it.mnemonic)]
    return faults + ([] if rows else ["no move of a long register"]), f"{isa}: {len(rows)} moves of long registers"


def check_constructors(isa, objects):
    """Nothing runs at load but the routine of the loader."""
    sections = [(path, name) for path in objects if "attach_elf" not in path
                for name in re.findall(r"^ *\d+ (\.(?:ctors|init_array|CRT)\S*)", output(OBJDUMP, "-h", path), re.M)]
    return [f"{path}: runs at load: {name}" for path, name in sections], f"{isa}: no constructors"


def check_objects(arch, build, objects):
    isa = f"frame-{arch}" if build == "frame" else build
    checks = [check_instructions, check_constructors]
    checks += [check_symbols] if build != "frame" else []
    checks += [check_uppers] if build.startswith("avx") else []
    checks += [check_stack] if arch == "i386" else []
    checks += [check_moves] if arch == "x86_64" and WINDOWS and build.startswith("avx") else []
    results = [check(isa, objects) for check in checks]
    return [fault for faults, _ in results for fault in faults], "\n".join(summary for _, summary in results)


def main(check, *arguments):
    if check == "exports":
        library, headers, *compiler = arguments
        expected = declared(headers, compiler)
        faults, summary = check_exports(library, expected)
        faults += check_slots(library, len(expected))
    elif check == "linkage":
        faults, summary = check_linkage(*arguments)
    else:
        arch, build, *objects = arguments
        faults, summary = check_objects(arch, build, objects)
    print(summary)
    print(*faults[:40], sep="\n", end="\n" if faults else "")
    if len(faults) > 40:
        print(f"and {len(faults) - 40} more")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
