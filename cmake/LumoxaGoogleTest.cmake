# SPDX-License-Identifier: Apache-2.0
#
# GTest::gtest_main: the installed one, else, as for a cross-built test, made of Debian's sources.
set(LUMOXA_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's sources")
find_package(GTest QUIET)
if(NOT GTest_FOUND)
  if(NOT EXISTS ${LUMOXA_GOOGLETEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "No GoogleTest is installed, nor its sources in ${LUMOXA_GOOGLETEST_SOURCE}")
  endif()
  set(BUILD_GMOCK OFF)
  set(INSTALL_GTEST OFF)
  add_subdirectory(${LUMOXA_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endif()
