// SPDX-License-Identifier: Apache-2.0
// An object class with its attributes.
#pragma once

#include "omtReader/attributeFedNode.h"
#include "omtReader/ownedNodes.h"

#include <cstdint>
#include <list>
#include <map>

namespace omtreader
{
template <typename Class>
struct Hierarchy;
}

/// One object class of the model.
///
/// Owns its attributes. Its child classes are only linked: the tree that they were added to owns
/// every class.
class OMTREADER_EXPORT DtObjectClassFedNode : public DtFedNode
{
public:
    DtObjectClassFedNode();
    explicit DtObjectClassFedNode(DtFedNode* parent);
    /// Copies the attributes, which keep the parent of their originals, and no child classes.
    DtObjectClassFedNode(const DtObjectClassFedNode& other);
    /// As the copy; this class's own attributes are deleted and its child classes let go.
    DtObjectClassFedNode& operator=(const DtObjectClassFedNode& other);
    ~DtObjectClassFedNode() override;

    /// Takes the attribute over and becomes its parent; null is ignored. A second attribute of a
    /// name joins the list, and is from then on the one that findAttribute finds.
    virtual void addAttribute(DtAttributeFedNode* attribute);
    /// Does nothing: a hook for classes that derive from this one.
    virtual void associateAttribute(DtAttributeFedNode* attribute);
    /// Links a child class and becomes its parent; null is ignored, a repeated child is not
    /// noticed.
    virtual void addChildObject(DtObjectClassFedNode* child);

    /// The class that a path of names leads to, starting with this class's own name; null if none.
    ///
    /// Whatever single character follows a name counts as the separator, kept for compatibility:
    /// "A:B" and "A/B" lead to child B of class A as "A.B" does. Names are compared exactly.
    virtual DtObjectClassFedNode* findChildObject(const char* path);
    /// This class's own attribute of a name, or null; inherited ones are not searched.
    virtual DtAttributeFedNode* findAttribute(const char* name) const;

    virtual const std::list<DtObjectClassFedNode*>& getChildObjects() const { return myChildren; }
    virtual const std::list<DtAttributeFedNode*>& getAttributes() const
    {
        return myAttributes.list();
    }

    /// What the class stands for, in words.
    virtual void setDescriptor(const DtString& descriptor) { myDescriptor = descriptor; }
    virtual const DtString& getDescriptor() const { return myDescriptor; }

    /// "Publish", "Subscribe", "PublishSubscribe" or "Neither".
    virtual void setSharing(const DtString& sharing) { mySharing = sharing; }
    virtual const DtString& getSharing() const { return mySharing; }

    /// The number by which an HLA 1.3 model knows the class. Kept for compatibility: it starts as 0
    /// here and as -1 for an interaction class.
    virtual void setIdentifier(int identifier) { myIdentifier = identifier; }
    virtual int getIdentifier() { return myIdentifier; }

    /// The identifier of the class above in an HLA 1.3 model; 0 at first.
    virtual void setParentIdentifier(int identifier) { myParentIdentifier = identifier; }
    virtual int getParentIdentifier() { return myParentIdentifier; }

    /// Deletes all attributes.
    virtual void removeAttributes();

private:
    friend struct omtreader::Hierarchy<DtObjectClassFedNode>;
    void indexAttributes();

    DtOwnedNodes<DtAttributeFedNode> myAttributes;
    std::map<DtString, DtAttributeFedNode*> myAttributesByName;
    std::list<DtObjectClassFedNode*> myChildren;
    DtString myDescriptor;
    DtString mySharing;
    std::int32_t myIdentifier = 0;
    std::int32_t myParentIdentifier = 0;
};
