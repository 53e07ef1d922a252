// SPDX-License-Identifier: Apache-2.0
// Topographic orientations.
#pragma once

#include "omtReader/definedDatatypeRep.h"

/// "topo-orientation": three 32-bit numbers in network order. Only the numbers themselves are
/// shown: kept for compatibility, the line is always "err,err,err" and there is no tree. Encoding
/// gives nothing.
class OMTREADER_EXPORT DtTopoCoordinateDatatypeRep : public DtDefinedDatatypeRep
{
public:
    /// Values are aligned if the manager pads. The manager is not owned.
    explicit DtTopoCoordinateDatatypeRep(DtDatatypeManager& manager);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    /// 4
    unsigned int byteAlignment() const override;
    ~DtTopoCoordinateDatatypeRep() override;

    DtString stringRep(const void* position, int* consumed,
                       DtObjectHistory* history) const override;
    /// Always null.
    DtStringTree* createTreeRep(const void* position, int* consumed,
                                DtObjectHistory* history) const override;
    /// The numbers with ", " after each, the last one too; "err,err,err" for a null position.
    DtString originalStringRep(const void* position, int* consumed,
                               DtObjectHistory* history) const override;

    /// Where the record is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;

private:
    DtDatatypeManager* myManager;
};
