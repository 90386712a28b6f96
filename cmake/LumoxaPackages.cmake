# SPDX-License-Identifier: Apache-2.0
#
# Packages by CPack: one archive for Windows; for Debian a package each for the library, for what
# compiling against it takes, and for the tool: its image formats bring in many other packages, which
# programs that use the library don't need.
set(CPACK_PACKAGE_VENDOR Lumoxa)
set(CPACK_PACKAGE_CONTACT "Lumoxa maintainers <maintainers@lumoxa.invalid>" CACHE STRING
  "Name and address that packages give for their maintainer")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  include(CPack)
  return()
endif()

find_program(GZIP gzip)
if(NOT GZIP)  # not a machine that packages for Debian are made on
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(LUMOXA_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(full_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# What the programs of a package need is read from them; the library tells the same about itself.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)

# A trigger has the loader's cache renewed. CPack would write scripts for it, unless their names are
# in the list; files that don't exist are left out of the package.
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${PROJECT_BINARY_DIR}/triggers ${PROJECT_BINARY_DIR}/no/postinst ${PROJECT_BINARY_DIR}/no/postrm)

# debian_package(<component> <package> <section> <summary and description>)
macro(debian_package component package section description)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${description}")
  # Only packages have these: an installation of everything leaves them out.
  set(doc_dir ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
  install(FILES cmake/debian-copyright DESTINATION ${doc_dir} RENAME copyright
    COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz ${PROJECT_BINARY_DIR}/changelog.Debian.gz
    DESTINATION ${doc_dir} COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(library_package liblumoxa${PROJECT_VERSION_MAJOR})
set(about_library "Lumoxa reads ICC profiles, builds and chains colour transforms from
them, and converts pixels of 8 or 16 bits a sample on all processor cores.")
debian_package(runtime ${library_package} libs "${PROJECT_DESCRIPTION}
${about_library}")
debian_package(development liblumoxa-dev libdevel "${PROJECT_DESCRIPTION}: development files
${about_library}

This package has the headers, the static library, the files for CMake and
pkg-config, and the documentation.")
debian_package(tools lumoxa-tools graphics "ICC colour management on the command line
The command lumoxa converts pictures and colour values, makes device links,
edits profiles, makes display and gray profiles, and tells what in a profile
breaks ICC.1.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${full_version})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${library_package} (>= ${PROJECT_VERSION})")

# Debian has change logs compressed, and one in its own format beside the project's.
string(TIMESTAMP change_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/debian-changelog.in changelog.Debian @ONLY)
function(compress file output)
  execute_process(COMMAND ${GZIP} -9nc ${file} OUTPUT_FILE ${PROJECT_BINARY_DIR}/${output}
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()
compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz)
compress(${PROJECT_BINARY_DIR}/changelog.Debian changelog.Debian.gz)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)

include(CPack)
