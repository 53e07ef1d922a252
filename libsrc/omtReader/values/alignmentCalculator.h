// SPDX-License-Identifier: Apache-2.0
// At multiples of how many octets the values of a datatype stand.
#pragma once

#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/datatypeResolver.h"

namespace omtreader
{

/// Calculates for one manager, by its virtual operations. A result is kept if nothing was said on
/// the way to it and no host takes part in it.
class AlignmentCalculator
{
public:
    AlignmentCalculator(DtDatatypeManager& manager, const ConversionSettings& settings,
                        DatatypeResolver& resolver, ConversionBounds& bounds)
        : myManager(manager), mySettings(settings), myResolver(resolver), myBounds(bounds)
    {
    }

    /// The padding before a value as the manager tells it.
    int paddingBefore(ResolvedDatatype& datatype, unsigned int offset)
    {
        if (mySettings.hasHost || (mySettings.isPaddingImplicit && datatype.alignment == 0))
            return myManager.implicitPadding(offset, datatype.name);
        if (!mySettings.isPaddingImplicit) return 0;
        const auto alignment = static_cast<unsigned int>(datatype.alignment);
        return static_cast<int>((alignment - offset % alignment) % alignment);
    }

    int padding(unsigned int offset, const DtString& datatype);
    int alignment(const DtString& datatype);
    int fromRepresentation(const DtString& datatype);
    int ofFixed(const DtString& datatype);
    int ofArray(const DtString& datatype);
    int ofVariant(const DtString& datatype);

private:
    int byKind(ResolvedDatatype& datatype);
    void warn() { ++myWarnings; }

    DtDatatypeManager& myManager;
    const ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    ConversionBounds& myBounds;
    std::uint64_t myWarnings = 0;
    int myDepth = 0;
};

}  // namespace omtreader
