# SPDX-License-Identifier: Apache-2.0
# omtreader_warnings(TARGET): the warnings that our own code is compiled with, for that target only.
function(omtreader_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                           -Wnon-virtual-dtor -Woverloaded-virtual)
  if(OMTREADER_WARNINGS_ARE_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# omtreader_no_overlap(FILE...): none of four warnings for these files of this folder. Where g++ 12
# optimises, it takes "a" + std::string(b) for a copy of a text onto itself or past its end, and calls
# that by one name or another; g++ 13 does not.
function(omtreader_no_overlap)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    foreach(warning restrict stringop-overflow stringop-overread array-bounds)
      set_property(SOURCE ${ARGN} APPEND PROPERTY
                   COMPILE_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-Wno-${warning}>)
    endforeach()
  endif()
endfunction()
