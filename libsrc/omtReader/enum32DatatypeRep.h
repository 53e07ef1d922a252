// SPDX-License-Identifier: Apache-2.0
// Enumerators of four octets.
#pragma once

#include "omtReader/enumDatatypeRep.h"

/// "enum32": the number of an enumerator in four octets.
///
/// The most significant octet comes first in what is decoded and last in what is encoded; this is
/// intended.
class OMTREADER_EXPORT DtEnum32DatatypeRep : public DtEnumDatatypeRep
{
public:
    explicit DtEnum32DatatypeRep(bool isAligned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtEnum32DatatypeRep() override;

    unsigned int enumVal(const void* position, int* consumed) const override;

    /// Where the value is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;
};
