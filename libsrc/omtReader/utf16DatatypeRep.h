// SPDX-License-Identifier: Apache-2.0
// Characters in UTF-16.
#pragma once

#include "omtReader/datatypeRep.h"

/// "utf16": one code unit of UTF-16, the most significant octet first, as ASCII text.
///
/// The unit is read where it is said to be, whatever the alignment, and 2 octets are consumed, even
/// if it is not ASCII and gives a warning and the empty text. The unit 0 is the empty text.
/// Encoding converts a whole text and the zero after it. All this is intended.
class OMTREADER_EXPORT DtUtf16DatatypeRep : public DtDatatypeRep
{
public:
    explicit DtUtf16DatatypeRep(bool isAligned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    virtual ~DtUtf16DatatypeRep();
};
