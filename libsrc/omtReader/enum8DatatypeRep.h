// SPDX-License-Identifier: Apache-2.0
// Enumerators of one octet.
#pragma once

#include "omtReader/enumDatatypeRep.h"

/// "enum8": the number of an enumerator in one octet.
///
/// A null position leaves `consumed` as it is, unlike that of every other representation.
class OMTREADER_EXPORT DtEnum8DatatypeRep : public DtEnumDatatypeRep
{
public:
    DtEnum8DatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtEnum8DatatypeRep() override;

    unsigned int enumVal(const void* position, int* consumed) const override;
};
