// SPDX-License-Identifier: Apache-2.0
// The enumerators of enumerated datatypes by their names.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

class DtEnumeratedDatatypeNode;
class DtEnumerationNode;

namespace omtreader
{

/// Finds what DtEnumeratedDatatypeNode::getEnumerationNode() finds, in constant time. It starts
/// anew after any change of a model.
class EnumeratorNames
{
public:
    /// The first enumerator of this name, or null.
    const DtEnumerationNode* find(const DtEnumeratedDatatypeNode& node, std::string_view name);

private:
    struct Table
    {
        bool isSure = true;  // no host's class may give another answer than the table
        std::unordered_map<std::string_view, const DtEnumerationNode*> enumerators;
    };
    const Table& tableOf(const DtEnumeratedDatatypeNode& node);

    std::uint64_t myModelRevision = 0;
    std::unordered_map<const DtEnumeratedDatatypeNode*, Table> myTables;
};

}  // namespace omtreader
