# SPDX-License-Identifier: Apache-2.0
#
# For tests of installed trees: builds the consumer project against a tree, and runs its programs.

# run(<command> [<argument>...]): fails unless the command succeeds; its output is in run_output.
function(run)
  execute_process(COMMAND ${ARGN} TIMEOUT 300
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${result}:\n${output}")
  endif()
  set(run_output "${output}" PARENT_SCOPE)
endfunction()

# consume(<prefix> <version> <build folder> [<option of CMake>...])
function(consume prefix version folder)
  cmake_path(SET source NORMALIZE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../..)
  set(press_profile /usr/share/color/icc/ghostscript/default_cmyk.icc)
  file(GLOB_RECURSE pc_file ${prefix}/lumoxa.pc)
  cmake_path(GET pc_file PARENT_PATH pc_dir)
  set(ENV{PKG_CONFIG_PATH} ${pc_dir})
  run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_FUNCTION_LIST_DIR} -B ${folder}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_FLAGS=-Wall\ -Wextra\ -pedantic\ -Werror
    -DWANTED_VERSION=${version} -DEXAMPLE=${source}/docs/example.cpp
    -DPRESS_PROFILE=${press_profile} ${ARGN})
  run(${CMAKE_COMMAND} --build ${folder})
  if(NOT EXISTS ${press_profile})
    message(STATUS "${press_profile} is missing: the example is built, but not run")
    return()
  endif()
  run(${CMAKE_CTEST_COMMAND} --test-dir ${folder} --no-tests=error --output-on-failure)
endfunction()
