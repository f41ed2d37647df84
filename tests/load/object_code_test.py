"""Shows that the checks of object_code.py catch what they are for: object_code_test.py i386|x86_64 COMPILER FLAGS..."""
import itertools
import os
import re
import subprocess
import sys
import tempfile

import object_code

ARCH, COMPILER = sys.argv[1], sys.argv[2:]
FOLDER, NUMBERS = tempfile.TemporaryDirectory(), itertools.count()

# One instruction a row, separated by bars. Those that are refused by mistake show in the objects of the library.
REFUSED = {
    "x87": "cmove %ecx,%eax | fucomi %st(1),%st | nopl 0(%eax) | nopw 0(%eax) | endbr32 | movaps %xmm0,%xmm1 | emms |"
           "paddw %mm0,%mm1 | fisttpl (%eax) | sfence | fcmovbe %st(1),%st | prefetchnta (%eax) | stmxcsr (%eax)",
    "sse": "addpd %xmm0,%xmm1 | movsd %xmm0,%xmm1 | movdqa %xmm0,%xmm1 | pshufd $1,%xmm0,%xmm1 | movd %eax,%xmm0 |"
           "cvtsi2sd %eax,%xmm0 | paddw %mm0,%mm1 | cvtpi2ps %mm0,%xmm0 | pshufw $1,%mm0,%mm1 | fisttpl (%eax) |"
           "ucomisd %xmm0,%xmm1 | pextrw $1,%mm0,%eax | lfence | movnti %eax,(%ecx) | cvtss2sd %xmm0,%xmm1",
    "sse2": "haddpd %xmm0,%xmm1 | movddup %xmm0,%xmm1 | pshufb %xmm0,%xmm1 | pmovsxbw %xmm0,%xmm1 | lddqu (%eax),%xmm0 |"
            "roundpd $1,%xmm0,%xmm1 | ptest %xmm0,%xmm1 | pminsd %xmm0,%xmm1 | blendvpd %xmm0,%xmm1 | pmuldq %xmm0,%xmm1 |"
            "pextrw $1,%xmm0,(%eax) | vaddpd %xmm0,%xmm1,%xmm1 | popcnt %eax,%ecx | lzcnt %eax,%ecx | crc32l %eax,%ecx |"
            "movbe (%eax),%ecx | paddq %mm0,%mm1 | fisttpl (%eax) | shlx %eax,%ecx,%edx | xgetbv",
    "avx2": "vaddpd %zmm0,%zmm1,%zmm1 | vmovdqa32 %xmm0,%xmm1 | {evex} vaddpd %xmm0,%xmm1,%xmm1 | kmovw %k1,%eax |"
            "andn %eax,%ecx,%edx | vaesenc %xmm0,%xmm1,%xmm1 | {vex} vpdpbusd %xmm0,%xmm1,%xmm1 | addpd %xmm0,%xmm1 |"
            "vfmaddpd %xmm0,%xmm1,%xmm2,%xmm3 | lzcnt %eax,%ecx | adcx %eax,%ecx | vpclmulqdq $1,%xmm0,%xmm1,%xmm1 |"
            "movaps %xmm0,%xmm1 | paddw %mm0,%mm1",
    "avx512": "vplzcntd %zmm0,%zmm1 | vpermb %zmm0,%zmm1,%zmm1 | vpdpbusd %zmm0,%zmm1,%zmm1 | vpopcntd %zmm0,%zmm1 |"
              "vpmadd52luq %zmm0,%zmm1,%zmm1 | vpcompressb %zmm0,%zmm1 | vpshldd $1,%zmm0,%zmm1,%zmm1 | blsr %eax,%ecx |"
              "vpconflictd %zmm0,%zmm1 | vexp2pd %zmm0,%zmm1 | vcvtne2ps2bf16 %zmm0,%zmm1,%zmm1 | paddw %mm0,%mm1 |"
              "addpd %xmm0,%xmm1 | vgf2p8mulb %zmm0,%zmm1,%zmm1 | vpmultishiftqb %zmm0,%zmm1,%zmm1",
    "frame-i386": "movaps %xmm0,%xmm1 | cmove %ecx,%eax | xgetbv | fxsave (%eax) | stmxcsr (%eax) | nopl 0(%eax)",
    "frame-x86_64": "haddpd %xmm0,%xmm1 | xgetbv | fxsave (%eax) | vzeroupper | popcnt %eax,%ecx",
}
NAMED = [("readExtendedControl", "xgetbv"), ("readMxcsrMask", "fxsave (%eax)"), ("updateMxcsr", "ldmxcsr (%eax)")]

