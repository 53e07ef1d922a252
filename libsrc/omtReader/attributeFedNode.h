// SPDX-License-Identifier: Apache-2.0
// An attribute of an object class.
#pragma once

#include "omtReader/datatypeFedNode.h"

#include <list>

/// One attribute of an object class: its datatype and how its updates travel.
///
/// Owned by the object class it was added to; pointers stay valid until that class is deleted or
/// drops its attributes. Every text is as written in the model.
class OMTREADER_EXPORT DtAttributeFedNode : public DtDatatypeFedNode
{
public:
    DtAttributeFedNode();
    explicit DtAttributeFedNode(DtFedNode* parent);
    DtAttributeFedNode(const DtAttributeFedNode& other);
    DtAttributeFedNode& operator=(const DtAttributeFedNode& other);
    ~DtAttributeFedNode() override;

    /// When updates are sent: "Static", "Periodic", "Conditional" or "NA".
    virtual void setUpdateType(const DtString& updateType) { myUpdateType = updateType; }
    virtual const DtString& getUpdateType() const { return myUpdateType; }

    /// The condition or the rate that goes with the update type.
    virtual void setUpdateCondition(const DtString& condition) { myUpdateCondition = condition; }
    virtual const DtString& getUpdateCondition() const { return myUpdateCondition; }

    /// Whether ownership moves: "Divest", "Acquire", "DivestAcquire", "NoTransfer"; in HLA 1.3
    /// "T", "A", "TA" or "N".
    virtual void setTransferAccept(const DtString& transfer) { myTransferAccept = transfer; }
    virtual const DtString& getTransferAccept() const { return myTransferAccept; }

    /// "Publish", "Subscribe", "PublishSubscribe" or "Neither".
    virtual void setSharing(const DtString& sharing) { mySharing = sharing; }
    virtual const DtString& getSharing() const { return mySharing; }

    /// The name of the transportation type, such as "HLAreliable".
    virtual void setTransportation(const DtString& name) { myTransportation = name; }
    virtual const DtString& getTransportation() const { return myTransportation; }

    /// "Receive" or "TimeStamp".
    virtual void setOrder(const DtString& order) { myOrder = order; }
    virtual const DtString& getOrder() const { return myOrder; }

    /// The names of the dimensions in which regions may limit the updates.
    virtual void addDimension(const DtString& name) { myDimensions.push_back(name); }
    virtual const std::list<DtString>& getDimensions() const { return myDimensions; }

private:
    DtString myUpdateType;
    DtString myUpdateCondition;
    DtString myTransferAccept;
    DtString mySharing;
    DtString myTransportation;
    DtString myOrder;
    std::list<DtString> myDimensions;
};
