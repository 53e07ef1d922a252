# SPDX-License-Identifier: Apache-2.0
# Sanitizers go into everything that is built, so they are set before any target is made.
if(OMTREADER_SANITIZERS)
  add_compile_options(-fsanitize=${OMTREADER_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${OMTREADER_SANITIZERS})
endif()
# The thread sanitizer brings an operator new, and tests that let memory run short one of their own,
# which counts.
if(OMTREADER_SANITIZERS STREQUAL "thread")
  add_link_options(-Wl,-z,muldefs)
endif()
