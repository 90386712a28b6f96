# SPDX-License-Identifier: Apache-2.0
#
# lumoxa_tool_headers: CLI11 and nlohmann-json, of which the tool and its tests need the headers only.
# A cross build takes those of the building machine, alone in a folder: among its other headers are
# the machine's own C library, which must not come before MinGW's.
if(TARGET lumoxa_tool_headers)
  return()
endif()
add_library(lumoxa_tool_headers INTERFACE)
if(NOT CMAKE_CROSSCOMPILING)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  target_link_libraries(lumoxa_tool_headers INTERFACE CLI11::CLI11 nlohmann_json::nlohmann_json)
  return()
endif()
set(headers ${PROJECT_BINARY_DIR}/tool_headers)
file(MAKE_DIRECTORY ${headers})
foreach(header IN ITEMS CLI/CLI.hpp nlohmann/json.hpp)
  string(MAKE_C_IDENTIFIER "LUMOXA_HEADERS_${header}" found)
  find_path(${found} ${header} PATHS /usr/include /usr/local/include REQUIRED NO_DEFAULT_PATH
    NO_CMAKE_FIND_ROOT_PATH DOC "Folder of ${header} for a cross-built tool")
  cmake_path(GET header PARENT_PATH folder)
  file(CREATE_LINK ${${found}}/${folder} ${headers}/${folder} SYMBOLIC)
endforeach()
target_include_directories(lumoxa_tool_headers SYSTEM INTERFACE ${headers})
