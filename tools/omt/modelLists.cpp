// SPDX-License-Identifier: Apache-2.0
#include "modelLists.h"

namespace
{

template <typename Table>
void append(std::vector<Datatype>& datatypes, const Table& table)
{
    for (auto* node : table) datatypes.emplace_back(node);
}

}  // namespace

const DtString& nameOf(const Datatype& datatype)
{
    return std::visit([](const auto* node) -> const DtString& { return node->getName(); },
                      datatype);
}

std::vector<Datatype> datatypesOf(DtOMTTree& tree)
{
    using Tree = DtOMTTree;
    std::vector<Datatype> all;
    append(all, rangeOf(tree, &Tree::getBasicDataRepresentationNodeList,
                        &Tree::getBasicDataRepresentationEndNode));
    append(all, rangeOf(tree, &Tree::getSimpleDatatypeNodeList, &Tree::getSimpleDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getEnumeratedDatatypeNodeList,
                        &Tree::getEnumeratedDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getArrayDatatypeNodeList, &Tree::getArrayDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getFixedDatatypeNodeList, &Tree::getFixedDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getVariantDatatypeNodeList, &Tree::getVariantDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getComplexDatatypeNodeList, &Tree::getComplexDatatypeEndNode));
    return all;
}
