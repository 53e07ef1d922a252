// SPDX-License-Identifier: Apache-2.0
// The last values of one attribute of one object.
#pragma once

#include "util/dtExport.h"

#include <cstdint>
#include <list>
#include <memory>

class DtDatatypeFedNode;
class DtDatatypeManager;
class DtObjectHistory;  // a host's own; it is only handed on, and may be null
class DtStringTree;

/// One value as it was received, and its tree once somebody asked for it.
class OMTREADER_EXPORT SingleAttribute
{
public:
    /// An empty slot.
    SingleAttribute();
    /// Copies the octets; a negative size counts as 0.
    SingleAttribute(const void* data, std::int32_t size);
    SingleAttribute(const SingleAttribute&) = delete;
    SingleAttribute& operator=(const SingleAttribute&) = delete;
    virtual ~SingleAttribute();

    /// The octets and their number; null and 0 for an empty slot.
    const char* bytes() const { return myBytes.get(); }
    std::int32_t byteCount() const { return myByteCount; }
    /// The tree and the octets that it took; null and 0 before anybody asked for it.
    const DtStringTree* tree() const { return myTree.get(); }
    std::int32_t treeCount() const { return myTreeCount; }

private:
    friend class DtAttributeHistory;

    std::int32_t myByteCount = 0;
    std::int32_t myTreeCount = 0;
    std::unique_ptr<char[]> myBytes;
    std::unique_ptr<DtStringTree> myTree;
};

/// Keeps the last five values of an attribute, the newest at index 0, and decodes each of them
/// once, when its tree is asked for. Indices are 0 to 4; any other stands for a slot that is always
/// empty, whose entry is null.
class OMTREADER_EXPORT DtAttributeHistory
{
public:
    /// The manager has to outlive the history.
    explicit DtAttributeHistory(DtDatatypeManager& manager);
    DtAttributeHistory(const DtAttributeHistory&) = delete;
    DtAttributeHistory& operator=(const DtAttributeHistory&) = delete;
    virtual ~DtAttributeHistory();

    /// The octets of a value; null for an empty slot.
    virtual const char* getByteStream(int index);
    /// Takes a copy of n octets as the newest value and drops the oldest one. Null is an empty
    /// slot, a negative n counts as 0.
    virtual void setByteStream(const void* data, int n);

    /// The object that the attribute belongs to, handed to decoding; null until set, never owned.
    virtual void setParentObject(DtObjectHistory* object);
    virtual DtObjectHistory* parentObject();

    /// The tree of a value, which stays the history's; null for an empty slot and for no attribute.
    /// Once made it is kept, even if another attribute is named later.
    virtual DtStringTree* createStringTree(const DtDatatypeFedNode* attribute, int index);
    /// The octets that the tree took; 0 before there is one, negative where decoding failed.
    virtual int getStringTreeCount(int index);
    virtual int getByteStreamCount(int index);

    /// Whether a value came since the flag was reset.
    virtual bool updatedFlag() const;
    virtual void resetUpdateFlag();

    /// The entry itself, which stays the history's and goes when its value is dropped; null for an
    /// index above 4.
    virtual SingleAttribute* at(unsigned int index) const;

private:
    std::list<std::unique_ptr<SingleAttribute>> myEntries;
    DtObjectHistory* myParentObject = nullptr;
    DtDatatypeManager& myManager;
    bool myIsUpdated = false;
};
