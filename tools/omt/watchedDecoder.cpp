// SPDX-License-Identifier: Apache-2.0
#include "watchedDecoder.h"

#include "messages.h"
#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/omtTree.h"
#include "omtReader/variantDatatypeNode.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr int theCountSize = 4;

/// Bits and variable arrays, see DtArrayDatatypeNode::getCardinalityType().
bool hasCountInFront(const DtArrayDatatypeNode& node)
{
    constexpr int theBitForm = 7;
    constexpr int theVariableForm = 10;
    return node.getCardinalityType() == theBitForm || node.getCardinalityType() == theVariableForm;
}

std::string counted(int number, const std::string& what)
{
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

/// The library's warning of a bound that was passed, which is more than a warning here.
std::string takeBound(std::vector<std::string>& warnings)
{
    const auto bound =
        std::find_if(warnings.begin(), warnings.end(),
                     [](const std::string& text) { return text.compare(0, 7, "Stopped") == 0; });
    if (bound == warnings.end()) return "cannot be decoded";
    std::string text = std::move(*bound);
    warnings.erase(bound);
    return text;
}

/// A node with all that the other one has, its parts included, which are taken from it.
std::unique_ptr<DtStringTree> takeOver(DtStringTree& node)
{
    auto taken = std::make_unique<DtStringTree>();
    taken->setKey(node.key());
    taken->setDatatype(node.datatype());
    taken->setOffset(node.offset());
    taken->setValue(node.value());
    taken->setFirstChild(node.firstChild());
    node.setFirstChild(nullptr);
    return taken;
}

void appendField(DtStringTree& record, std::unique_ptr<DtStringTree> field)
{
    DtStringTree* last = record.firstChild();
    if (!last) return record.setFirstChild(field.release());
    while (last->nextSibling()) last = last->nextSibling();
    last->setNextSibling(field.release());
}

}  // namespace

WatchedValue WatchedDecoder::watch(const ValueTarget& target, const Octets& octets)
{
    const HeldWarnings warnings;
    myIsWatching = true;
    myLength = static_cast<int>(octets.size());
    myRootValues = 0;
    myHasFailed = false;
    myFailure.clear();
    int consumed = 0;
    WatchedValue value;
    if (target.member && !octets.empty())
        value.tree.reset(
            createStringTreeRep(target.member, octets.data(), myLength, consumed, 0, nullptr));
    else
        value.tree.reset(createStringTreeRep(target.datatype, octets.data(), myLength, consumed,
                                             target.member, 0, nullptr, nullptr));
    if (target.member && octets.empty()) value.tree.reset();  // no value, not an empty one
    myIsWatching = false;
    value.warnings = warnings.list();
    if (!myFailure.empty())
        value.complaint = myFailure;
    else if (consumed < 0 || myHasFailed)
        value.complaint = target.name + ": " + takeBound(value.warnings);
    else if (consumed < myLength)
        value.complaint = target.name + ": " + counted(myLength - consumed, "octet") +
                          " left over at octet " + std::to_string(consumed);
    return value;
}

DtString WatchedDecoder::line(const ValueTarget& target, const Octets& octets)
{
    const auto length = static_cast<int>(octets.size());
    int consumed = 0;
    myIsLine = true;
    const DtString text = target.member
                              ? getFedNodeStringRep(target.member, octets.data(), length, consumed)
                              : getStringRep(target.datatype, octets.data(), length, consumed);
    myIsLine = false;
    return text;
}

int WatchedDecoder::octetsLeft(unsigned int offset) const
{
    const auto length = static_cast<unsigned int>(myLength);
    return offset < length ? static_cast<int>(length - offset) : 0;
}

std::string WatchedDecoder::path() const
{
    std::string text;
    for (const Step& step : myPath)
    {
        if (step.index >= 0)
            text += '[' + std::to_string(step.index) + ']';
        else
            text += (text.empty() ? "" : ".") + step.name->str();
        const bool isRepeated = &step == &myPath.front() && myRootValues > 1;
        if (isRepeated) text += '[' + std::to_string(myRootValues - 1) + ']';
    }
    return text;
}

/// The first failure counts; what follows is its consequence.
void WatchedDecoder::fail(unsigned int offset, const std::string& reason)
{
    if (!myHasFailed) myFailure = path() + ": octet " + std::to_string(offset) + ": " + reason;
    myHasFailed = true;
}

bool WatchedDecoder::holds(unsigned int offset, int needed)
{
    const int left = octetsLeft(offset);
    if (needed <= left) return true;
    fail(offset, counted(needed, "octet") + " needed, " + std::to_string(left) + " left");
    return false;
}

