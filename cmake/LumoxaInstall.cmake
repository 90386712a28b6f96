# SPDX-License-Identifier: Apache-2.0
#
# Installation: headers, both libraries, and the files by which CMake and pkg-config find them.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/lumoxa)
install(TARGETS lumoxa lumoxa_static EXPORT lumoxa-targets FILE_SET HEADERS)
install(EXPORT lumoxa-targets NAMESPACE lumoxa:: DESTINATION ${package_dir})

configure_package_config_file(cmake/lumoxa-config.cmake.in lumoxa-config.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(lumoxa-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/lumoxa-config.cmake
  ${PROJECT_BINARY_DIR}/lumoxa-config-version.cmake
  DESTINATION ${package_dir})

# Paths in the .pc file are relative to the file, so an installed tree can be moved.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(ABSOLUTE_PATH pkgconfig_dir BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}
  OUTPUT_VARIABLE pkgconfig_full_dir)
file(RELATIVE_PATH pkgconfig_to_prefix ${pkgconfig_full_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")
configure_file(cmake/lumoxa.pc.in lumoxa.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lumoxa.pc DESTINATION ${pkgconfig_dir})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
