// SPDX-License-Identifier: Apache-2.0
// Velocities as heading and speed.
#pragma once

#include "omtReader/definedDatatypeRep.h"

class DtVector64;

/// "alt-velocity": three 32-bit numbers in network order of a geocentric velocity in metres per
/// second, shown as heading in degrees and speed.
///
/// A heading takes the position of the object. As none is known, see locationPtr(), the line is
/// always "err,err,err" for now; the tree has the speed all the same. Encoding gives nothing.
class OMTREADER_EXPORT DtAltVelocityDatatypeRep : public DtDefinedDatatypeRep
{
public:
    /// Values are aligned if the manager pads. The manager is not owned.
    explicit DtAltVelocityDatatypeRep(DtDatatypeManager& manager);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    /// 4
    unsigned int byteAlignment() const override;
    ~DtAltVelocityDatatypeRep() override;

    /// Heading and speed with ", " after each; "err,err,err" without a position of the object.
    DtString stringRep(const void* position, int* consumed,
                       DtObjectHistory* history) const override;
    /// A chain of Heading and Speed; without a position of the object the heading is "err,err,err".
    /// For a null position one node without anything.
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

/// The heading from one geocentric point towards another, both in metres: in radians from north
/// over east, from 0 up to, but not including, 2 pi.
OMTREADER_EXPORT double DtHeadingFromGeocAToGeocB(const DtVector64& a, const DtVector64& b);
