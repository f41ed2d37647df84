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

# Instructions that a build refuses, separated by bars: one or two for each thing that its processor lacks. Those that
# are refused by mistake show in the objects of the library.
REFUSED = {
    "x87": "cmove %ecx,%eax | fucomi %st(1),%st | nopl 0(%eax) | endbr32 | movaps %xmm0,%xmm1 | paddw %mm0,%mm1 |"
           "fisttpl (%eax) | sfence | fcmovbe %st(1),%st | prefetchnta (%eax) | stmxcsr (%eax)",
    "sse": "addpd %xmm0,%xmm1 | movd %eax,%xmm0 | cvtpi2ps %mm0,%xmm0 | pshufw $1,%mm0,%mm1 | fisttpl (%eax) | lfence |"
           "movnti %eax,(%ecx) | cvtss2sd %xmm0,%xmm1",
    "sse2": "haddpd %xmm0,%xmm1 | lddqu (%eax),%xmm0 | pshufb %xmm0,%xmm1 | roundpd $1,%xmm0,%xmm1 | xgetbv |"
            "pcmpgtq %xmm0,%xmm1 | pextrw $1,%xmm0,(%eax) | vaddpd %xmm0,%xmm1,%xmm1 | popcnt %eax,%ecx |"
            "lzcnt %eax,%ecx | crc32l %eax,%ecx | movbe (%eax),%ecx | paddq %mm0,%mm1 | fisttpl (%eax) | shlx %eax,%ecx,%edx",
    "avx2": "vaddpd %zmm0,%zmm1,%zmm1 | vmovdqa32 %xmm0,%xmm1 | {evex} vaddpd %xmm0,%xmm1,%xmm1 | kmovw %k1,%eax |"
            "andn %eax,%ecx,%edx | vaesenc %xmm0,%xmm1,%xmm1 | {vex} vpdpbusd %xmm0,%xmm1,%xmm1 | addpd %xmm0,%xmm1 |"
            "vfmaddpd %xmm0,%xmm1,%xmm2,%xmm3 | lzcnt %eax,%ecx | adcx %eax,%ecx | vpclmulqdq $1,%xmm0,%xmm1,%xmm1 |"
            "movaps %xmm0,%xmm1 | paddw %mm0,%mm1",
    "avx512": "vplzcntd %zmm0,%zmm1 | vpermb %zmm0,%zmm1,%zmm1 | vpdpbusd %zmm0,%zmm1,%zmm1 | vpopcntd %zmm0,%zmm1 |"
              "vpmadd52luq %zmm0,%zmm1,%zmm1 | vpcompressb %zmm0,%zmm1 | blsr %eax,%ecx | vexp2pd %zmm0,%zmm1 |"
              "vcvtne2ps2bf16 %zmm0,%zmm1,%zmm1 | paddw %mm0,%mm1 | addpd %xmm0,%xmm1 | vgf2p8mulb %zmm0,%zmm1,%zmm1",
    "frame": "haddpd %xmm0,%xmm1 | xgetbv | vzeroupper | popcnt %eax,%ecx",
}
if ARCH == "i386":
    REFUSED["frame"] += "| movaps %xmm0,%xmm1 | cmove %ecx,%eax | fxsave (%eax) | stmxcsr (%eax) | nopl 0(%eax)"
ASKED = [("readExtendedControl", "xgetbv"), ("readMxcsrMask", "fxsave (%eax)"), ("updateMxcsr", "ldmxcsr (%eax)")]

TEMPLATE = "template <class T> T twice(T x) { return x + x; }\n"
SYMBOLS = [  # C++ source, the complaint if there is one
    (TEMPLATE + "namespace zpp::sse2 { int f(int x) { return twice(x); } }", "visible outside.* [WT] .*twice"),
    ("namespace zpp::sse2 {" + TEMPLATE + "int f(int x) { return twice(x); } }",),
    ("int helper() { return 1; } namespace zpp::sse2 { int f() { return helper(); } }", "visible outside.* T .*helper"),
    ("namespace zpp { inline int shared; namespace sse2 { int* f() { return &shared; } } }", "visible outside.*shared"),
    ("namespace zpp::avx2 { int f() { return 1; } }", "visible outside.*avx2"),
    ("namespace zpp::sse { int f() { return 1; } }", "visible outside.*sse"),
    ("namespace zpp::avx2 { int g(); } namespace zpp::sse2 { int f() { return avx2::g(); } }", "calls out of.*avx2"),
    ('extern "C" int zppsOne(); namespace zpp::sse2 { int f() { return zppsOne(); } }', "calls out of.*zppsOne"),
    ("namespace zpp { int* allocate(); namespace sse2 { int f() { static int* p = allocate(); return *p; } } }",),
]

