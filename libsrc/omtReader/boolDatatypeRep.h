// SPDX-License-Identifier: Apache-2.0
// One octet as "true" or "false".
#pragma once

#include "omtReader/numberDatatypeRep.h"

/// "bool": one octet; 0 is "false", anything else "true".
///
/// Encoding is the inverse of decoding, kept for compatibility, because receivers expect it: "true"
/// becomes the octet 0x00 and "false" 0x01. Any other text becomes nothing.
class OMTREADER_EXPORT DtBoolDatatypeRep : public DtNumberDatatypeRep
{
public:
    DtBoolDatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    virtual ~DtBoolDatatypeRep();

    virtual bool boolVal(const void* position) const;
};