TEMPLATE = "template <class T> T twice(T x) { return x + x; }\n"
SYMBOLS = [  # C++ source, the complaint or nothing
    (TEMPLATE + "namespace zpp::sse2 { int f(int x) { return twice(x); } }", "visible outside.* [WT] .*twice"),
    ("namespace zpp::sse2 {" + TEMPLATE + "int f(int x) { return twice(x); } }", None),
    ("int helper() { return 1; } namespace zpp::sse2 { int f() { return helper(); } }", "visible outside.* T .*helper"),
    ("namespace zpp { inline int shared; namespace sse2 { int* f() { return &shared; } } }", "visible outside.*shared"),
    ("namespace zpp::avx2 { int f() { return 1; } }", "visible outside.*avx2"),
    ("namespace zpp::sse { int f() { return 1; } }", "visible outside.*sse"),
    ("namespace zpp::avx2 { int g(); } namespace zpp::sse2 { int f() { return avx2::g(); } }", "calls out of.*avx2"),
    ('extern "C" int zppsOne(); namespace zpp::sse2 { int f() { return zppsOne(); } }', "calls out of.*zppsOne"),
    ("namespace zpp { int* allocate(); namespace sse2 { int f() { static int* p = allocate(); return *p; } } }", None),
]

USE = "vaddpd %ymm0,%ymm1,%ymm1\n"
UPPERS = [  # body of a function, whether it is refused
    (USE + "ret", True),
    (USE + "vzeroupper\nret", False),
    (USE + "jmp elsewhere", True),
    (USE + "vzeroupper\njmp elsewhere", False),
    ("test %eax,%eax\nje 1f\n" + USE + "vzeroupper\n1: ret", False),
    ("test %eax,%eax\nje 1f\n" + USE + "jmp 2f\n1: vzeroupper\n2: ret", True),
    ("1: " + USE + "vzeroupper\n" + USE + "dec %eax\njne 1b\nret", True),
    (USE + "jne elsewhere\nvzeroupper\nret", True),
]
STACK = [
    ("movaps %xmm0,(%esp)\nret", True),
    ("vmovapd 16(%esp),%ymm0\nret", True),
    ("addpd 16(%esp),%xmm0\nret", True),
    ("fxsave (%esp)\nret", True),
    ("and $-16,%esp\nmovaps %xmm0,(%esp)\nret", False),
    ("and $-64,%esp\nvmovapd %zmm0,(%esp)\nret", False),
    ("movups %xmm0,(%esp)\naddsd 8(%esp),%xmm0\nmovsd %xmm0,(%esp)\nvaddpd (%esp),%xmm0,%xmm0\nret", False),
]
MOVES = [
    ("vmovapd %ymm0,32(%rsp)\nret", True),
    ("vmovdqa64 (%rsp),%zmm0\nret", True),
    ("vmovupd %ymm0,32(%rsp)\nvmovdqu (%rsp),%ymm1\nvmovaps %xmm6,(%rsp)\nret", False),
]

