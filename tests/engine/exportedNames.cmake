# SPDX-License-Identifier: Apache-2.0
# Fails where a library shows a name that is not one of its namespace: cmake -DNM= -DLIBRARY= -P.
execute_process(COMMAND "${NM}" -DC --defined-only "${LIBRARY}"
  OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," text "${text}")
string(REPLACE "\n" ";" lines "${text}")
set(shown 0)
foreach(line IN LISTS lines)
  if(line MATCHES "^[0-9a-f]* [A-Za-z] (typeinfo (name )?for |vtable for )?omt::")
    math(EXPR shown "${shown} + 1")
  elseif(NOT line STREQUAL "")
    message(SEND_ERROR "shown, and no name of omt: ${line}")
  endif()
endforeach()
if(shown EQUAL 0)
  message(FATAL_ERROR "${LIBRARY} shows nothing at all")
endif()
