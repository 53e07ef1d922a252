// SPDX-License-Identifier: Apache-2.0
// A switch.
#pragma once

#include "omtReader/omtNode.h"

/// One switch of a federation execution, such as "autoProvide".
///
/// The note of the switch "automaticResignAction" holds the resign action.
class OMTREADER_EXPORT DtBoolAttrNode : public DtOMTNode
{
public:
    DtBoolAttrNode();
    DtBoolAttrNode(const DtBoolAttrNode& other);
    DtBoolAttrNode& operator=(const DtBoolAttrNode& other);
    ~DtBoolAttrNode() override;

    /// False at first.
    virtual void setEnabled(bool isEnabled) { myIsEnabled = isEnabled; }
    virtual bool getEnabled() const { return myIsEnabled; }

private:
    bool myIsEnabled = false;
};