MARK = "" if ARCH == "i386" or object_code.WINDOWS else "endbr64"
STUBS = f""".text
.macro stub name, size, mark={MARK}
.globl \\name\n.type \\name, @function\n\\name: \\mark\n.zero \\size - (. - \\name)\n.size \\name, \\size
.endm
.p2align 4
"""
EXPORTS = [  # source, the declared functions, the complaints
    (STUBS + "stub a 16\nstub b 16", "a b", []),
    (STUBS + "stub a 16\nstub b 16", "a", ["exported, but not declared: b"]),
    (STUBS + "stub a 16", "a b", ["declared, but not exported: b"]),
    (STUBS + "stub a 16\nstub b 16", "b a", ["not in the order.*"]),
    (STUBS + "stub a 20\nstub b 16", "a b", ["20 bytes: stub of a", "not 16 bytes behind.*: b"]),
    (STUBS + "stub a 16\n.data\n.globl d\n.type d, @object\nd: .long 1\n.size d, 4", "a", ["exported, but no function.* d@.*", ".*not declared: d"]),
]
EXPORT_FLAGS = ["-shared", "-nostdlib"]
MORE_EXPORTS = []  # the same, and the flags that they are linked with
if not object_code.WINDOWS:
    SCRIPT = os.path.join(FOLDER.name, "versions")
    with open(SCRIPT, "w", encoding="ascii") as file:
        file.write("ZPP_4 { global: *; };")
    MORE_EXPORTS += [(STUBS + "stub a 16", "a", ["of version '': a"], EXPORT_FLAGS)]
    EXPORT_FLAGS = [*EXPORT_FLAGS, f"-Wl,--version-script={SCRIPT}"]
if MARK:
    MORE_EXPORTS += [(STUBS + "stub a 16", "a", ["not marked for IBT and SHSTK"], EXPORT_FLAGS)]
    EXPORT_FLAGS = [*EXPORT_FLAGS, "-Wl,-z,ibt,-z,shstk"]
    EXPORTS += [(STUBS + "stub a 16\nstub b 16 nop", "a b", ["begins without endbr64: b"])]
SLOTS = [  # source, their number, whether that is refused
    (".p2align 12\n{0}zpp_slots: .zero 4096\n{0}zpp_slots_end:", 512, False),
    (".p2align 12\n{0}zpp_slots: .zero 4096\n{0}zpp_slots_end:", 1025, True),
    (".p2align 12\n.zero 8\n{0}zpp_slots: .zero 4088\n{0}zpp_slots_end:", 100, True),
    (".p2align 12\n{0}zpp_slots: .zero 4088\n{0}zpp_slots_end:", 100, True),
]
if object_code.WINDOWS:
    SYMBOL = object_code.C_PREFIX + "\\name"
    STUBS = f""".macro stub name, size
.text\n.globl {SYMBOL}\n{SYMBOL}: .zero \\size
.section .drectve, "yn"\n.ascii " -export:\\name"
.endm
.text\n.p2align 4
"""
    EXPORTS = [(STUBS + source.partition(".p2align 4\n")[2], *rest) for source, *rest in EXPORTS[:4]]
LINKAGE = "#include <new>\nint* p; extern int other; __attribute__((constructor)) void early() { p = new int[9]; }\n" \
          'asm(".pushsection .text\\n.long 0, 0\\n.%s other\\n.popsection");' % ("long" if ARCH == "i386" else "quad")
LINKAGE_FLAGS = ["-shared", "-fPIC", "-fvisibility=hidden", "-Wl,-z,execstack,-z,notext,-z,norelro,-z,lazy,-rpath,/lib,-soname,libbad.so", "-w"]
LINKAGE_FAULTS = ["needs libstdc.*", "soname.*libbad.*", "has TEXTREL", "has R(UN)?PATH", "GNU_STACK segment is RWE",
                  "leaves its table.*", "not the load routine alone.*early.*", "runs at load or unload: INIT",
                  "runs at load or unload: FINI_ARRAY", "takes from elsewhere: _Zna[jm].*", "takes from elsewhere: other"]
