// SPDX-License-Identifier: Apache-2.0
// Geocentric positions as latitude, longitude and altitude.
#pragma once

#include "omtReader/definedDatatypeRep.h"

/// "geodedic", a name that mappings spell like this: three 64-bit numbers, network order, of
/// a geocentric position in metres, shown on the ellipsoid of WGS 84.
///
/// The line is "48.1, 11.5, 520": degrees north, degrees east and metres above the ellipsoid, with
/// 6 significant digits. The tree is a chain of Latitude, Longitude and Altitude. Encoding gives
/// nothing.
class OMTREADER_EXPORT DtLatLongCoordinateDatatypeRep : public DtDefinedDatatypeRep
{
public:
    explicit DtLatLongCoordinateDatatypeRep(bool isAligned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    /// 8
    unsigned int byteAlignment() const override;
    ~DtLatLongCoordinateDatatypeRep() override;

    DtString stringRep(const void* position, int* consumed,
                       DtObjectHistory* history) const override;
    /// For a null position one node without anything.
    DtStringTree* createTreeRep(const void* position, int* consumed,
                                DtObjectHistory* history) const override;
    /// Kept for compatibility: not the record of the other operations, but three 32-bit numbers of
    /// 12 octets, with ", " after each, the last one too.
    DtString originalStringRep(const void* position, int* consumed,
                               DtObjectHistory* history) const override;

    /// Where the record is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;
    /// Where originalStringRep() reads.
    const void* origNetValPtr(const void* position, int* consumed) const;
};
