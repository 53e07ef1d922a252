// SPDX-License-Identifier: Apache-2.0
// An interaction class with its parameters.
#pragma once

#include "omtReader/ownedNodes.h"
#include "omtReader/parameterFedNode.h"

#include <cstdint>
#include <list>

namespace omtreader
{
template <typename Class>
struct Hierarchy;
}

/// One interaction class of the model.
///
/// Owns its parameters. Its child classes are only linked: the tree that they were added to owns
/// every class.
class OMTREADER_EXPORT DtInteractionClassFedNode : public DtFedNode
{
public:
    DtInteractionClassFedNode();
    /// Points to its parent, which is neither owned nor told.
    explicit DtInteractionClassFedNode(DtFedNode* parent);
    /// Copies the parameters, which keep the parent of their originals, and no child classes.
    DtInteractionClassFedNode(const DtInteractionClassFedNode& other);
    /// As the copy; this class's own parameters are deleted and its child classes let go.
    DtInteractionClassFedNode& operator=(const DtInteractionClassFedNode& other);
    ~DtInteractionClassFedNode() override;

    /// Takes the parameter over and becomes its parent; null is ignored.
    virtual void addParameter(DtParameterFedNode* parameter);
    /// Links a child class and becomes its parent; null is ignored, a repeated child is not
    /// noticed.
    virtual void addChildInteraction(DtInteractionClassFedNode* child);

    /// The class that a path of names leads to, starting with this class's own name; null if none.
    /// Any single character separates the names, as for object classes.
    virtual DtInteractionClassFedNode* findChildInteraction(const char* path);
    /// This class's own first parameter of a name, or null; inherited ones are not searched.
    virtual DtParameterFedNode* findParameter(const char* name) const;

    virtual const std::list<DtInteractionClassFedNode*>& getChildInteractions() const
    {
        return myChildren;
    }
    virtual const std::list<DtParameterFedNode*>& getParameters() const
    {
        return myParameters.list();
    }

    /// What the class stands for, in words.
    virtual void setDescriptor(const DtString& descriptor) { myDescriptor = descriptor; }
    virtual const DtString& getDescriptor() const { return myDescriptor; }

    /// "Publish", "Subscribe", "PublishSubscribe" or "Neither".
    virtual void setSharing(const DtString& sharing) { mySharing = sharing; }
    virtual const DtString& getSharing() const { return mySharing; }

    /// The name of the transportation type, such as "HLAreliable".
    virtual void setTransportation(const DtString& name) { myTransportation = name; }
    virtual const DtString& getTransportation() const { return myTransportation; }

    /// "Receive" or "TimeStamp".
    virtual void setOrder(const DtString& order) { myOrder = order; }
    virtual const DtString& getOrder() const { return myOrder; }

    /// The names of the dimensions in which regions may limit who receives the interaction.
    virtual void addDimension(const DtString& name) { myDimensions.push_back(name); }
    virtual const std::list<DtString>& getDimensions() const { return myDimensions; }

    /// The number by which an HLA 1.3 model knows the class. Kept for compatibility: it starts as
    /// -1 here and as 0 for an object class.
    virtual void setIdentifier(int identifier) { myIdentifier = identifier; }
    virtual int getIdentifier() { return myIdentifier; }

    /// The identifier of the class above in an HLA 1.3 model; 0 at first.
    virtual void setParentIdentifier(int identifier) { myParentIdentifier = identifier; }
    virtual int getParentIdentifier() { return myParentIdentifier; }

    /// Deletes all parameters.
    virtual void removeParameters();

private:
    friend struct omtreader::Hierarchy<DtInteractionClassFedNode>;

    DtOwnedNodes<DtParameterFedNode> myParameters;
    std::list<DtInteractionClassFedNode*> myChildren;
    DtString myDescriptor;
    DtString mySharing;
    DtString myTransportation;
    DtString myOrder;
    std::list<DtString> myDimensions;
    std::int32_t myIdentifier = -1;
    std::int32_t myParentIdentifier = 0;
};
