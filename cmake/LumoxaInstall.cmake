# SPDX-License-Identifier: Apache-2.0
#
# Installation: headers, both libraries, and the files by which CMake and pkg-config find them.
include(CMakePackageConfigHelpers)

# Programs that run need the component runtime; what follows without a name is for building them.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/lumoxa)
install(TARGETS lumoxa lumoxa_static EXPORT lumoxa-targets
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE
  FILE_SET HEADERS)
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

install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR})
if(MINGW)
  # The DLL holds the compiler's runtime, whose licences ask for a notice.
  install(FILES cmake/THIRD-PARTY.txt DESTINATION ${CMAKE_INSTALL_DOCDIR})
  # Microsoft's librarian makes an import library of its own from the list of exports.
  set(linker_list ${PROJECT_BINARY_DIR}/linker.def)
  set(module_definition ${PROJECT_BINARY_DIR}/lumoxa.def)
  target_link_options(lumoxa PRIVATE LINKER:--output-def,${linker_list})
  add_custom_command(TARGET lumoxa POST_BUILD BYPRODUCTS ${module_definition}
    COMMAND ${CMAKE_COMMAND} -DEXPORTS=${linker_list} -DMODULE=$<TARGET_FILE_NAME:lumoxa>
      -DOUTPUT=${module_definition} -P ${PROJECT_SOURCE_DIR}/cmake/module-definition.cmake
    VERBATIM)
  install(FILES ${module_definition} DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