if object_code.WINDOWS:
    LINKAGE = '#include <winsock2.h>\nextern "C" __declspec(dllexport) int bad() { return closesocket(1); }'
    LINKAGE_FLAGS = ["-shared", "-lws2_32", "-Wl,--disable-dynamicbase,--disable-nxcompat"]
    LINKAGE_FAULTS = ["needs WS2_32.dll", "cannot be loaded at another address", "wants to run data", "is named .*",
                      "FileVersion is not 9.9.9", "has a date: .*"]
    if ARCH == "x86_64":
        LINKAGE_FLAGS += ["-Wl,--disable-high-entropy-va"]
        LINKAGE_FAULTS += ["cannot be loaded beyond 4 GB"]


def make(language, source, *flags, suffix="o"):
    path = os.path.join(FOLDER.name, f"{next(NUMBERS)}.{suffix}")
    subprocess.run([*COMPILER, "-x", language, "-", *(flags or ["-c"]), "-O0", "-o", path],
                   input=source + "\n", text=True, check=True)
    return path


def main():
    wrong, count = [], 0

    def expect(what, right, found):
        nonlocal count
        count += 1
        if not right:
            wrong.append(f"{what}: {found}")

    def refusals(check, subject, bodies):
        """For each function body the complaints of the check, all in one object."""
        source = "".join(f".globl {name}\n{name}:\n{body}\n" for name, body in bodies)
        path = make("assembler", source)
        faults, _ = check(subject, (path,))
        return [[fault for fault in faults if fault.startswith(f"{path}: {name}: ")] for name, _ in bodies]

    def expect_refusals(check, subject, rows):
        bodies = [(f"f{i}", body) for i, (body, _) in enumerate(rows)]
        for (body, refused), found in zip(rows, refusals(check, subject, bodies)):
            expect(f"{subject} {'refuses' if refused else 'allows'} {body!r}", bool(found) == refused, found)

    mine = set(object_code.instruction_sets.TABLES) - (
        {"frame-x86_64"} if ARCH == "i386" else {"x87", "sse", "frame-i386"})
    for isa in sorted(mine):
        expect_refusals(object_code.check_instructions, isa, [(text, True) for text in REFUSED[isa].split("|")])
        faults, _ = object_code.check_instructions(isa, (make("assembler", "f: ret"),))
        expect(f"{isa} misses its own instructions", len(faults) == 1 and "peculiar" in faults[0], faults)
    found = refusals(object_code.check_instructions, f"frame-{ARCH}", NAMED)
    expect("the frame's own functions", not any(found), found)
    expect_refusals(object_code.check_uppers, "avx2", UPPERS)
    if ARCH == "i386":
        expect_refusals(object_code.check_stack, "sse2", STACK)
    elif object_code.WINDOWS:
        expect_refusals(object_code.check_moves, "avx2", MOVES)
    faults, _ = object_code.check_constructors("sse2", [make("c++", "int f(); int x = f();")])
    expect("constructors", faults and all("runs at load" in fault for fault in faults), faults)
    for source, complaint in SYMBOLS:
        faults, _ = object_code.check_symbols("sse2", [make("c++", source, "-c", "-std=c++20", "-fno-threadsafe-statics")])
        right = not faults if complaint is None else faults and all(re.search(complaint, fault) for fault in faults)
        expect(f"symbols: {source!r}", right, faults)
    for source, names, complaints, flags in [(*row, EXPORT_FLAGS) for row in EXPORTS] + MORE_EXPORTS:
        library = make("assembler", source, *flags, suffix="so")
        faults, _ = object_code.check_exports(library, names.split())
        right = len(faults) == len(complaints) and all(map(re.fullmatch, complaints, faults))
        expect(f"exports: {names}", right, faults)
    for source, number, refused in SLOTS:
        faults = object_code.check_slots(make("assembler", source.format(object_code.C_PREFIX)), number)
        expect(f"slots: {source!r}", bool(faults) == refused, faults)
    faults, _ = object_code.check_linkage(make("c++", LINKAGE, *LINKAGE_FLAGS, suffix="so"), "9.9.9")
    for complaint in LINKAGE_FAULTS:
        expect(f"linkage: {complaint}", any(re.fullmatch(complaint, fault) for fault in faults), faults)
    print(f"{count} expectations of the checks, {len(wrong)} failed")
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
