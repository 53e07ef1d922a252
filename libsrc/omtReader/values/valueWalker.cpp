// SPDX-License-Identifier: Apache-2.0
// The walk over a value's octets, one function for each kind of datatype.
//
// What is read, in the order of the octets; "pad" is the implicit padding of a datatype and stands
// before every value, nothing while padding is off:
//
//   value      pad, then by kind: simple and enumerated as their representation reads
//   fixed      the value of every field
//   variant    the line of the discriminant, the padding of the variant's own datatype, the value
//              of the alternative that bears the discriminant's text
//   array      counted (variable, bits): 4 octets, the element's padding as of the array's own
//              offset; then the elements
//   complex    for every component as many values as its cardinality and condition give
#include "omtReader/values/valueWalker.h"

#include "omtReader/alternativeComponentNode.h"
#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/arrayDatatypeRep.h"
#include "omtReader/cardinalityForms.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/datatypeFedNode.h"
#include "omtReader/definedDatatypeRep.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/stringTree.h"
#include "omtReader/variantDatatypeNode.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <typeinfo>

namespace omtreader
{
namespace
{

constexpr int theCountSize = 4;

unsigned int offsetAfter(unsigned int offset, int octets)
{
    return offset + static_cast<unsigned int>(octets);
}

bool isPaddingShown()
{
    return DtNotifyLevel() >= DtMessageLevel::debug;
}

}  // namespace

/// Links the elements of an array below a node, in the order in which they come.
class ValueWalker::Chain
{
public:
    explicit Chain(DtStringTree& parent) : myParent(parent), myLast(parent.firstChild()) {}

