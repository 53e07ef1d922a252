// SPDX-License-Identifier: Apache-2.0
// A named set of keys and values.
#pragma once

#include "omtReader/omtNode.h"

#include <map>

/// An entry whose attributes a host chooses freely.
class OMTREADER_EXPORT DtGenAttrNode : public DtOMTNode
{
public:
    using AttributeMap = std::map<DtString, DtString>;

    DtGenAttrNode();
    DtGenAttrNode(const DtGenAttrNode& other);
    DtGenAttrNode& operator=(const DtGenAttrNode& other);
    ~DtGenAttrNode() override;

    /// Appends to what the key holds already.
    virtual void addAttribute(const DtString& key, const DtString& value)
    {
        myAttributes[key] += value;
    }
    /// The text of a key; an unknown key is entered with an empty one.
    virtual DtString& getAttribute(const DtString& key) { return myAttributes[key]; }
    virtual AttributeMap& getAttributes() { return myAttributes; }

private:
    AttributeMap myAttributes;
};
