# The library: the frame, compiled once, and the family files, compiled for each ISA build. The objects are also what
# the unit tests link, so that they reach the internal seams.
function(zpp_add_objects name)
    add_library(${name} OBJECT ${ARGN})
    target_link_libraries(${name} PRIVATE zpp_options zpp_warnings)
    # Before the folders of a project around this one, which may have files of the same names.
    target_include_directories(${name} BEFORE PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
endfunction()

file(GLOB ZPP_FRAME_SOURCES CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} frame/*.cpp frame/*.S)
if(WIN32)
    list(REMOVE_ITEM ZPP_FRAME_SOURCES frame/attach_elf.cpp)
else()
    list(REMOVE_ITEM ZPP_FRAME_SOURCES frame/attach_windows.cpp)
endif()
file(GLOB ZPP_FAMILY_SOURCES CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    arith/*.cpp data/*.cpp stats/*.cpp gen/*.cpp filter/*.cpp transform/*.cpp vm/*.cpp)

zpp_add_objects(zpp_frame ${ZPP_FRAME_SOURCES})
target_compile_options(zpp_frame PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${ZPP_FLAGS_frame}>)
set_source_files_properties(frame/stubs.S PROPERTIES
    INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/include)
set(ZPP_OBJECT_LIBRARIES zpp_frame)

foreach(isa IN LISTS ZPP_ISAS)
    zpp_add_objects(zpp_${isa} ${ZPP_FAMILY_SOURCES})
    target_compile_definitions(zpp_${isa} PRIVATE ZPP_ISA=${isa})
    target_compile_options(zpp_${isa} PRIVATE ${ZPP_FLAGS_${isa}})
    if(NOT isa STREQUAL "x87")  # a third of the time that a family file takes to compile
        target_precompile_headers(zpp_${isa} PRIVATE <immintrin.h> <string.h> <type_traits> <utility>)
    endif()
    list(APPEND ZPP_OBJECT_LIBRARIES zpp_${isa})
endforeach()

add_library(zpp_objects INTERFACE)
foreach(objects IN LISTS ZPP_OBJECT_LIBRARIES)
    # CMake counts precompiled headers among the objects.
    target_sources(zpp_objects INTERFACE "$<FILTER:$<TARGET_OBJECTS:${objects}>,EXCLUDE,[.]gch$>")
endforeach()
target_include_directories(zpp_objects INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)

# The stubs and the attach routine of a static library are other ones.
set(ZPP_LOADER_SOURCES ${ZPP_FRAME_SOURCES})
list(FILTER ZPP_LOADER_SOURCES INCLUDE REGEX "/(stubs|attach_)")
zpp_add_objects(zpp_static_loader EXCLUDE_FROM_ALL ${ZPP_LOADER_SOURCES})
target_compile_definitions(zpp_static_loader PRIVATE ZPP_STATIC)
target_compile_options(zpp_static_loader PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${ZPP_FLAGS_frame}>)

# A static library of one object: whatever function a program uses, the routine that binds comes with it. CMake sees no
# C++ in it, and so links a program of C as one.
function(zpp_add_static_library name)
    set(object ${CMAKE_CURRENT_BINARY_DIR}/${name}${CMAKE_C_OUTPUT_EXTENSION})
    set(objects $<TARGET_OBJECTS:zpp_static_loader>
        "$<FILTER:$<TARGET_PROPERTY:zpp_objects,INTERFACE_SOURCES>,EXCLUDE,/(stubs|attach_)>")
    math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
    add_custom_command(OUTPUT ${object} DEPENDS ${objects} VERBATIM COMMAND_EXPAND_LISTS
        COMMAND ${CMAKE_C_COMPILER} -m${bits} -nostdlib -r -o ${object} ${objects})
    add_library(${name} STATIC ${object})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE C)
endfunction()

# A project that wants its libraries static gets this one static.
if(NOT DEFINED BUILD_SHARED_LIBS OR BUILD_SHARED_LIBS)
    add_library(zpp SHARED)
    target_link_libraries(zpp PRIVATE $<BUILD_INTERFACE:zpp_objects>)
else()
    zpp_add_static_library(zpp)
endif()
target_link_libraries(zpp PRIVATE m)
add_library(zpp::zpp ALIAS zpp)
target_include_directories(zpp INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
# Linked as C, and CMake adds no libraries for the C++ objects: the C++ runtime is not there to be found.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES)
set_target_properties(zpp PROPERTIES
    LINKER_LANGUAGE C VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
# What -ffast-math of a project around this one would link in makes the whole program flush subnormal numbers.
target_link_options(zpp PRIVATE -static-libgcc -O2 -fno-fast-math -fno-unsafe-math-optimizations)
if(WIN32)
    set_target_properties(zpp PROPERTIES PREFIX "")  # zpp.dll
endif()
get_target_property(ZPP_TYPE zpp TYPE)
if(ZPP_TYPE STREQUAL "SHARED_LIBRARY" AND WIN32)
    enable_language(RC)
    configure_file(cmake/version.rc.in ${PROJECT_BINARY_DIR}/version.rc @ONLY)
    target_sources(zpp PRIVATE ${PROJECT_BINARY_DIR}/version.rc)
    target_link_options(zpp PRIVATE -Wl,--dynamicbase,--nxcompat,--no-insert-timestamp)
    if(ZPP_ARCH STREQUAL "x86_64")
        target_link_options(zpp PRIVATE -Wl,--high-entropy-va)
    endif()
elseif(ZPP_TYPE STREQUAL "SHARED_LIBRARY")
    target_link_options(zpp PRIVATE -Wl,-z,defs,-z,text,-z,relro,-z,now,-z,noexecstack,--as-needed)
    # Without the files that GCC starts with: not all of them are marked for -fcf-protection, which would take the
    # mark from the whole, and the library has no use for them.
    target_link_options(zpp PRIVATE -nostartfiles)
    target_link_options(zpp PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
    set_target_properties(zpp PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
endif()
