# SPDX-License-Identifier: Apache-2.0
#
# Installs the built library below its own build tree, then builds the consumer project against the
# installation and runs it, linked in each of the three ways a user has.
include(${CMAKE_CURRENT_LIST_DIR}/consumer.cmake)
set(prefix ${BUILD_DIR}/install_consumer/prefix)
file(REMOVE_RECURSE ${BUILD_DIR}/install_consumer)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix} --config ${CONFIG})
consume(${prefix} ${VERSION} ${BUILD_DIR}/install_consumer/build
  -G ${GENERATOR} -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
