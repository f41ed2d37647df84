# What a program outside the tree gets: the headers, the library, and two ways to find them, a CMake package
# (find_package(zpp), target zpp::zpp) and zpp.pc. Both find the prefix from their own place, so it can be moved.
include(CMakePackageConfigHelpers)
set(ZPP_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zpp)
set(ZPP_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
install(TARGETS zpp EXPORT zpp)

# The library needs no other package, so the list of its targets is the whole of it.
install(EXPORT zpp NAMESPACE zpp:: FILE zpp-config.cmake DESTINATION ${ZPP_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zpp-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zpp-config-version.cmake DESTINATION ${ZPP_PACKAGE_DIR})

file(RELATIVE_PATH ZPP_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH ZPP_INCLUDEDIR_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
get_target_property(type zpp TYPE)
if(type STREQUAL "STATIC_LIBRARY")
    set(ZPP_LIBRARIES_FROM_PC " -lm")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/zpp.pc.in ${PROJECT_BINARY_DIR}/zpp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zpp.pc DESTINATION ${ZPP_PKGCONFIG_DIR})
