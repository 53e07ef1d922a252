// SPDX-License-Identifier: Apache-2.0
#include "omtReader/altVelocityDatatypeRep.h"

#include "geometry/dtAngle.h"
#include "geometry/dtCoordTransform.h"
#include "geometry/dtGeodeticCoord.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/values/recordOctets.h"

#include <cmath>

using Octets = omtreader::VectorOctets<float>;
using Location = omtreader::VectorOctets<double>;

namespace
{

/// `location` is the record of a position, see locationPtr().
DtString headingText(const void* location, const DtVector64& velocity)
{
    const DtVector64 position = Location::read(location);
    return omtreader::recordText(
        DtRad2Deg(DtHeadingFromGeocAToGeocB(position, position + velocity)));
}

DtString speedText(const DtVector64& velocity)
{
    return omtreader::recordText(std::sqrt(velocity[0] * velocity[0] + velocity[1] * velocity[1] +
                                           velocity[2] * velocity[2]));
}

}  // namespace

double DtHeadingFromGeocAToGeocB(const DtVector64& a, const DtVector64& b)
{
    constexpr double theFullCircle = 6.283185307179586;
    DtGeodeticCoord position(DtGlobalEllipsoid());
    position.setGeocentric(a);
    DtCoordTransform toTopographic;
    DtGeocToTopoTransform(position.lat(), position.lon(), toTopographic);
    const DtVector64 target = toTopographic.coordTrans(b);
    const double heading = std::atan2(target[1], target[0]);
    return heading < 0 ? heading + theFullCircle : heading;
}

DtAltVelocityDatatypeRep::DtAltVelocityDatatypeRep(DtDatatypeManager& manager)
    : DtDefinedDatatypeRep(manager.isImplicitPaddingEnabled()), myManager(&manager)
{
}

DtAltVelocityDatatypeRep::~DtAltVelocityDatatypeRep() = default;

const char* DtAltVelocityDatatypeRep::datatype() const
{
    return "alt-velocity";
}

DtString DtAltVelocityDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return stringRep(position, consumed, nullptr);
}

std::vector<char> DtAltVelocityDatatypeRep::valueFromStringRep(const DtString&) const
{
    return {};
}

unsigned int DtAltVelocityDatatypeRep::byteAlignment() const
{
    return Octets::theNumberWidth;
}

DtString DtAltVelocityDatatypeRep::stringRep(const void* position, int* consumed,
                                             DtObjectHistory* history) const
{
    const void* const record = netValPtr(position, consumed);
    const void* const location = record ? locationPtr(*myManager, history) : nullptr;
    if (!location) return omtreader::theFailedRecord;
    const DtVector64 velocity = Octets::read(record);
    return headingText(location, velocity) + ", " + speedText(velocity) + ", ";
}

DtStringTree* DtAltVelocityDatatypeRep::createTreeRep(const void* position, int* consumed,
                                                      DtObjectHistory* history) const
{
    const void* const record = netValPtr(position, consumed);
    if (!record) return new DtStringTree;
    const DtVector64 velocity = Octets::read(record);
    const void* const location = locationPtr(*myManager, history);
    return omtreader::createChain({
        {"Heading", "Defined", 0,
         location ? headingText(location, velocity) : DtString(omtreader::theFailedRecord)},
        {"Speed", "Defined", 4, speedText(velocity)},
    });
}

DtString DtAltVelocityDatatypeRep::originalStringRep(const void* position, int* consumed,
                                                     DtObjectHistory*) const
{
    const void* const record = netValPtr(position, consumed);
    return record ? Octets::text(record) : DtString(omtreader::theFailedRecord);
}

const void* DtAltVelocityDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theNumberWidth, Octets::theWidth, consumed);
}
