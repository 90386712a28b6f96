# SPDX-License-Identifier: Apache-2.0
#
# What the library is on Windows: lumoxa.dll, with a manifest and no other resource.
if(NOT WIN32)
  return()
endif()
enable_language(RC)

# MinGW-w64 would name it liblumoxa.dll; the import library keeps its lib prefix.
set_target_properties(lumoxa PROPERTIES PREFIX "")
set(manifest ${PROJECT_SOURCE_DIR}/cmake/lumoxa.manifest)
set(resources ${PROJECT_SOURCE_DIR}/cmake/lumoxa.rc)
set_source_files_properties(${resources} PROPERTIES
  INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/cmake
  OBJECT_DEPENDS ${manifest})
target_sources(lumoxa PRIVATE ${resources})
if(MSVC)  # Microsoft's linker would add a second manifest of its own.
  target_link_options(lumoxa PRIVATE /MANIFEST:NO)
endif()
