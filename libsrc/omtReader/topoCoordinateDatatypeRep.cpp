// SPDX-License-Identifier: Apache-2.0
#include "omtReader/topoCoordinateDatatypeRep.h"

#include "omtReader/datatypeManager.h"
#include "omtReader/values/recordOctets.h"

using Octets = omtreader::VectorOctets<float>;

DtTopoCoordinateDatatypeRep::DtTopoCoordinateDatatypeRep(DtDatatypeManager& manager)
    : DtDefinedDatatypeRep(manager.isImplicitPaddingEnabled()), myManager(&manager)
{
}

DtTopoCoordinateDatatypeRep::~DtTopoCoordinateDatatypeRep() = default;

const char* DtTopoCoordinateDatatypeRep::datatype() const
{
    return "topo-orientation";
}

DtString DtTopoCoordinateDatatypeRep::stringRep(const void* position, int* consumed) const
{
    netValPtr(position, consumed);
    return omtreader::theFailedRecord;
}

std::vector<char> DtTopoCoordinateDatatypeRep::valueFromStringRep(const DtString&) const
{
    return {};
}

unsigned int DtTopoCoordinateDatatypeRep::byteAlignment() const
{
    return Octets::theNumberWidth;
}

DtString DtTopoCoordinateDatatypeRep::stringRep(const void* position, int* consumed,
                                                DtObjectHistory*) const
{
    return stringRep(position, consumed);
}

DtStringTree* DtTopoCoordinateDatatypeRep::createTreeRep(const void* position, int* consumed,
                                                         DtObjectHistory*) const
{
    netValPtr(position, consumed);
    return nullptr;
}

DtString DtTopoCoordinateDatatypeRep::originalStringRep(const void* position, int* consumed,
                                                        DtObjectHistory*) const
{
    const void* const record = netValPtr(position, consumed);
    return record ? Octets::text(record) : DtString(omtreader::theFailedRecord);
}

const void* DtTopoCoordinateDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theNumberWidth, Octets::theWidth, consumed);
}
