# SPDX-License-Identifier: Apache-2.0
# What cpack does to the staged files before it packs them: Debian wants manuals and changelogs
# compressed, and needs no path to a library that is in a default place.
set(usr "${CPACK_TEMPORARY_DIRECTORY}/*/usr")
file(GLOB texts "${usr}/share/man/man1/omt.1" "${usr}/share/doc/*/changelog")
foreach(text IN LISTS texts)
  execute_process(COMMAND gzip -9nf "${text}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(GLOB programs "${usr}/bin/omt")
foreach(program IN LISTS programs)
  file(RPATH_REMOVE FILE "${program}")
endforeach()
