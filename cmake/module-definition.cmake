# SPDX-License-Identifier: Apache-2.0
#
# Makes a module definition file from the list that GNU's linker writes: the list doesn't name its
# DLL, and its ordinals change with every export that is added, so programs mustn't bind to them.
#
# Usage: cmake -DEXPORTS=LIST -DMODULE=NAME -DOUTPUT=FILE -P module-definition.cmake
file(STRINGS ${EXPORTS} names REGEX "@[0-9]+")
if(NOT names)
  message(FATAL_ERROR "${EXPORTS} lists no exports")
endif()
list(TRANSFORM names REPLACE " @[0-9]+" "")
list(JOIN names "\n" names)
file(WRITE ${OUTPUT} "LIBRARY ${MODULE}\nEXPORTS\n${names}\n")
