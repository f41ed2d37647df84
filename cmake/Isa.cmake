# The ISA builds of the target: the family files are compiled once for each, into the namespace of its name.
# What frame/cpu.cpp asks the processor for must cover the flags that stand here. Each build names its -march, so that
# one in CMAKE_CXX_FLAGS is without effect.
set(ZPP_FLAGS_x87 -march=i586 -mfpmath=387)
set(ZPP_FLAGS_sse -march=pentium3)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND ZPP_FLAGS_sse -mfpmath=387)  # clang has no choice to make here, and refuses the flag
endif()
set(ZPP_FLAGS_avx2 -mavx2 -mfma -mf16c -mbmi2 -mfpmath=sse)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # With it GCC 12 leaves out vzeroupper around calls of functions that it knows.
    list(APPEND ZPP_FLAGS_avx2 -fno-ipa-ra)
endif()
if(WIN32 AND ZPP_ARCH STREQUAL "x86_64")
    # GCC takes the stack to be aligned for these registers there, which it is not.
    list(APPEND ZPP_FLAGS_avx2 -Wa,-muse-unaligned-vector-move)
endif()
set(ZPP_FLAGS_avx512 ${ZPP_FLAGS_avx2} -mavx512f -mavx512dq -mavx512bw -mavx512vl)
if(ZPP_ARCH STREQUAL "i386")
    set(ZPP_ISAS x87 sse sse2 avx2 avx512)
    # For a Pentium 4 itself GCC loads a vector that may be unaligned by halves.
    set(ZPP_FLAGS_sse2 -march=pentium4 -mtune=generic -mfpmath=sse)
    list(PREPEND ZPP_FLAGS_avx2 -march=pentium4 -mtune=generic)
    list(PREPEND ZPP_FLAGS_avx512 -march=pentium4 -mtune=generic)
    set(ZPP_FLAGS_frame -march=i586 -mfpmath=387)
else()
    set(ZPP_ISAS sse2 avx2 avx512)
    set(ZPP_FLAGS_sse2 -march=x86-64)
    list(PREPEND ZPP_FLAGS_avx2 -march=x86-64)
    list(PREPEND ZPP_FLAGS_avx512 -march=x86-64)
    set(ZPP_FLAGS_frame -march=x86-64)
endif()
