# SPDX-License-Identifier: Apache-2.0
#
# Usage: cmake -DPACKAGES=FOLDER -DWORK=FOLDER -P windows.cmake
#
# Unpacks the archive for Windows in an empty folder, then builds the consumer project against it with
# MinGW-w64 and runs it under Wine; a second time with an import library made from the list of exports.
include(${CMAKE_CURRENT_LIST_DIR}/../install_consumer/consumer.cmake)
file(REMOVE_RECURSE ${WORK}/windows)
file(GLOB archive ${PACKAGES}/lumoxa-*-win64.zip)
string(REGEX REPLACE ".*/lumoxa-([0-9.]+)-win64[.]zip$" "\\1" version "${archive}")
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${WORK}/windows)
set(prefix ${WORK}/windows/lumoxa-${version}-win64)

# Files for CMake and pkg-config that name a folder of the building machine work nowhere else.
cmake_path(SET source NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../..)
file(GLOB_RECURSE texts ${prefix}/lib/*.cmake ${prefix}/lib/*.pc ${prefix}/lib/*.def)
foreach(text IN LISTS texts)
  file(STRINGS ${text} absolute REGEX "${source}|[ \"=](/|[A-Z]:)[a-zA-Z]")
  if(absolute)
    message(FATAL_ERROR "${text} names a folder of this machine:\n${absolute}")
  endif()
endforeach()

set(ENV{WINEPREFIX} ${WORK}/wine)
set(ENV{WINEDEBUG} -all)
# No installers of what isn't needed, no entries in the user's menus.
set(ENV{WINEDLLOVERRIDES} mscoree,mshtml,winemenubuilder.exe,winedbg.exe=)
set(ENV{WINEPATH} Z:${prefix}/bin)
unset(ENV{DISPLAY})
run(sh ${CMAKE_CURRENT_LIST_DIR}/../wine.sh start)
set(options -DCMAKE_TOOLCHAIN_FILE=${source}/cmake/mingw-w64-x86-64.cmake
  -DCMAKE_STAGING_PREFIX=${prefix}  # where the toolchain lets packages be found
  -DCMAKE_CROSSCOMPILING_EMULATOR=wine)
consume(${prefix} ${version} ${WORK}/windows/consumer ${options})

# The tool, from its folder alone.
run(wine ${prefix}/bin/lumoxa.exe info sRGB)

# Linked again by the list alone, as other toolchains have to.
run(x86_64-w64-mingw32-dlltool --input-def ${prefix}/lib/lumoxa.def
  --output-lib ${prefix}/lib/liblumoxa.dll.a)
consume(${prefix} ${version} ${WORK}/windows/consumer_by_list ${options})
run(sh ${CMAKE_CURRENT_LIST_DIR}/../wine.sh stop)
message(STATUS "Windows archive ${version}: unpacked, built against, run")
