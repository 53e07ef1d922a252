// SPDX-License-Identifier: Apache-2.0
// Text in UTF-8.
#pragma once

#include "omtReader/datatypeRep.h"

/// "utf8": UTF-8 up to a stop octet (0x00, 0x03, 0x04 or 0x13), as ASCII text.
///
/// There is no other bound: the caller sees to it that zero octets follow. The stop octet belongs
/// to what is converted, so that one other than 0x00 ends the text. What is consumed is the length
/// of the text, and so does not count a zero octet; text that is not ASCII gives a warning, the
/// empty text and 0. All this is intended, as is the encoded form: the text, a zero octet and as
/// many letters "a" again.
class OMTREADER_EXPORT DtUtf8DatatypeRep : public DtDatatypeRep
{
public:
    DtUtf8DatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    virtual ~DtUtf8DatatypeRep();
};
