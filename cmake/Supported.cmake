# What the library can be built by and for, said once where it cannot: GCC or clang, an x86 processor, and the object
# formats that frame/stubs.S writes. The compiler's own macros are asked, for they know what the flags have made of it.

# Sets `refusal` to what is the matter with a compiler, given as CMake identifies it; empty if nothing is.
function(zpp_refuse_compiler refusal id simulated)
    set(found "")
    if(simulated STREQUAL "MSVC")
        set(found "${id} in the manner of MSVC")
    elseif(NOT id MATCHES "^(GNU|Clang|AppleClang)$")
        set(found "${id}")
    endif()
    set(${refusal} "${found}" PARENT_SCOPE)
endfunction()

# The same of the processor and the system that the compiler makes code for.
function(zpp_refuse_target refusal)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/zpp_target.cpp)
    file(WRITE ${source} "\
#if !defined __x86_64__ && !defined __i386__
#error zpp: a processor that is not x86
#elif defined __x86_64__ && defined __ILP32__
#error zpp: the x32 ABI
#elif !defined __ELF__ && !defined __MINGW32__
#error zpp: a system without ELF that is not MinGW
#endif
")
    set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
    try_compile(supported ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/zpp_target ${source} OUTPUT_VARIABLE output)
    set(found "")
    if(NOT supported)
        string(REGEX MATCH "#error zpp: [^\r\n]*" found "${output}")
        string(REPLACE "#error zpp: " "" found "${found}")
        if(NOT found)
            set(found "a compiler that does not work:\n${output}")
        endif()
    endif()
    set(${refusal} "${found}" PARENT_SCOPE)
endfunction()

function(zpp_require_supported)
    zpp_refuse_compiler(refusal "${CMAKE_CXX_COMPILER_ID}" "${CMAKE_CXX_SIMULATE_ID}")
    if(NOT refusal)
        zpp_refuse_target(refusal)
    endif()
    if(refusal)
        message(FATAL_ERROR "libzpp is built by GCC or clang for x86 processors (i586 and newer, x86-64), on systems "
            "with ELF or by MinGW-w64; this is ${refusal}.")
    endif()
endfunction()
