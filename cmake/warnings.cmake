# SPDX-License-Identifier: Apache-2.0
# omtreader_warnings(TARGET): the warnings that our own code is compiled with, for that target only.
function(omtreader_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                           -Wnon-virtual-dtor -Woverloaded-virtual)
  if(OMTREADER_WARNINGS_ARE_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
