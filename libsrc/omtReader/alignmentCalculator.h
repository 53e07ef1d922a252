// SPDX-License-Identifier: Apache-2.0
// At multiples of how many octets the values of a datatype stand.
#pragma once

#include "omtReader/datatypeResolver.h"
#include "omtReader/decodingBounds.h"

namespace omt
{

/// Calculates for one manager, by its virtual operations. A result is kept if nothing was said on
/// the way to it and no host takes part in it.
class AlignmentCalculator
{
public:
    AlignmentCalculator(DtDatatypeManager& manager, DatatypeResolver& resolver,
                        DecodingBounds& bounds)
        : myManager(manager), myResolver(resolver), myBounds(bounds)
    {
    }

    int padding(unsigned int offset, const DtString& datatype);
    int alignment(const DtString& datatype, bool mayKeep);
    int fromRepresentation(const DtString& datatype);
    int ofFixed(const DtString& datatype);
    int ofArray(const DtString& datatype);
    int ofVariant(const DtString& datatype);

private:
    int byKind(ResolvedDatatype& datatype);
    void warn() { ++myWarnings; }

    DtDatatypeManager& myManager;
    DatatypeResolver& myResolver;
    DecodingBounds& myBounds;
    std::uint64_t myWarnings = 0;
    int myDepth = 0;
};

}  // namespace omt
