# Compiler options of everything in the tree, and of the library alone.

# -Wpsabi is off: it notes that vectors passed by value depend on the instruction set, and the library passes them
# only to functions that are inlined.
add_library(zpp_warnings INTERFACE)
target_compile_options(zpp_warnings INTERFACE
    $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wshadow -Wconversion -Wno-psabi>
    $<$<AND:$<COMPILE_LANGUAGE:C,CXX>,$<BOOL:${ZPP_WARNINGS_AS_ERRORS}>>:-Werror>)

# The target that the compiler makes code for: the -m flags of a preset decide.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(ZPP_ARCH x86_64)
else()
    set(ZPP_ARCH i386)
endif()

# No exceptions, no run-time type information and no guarded statics: nothing of the C++ runtime is needed.
# No contraction: a fused multiply-add stands only where a kernel names it, so that all builds agree.
# No automatic vectors: the kernels are written in vectors, and GCC 12 turns pairs of a product and a sum into fused
# vfmaddsub even without contraction.
# No trapping math: the library reads no exception flags, and comparisons may become masks.
#
# The project that the library is a part of may ask for other code. Here these options come after its own, and take back
# what would make the library another one: fast arithmetic; a build type without optimisation, with which kernels, made
# of small functions, take 10 to 25 times as long; -O3, which vectorises the tails of what is vectorised by hand; and
# optimisation at link time, where the code of the ISA builds, that must stay apart, becomes one program, the tests of
# the objects (tests/load/object_code.py) see none of it, and the assembler's option of 64-bit Windows is forgotten.
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION OFF)
add_library(zpp_options INTERFACE)
target_compile_options(zpp_options INTERFACE
    $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<BOOL:${ZPP_OPTIMIZE}>>:-O2>
    $<$<COMPILE_LANGUAGE:CXX>:-fno-fast-math -fno-lto>
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
    $<$<COMPILE_LANGUAGE:CXX>:-ffp-contract=off -fno-trapping-math -fno-math-errno>
    $<$<COMPILE_LANGUAGE:CXX>:-fno-tree-vectorize -fno-tree-slp-vectorize>
    $<$<COMPILE_LANGUAGE:CXX>:-fvisibility=hidden -fvisibility-inlines-hidden>)
if(ZPP_ARCH STREQUAL "i386")
    # A caller may enter with the stack aligned to 4 bytes. GCC's -mstackrealign misses functions that find out only
    # in register allocation that they need more. No MMX: its registers are those of the x87 unit.
    target_compile_options(zpp_options INTERFACE
        $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-mincoming-stack-boundary=2>
        $<$<NOT:$<COMPILE_LANG_AND_ID:CXX,GNU>>:$<$<COMPILE_LANGUAGE:CXX>:-mstackrealign>>
        $<$<COMPILE_LANGUAGE:CXX>:-mno-mmx>)
endif()
# Indirect jumps of x86-64 ELF land on marked places only: see also Library.cmake. An i586 knows no such mark.
if(NOT WIN32)
    target_compile_options(zpp_options INTERFACE -fcf-protection=$<IF:$<STREQUAL:${ZPP_ARCH},x86_64>,full,none>)
endif()
# Nothing in an object tells in which folder it was made.
target_compile_options(zpp_options INTERFACE
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
