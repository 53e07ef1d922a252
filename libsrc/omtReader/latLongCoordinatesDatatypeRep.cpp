// SPDX-License-Identifier: Apache-2.0
#include "omtReader/latLongCoordinatesDatatypeRep.h"

#include "geometry/dtAngle.h"
#include "geometry/dtGeodeticCoord.h"
#include "omtReader/values/recordOctets.h"

#include <exception>

using Octets = omtreader::VectorOctets<double>;
using OriginalOctets = omtreader::VectorOctets<float>;

namespace
{

/// Latitude and longitude in degrees, and altitude in metres, as texts.
struct Texts
{
    DtString latitude;
    DtString longitude;
    DtString altitude;

    explicit Texts(const void* record)
    {
        DtGeodeticCoord geodetic(DtGlobalEllipsoid());
        geodetic.setGeocentric(Octets::read(record));
        latitude = omtreader::recordText(DtRad2Deg(geodetic.lat()));
        longitude = omtreader::recordText(DtRad2Deg(geodetic.lon()));
        altitude = omtreader::recordText(geodetic.alt());
    }
};

}  // namespace

DtLatLongCoordinateDatatypeRep::DtLatLongCoordinateDatatypeRep(bool isAligned)
    : DtDefinedDatatypeRep(isAligned)
{
}

DtLatLongCoordinateDatatypeRep::~DtLatLongCoordinateDatatypeRep() = default;

const char* DtLatLongCoordinateDatatypeRep::datatype() const
{
    return "geodedic";
}

DtString DtLatLongCoordinateDatatypeRep::stringRep(const void* position, int* consumed) const
{
    const void* const record = netValPtr(position, consumed);
    if (!record) return {};
    const Texts texts(record);
    return texts.latitude + ", " + texts.longitude + ", " + texts.altitude;
}

std::vector<char> DtLatLongCoordinateDatatypeRep::valueFromStringRep(const DtString&) const
{
    return {};
}

unsigned int DtLatLongCoordinateDatatypeRep::byteAlignment() const
{
    return Octets::theNumberWidth;
}

DtString DtLatLongCoordinateDatatypeRep::stringRep(const void* position, int* consumed,
                                                   DtObjectHistory*) const
{
    return stringRep(position, consumed);
}

DtStringTree* DtLatLongCoordinateDatatypeRep::createTreeRep(const void* position, int* consumed,
                                                            DtObjectHistory*) const
{
    const void* const record = netValPtr(position, consumed);
    if (!record) return new DtStringTree;
    const Texts texts(record);
    return omtreader::createChain({
        {"Latitude",  "Defined", 0,  texts.latitude },
        {"Longitude", "Defined", 8,  texts.longitude},
        {"Altitude",  "Defined", 16, texts.altitude },
    });
}

DtString DtLatLongCoordinateDatatypeRep::originalStringRep(const void* position, int* consumed,
                                                           DtObjectHistory*) const
{
    const void* const record = origNetValPtr(position, consumed);
    if (!record) return {};
    try
    {
        return OriginalOctets::text(record);
    }
    catch (const std::exception&)
    {
        return omtreader::theFailedRecord;
    }
}

const void* DtLatLongCoordinateDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theNumberWidth, Octets::theWidth, consumed);
}

const void* DtLatLongCoordinateDatatypeRep::origNetValPtr(const void* position, int* consumed) const
{
    return readPosition(position, OriginalOctets::theNumberWidth, OriginalOctets::theWidth,
                        consumed);
}