USE = "vaddpd %ymm0,%ymm1,%ymm1\n"
BRANCH = "test %eax,%eax\nje 1f\n" + USE
BODIES = {  # by check: bodies of functions that it refuses, and such that it allows
    "check_uppers": (
        [USE + "ret", USE + "jmp elsewhere", USE + "jne elsewhere\nvzeroupper\nret",
         BRANCH + "jmp 2f\n1: vzeroupper\n2: ret", "1: " + USE + "vzeroupper\n" + USE + "dec %eax\njne 1b\nret"],
        [USE + "vzeroupper\nret", USE + "vzeroupper\njmp elsewhere", BRANCH + "vzeroupper\n1: ret"]),
    "check_stack": (
        ["movaps %xmm0,(%esp)", "vmovapd 16(%esp),%ymm0", "addpd 16(%esp),%xmm0", "fxsave (%esp)"],
        ["and $-16,%esp\nmovaps %xmm0,(%esp)", "and $-64,%esp\nvmovapd %zmm0,(%esp)", "movups %xmm0,(%esp)",
         "addsd 8(%esp),%xmm0", "movsd %xmm0,(%esp)", "vaddpd (%esp),%xmm0,%xmm0"]),
    "check_moves": (
        ["vmovapd %ymm0,32(%rsp)", "vmovdqa64 (%rsp),%zmm0", "vmovntdq %ymm0,32(%rsp)"],
        ["vmovupd %ymm0,32(%rsp)", "vmovdqu (%rsp),%ymm1", "vmovaps %xmm6,(%rsp)", "vmovntdq %ymm0,(%rcx)"]),
}

MARK = "" if ARCH == "i386" or object_code.WINDOWS else "endbr64"
STUBS = f""".text
.macro stub name, size, mark={MARK}
.globl \\name\n.type \\name, @function\n\\name: \\mark\n.zero \\size - (. - \\name)\n.size \\name, \\size
.endm
.p2align 4
"""
EXPORTS = [  # source behind STUBS, the declared functions, the complaints
    ("stub a 16\nstub b 16", "a b", []),
    ("stub a 16\nstub b 16", "a", ["exported, but not declared: b"]),
    ("stub a 16", "a b", ["declared, but not exported: b"]),
    ("stub a 16\nstub b 16", "b a", ["not in the order.*"]),
    ("stub a 20\nstub b 16", "a b", ["20 bytes: stub of a", "not 16 bytes behind.*: b"]),
    ("stub a 16\n.data\n.globl d\n.type d, @object\nd: .long 1\n.size d, 4", "a",
     ["exported, but no function.* d@.*", ".*not declared: d"]),
]
EXPORT_FLAGS = ["-shared", "-nostdlib"]
MORE_EXPORTS = []  # the same, and the flags that they are linked with
if not object_code.WINDOWS:
    SCRIPT = os.path.join(FOLDER.name, "versions")
    with open(SCRIPT, "w", encoding="ascii") as file:
        file.write("ZPP_4 { global: *; };")
    MORE_EXPORTS += [("stub a 16", "a", ["of version '': a"], EXPORT_FLAGS)]
    EXPORT_FLAGS = [*EXPORT_FLAGS, f"-Wl,--version-script={SCRIPT}"]
if MARK:
    MORE_EXPORTS += [("stub a 16", "a", ["not marked for IBT and SHSTK"], EXPORT_FLAGS)]
    EXPORT_FLAGS = [*EXPORT_FLAGS, "-Wl,-z,ibt,-z,shstk"]
    EXPORTS += [("stub a 16\nstub b 16 nop", "a b", ["begins without endbr64: b"])]
SLOTS = [  # what stands before and in the slots, their number, whether that is refused
    ("", 4096, 512, False), ("", 4096, 1025, True), (".zero 8", 4088, 100, True), ("", 4088, 100, True)]
if object_code.WINDOWS:
    SYMBOL = object_code.C_PREFIX + "\\name"
    STUBS = f""".macro stub name, size
.text\n.globl {SYMBOL}\n{SYMBOL}: .zero \\size
.section .drectve, "yn"\n.ascii " -export:\\name"
.endm
.text\n.p2align 4
"""
    EXPORTS = EXPORTS[:4]
LINKAGE = "#include <new>\nint* p; extern int other; __attribute__((constructor)) void early() { p = new int[9]; }\n" \
          'asm(".pushsection .text\\n.long 0, 0\\n.%s other\\n.popsection");' % ("long" if ARCH == "i386" else "quad")
LINKAGE_FLAGS = ["-shared", "-fPIC", "-fvisibility=hidden", "-w",
                 "-Wl,-z,execstack,-z,notext,-z,norelro,-z,lazy,-rpath,/lib,-soname,libbad.so"]
