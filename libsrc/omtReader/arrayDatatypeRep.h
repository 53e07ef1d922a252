// SPDX-License-Identifier: Apache-2.0
// The octets of an opaque value.
#pragma once

#include "omtReader/datatypeRep.h"

/// Shows any number of octets in hexadecimal; encoding is left to a class of the host.
///
/// Its name is "string", like that of DtStringDatatypeRep: kept for compatibility, because mappings
/// name it.
class OMTREADER_EXPORT DtArrayDatatypeRep : public DtDatatypeRep
{
public:
    const char* datatype() const override;
    /// Always empty, with `consumed` left as it is: how many octets there are is not known.
    DtString stringRep(const void* position, int* consumed) const override;
    unsigned int byteAlignment() const override;
    virtual ~DtArrayDatatypeRep();

    /// Two digits and a blank for each of `count` octets, all of which are consumed. Without a
    /// position or octets the text is empty, and 1 is consumed.
    virtual DtString stringRep(const void* position, int count, int* consumed) const;

protected:
    DtArrayDatatypeRep();
};