/// A part was read: its octets are looked at where it has no parts of its own that were.
void WatchedDecoder::check(DtStringTree* tree, unsigned int offset, int& consumed)
{
    if (myHasFailed)
    {
        consumed = -1;
        return;
    }
    if (!tree)
    {
        myHasFailed = consumed < 0;  // past a bound, which the library has told
        return;
    }
    if (consumed < 0)
    {
        if (tree->firstChild())
            myHasFailed = true;
        else
            fail(tree->offset(), "no representation is mapped to " + tree->datatype().str());
        return;
    }
    if (tree->firstChild()) return;
    const int padding = static_cast<int>(tree->offset() - offset);
    if (holds(tree->offset(), consumed - padding)) return;
    tree->setValue("");
    consumed = -1;
}

DtStringTree* WatchedDecoder::createStringTreeRep(const DtString& datatype, const void* data,
                                                  int length, int& consumed,
                                                  const DtOMTNode* keyNode, unsigned int offset,
                                                  DtStringTree* root, DtObjectHistory* history)
{
    const bool isWholeValue = myIsWatching && myPath.empty();
    if (isWholeValue)
    {
        ++myRootValues;
        myPath.push_back({keyNode ? &keyNode->getName() : &datatype, -1});
    }
    DtStringTree* const tree = MappedManager::createStringTreeRep(datatype, data, length, consumed,
                                                                  keyNode, offset, root, history);
    if (isWholeValue)
    {
        check(tree, offset, consumed);
        myPath.pop_back();
    }
    return tree;
}

/// Goes down to a field, an element, or a component, of which there may be many.
void WatchedDecoder::enter(const DtOMTDatatypeNode& node)
{
    const bool isElement = dynamic_cast<const DtArrayDatatypeNode*>(&node) != nullptr;
    const auto* const component = dynamic_cast<const DtComplexComponentNode*>(&node);
    if (!isElement || myComposites.empty()) myPath.push_back({&node.getName(), -1});
    if (myComposites.empty() || (!isElement && !component)) return;
    const int index = myComposites.back().found++;
    if (isElement || component->getCardinalityMaximum() != 1)
        myPath.push_back({&node.getName(), index});
}

DtStringTree* WatchedDecoder::createStringTreeRep(const DtOMTDatatypeNode& node, const void* data,
                                                  int length, int& consumed, unsigned int offset,
                                                  DtStringTree* root, DtObjectHistory* history)
{
    if (!myIsWatching)
        return MappedManager::createStringTreeRep(node, data, length, consumed, offset, root,
                                                  history);
    consumed = 0;
    if (node.getDatatype() == "NA") return nullptr;  // the model says that there is nothing
    const std::size_t depth = myPath.size();
    enter(node);
    DtStringTree* const tree =
        MappedManager::createStringTreeRep(node, data, length, consumed, offset, root, history);
    check(tree, offset, consumed);
    const bool isDropped = consumed < 0 && !myComposites.empty() && myComposites.back().isFixed;
    if (tree && isDropped) myComposites.back().cutOff = takeOver(*tree);
    myPath.resize(depth);
    return tree;
}

void WatchedDecoder::createFixedTreeRep(const DtString& datatype, const void* data, int length,
                                        int& consumed, DtStringTree* parent, DtStringTree* root,
                                        unsigned int offset, DtObjectHistory* history)
{
    if (!myIsWatching)
        return MappedManager::createFixedTreeRep(datatype, data, length, consumed, parent, root,
                                                 offset, history);
    myComposites.push_back({true});
    MappedManager::createFixedTreeRep(datatype, data, octetsLeft(offset), consumed, parent, root,
                                      offset, history);
    if (myComposites.back().cutOff) appendField(*parent, std::move(myComposites.back().cutOff));
    myComposites.pop_back();
}

void WatchedDecoder::createComplexTreeRep(const DtString& datatype, const void* data, int length,
                                          int& consumed, DtStringTree* parent, DtStringTree* root,
                                          unsigned int offset, DtObjectHistory* history)
{
    if (!myIsWatching)
        return MappedManager::createComplexTreeRep(datatype, data, length, consumed, parent, root,
                                                   offset, history);
    myComposites.emplace_back();
    MappedManager::createComplexTreeRep(datatype, data, octetsLeft(offset), consumed, parent, root,
                                        offset, history);
    leaveComponent();
    if (myHasFailed) consumed = -1;
    myComposites.pop_back();
}

/// The base calls it where the values of a component begin.
int WatchedDecoder::getComplexDatatypeCount(DtComplexComponentNode* node, const void* data,
                                            int length, DtStringTree* root, DtStringTree* parent)
{
    const int count = MappedManager::getComplexDatatypeCount(node, data, length, root, parent);
    if (!myIsWatching) return count;
    leaveComponent();
    if (length < 0) failIn(*node, counted(-length, "octet") + " of padding missing");
    if (myHasFailed) return 0;
    // The maximum stands where no other component tells the number.
    constexpr int theConditionForm = 2;
    const int most = node->getCardinalityMaximum();
    const bool isCounted = node->getCardinalityType() != theConditionForm &&
                           count < (most < 0 ? std::numeric_limits<int>::max() : most);
    Composite& record = myComposites.back();
    record.component = node;
    record.expected = isCounted ? count : 0;
    record.found = 0;
    return count;
}

