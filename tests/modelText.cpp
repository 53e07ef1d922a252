// SPDX-License-Identifier: Apache-2.0
#include "modelText.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

namespace
{

/// Adds the components that the words from an index on say: "name:datatype", for a component of
/// complex datatypes with ":cardinality" after it, where "_" stands for a blank.
template <typename Component>
void addComponents(auto& node, const std::vector<std::string>& words, std::size_t from)
{
    for (std::size_t at = from; at < words.size(); ++at)
    {
        const std::vector<DtString> parts = DtString(words[at]).sections(':');
        auto* const component = addComponent<Component>(node, parts[0], parts[1]);
        if constexpr (requires { component->setEnumerator(parts[0]); })
            component->setEnumerator(parts[0]);
        if constexpr (requires { component->setCardinality(parts[2]); })
        {
            std::string cardinality = parts[2].str();
            std::replace(cardinality.begin(), cardinality.end(), '_', ' ');
            component->setCardinality(cardinality);
        }
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
        if (kind == "enumerated")
        {
            DtEnumeratedDatatypeNode* const node = addEnumerated(*tree, words[1], words[2]);
            for (std::size_t at = 3; at < words.size(); ++at)
            {
                const std::vector<DtString> parts = DtString(words[at]).sections('=');
                addEnumerator(*node, parts[0], parts[1].toInt());
            }
        }
        if (kind == "simple") addSimple(*tree, words[1], words[2]);
        if (kind == "array") addArray(*tree, words[1], words[2], words[3], words[4]);
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
