# SPDX-License-Identifier: Apache-2.0
#
# Usage: cmake -DPACKAGES=FOLDER -DWORK=FOLDER -P debian.cmake
#
# Installs the Debian packages in an empty tree, then builds and runs the consumer project, and runs
# the tool, against that tree alone.
include(${CMAKE_CURRENT_LIST_DIR}/../install_consumer/consumer.cmake)
set(root ${WORK}/debian/root)
file(REMOVE_RECURSE ${WORK}/debian)

# dpkg is told what this machine has, so that the packages' dependencies are put to the test.
file(MAKE_DIRECTORY ${root}/var/lib/dpkg/info ${root}/var/lib/dpkg/updates)
file(COPY /var/lib/dpkg/status DESTINATION ${root}/var/lib/dpkg)
set(ENV{PATH} $ENV{PATH}:/usr/sbin:/sbin)
file(GLOB packages ${PACKAGES}/*.deb)
run(dpkg --root=${root} --log=${WORK}/debian/dpkg.log --force-not-root --install ${packages})

# use_library_of_tree(<program>): a library of the machine would hide that ours isn't found.
function(use_library_of_tree program)
  run(ldd ${program})
  if(NOT run_output MATCHES "liblumoxa[.]so[^ ]* => ${root}")
    message(FATAL_ERROR "${program} loads another library than the package's:\n${run_output}")
  endif()
endfunction()

file(GLOB_RECURSE library ${root}/usr/lib/*/liblumoxa.so.*.*.*)
string(REGEX MATCH "[0-9.]+$" version ${library})
string(SUBSTRING ${version} 1 -1 version)
consume(${root}/usr ${version} ${WORK}/debian/consumer)
foreach(program IN ITEMS lumoxa__lumoxa PkgConfig__PC)
  use_library_of_tree(${WORK}/debian/consumer/${program})
endforeach()

cmake_path(GET library PARENT_PATH library_dir)
set(ENV{LD_LIBRARY_PATH} ${library_dir})
use_library_of_tree(${root}/usr/bin/lumoxa)
run(${root}/usr/bin/lumoxa info /usr/share/color/icc/colord/sRGB.icc)
if(NOT run_output MATCHES "sRGB")
  message(FATAL_ERROR "the tool doesn't know the profile:\n${run_output}")
endif()
# The part that reads pictures is a module of its own.
file(WRITE ${WORK}/debian/red.ppm "P3 1 1 255 255 0 0\n")
run(${root}/usr/bin/lumoxa convert ${WORK}/debian/red.ppm ${WORK}/debian/red.png --to AdobeRGB)
message(STATUS "Debian packages ${version}: installed, built against, run")