/// The octets may have ended in front of the values that another component had announced, which is
/// no failure for the base.
void WatchedDecoder::leaveComponent()
{
    const Composite& record = myComposites.back();
    if (!record.component || record.found >= record.expected) return;
    failIn(*record.component, counted(record.expected, "value") + " needed, " +
                                  std::to_string(record.found) + " found");
}

/// A failure of a component where the octets end.
void WatchedDecoder::failIn(const DtComplexComponentNode& node, const std::string& reason)
{
    myPath.push_back({&node.getName(), -1});
    fail(static_cast<unsigned int>(myLength), reason);
    myPath.pop_back();
}

void WatchedDecoder::createVariantTreeRep(const DtString& datatype, const void* data, int length,
                                          int& consumed, DtStringTree* parent, DtStringTree* root,
                                          unsigned int offset, DtObjectHistory* history)
{
    if (!myIsWatching)
        return MappedManager::createVariantTreeRep(datatype, data, length, consumed, parent, root,
                                                   offset, history);
    myComposites.emplace_back();
    // The discriminant is read as a line, of which only the size is seen here: it is tried first.
    DtVariantDatatypeNode* const node = omtTree()->getVariantDatatypeNode(datatype);
    int size = 0;
    if (node)
    {
        myIsWatching = false;
        getStringRep(*node, data, octetsLeft(offset), size);
        myIsWatching = true;
        myPath.push_back({&node->getDiscriminant(), -1});
    }
    if (!node || holds(offset, size))
    {
        if (node) myPath.pop_back();
        MappedManager::createVariantTreeRep(datatype, data, octetsLeft(offset), consumed, parent,
                                            root, offset, history);
    }
    else
    {
        myPath.pop_back();
        consumed = -1;
    }
    myComposites.pop_back();
}

/// The representation reads on behind the end, where there are zeros.
void WatchedDecoder::createDefinedTreeRep(const DtString& datatype, const void* data, int length,
                                          int& consumed, DtStringTree* node, DtStringTree* root,
                                          unsigned int offset, DtObjectHistory* history)
{
    MappedManager::createDefinedTreeRep(datatype, data, myIsWatching ? octetsLeft(offset) : length,
                                        consumed, node, root, offset, history);
    const bool isCut = myIsWatching && !holds(offset, consumed);
    if (isCut || myIsLine)
    {
        delete node->firstChild();
        node->setFirstChild(nullptr);
    }
    if (!isCut) return;
    node->setValue("");
    consumed = -1;
}

void WatchedDecoder::createArrayTreeRep(const DtString& datatype, const void* data, int length,
                                        int& consumed, DtStringTree* parent, DtStringTree* root,
                                        unsigned int offset, DtObjectHistory* history)
{
    DtArrayDatatypeNode* const node = omtTree()->getArrayDatatypeNode(datatype);
    if (!myIsWatching || !node)
        return MappedManager::createArrayTreeRep(datatype, data, length, consumed, parent, root,
                                                 offset, history);
    if (hasCountInFront(*node) && !holds(offset, theCountSize))
    {
        consumed = -1;
        return;
    }
    myComposites.emplace_back();
    MappedManager::createArrayTreeRep(datatype, data, octetsLeft(offset), consumed, parent, root,
                                      offset, history);
    if (consumed < 0 && !myHasFailed) findMissingElement(*node, data, offset, history);
    myComposites.pop_back();
}

/// The octets ended between two elements: what the next one would have needed says it best.
void WatchedDecoder::findMissingElement(DtArrayDatatypeNode& node, const void* data,
                                        unsigned int offset, DtObjectHistory* history)
{
    const int expected = myComposites.back().expected;
    const int found = myComposites.back().found;
    if (expected < 0) return fail(offset, "the count is " + std::to_string(expected));
    const int length = octetsLeft(offset);
    int consumed = 0;
    delete createStringTreeRep(node, static_cast<const char*>(data) + length, 0, consumed,
                               offset + static_cast<unsigned int>(length), nullptr, history);
    fail(offset, counted(expected, "element") + " needed, " + std::to_string(found) + " found");
}

int WatchedDecoder::getArrayDatatypeCount(DtArrayDatatypeNode* node, const void* data, int length,
                                          DtStringTree* root, DtStringTree* other)
{
    const int count = MappedManager::getArrayDatatypeCount(node, data, length, root, other);
    if (!myComposites.empty()) myComposites.back().expected = count;
    return count;
}

void WatchedDecoder::getDatatypeRep(const DtString& datatype, const void* data, int length,
                                    int& consumed, DtString& text)
{
    MappedManager::getDatatypeRep(datatype, data, length, consumed, text);
    if (myIsWatching && consumed < 0) myUnmapped.insert(datatype.str());
}
