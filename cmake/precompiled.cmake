# SPDX-License-Identifier: Apache-2.0
# omtreader_precompile(TARGET HEADER...): reads headers once for all sources of a target, where
# OMTREADER_PRECOMPILE asks for it. What is packed is built without, so that no source lacks an
# include unnoticed.
function(omtreader_precompile target)
  if(NOT OMTREADER_PRECOMPILE)
    return()
  endif()
  list(TRANSFORM ARGN REPLACE "(.+)" "<\\1>" OUTPUT_VARIABLE headers)
  target_precompile_headers(${target} PRIVATE ${headers})
  # What a compiler cache needs: the same octets each time, and a mark where the headers were.
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
  else()
    target_compile_options(${target} PRIVATE
      "$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
  endif()
endfunction()
