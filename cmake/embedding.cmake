# SPDX-License-Identifier: Apache-2.0
# omtreader_embed(TARGET NAME FILE HEADER): the octets of a file as an array NAME of a target, with
# NAME_len; the header declares both.
function(omtreader_embed target name file header)
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  add_custom_command(
    OUTPUT "${source}"
    COMMAND ${CMAKE_COMMAND} "-DFILE=${file}" -DNAME=${name} -DHEADER=${header}
            "-DOUTPUT=${source}" -P "${PROJECT_SOURCE_DIR}/cmake/embed.cmake"
    DEPENDS "${file}" "${PROJECT_SOURCE_DIR}/cmake/embed.cmake"
    VERBATIM)
  target_sources(${target} PRIVATE "${source}")
endfunction()
