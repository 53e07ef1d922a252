// SPDX-License-Identifier: Apache-2.0
// What a datatype's name stands for, found once and kept while nothing changes.
#include "omtReader/values/datatypeResolver.h"

#include "omtReader/charDatatypeRep.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/omtDatatypeNode.h"
#include "omtReader/omtTree.h"

#include <algorithm>

namespace omtreader
{
namespace
{

template <typename Node>
Node* findOnce(ResolvedDatatype::Found<Node>& found, DtOMTTree* tree, const DtString& name,
               Node* (DtOMTTree::*get)(const DtString&))
{
    if (!found.isKnown)
    {
        found.node = tree ? (tree->*get)(name) : nullptr;
        found.isKnown = true;  // not before, as looking may fail for want of memory
    }
    return found.node;
}

/// The names of all numbers, the first enumerator of a number first.
std::vector<std::pair<int, const DtString*>> namesByNumber(const DtEnumeratedDatatypeNode& node)
{
    std::vector<std::pair<int, const DtString*>> names;
    for (auto it = node.getEnumerationNodeList(); it != node.getEnumerationNodeEnd(); ++it)
        names.emplace_back((*it)->getNumber(), &(*it)->getEnum());
    std::stable_sort(names.begin(), names.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    return names;
}

}  // namespace

ResolvedDatatype& DatatypeResolver::search(const DtString& name)
{
    if (myLast && myLast->name == name) return *myLast;
    const auto entry = myTable.find(name.view());
    ResolvedDatatype& datatype = entry != myTable.end() ? *entry->second : resolve(name);
    myLast = &datatype;
    return datatype;
}

ResolvedDatatype& DatatypeResolver::resolve(const DtString& name)
{
    ResolvedDatatype& datatype = myDatatypes.emplace_back(name);
    datatype.epoch = myEpoch;
    myTable.emplace(datatype.name.view(), &datatype);
    if (const auto kind = mySettings.kinds.find(name); kind != mySettings.kinds.end())
        datatype.kind = &kind->second;
    const auto mapping = mySettings.mappings.find(name);
    if (mapping != mySettings.mappings.end())
    {
        datatype.mapping = &mapping->second;
        datatype.rep = mySettings.registered(mapping->second);
        if (datatype.rep) datatype.number = numberTraitsOf(*datatype.rep);
        datatype.isCharacter = dynamic_cast<const DtCharDatatypeRep*>(datatype.rep) != nullptr;
    }
    const auto delimiter = mySettings.delimiters.find(name);
    if (delimiter != mySettings.delimiters.end()) datatype.delimiter = &delimiter->second;
    return datatype;
}

ResolvedDatatype& DatatypeResolver::component(ResolvedDatatype& record, std::size_t index,
                                              const DtOMTDatatypeNode& node)
{
    if (record.components.size() <= index) record.components.resize(index + 1);
    ResolvedComponent& component = record.components[index];
    startAnewAfterChange();
    // A record that was found before a change may hold what is outdated.
    if (component.node != &node || component.datatype->epoch != myEpoch)
        component = {&node, &find(node.getDatatype()), nullptr};
    return *component.datatype;
}

const std::vector<ResolvedComponent>& DatatypeResolver::fields(ResolvedDatatype& record)
{
    std::size_t count = 0;
    if (DtFixedDatatypeNode* const node = fixed(record))
    {
        const auto end = node->getComponentNodeEnd();
        for (auto it = node->getComponentNodeList(); it != end; ++it)
            component(record, count++, **it);
    }
    else if (DtComplexDatatypeNode* const complexNode = complex(record))
    {
        const auto end = complexNode->getComponentNodeEnd();
        for (auto it = complexNode->getComponentNodeList(); it != end; ++it, ++count)
        {
            component(record, count, **it);
            record.components[count].component = *it;
        }
    }
    record.components.resize(count);
    return record.components;
}

void DatatypeResolver::startAnew()
{
    myChanges = mySettings.changes;
    myModelRevision = modelRevision();
    ++myEpoch;
    myTable.clear();
    myLast = nullptr;
    // What a call under way still holds stays alive until release().
    if (myBounds.isCounting()) myOutdated.push_back(std::move(myDatatypes));
    myDatatypes.clear();
}

DtFixedDatatypeNode* DatatypeResolver::fixed(ResolvedDatatype& datatype)
{
    return findOnce(datatype.fixed, mySettings.tree, datatype.name,
                    &DtOMTTree::getFixedDatatypeNode);
}

DtVariantDatatypeNode* DatatypeResolver::variant(ResolvedDatatype& datatype)
{
    return findOnce(datatype.variant, mySettings.tree, datatype.name,
                    &DtOMTTree::getVariantDatatypeNode);
}

DtArrayDatatypeNode* DatatypeResolver::array(ResolvedDatatype& datatype)
{
    return findOnce(datatype.array, mySettings.tree, datatype.name,
                    &DtOMTTree::getArrayDatatypeNode);
}

DtComplexDatatypeNode* DatatypeResolver::complex(ResolvedDatatype& datatype)
{
    return findOnce(datatype.complex, mySettings.tree, datatype.name,
                    &DtOMTTree::getComplexDatatypeNode);
}

DtEnumeratedDatatypeNode* DatatypeResolver::enumerated(ResolvedDatatype& datatype)
{
    return findOnce(datatype.enumerated, mySettings.tree, datatype.name,
                    &DtOMTTree::getEnumeratedDatatypeNode);
}

const DtString* DatatypeResolver::enumerator(ResolvedDatatype& datatype, int number)
{
    const DtEnumeratedDatatypeNode* const node = enumerated(datatype);
    if (!node) return nullptr;
    if (!datatype.hasNames) datatype.names = namesByNumber(*node);
    datatype.hasNames = true;  // not before, as memory may be short
    const auto it = std::lower_bound(datatype.names.begin(), datatype.names.end(), number,
                                     [](const auto& entry, int n) { return entry.first < n; });
    return it != datatype.names.end() && it->first == number ? it->second : nullptr;
}

}  // namespace omtreader
