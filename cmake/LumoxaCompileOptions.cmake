# SPDX-License-Identifier: Apache-2.0
#
# Compiler options in one place: for the library, and for the programs around it.

function(lumoxa_common_options target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  if(MSVC)
    target_compile_options(${target} PRIVATE
      /W4 /fp:precise /utf-8 /permissive- /Zc:__cplusplus $<$<BOOL:${LUMOXA_WERROR}>:/WX>)
    # fopen and localtime are used as the C standard has them.
    target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS)
  else()
    # A fused multiply-add rounds once where the written expression rounds twice: without this, the
    # same image converts to other bytes with another compiler or another processor.
    target_compile_options(${target} PRIVATE
      -ffp-contract=off -Wall -Wextra $<$<BOOL:${LUMOXA_WERROR}>:-Werror>)
  endif()
  if(WIN32)
    target_compile_definitions(${target} PRIVATE NOMINMAX WIN32_LEAN_AND_MEAN)
  endif()
endfunction()

function(lumoxa_library_options target)
  lumoxa_common_options(${target})
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -Wconversion)
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(${target} PRIVATE LUMOXA_VERSION="${PROJECT_VERSION}")
endfunction()
