# SPDX-License-Identifier: Apache-2.0
#
# Test programs for Windows, run under Wine. Starting Wine takes longer than most tests, so a program
# is run as a few shards of its tests.

set(wine sh ${CMAKE_CURRENT_LIST_DIR}/wine.sh)
add_test(NAME wine.start COMMAND ${wine} start)
add_test(NAME wine.stop COMMAND ${wine} stop)
set_tests_properties(wine.start PROPERTIES FIXTURES_SETUP wine TIMEOUT 120)
set_tests_properties(wine.stop PROPERTIES FIXTURES_CLEANUP wine TIMEOUT 60)

set(shards_lumoxa_tests 6)
set(shards_lumoxa_tool_tests 2)

function(add_shards name label)
  set(shards 1)
  if(shards_${name})
    set(shards ${shards_${name}})
  endif()
  math(EXPR last "${shards} - 1")
  foreach(shard RANGE ${last})
    add_test(NAME ${name}.${shard} COMMAND ${name})
    set_tests_properties(${name}.${shard} PROPERTIES
      LABELS ${label} TIMEOUT 300 FIXTURES_REQUIRED wine
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${shard}")
  endforeach()
endfunction()
