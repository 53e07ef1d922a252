# SPDX-License-Identifier: Apache-2.0
# Writes a C++ source that holds a file's octets: cmake -DFILE= -DNAME= -DHEADER= -DOUTPUT= -P
file(READ "${FILE}" hex HEX)
string(LENGTH "${hex}" digits)
math(EXPR octets "${digits} / 2")
string(REGEX REPLACE "(................................)" "\\1\n" lines "${hex}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," lines "${lines}")
file(WRITE "${OUTPUT}" "// Made by the build from ${NAME}.
#include \"${HEADER}\"

const unsigned char ${NAME}[] = {
${lines}
};
const std::int32_t ${NAME}_len = ${octets};
")
