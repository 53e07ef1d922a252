// SPDX-License-Identifier: Apache-2.0
// A parameter of an interaction class.
#pragma once

#include "omtReader/datatypeFedNode.h"

/// One parameter of an interaction class.
///
/// Owned by the interaction class it was added to; pointers stay valid until that class is deleted
/// or drops its parameters.
class OMTREADER_EXPORT DtParameterFedNode : public DtDatatypeFedNode
{
public:
    DtParameterFedNode();
    explicit DtParameterFedNode(DtFedNode* parent);
    DtParameterFedNode(const DtParameterFedNode& other);
    DtParameterFedNode& operator=(const DtParameterFedNode& other);
    ~DtParameterFedNode() override;

    /// "Publish", "Subscribe", "PublishSubscribe" or "Neither".
    virtual void setSharing(const DtString& sharing) { mySharing = sharing; }
    virtual const DtString& getSharing() const { return mySharing; }

    /// The name of the transportation type, such as "HLAreliable".
    virtual void setTransportation(const DtString& name) { myTransportation = name; }
    virtual const DtString& getTransportation() const { return myTransportation; }

    /// "Receive" or "TimeStamp".
    virtual void setOrder(const DtString& order) { myOrder = order; }
    virtual const DtString& getOrder() const { return myOrder; }

private:
    // A parameter carries the six texts of an attribute. The first three mean nothing for it: on
    // purpose they have no accessor, stay empty and are only copied.
    DtString myUpdateType;
    DtString myUpdateCondition;
    DtString myTransferAccept;
    DtString mySharing;
    DtString myTransportation;
    DtString myOrder;
};
