// SPDX-License-Identifier: Apache-2.0
// A decoded value as a tree of named texts.
#pragma once

#include "util/dtExport.h"
#include "util/dtString.h"

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

/// One value or part of a value: its text, its name, its datatype and where it begins.
///
/// A record's first field and an array's first element are the first child; further fields follow
/// as next siblings, further elements as next elements. A node owns what it links to, so deleting a
/// root frees the whole tree. Copying, searching and deleting take time in proportion to the number
/// of nodes and no stack, however long the chains are.
class OMTREADER_EXPORT DtStringTree
{
public:
    /// What names a node. The elements of an array and the same field of many records share one.
    struct Label
    {
        DtString key;
        DtString datatype;
    };

    DtStringTree() = default;
    /// A node without value and links; a null label stands for two empty names.
    DtStringTree(std::shared_ptr<const Label> label, unsigned int offset)
        : myLabel(std::move(label)), myOffset(offset)
    {
    }
    /// Copies the whole tree; nothing is shared with the source.
    DtStringTree(const DtStringTree& other);
    /// Copies the fields and all that the other node links to; nothing is shared. What this node
    /// linked to before is not deleted, on purpose: a host may still point into it. Assign to fresh
    /// nodes.
    DtStringTree& operator=(const DtStringTree& other);
    virtual ~DtStringTree();

    /// Memory of nodes comes from and goes to a small store of the thread, as values are decoded
    /// into many nodes that live for a moment.
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* memory, std::size_t size) noexcept;

    /// Links an element, which this chain then owns, behind the last element of the chain that
    /// begins here; gives the node that was the last one before.
    virtual DtStringTree* appendToArray(DtStringTree* element);

    /// The first node with this key: this one, else one of the next sibling's tree, else one of the
    /// first child's. Elements behind the first are not searched. Null if there is none.
    virtual DtStringTree* findKey(const DtString& key) const;

    /// The text of this node's own value; empty for a mere container.
    void setValue(DtString value) { myValue = std::move(value); }
    const DtString& value() const { return myValue; }

    /// The name of the field, alternative, discriminant or element.
    void setKey(DtString key) { setLabel(std::move(key), datatype()); }
    const DtString& key() const { return myLabel ? myLabel->key : DtString::nullString(); }

    /// The name of the datatype that the value has in the object model.
    void setDatatype(DtString datatype) { setLabel(key(), std::move(datatype)); }
    const DtString& datatype() const
    {
        return myLabel ? myLabel->datatype : DtString::nullString();
    }

    /// Where the value begins, in octets from the start of the decoded buffer. The discriminant of
    /// a variant record has its own size here, on purpose.
    void setOffset(unsigned int offset) { myOffset = offset; }
    unsigned int offset() const { return myOffset; }

    /// The links. A setter takes the node over; what was linked before is the caller's again.
    void setFirstChild(DtStringTree* child) { myFirstChild = child; }
    DtStringTree* firstChild() const { return myFirstChild; }
    void setNextSibling(DtStringTree* sibling) { myNextSibling = sibling; }
    DtStringTree* nextSibling() const { return myNextSibling; }
    void setNextElement(DtStringTree* element) { myNextElement = element; }
    DtStringTree* nextElement() const { return myNextElement; }

private:
    struct WithoutLinks
    {
    };
    DtStringTree(const DtStringTree& other, WithoutLinks);
    void setLabel(DtString key, DtString datatype);
    void copyLinksOf(const DtStringTree& other);
    void moveLinksTo(std::vector<DtStringTree*>& nodes);

    std::shared_ptr<const Label> myLabel;
    DtStringTree* myNextSibling = nullptr;
    DtStringTree* myFirstChild = nullptr;
    DtStringTree* myNextElement = nullptr;
    DtString myValue;
    unsigned int myOffset = 0;
};
