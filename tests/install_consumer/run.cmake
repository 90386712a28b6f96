# SPDX-License-Identifier: Apache-2.0
#
# Installs the built library below its own build tree, then builds the consumer project against the
# installation and runs it, linked in each of the three ways a user has.
set(prefix ${BUILD_DIR}/install_consumer/prefix)
set(consumer ${BUILD_DIR}/install_consumer/build)
file(REMOVE_RECURSE ${BUILD_DIR}/install_consumer)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${result}:\n${output}")
  endif()
  set(run_output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix} --config ${CONFIG})
file(GLOB_RECURSE pc_file ${prefix}/lumoxa.pc)
cmake_path(GET pc_file PARENT_PATH pc_dir)
set(ENV{PKG_CONFIG_PATH} ${pc_dir})
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${consumer} -G ${GENERATOR}
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
  -DCMAKE_CXX_FLAGS=-Wall\ -Wextra\ -pedantic\ -Werror
  -DWANTED_VERSION=${VERSION} -DEXAMPLE=${SOURCE_DIR}/docs/example.cpp)
run(${CMAKE_COMMAND} --build ${consumer})

set(profiles /usr/share/color/icc/colord/sRGB.icc /usr/share/color/icc/ghostscript/default_cmyk.icc)
foreach(profile IN LISTS profiles)
  if(NOT EXISTS ${profile})
    message(STATUS "${profile} is not installed: the example is built, but not run")
    return()
  endif()
endforeach()
foreach(program IN ITEMS lumoxa__lumoxa lumoxa__static PkgConfig__PC)
  run(${consumer}/${program} ${profiles})
  message(STATUS "${program}: ${run_output}")
  # Full red on press: no cyan to speak of, magenta and yellow well inked, hardly any black.
  if(NOT run_output MATCHES "^([0-9]+) ([0-9]+) ([0-9]+) ([0-9]+)\n$"
      OR CMAKE_MATCH_1 GREATER 60 OR CMAKE_MATCH_2 LESS 180
      OR CMAKE_MATCH_3 LESS 180 OR CMAKE_MATCH_4 GREATER 60)
    message(FATAL_ERROR "${program} printed: ${run_output}")
  endif()
endforeach()
