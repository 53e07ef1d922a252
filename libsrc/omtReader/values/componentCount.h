// SPDX-License-Identifier: Apache-2.0
// How many values a component of an HLA 1.3 record has, by the components before it.
#pragma once

#include "omtReader/values/datatypeResolver.h"

namespace omtreader
{

/// The most values that a component may have; see DtDatatypeManager::getComplexDatatypeCount().
class ComponentCount
{
public:
    ComponentCount(DatatypeResolver& resolver, ConversionBounds& bounds)
        : myResolver(resolver), myBounds(bounds)
    {
    }

    int of(const DtComplexComponentNode& node, const DtStringTree* root,
           const DtStringTree* parent);

private:
    const DtStringTree* earlierComponent(const DtString& name, const DtStringTree* root,
                                         const DtStringTree* parent);
    const DtStringTree* find(const DtString& name, const DtStringTree& root);
    bool mayLook(const DtString& name);
    bool holdsValue(const DtStringTree& node, const DtString& value);

    DatatypeResolver& myResolver;
    ConversionBounds& myBounds;
};

}  // namespace omtreader
