// SPDX-License-Identifier: Apache-2.0
// DIS entity types by name.
#pragma once

#include "omtReader/definedDatatypeRep.h"

class DtDisDictionary;
class DtEntityMapperKey;

/// "entityType-Defined": the record of a DIS entity type, shown with the names that a dictionary
/// has for its levels.
///
/// The record has 8 octets: kind and domain (8 bits each), country (16 bits, network order),
/// category, subcategory, specific and extra (8 bits each). The line is "Platform:Land:...:0"; a
/// level that the dictionary does not know or has as "Any" is its number, and extra always is. A
/// host makes one and registers it; encoding gives nothing.
class OMTREADER_EXPORT DtEntityTypeDatatypeRep : public DtDefinedDatatypeRep
{
public:
    /// The dictionary is not owned and may be null: numbers are shown then.
    DtEntityTypeDatatypeRep(bool isAligned, DtDisDictionary* dictionary, const DtString& delimiter);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    /// 2
    unsigned int byteAlignment() const override;
    ~DtEntityTypeDatatypeRep() override;

    DtString stringRep(const void* position, int* consumed,
                       DtObjectHistory* history) const override;
    /// A chain of seven nodes from Kind to Extra. Kept for compatibility: offsets are the places 0
    /// to 6 and not octets, and a level that is "Any" in the dictionary is that here. A level with
    /// a name has the datatype "Defined", others have "octet". For a null position one node without
    /// anything.
    DtStringTree* createTreeRep(const void* position, int* consumed,
                                DtObjectHistory* history) const override;
    /// The seven numbers, with the delimiter between them.
    DtString originalStringRep(const void* position, int* consumed,
                               DtObjectHistory* history) const override;

    /// What stands after each of the first six levels in a line.
    virtual void setDelimiter(const DtString& delimiter) { myDelimiter = delimiter; }
    virtual const DtString& delimiter() const { return myDelimiter; }

    /// Where the record is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;

private:
    const std::vector<DtString>& namesOf(const DtEntityMapperKey& key) const;

    DtDisDictionary* myDictionary;
    DtString myDelimiter;
};
