# The library: the frame, compiled once, and the family files, compiled for each ISA build. The objects are also what
# the unit tests link, so that they reach the internal seams.
file(GLOB ZPP_FRAME_SOURCES CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} frame/*.cpp frame/*.S)
if(WIN32)
    list(REMOVE_ITEM ZPP_FRAME_SOURCES frame/attach_elf.cpp)
else()
    list(REMOVE_ITEM ZPP_FRAME_SOURCES frame/attach_windows.cpp)
endif()
file(GLOB ZPP_FAMILY_SOURCES CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    arith/*.cpp data/*.cpp stats/*.cpp gen/*.cpp filter/*.cpp transform/*.cpp vm/*.cpp)

add_library(zpp_frame OBJECT ${ZPP_FRAME_SOURCES})
target_compile_options(zpp_frame PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${ZPP_FLAGS_frame}>)
set_source_files_properties(frame/stubs.S PROPERTIES
    INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/include)
set(ZPP_OBJECT_LIBRARIES zpp_frame)

foreach(isa IN LISTS ZPP_ISAS)
    add_library(zpp_${isa} OBJECT ${ZPP_FAMILY_SOURCES})
    target_compile_definitions(zpp_${isa} PRIVATE ZPP_ISA=${isa})
    target_compile_options(zpp_${isa} PRIVATE ${ZPP_FLAGS_${isa}})
    list(APPEND ZPP_OBJECT_LIBRARIES zpp_${isa})
endforeach()

add_library(zpp_objects INTERFACE)
foreach(objects IN LISTS ZPP_OBJECT_LIBRARIES)
    target_link_libraries(${objects} PRIVATE zpp_options zpp_warnings)
    target_sources(zpp_objects INTERFACE $<TARGET_OBJECTS:${objects}>)
endforeach()
target_include_directories(zpp_objects INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)

add_library(zpp SHARED)
add_library(zpp::zpp ALIAS zpp)
target_link_libraries(zpp PRIVATE $<BUILD_INTERFACE:zpp_objects> m)
target_include_directories(zpp INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
# Linked as C, and CMake adds no libraries for the C++ objects: the C++ runtime is not there to be found.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES)
set_target_properties(zpp PROPERTIES
    LINKER_LANGUAGE C VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
target_link_options(zpp PRIVATE -static-libgcc)
if(WIN32)
    set_target_properties(zpp PROPERTIES PREFIX "")  # zpp.dll
else()
    target_link_options(zpp PRIVATE -Wl,-z,defs -Wl,-z,now -Wl,-z,text -Wl,--as-needed)
endif()
