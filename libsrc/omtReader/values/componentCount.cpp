// SPDX-License-Identifier: Apache-2.0
// How many values a component of an HLA 1.3 record has, by the components before it.
#include "omtReader/values/componentCount.h"

#include "omtReader/cardinalityForms.h"
#include "omtReader/complexComponentNode.h"
#include "omtReader/stringTree.h"

#include <algorithm>
#include <limits>
#include <string>
#include <typeinfo>
#include <vector>

namespace omtreader
{

int ComponentCount::of(const DtComplexComponentNode& node, const DtStringTree* root,
                       const DtStringTree* parent)
{
    const int form = node.getCardinalityType();
    if (form == DtComponentForm::thePadding) return 0;
    int most = node.getCardinalityMaximum();
    if (most < 0) most = std::numeric_limits<int>::max();
    // A component that is named alone keeps the parenthesis after it.
    std::string name = node.getConditionalComponent().str();
    if (!name.empty() && name.back() == ')') name.pop_back();
    const bool isDecided = form == DtComponentForm::theConditionWithValue ||
                           form == DtComponentForm::theCondition || most > 1;
    if (name.empty() || !isDecided) return most;
    const DtStringTree* const earlier = earlierComponent(name, root, parent);
    if (form == DtComponentForm::theConditionWithValue)
        return earlier && holdsValue(*earlier, node.getConditionalValue()) ? std::max(most, 1) : 0;
    if (!earlier) return most;
    bool isNumber = false;
    const int number = earlier->value().toInt(&isNumber);
    return isNumber ? std::clamp(number, 0, most) : most;
}

// The components of this record come first: those of its parents may have the same name.
const DtStringTree* ComponentCount::earlierComponent(const DtString& name, const DtStringTree* root,
                                                     const DtStringTree* parent)
{
    const DtStringTree* child = parent ? parent->firstChild() : nullptr;
    while (child && child->key() != name) child = mayLook(name) ? child->nextSibling() : nullptr;
    if (child || !root) return child;
    // A host's own nodes may find otherwise.
    return typeid(*root) == typeid(DtStringTree) ? find(name, *root) : root->findKey(name);
}

// As DtStringTree::findKey() finds, with every look counted: a value of many components may look
// through all of its nodes for each.
const DtStringTree* ComponentCount::find(const DtString& name, const DtStringTree& root)
{
    std::vector<const DtStringTree*> open = {&root};
    while (!open.empty() && mayLook(name))
    {
        const DtStringTree* const node = open.back();
        open.pop_back();
        if (node->key() == name) return node;
        if (node->firstChild()) open.push_back(node->firstChild());
        if (node->nextSibling()) open.push_back(node->nextSibling());
    }
    return nullptr;
}

bool ComponentCount::mayLook(const DtString& name)
{
    constexpr int theWorkOfALook = 4;
    return myBounds.allowWork(theWorkOfALook, name);
}

bool ComponentCount::holdsValue(const DtStringTree& node, const DtString& value)
{
    if (node.value() == value) return true;
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (!isNumber) return false;
    const DtString* const name = myResolver.enumerator(myResolver.find(node.datatype()), number);
    return name && *name == node.value();
}

}  // namespace omtreader
