// SPDX-License-Identifier: Apache-2.0
// A decoded value as a tree of named texts.
#pragma once

#include "util/dtExport.h"
#include "util/dtString.h"

#include <cstddef>
#include <new>
#include <utility>

/// One value or part of a value: its text, its name, its datatype and where it begins.
///
/// A record's first field and an array's first element are the first child; further fields follow
/// as next siblings, further elements as next elements. A node owns what it links to, so deleting a
/// root frees the whole tree. Copying, searching and deleting take time in proportion to the number
/// of nodes and no stack, however long the chains are.
class OMTREADER_EXPORT DtStringTree
{
public:
    DtStringTree() = default;
    /// A node without value and links.
    DtStringTree(const DtString& key, const DtString& datatype, unsigned int offset)
        : myKey(key), myDatatype(datatype), myOffset(offset)
    {
    }
    /// Copies the whole tree; nothing is shared with the source.
    DtStringTree(const DtStringTree& other);
    /// Copies the fields and all that the other node links to; nothing is shared. What this node
    /// linked to before is not deleted: a host may still point into it. Assign to fresh
    /// nodes.
    DtStringTree& operator=(const DtStringTree& other);
    /// Deletes all that the node links to; asks for no memory.
    virtual ~DtStringTree();

    // Memory is that of the global operators. Kept for compatibility, because programs link against
    // these.
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* memory, std::size_t size) noexcept;
    static void operator delete(void* memory, const std::nothrow_t&) noexcept;
    static void operator delete(void*, void*) noexcept {}

    /// Links an element, which this chain then owns, after the last element of the chain that
    /// begins here; gives the node that was the last one before.
    virtual DtStringTree* appendToArray(DtStringTree* element);

    /// The first node with this key: this one, else one of the next sibling's tree, else one of the
    /// first child's. Elements after the first are not searched. Null if there is none.
    virtual DtStringTree* findKey(const DtString& key) const;

    // Each field is the node's own: a reference to one stays good, and shows what is set later,
    // until the node goes.

    /// The text of this node's own value; empty for a mere container.
    void setValue(DtString value) { myValue = std::move(value); }
    const DtString& value() const { return myValue; }

    /// The name of the field, alternative, discriminant or element.
    void setKey(DtString key) { myKey = std::move(key); }
    const DtString& key() const { return myKey; }

    /// The name of the datatype that the value has in the object model.
    void setDatatype(DtString datatype) { myDatatype = std::move(datatype); }
    const DtString& datatype() const { return myDatatype; }

    /// Where the value begins, in octets from the start of the decoded buffer. The discriminant of
    /// a variant record has its own size here: kept for compatibility, because displays rely on it.
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
    void copyLinksOf(const DtStringTree& other);
    static void putFirst(DtStringTree* siblings, DtStringTree*& open);
    void moveLinksTo(DtStringTree*& open);

    DtStringTree* myNextSibling = nullptr;
    DtStringTree* myFirstChild = nullptr;
    DtStringTree* myNextElement = nullptr;
    DtString myValue;
    DtString myKey;
    DtString myDatatype;
    unsigned int myOffset = 0;
};
