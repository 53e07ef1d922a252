// SPDX-License-Identifier: Apache-2.0
// The last values of one attribute of one object.
#include "omtReader/attributeHistory.h"

#include "omtReader/datatypeManager.h"
#include "omtReader/stringTree.h"

#include <algorithm>
#include <cstring>
#include <iterator>

SingleAttribute::SingleAttribute() = default;

SingleAttribute::SingleAttribute(const void* data, std::int32_t size)
    : myByteCount(data ? std::max(size, 0) : 0)
{
    if (!data) return;
    const auto count = static_cast<std::size_t>(myByteCount);
    myBytes.reset(new char[count]);
    std::memcpy(myBytes.get(), data, count);
}

SingleAttribute::~SingleAttribute() = default;

DtAttributeHistory::DtAttributeHistory(DtDatatypeManager& manager) : myManager(manager)
{
    constexpr int theDepth = 5;
    for (int count = 0; count < theDepth; ++count)
        myEntries.push_back(std::make_unique<SingleAttribute>());
}

DtAttributeHistory::~DtAttributeHistory() = default;

SingleAttribute* DtAttributeHistory::at(unsigned int index) const
{
    if (index >= myEntries.size()) return nullptr;
    return std::next(myEntries.begin(), static_cast<std::ptrdiff_t>(index))->get();
}

const char* DtAttributeHistory::getByteStream(int index)
{
    const SingleAttribute* const entry = at(static_cast<unsigned int>(index));
    return entry ? entry->bytes() : nullptr;
}

void DtAttributeHistory::setByteStream(const void* data, int n)
{
    // Copied first: the octets may be those of a value that goes.
    myEntries.push_front(std::make_unique<SingleAttribute>(data, n));
    myEntries.pop_back();
    myIsUpdated = true;
}

void DtAttributeHistory::setParentObject(DtObjectHistory* object)
{
    myParentObject = object;
}

DtObjectHistory* DtAttributeHistory::parentObject()
{
    return myParentObject;
}

DtStringTree* DtAttributeHistory::createStringTree(const DtDatatypeFedNode* attribute, int index)
{
    SingleAttribute* const entry = at(static_cast<unsigned int>(index));
    if (!entry) return nullptr;
    if (!entry->myTree)
    {
        int consumed = 0;
        entry->myTree.reset(myManager.createStringTreeRep(
            attribute, entry->myBytes.get(), entry->myByteCount, consumed, 0, myParentObject));
        entry->myTreeCount = consumed;
    }
    return entry->myTree.get();
}

int DtAttributeHistory::getStringTreeCount(int index)
{
    const SingleAttribute* const entry = at(static_cast<unsigned int>(index));
    return entry ? entry->treeCount() : 0;
}

int DtAttributeHistory::getByteStreamCount(int index)
{
    const SingleAttribute* const entry = at(static_cast<unsigned int>(index));
    return entry ? entry->byteCount() : 0;
}

bool DtAttributeHistory::updatedFlag() const
{
    return myIsUpdated;
}

void DtAttributeHistory::resetUpdateFlag()
{
    myIsUpdated = false;
}
