// SPDX-License-Identifier: Apache-2.0
#include "omtReader/values/enumeratorNames.h"

#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/modelRevision.h"

#include <typeinfo>
#include <utility>

namespace omtreader
{

const DtEnumerationNode* EnumeratorNames::find(const DtEnumeratedDatatypeNode& node,
                                               std::string_view name)
{
    const Table& table = tableOf(node);
    if (!table.isSure) return node.getEnumerationNode(DtString(name));
    const auto entry = table.enumerators.find(name);
    return entry == table.enumerators.end() ? nullptr : entry->second;
}

const EnumeratorNames::Table& EnumeratorNames::tableOf(const DtEnumeratedDatatypeNode& node)
{
    if (const std::uint64_t revision = modelRevision(); myModelRevision != revision)
    {
        myTables.clear();
        myModelRevision = revision;
    }
    if (const auto known = myTables.find(&node); known != myTables.end()) return known->second;
    Table table;
    table.isSure = typeid(node) == typeid(DtEnumeratedDatatypeNode);
    const auto end = node.getEnumerationNodeEnd();
    for (auto it = node.getEnumerationNodeList(); table.isSure && it != end; ++it)
    {
        const DtEnumerationNode& enumerator = **it;
        table.isSure = typeid(enumerator) == typeid(DtEnumerationNode);
        table.enumerators.emplace(enumerator.getEnum().view(), &enumerator);
    }
    return myTables.emplace(&node, std::move(table)).first->second;
}

}  // namespace omtreader
