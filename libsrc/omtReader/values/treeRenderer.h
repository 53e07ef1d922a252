// SPDX-License-Identifier: Apache-2.0
// A tree of texts as one line.
#pragma once

#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"

#include <deque>

namespace omtreader
{

/// Renders for one manager. Chains of any length take time in proportion to it and no stack.
class TreeRenderer
{
public:
    TreeRenderer(DtDatatypeManager& manager, DatatypeResolver& resolver)
        : myManager(manager), myResolver(resolver)
    {
    }

    /// The line of a tree, in one go.
    DtString line(const DtStringTree& tree, const DtString& delimiter);

    /// The line of a tree, for a host that replaced the rendering: the manager is called for every
    /// part. Past some depth the rest is rendered in one go, as the stack is not endless.
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
        return delimiterOf(myResolver.find(datatype), neighbours);
    }

    /// Frees the copies of delimiters, which must not be in use any more.
    void release() { myCopies.clear(); }

    /// A host's delimiters are copied, as they may live for one call only.
    bool hasHostsDelimiters = false;

private:
    const DtString& ownDelimiterOf(const ResolvedDatatype& datatype);

    DtDatatypeManager& myManager;
    DatatypeResolver& myResolver;
    std::deque<DtString> myCopies;
    int myDepth = 0;
};

}  // namespace omtreader
