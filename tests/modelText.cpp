// SPDX-License-Identifier: Apache-2.0
#include "modelText.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

namespace
{

DtEnumeratedDatatypeNode* enumeratedNode(const std::vector<std::string>& words)
{
    auto* const node = named<DtEnumeratedDatatypeNode>(words[1]);
    node->setRepresentation(words[2]);
    for (std::size_t at = 3; at < words.size(); ++at)
    {
        const DtString word = words[at];
        auto* const enumerator = new DtEnumerationNode;
        enumerator->setEnum(word.sections('=')[0]);
        enumerator->setNumber(word.sections('=')[1].toInt());
        node->addEnumerationNode(enumerator);
    }
    return node;
}

/// Adds the components that the words from a place on say: "name:datatype", for a component of
/// complex datatypes with ":cardinality" after it, where "_" stands for a blank.
template <typename Component>
void addComponents(auto& node, const std::vector<std::string>& words, std::size_t from)
{
    for (std::size_t at = from; at < words.size(); ++at)
    {
        const std::vector<DtString> parts = DtString(words[at]).sections(':');
        auto* const component = named<Component>(parts[0]);
        component->setDatatype(parts[1]);
        if constexpr (requires { component->setEnumerator(parts[0]); })
            component->setEnumerator(parts[0]);
        if constexpr (requires { component->setCardinality(parts[2]); })
        {
            std::string cardinality = parts[2].str();
            std::replace(cardinality.begin(), cardinality.end(), '_', ' ');
            component->setCardinality(cardinality);
        }
        node.addComponentNode(component);
    }
}

}  // namespace

TreePtr modelOf(const std::string& declarations)
{
    TreePtr tree(new DtOMTTree);
    std::istringstream lines(declarations);
    for (std::string line; std::getline(lines, line, ';');)
    {
        std::istringstream stream(line);
        const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
        const std::string kind = words.at(0);
        if (kind == "enumerated") tree->addEnumeratedDatatypeNode(enumeratedNode(words));
        if (kind == "simple")
        {
            auto* const node = named<DtSimpleDatatypeNode>(words[1]);
            node->setRepresentation(words[2]);
            tree->addSimpleDatatypeNode(node);
        }
        if (kind == "array")
        {
            auto* const node = named<DtArrayDatatypeNode>(words[1]);
            node->setDatatype(words[2]);
            node->setEncoding(words[3]);
            node->setCardinality(words[4]);
            tree->addArrayDatatypeNode(node);
        }
        if (kind == "fixed")
        {
            auto* const node = named<DtFixedDatatypeNode>(words[1]);
            addComponents<DtFieldComponentNode>(*node, words, 2);
            tree->addFixedDatatypeNode(node);
        }
        if (kind == "variant")
        {
            auto* const node = named<DtVariantDatatypeNode>(words[1]);
            node->setDiscriminant(DtString(words[2]).sections(':')[0]);
            node->setDatatype(DtString(words[2]).sections(':')[1]);
            addComponents<DtAlternativeComponentNode>(*node, words, 3);
            tree->addVariantDatatypeNode(node);
        }
        if (kind == "complex")
        {
            auto* const node = named<DtComplexDatatypeNode>(words[1]);
            addComponents<DtComplexComponentNode>(*node, words, 2);
            tree->addComplexDatatypeNode(node);
        }
    }
    return tree;
}