    void add(DtStringTree* element)
    {
        if (!element) return;
        // From the last one on, appending takes no walk; a host's own nodes are asked from the
        // first.
        DtStringTree* const first = myParent.firstChild();
        if (!first)
            myParent.setFirstChild(element);
        else
            (typeid(*first) == typeid(DtStringTree) ? myLast : first)->appendToArray(element);
        myLast = element;
    }

private:
    DtStringTree& myParent;
    DtStringTree* myLast;
};

// Lines.

DtString ValueWalker::line(const DtString& datatype, Value value)
{
    value.consumed = 0;
    if (!value.data) return DtString();
    const ValueReader::Call call(myReader, value);
    ResolvedDatatype& resolved = myResolver.find(datatype);
    DtString text;
    switch (myResolver.kindOf(resolved))
    {
        case DtDatatypeManager::DtDatatypeSimple:
        case DtDatatypeManager::DtDatatypeDefined:
            myManager.getDatatypeRep(resolved.name, value.data, value.length, value.consumed, text);
            if (value.consumed == 0 && value.length != 0)
                myManager.getDefaultRep(value.data, value.length, value.consumed, text);
            return text;
        case DtDatatypeManager::DtDatatypeEnumerated:
            myManager.getEnumRep(resolved.name, value.data, value.length, value.consumed, text);
            return text;
        case DtDatatypeManager::DtDatatypeComplex:
        case DtDatatypeManager::DtDatatypeArray:
        case DtDatatypeManager::DtDatatypeFixed:
            return wrappedLine(resolved, value);
        case DtDatatypeManager::DtDatatypeVariant:
            myManager.getVariantRep(resolved.name, value.data, value.length, value.consumed, text);
            return text;
        case DtDatatypeManager::DtDatatypeUnknown:
            break;
    }
    myManager.getDefaultRep(value.data, value.length, value.consumed, text);
    return text;
}

DtString ValueWalker::wrappedLine(ResolvedDatatype& datatype, const Value& value)
{
    DtString line = mySettings.wrapperOpen;
    line += renderedLine(datatype.name, value);
    line += mySettings.wrapperClose;
    return line;
}

DtString ValueWalker::renderedLine(const DtString& datatype, const Value& value)
{
    const std::unique_ptr<DtStringTree> tree(myManager.createStringTreeRep(
        datatype, value.data, value.length, value.consumed, nullptr, 0, nullptr, nullptr));
    if (!tree) return DtString();
    const DtString& delimiter = myManager.getDelimiterMap(tree->datatype(), nullptr);
    return myManager.convertStringTreeToString(tree.get(), delimiter);
}

DtString ValueWalker::line(const DtOMTDatatypeNode& node, Value value)
{
    value.consumed = 0;
    if (!value.data) return DtString();
    const ValueReader::Call call(myReader, value);
    if (!hasAttributeMapping(node.getName()))
        return myManager.getStringRep(node.getDatatype(), value.data, value.length, value.consumed);
    DtString text;
    myManager.getAttributeRep(node.getName(), value.data, value.length, value.consumed, text);
    if (value.consumed == 0 && value.length != 0)
        myManager.getDefaultRep(value.data, value.length, value.consumed, text);
    return text;
}

DtString ValueWalker::line(const DtDatatypeFedNode& node, Value value)
{
    value.consumed = 0;
    const ValueReader::Call call(myReader, value);
    const int minimum = node.getCardinalityMinimum();
    const int maximum = std::max(node.getCardinalityMaximum(), minimum);
    const bool isUnlimited = node.getCardinalityType() == DtMemberForm::theOpen;
    DtString text;
    // Kept for compatibility, because lines of recorded values rely on it: the counter runs down,
    // so that once a value was read, the maximum stops nothing.
    int count = 0;
    while (value.data && value.consumed < value.length && (count < maximum || isUnlimited))
    {
        if (!text.empty()) text += myManager.getDelimiterMap(node.getName(), nullptr);
        if (hasAttributeMapping(node.getName()))
        {
            DtString whole;
            myManager.getAttributeRep(node.getName(), value.data, value.length, value.consumed,
                                      whole);
            text += whole;
            break;
        }
        int valueConsumed = 0;
        text +=
            myManager.getStringRep(node.getDatatype(), myReader.advance(value.data, value.consumed),
                                   value.length - value.consumed, valueConsumed);
        addTo(value.consumed, valueConsumed);
        if (valueConsumed == 0) break;
        --count;
        if (valueConsumed < 0) break;
    }
    if (count < minimum)
        DtWarn << "When collecting components for " << node.getDatatype() << " expected minimum of "
               << minimum << " but only found " << count << "\n";
    return text;
}

// Trees.

DtStringTree* ValueWalker::tree(const DtString& datatype, Value value, const DtOMTNode* keyNode,
                                unsigned int offset, DtStringTree* root, DtObjectHistory* history)
{
    value.consumed = 0;
    if (!value.data) return nullptr;
    const ValueReader::Call call(myReader, value);
    return build(myResolver.find(datatype), value, keyNode, offset, root, history);
}

DtStringTree* ValueWalker::build(ResolvedDatatype& datatype, const Value& value,
                                 const DtOMTNode* keyNode, unsigned int offset, DtStringTree* root,
                                 DtObjectHistory* history)
{
    value.consumed = 0;
    const DtString& key = keyNode ? keyNode->getName() : DtString::nullString();
    if (!myBounds.allowNode(datatype.name, offset, myDepth + 1, key.length()))
    {
        value.consumed = -1;
        return nullptr;
    }
    const int padding = myAlignment.paddingBefore(datatype, offset);
    const void* data = value.data;
    if (padding > 0)
    {
        data = myReader.advance(data, padding);
        offset = offsetAfter(offset, padding);
        if (isPaddingShown())
            DtDebug << "Implicitly adding " << padding << " padding bytes before " << datatype.name
                    << "\n";
    }
    auto node = std::make_unique<DtStringTree>(key, datatype.name, offset);
    // Kept for compatibility, because counts rely on it: padding is not taken off the length.
    fill(datatype, {data, value.length, value.consumed}, *node, root ? root : node.get(), history);
    if (value.consumed >= 0 && padding > 0) addTo(value.consumed, padding);
    return node.release();
}

void ValueWalker::simpleText(ResolvedDatatype& datatype, const Value& value, DtString& text)
{
    if (!mySettings.hasHost && datatype.rep)
        myReader.represent(*datatype.rep, datatype.name, value, text);
    else
        myManager.getDatatypeRep(datatype.name, value.data, value.length, value.consumed, text);
}

void ValueWalker::walk(Walk ours, Operation managers, ResolvedDatatype& datatype,
                       const Value& value, const Context& context)
{
    const Descent descent(myDepth);
    if (!mySettings.hasHost)
        (this->*ours)(datatype, value, context);
    else
        (myManager.*managers)(datatype.name, value.data, value.length, value.consumed,
                              context.parent, context.root, context.offset, context.history);
}

void ValueWalker::fill(ResolvedDatatype& datatype, const Value& value, DtStringTree& node,
                       DtStringTree* root, DtObjectHistory* history)
{
    using Manager = DtDatatypeManager;
    const Context context{&node, root, node.offset(), history};
    DtString text;
    switch (myResolver.kindOf(datatype))
    {
        case Manager::DtDatatypeSimple:
            simpleText(datatype, value, text);
            // Kept for compatibility, because hosts show both: for a line, a count of 0 calls for
            // it.
            if (value.length != 0 && value.consumed == -1)
                myManager.getDefaultRep(value.data, value.length, value.consumed, text);
            break;
        case Manager::DtDatatypeEnumerated:
            myManager.getEnumRep(datatype.name, value.data, value.length, value.consumed, text);
            break;
        case Manager::DtDatatypeComplex:
            return walk(&ValueWalker::walkComplex, &Manager::createComplexTreeRep, datatype, value,
                        context);
        case Manager::DtDatatypeArray:
            return walk(&ValueWalker::walkArray, &Manager::createArrayTreeRep, datatype, value,
                        context);
        case Manager::DtDatatypeVariant:
            return walk(&ValueWalker::walkVariant, &Manager::createVariantTreeRep, datatype, value,
                        context);
        case Manager::DtDatatypeFixed:
            return walk(&ValueWalker::walkFixed, &Manager::createFixedTreeRep, datatype, value,
                        context);
        case Manager::DtDatatypeDefined:
            return walk(&ValueWalker::walkDefined, &Manager::createDefinedTreeRep, datatype, value,
                        context);
        case Manager::DtDatatypeUnknown:
            myManager.getDefaultRep(value.data, value.length, value.consumed, text);
            break;
    }
    node.setValue(std::move(text));
}

bool ValueWalker::hasAttributeMapping(const DtString& name) const
{
    return !mySettings.attributeMappings.empty() &&
           mySettings.attributeMappings.find(name) != mySettings.attributeMappings.end();
}

// A part of a value, which may have a mapping of its own.
DtStringTree* ValueWalker::treeOf(const DtOMTDatatypeNode& node, ResolvedDatatype& datatype,
                                  const Value& value, unsigned int offset, DtStringTree* root,
                                  DtObjectHistory* history)
{
    if (!mySettings.hasHost && mySettings.attributeMappings.empty())
        return build(datatype, value, &node, offset, root, history);
    return myManager.createStringTreeRep(node, value.data, value.length, value.consumed, offset,
                                         root, history);
}

DtStringTree* ValueWalker::tree(const DtOMTDatatypeNode& node, Value value, unsigned int offset,
                                DtStringTree* root, DtObjectHistory* history)
{
    value.consumed = 0;
    if (!value.data) return nullptr;
    const ValueReader::Call call(myReader, value);
    ResolvedDatatype& resolved = myResolver.find(node.getDatatype());
    if (!hasAttributeMapping(node.getName()))
        return myManager.createStringTreeRep(resolved.name, value.data, value.length,
                                             value.consumed, &node, offset, root, history);
    return attributeTree(node.getName(), resolved, value, offset);
}

// A value whose own name is mapped stands where it stands: there is no padding before it.
DtStringTree* ValueWalker::attributeTree(const DtString& name, ResolvedDatatype& datatype,
                                         const Value& value, unsigned int offset)
{
    if (!myBounds.allowNode(datatype.name, offset, myDepth, name.length()))
    {
        value.consumed = -1;
        return nullptr;
    }
    DtString text;
    myManager.getAttributeRep(name, value.data, value.length, value.consumed, text);
    if (value.consumed == 0 && value.length != 0)
        myManager.getDefaultRep(value.data, value.length, value.consumed, text);
    auto node = std::make_unique<DtStringTree>(name, datatype.name, offset);
    node->setValue(std::move(text));
    return node.release();
}

DtStringTree* ValueWalker::tree(const DtDatatypeFedNode& node, Value value, unsigned int offset,
                                DtObjectHistory* history)
{
    value.consumed = 0;
    if (!value.data) return nullptr;
    const ValueReader::Call call(myReader, value);
    if (hasAttributeMapping(node.getName()))
        return attributeTree(node.getName(), myResolver.find(node.getDatatype()), value, offset);
    const int minimum = node.getCardinalityMinimum();
    const bool isOpen = node.getCardinalityType() == DtMemberForm::theOpen ||
                        std::max(node.getCardinalityMaximum(), minimum) > 0;
    std::unique_ptr<DtStringTree> holder = std::make_unique<DtStringTree>();
    Chain chain(*holder);
    int count = 0;
    while (isOpen && value.consumed < value.length)
    {
        int valueConsumed = 0;
        chain.add(myManager.createStringTreeRep(
            node.getDatatype(), myReader.advance(value.data, value.consumed),
            value.length - value.consumed, valueConsumed, &node,
            offsetAfter(offset, value.consumed), holder->firstChild(), history));
        if (valueConsumed < 0) value.consumed = -1;
        if (valueConsumed <= 0) break;
        addTo(value.consumed, valueConsumed);
        ++count;
    }
    if (value.consumed >= 0 && count < minimum)
        DtWarn << "When collecting components for " << node.getDatatype() << " expected minimum of "
               << minimum << " but only found " << count << "\n";
    DtStringTree* const first = holder->firstChild();
    holder->setFirstChild(nullptr);
    return first;
}

void ValueWalker::variantLine(const DtString& datatype, Value value, DtString& text)
{
    text = DtString();
    value.consumed = 0;
    if (!value.data) return;
    const ValueReader::Call call(myReader, value);
    text = renderedLine(datatype, value);
}

void ValueWalker::arrayLine(const DtString& datatype, Value value, DtString& text)
{
    text = DtString();
    value.consumed = -1;
    const ValueReader::Call call(myReader, value);
    ResolvedDatatype& resolved = myResolver.find(datatype);
    DtArrayDatatypeNode* const node = myResolver.array(resolved);
    if (dynamic_cast<const DtArrayDatatypeRep*>(resolved.rep))
        myManager.getArrayRepBySize(resolved.name, value.data, value.length, value.consumed, text);
    else if (node)
        myManager.getArrayRepByCount(node, value.data, value.length, value.consumed, text);
}

void ValueWalker::arrayLineByCount(DtArrayDatatypeNode& node, Value value, DtString& text)
{
    text = DtString();
    value.consumed = 0;
    if (!value.data) return;
    const ValueReader::Call call(myReader, value);
    DtStringTree parent;
    parent.setDatatype(node.getName());
    countedArray(node, value, {&parent, &parent, 0, nullptr});
    text = myManager.convertStringTreeToString(&parent,
                                               myManager.getDelimiterMap(node.getName(), nullptr));
}

// The walks, by kind.

void ValueWalker::enter(Walk ours, const DtString& datatype, Value value, const Context& context)
{
    if (!value.data) return;
    if (!context.parent)
    {
        value.consumed = -1;
        return;
    }
    const ValueReader::Call call(myReader, value);
    (this->*ours)(myResolver.find(datatype), value, context);
}

// What is left of a value after the octets that were taken.
EncodedValue ValueWalker::rest(const Value& value, int& consumed) const
{
    const void* const data = myReader.advance(value.data, value.consumed);
    return {data, value.length - value.consumed, consumed};
}

// Records.

void ValueWalker::walkFixed(ResolvedDatatype& resolved, const Value& value, const Context& context)
{
    DtFixedDatatypeNode* const node = myResolver.fixed(resolved);
    if (!node) return;
    value.consumed = 0;
    DtStringTree* last = nullptr;
    std::size_t index = 0;
    for (auto it = node->getComponentNodeList(); it != node->getComponentNodeEnd(); ++it, ++index)
    {
        const DtOMTDatatypeNode& field = **it;
        int fieldConsumed = -1;
        std::unique_ptr<DtStringTree> child;
        if (value.consumed <= value.length)
            child.reset(treeOf(
                field, myResolver.component(resolved, index, field), rest(value, fieldConsumed),
                offsetAfter(context.offset, value.consumed), context.root, context.history));
        if (fieldConsumed < 0)
        {
            value.consumed = -1;
            return;
        }
        addTo(value.consumed, fieldConsumed);
        if (!child) continue;
        if (last)
            last->setNextSibling(child.get());
        else
            context.parent->setFirstChild(child.get());
        last = child.release();
    }
}

void ValueWalker::walkVariant(ResolvedDatatype& resolved, const Value& value,
                              const Context& context)
{
    DtVariantDatatypeNode* const node = myResolver.variant(resolved);
    if (!node) return;
    DtString text = myManager.getStringRep(*node, value.data, value.length, value.consumed);
    const DtString& key = node->getDiscriminant();
    if (!myBounds.allowNode(resolved.name, context.offset, myDepth, key.length()))
    {
        value.consumed = -1;
        return;
    }
    // Kept for compatibility, because displays rely on it: the offset is the discriminant's size.
    auto* const discriminant = new DtStringTree(key, myResolver.component(resolved, 0, *node).name,
                                                static_cast<unsigned int>(value.consumed));
    context.parent->setFirstChild(discriminant);
    const int padding = myManager.implicitPadding(context.offset, resolved.name);
    if (padding > 0) addTo(value.consumed, padding);

    std::size_t index = 1;
    const auto end = node->getComponentNodeEnd();
    auto it = node->getComponentNodeList();
    for (; it != end && (*it)->getEnumerator() != text; ++it) ++index;
    discriminant->setValue(std::move(text));
    // A variant may have very many alternatives, and a value very many variants.
    if (!myBounds.allowWork(static_cast<std::int64_t>(index), resolved.name, context.offset))
    {
        value.consumed = -1;
        return;
    }
    if (it == end) return;
    int alternativeConsumed = 0;
    discriminant->setNextSibling(
        treeOf(**it, myResolver.component(resolved, index, **it), rest(value, alternativeConsumed),
               offsetAfter(context.offset, value.consumed), context.root, context.history));
    // Kept for compatibility, because callers rely on the count: a -1 is added as it is.
    addTo(value.consumed, alternativeConsumed);
}

void ValueWalker::walkDefined(ResolvedDatatype& resolved, const Value& value,
                              const Context& context)
{
    const DtDatatypeRep* const mapped = resolved.rep;
    if (!mapped) return;
    DtString text;
    if (const auto* const rep = dynamic_cast<const DtDefinedDatatypeRep*>(mapped))
    {
        text = rep->stringRep(value.data, &value.consumed, context.history);
        context.parent->setFirstChild(rep->createTreeRep(value.data, nullptr, context.history));
    }
    else
    {
        myManager.getDefaultRep(value.data, value.length, value.consumed, text);
    }
    context.parent->setValue(std::move(text));
}

// Arrays.

void ValueWalker::walkArray(ResolvedDatatype& resolved, const Value& value, const Context& context)
{
    if (DtArrayDatatypeNode* const node = myResolver.array(resolved))
        countedArray(*node, value, context);
}

// Ends where the octets end. A -1 is not passed on: kept for compatibility, because what stands
// before the end is still shown.
void ValueWalker::lengthlessArray(DtArrayDatatypeNode& node, const Value& value,
                                  const Context& context)
{
    Chain chain(*context.parent);
    value.consumed = 0;
    ResolvedDatatype& element = myResolver.find(node.getDatatype());
    while (value.consumed < value.length)
    {
        int elementConsumed = 0;
        chain.add(treeOf(node, element, rest(value, elementConsumed),
                         offsetAfter(context.offset, value.consumed), context.parent->firstChild(),
                         context.history));
        if (elementConsumed <= 0) break;
        addTo(value.consumed, elementConsumed);
    }
}

void ValueWalker::countedArray(DtArrayDatatypeNode& node, const Value& value,
                               const Context& context)
{
    const int form = node.getCardinalityType();
    if (form == DtArrayForm::theLengthless) return lengthlessArray(node, value, context);
    const int count =
        myManager.getArrayDatatypeCount(&node, value.data, value.length, context.root, nullptr);
    if (form == DtArrayForm::theBits || form == DtArrayForm::theCounted)
    {
        value.consumed = theCountSize;
        // Kept for compatibility, because recorded values are padded so: as of the offset of the
        // array, not of that after the count.
        const int padding = myManager.implicitPadding(context.offset, node.getDatatype());
        if (padding > 0) addTo(value.consumed, padding);
    }
    const bool mayBeEmpty = form == DtArrayForm::theBounded && node.getCardinalityMinimum() == 0;
    if (mayBeEmpty && value.length == 0) return;
    const std::int64_t found = elements(node, value, context, count);
    const bool isEnough =
        found < count && form == DtArrayForm::theFixed && node.getCardinalityMinimum() <= found;
    const bool isBoundedEnough = form == DtArrayForm::theBounded &&
                                 value.consumed == value.length &&
                                 node.getCardinalityMinimum() <= found;
    if (found != count && !isEnough && !isBoundedEnough) value.consumed = -1;
}

// Gives how many there are: for a form that ends at a zero, in octets.
std::int64_t ValueWalker::elements(DtArrayDatatypeNode& node, const Value& value,
                                   const Context& context, std::int64_t count)
{
    const int form = node.getCardinalityType();
    Chain chain(*context.parent);
    ResolvedDatatype& element = myResolver.find(node.getDatatype());
    std::int64_t found = 0;
    while (found < count)
    {
        int elementConsumed = 0;
        chain.add(treeOf(node, element, rest(value, elementConsumed),
                         offsetAfter(context.offset, value.consumed), context.parent->firstChild(),
                         context.history));
        addTo(value.consumed, elementConsumed);
        found += form == DtArrayForm::theZeroEnded ? elementConsumed : 1;
        if (elementConsumed < 0) return -1;
        if (value.consumed >= value.length) break;
    }
    return found;
}

// HLA 1.3 records.

void ValueWalker::walkComplex(ResolvedDatatype& resolved, const Value& value,
                              const Context& context)
{
    DtComplexDatatypeNode* const node = myResolver.complex(resolved);
    if (!node) return;
    value.consumed = 0;
    DtStringTree* last = nullptr;
    std::size_t index = 0;
    for (auto it = node->getComponentNodeList(); it != node->getComponentNodeEnd(); ++it, ++index)
    {
        componentValues(**it, myResolver.component(resolved, index, **it), value, context, last);
        // Paddings, and components whose condition does not hold, make no node.
        const bool isAllowed = myBounds.allowWork(1, resolved.name, context.offset);
        if (!isAllowed || value.consumed > value.length) value.consumed = -1;
        if (value.consumed < 0) return;
    }
}

void ValueWalker::componentValues(DtComplexComponentNode& node, ResolvedDatatype& datatype,
                                  const Value& value, const Context& context, DtStringTree*& last)
{
    const int boundary = node.getCardinalityMaximum();
    if (node.getCardinalityType() == DtComponentForm::thePadding && boundary > 1)
        addTo(value.consumed, (boundary - value.consumed % boundary) % boundary);
    const int count = myManager.getComplexDatatypeCount(
        &node, myReader.advance(value.data, value.consumed), value.length - value.consumed,
        context.root, context.parent);
    const int minimum = std::min(node.getCardinalityMinimum(), count);
    DtStringTree* first = nullptr;
    DtStringTree* latest = nullptr;
    for (int found = 0; found < count; ++found)
    {
        if (found >= minimum && value.consumed >= value.length) return;
        int valueConsumed = 0;
        DtStringTree* const child =
            treeOf(node, datatype, rest(value, valueConsumed),
                   offsetAfter(context.offset, value.consumed), context.root, context.history);
        if (child && first)
            latest->appendToArray(child);
        else if (child && last)
            last->setNextSibling(child);
        else if (child)
            context.parent->setFirstChild(child);
        if (child && !first) last = first = child;
        if (child) latest = child;
        addTo(value.consumed, valueConsumed);
        if (valueConsumed < 0 || value.consumed > value.length) value.consumed = -1;
        if (value.consumed < 0 || valueConsumed == 0) return;
    }
}

}  // namespace omtreader