LINKAGE_FAULTS = ["needs libstdc.*", "soname.*libbad.*", "has TEXTREL", "has R(UN)?PATH", "has INIT", "has FINI_ARRAY",
                  "leaves its table.*", "not the load routine alone.*early.*", "GNU_STACK segment is RWE",
                  "takes from elsewhere: _Zna[jm].*", "takes from elsewhere: other"]
if object_code.WINDOWS:
    LINKAGE = '#include <winsock2.h>\nextern "C" __declspec(dllexport) int bad() { return closesocket(1); }'
    LINKAGE_FLAGS = ["-shared", "-lws2_32", "-Wl,--disable-dynamicbase,--disable-nxcompat"]
    LINKAGE_FAULTS = ["needs WS2_32.dll", "lacks DYNAMIC_BASE", "lacks NX_COMPAT", "is named .*",
                      "FileVersion is not 9.9.9", "has a date: .*"]
    if ARCH == "x86_64":
        LINKAGE_FLAGS += ["-Wl,--disable-high-entropy-va"]
        LINKAGE_FAULTS += ["lacks HIGH_ENTROPY_VA"]


def make(language, source, *flags, suffix="o"):
    path = os.path.join(FOLDER.name, f"{next(NUMBERS)}.{suffix}")
    subprocess.run([*COMPILER, "-x", language, "-", *(flags or ["-c"]), "-O0", "-o", path],
                   input=source + "\n", text=True, check=True)
    return path


def main():
    wrong, count = [], 0

    def expect(what, complaints, found):
        """The complaints that must be found, as patterns; True if there must be one whatever."""
        nonlocal count
        count += 1
        same = complaints is not True and len(found) == len(complaints) and all(map(re.search, complaints, found))
        right = same or (complaints is True and found)
        wrong.extend([] if right else [f"{what}: {found}"])

    def expect_bodies(check, isa, refused, allowed):
        """For each function body whether the check refuses it; all are in one object."""
        named = [body if isinstance(body, tuple) else (f"f{i}", body) for i, body in enumerate(refused + allowed)]
        path = make("assembler", "".join(f".globl {name}\n{name}:\n{body}\n" for name, body in named))
        faults = check(isa, (path,))[0]
        for i, (name, body) in enumerate(named):
            found = [fault for fault in faults if fault.startswith(f"{path}: {name}: ")]
            expect(f"{check.__name__} of {isa}: {body!r}", True if i < len(refused) else [], found)

    for isa in ["frame", "sse2", "avx2", "avx512"] + (["x87", "sse"] if ARCH == "i386" else []):
        allowed = ASKED if isa == "frame" else []
        expect_bodies(object_code.check_instructions, isa, REFUSED[isa].split("|"), allowed)
        faults, evidence, _ = object_code.check_instructions(isa, (make("assembler", "f: ret"),))
        expect(f"{isa} misses its own instructions", [], [*faults, *["evidence"] * evidence])
    checks = ["check_uppers"] + (["check_stack"] if ARCH == "i386" else ["check_moves"] if object_code.WINDOWS else [])
    for check in checks:
        expect_bodies(getattr(object_code, check), "avx2", *BODIES[check])
    faults = object_code.check_constructors("sse2", [make("c++", "int f(); int x = f();")])[0]
    expect("constructors", True, faults)
    for source, *complaints in SYMBOLS:
        path = make("c++", source, "-c", "-std=c++20", "-fno-threadsafe-statics")
        expect(f"symbols: {source!r}", complaints, object_code.check_symbols("sse2", [path])[0])
    for source, names, complaints, flags in [(*row, EXPORT_FLAGS) for row in EXPORTS] + MORE_EXPORTS:
        library = make("assembler", STUBS + source, *flags, suffix="so")
        expect(f"exports: {names}", complaints, object_code.check_exports(library, names.split())[0])
    for before, size, number, refused in SLOTS:
        slots = f"{object_code.C_PREFIX}zpp_slots"
        path = make("assembler", f".p2align 12\n{before}\n{slots}: .zero {size}\n{slots}_end:")
        expect(f"slots: {before!r} {size}", True if refused else [], object_code.check_slots(path, number))
    found = object_code.check_linkage(make("c++", LINKAGE, *LINKAGE_FLAGS, suffix="so"), "9.9.9")[0]
    for complaint in LINKAGE_FAULTS:
        expect(f"linkage: {complaint}", True, [fault for fault in found if re.fullmatch(complaint, fault)])
    return object_code.report(wrong, f"{count} expectations of the checks, {len(wrong)} failed")


if __name__ == "__main__":
    sys.exit(main())
