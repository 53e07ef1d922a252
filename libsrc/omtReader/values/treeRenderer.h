// SPDX-License-Identifier: Apache-2.0
// A tree of texts as one line.
#pragma once

#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"

#include <set>

namespace omtreader
{

/// Renders for one manager. Chains of any length take time in proportion to it and no stack.
class TreeRenderer
{
public:
    TreeRenderer(DtDatatypeManager& manager, const ConversionSettings& settings,
                 DatatypeResolver& resolver)
        : myManager(manager), mySettings(settings), myResolver(resolver)
    {
    }

    /// The line of a tree, in one go.
    DtString line(const DtStringTree& tree, const DtString& delimiter);

    /// The line of a tree where there is a host: the manager is called for every part. Past some
    /// depth the rest is rendered in one go, as the stack is not endless.
    DtString lineByParts(const DtStringTree& tree, const DtString& delimiter);

    /// The delimiter that serves a sibling or an element, given that of its neighbour. It is right
    /// for as long as the neighbour's and the settings are.
    const DtString& delimiterOf(ResolvedDatatype& datatype, const DtString& neighbours)
    {
        switch (myResolver.kindOf(datatype))
        {
            case DtDatatypeManager::DtDatatypeSimple:
            case DtDatatypeManager::DtDatatypeEnumerated:
            case DtDatatypeManager::DtDatatypeVariant:
                return neighbours;
            default:
                return ownDelimiterOf(datatype);
        }
    }
    const DtString& delimiterOf(const DtString& datatype, const DtString& neighbours)
    {
        // Most managers have one delimiter for everything.
        const bool isOnly = !mySettings.hasHost && mySettings.delimiters.empty();
        if (isOnly && neighbours == mySettings.defaultDelimiter) return neighbours;
        return delimiterOf(myResolver.find(datatype), neighbours);
    }

    /// Frees the copies of delimiters, which must not be in use any more.
    void release() { myCopies.clear(); }

private:
    const DtString& ownDelimiterOf(const ResolvedDatatype& datatype);

    DtDatatypeManager& myManager;
    const ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    std::set<DtString> myCopies;  // of a host's delimiters, which may live for one call only
    int myDepth = 0;
};

}  // namespace omtreader
