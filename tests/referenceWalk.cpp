// SPDX-License-Identifier: Apache-2.0
// A slow and obvious decoder, to compare the fast one with.
#include "referenceWalk.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/datatypeRep.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/omtTree.h"
#include "omtReader/variantDatatypeNode.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <set>
#include <vector>

namespace
{

using Manager = DtDatatypeManager;
using Tree = std::unique_ptr<DtStringTree>;

struct TooManyNodes
{
};

int intAt(const char* data)
{
    unsigned int number = 0;
    for (int at = 0; at < 4; ++at) number = number << 8 | static_cast<unsigned char>(data[at]);
    return static_cast<int>(number);
}

class ReferenceWalk
{
public:
    /// Where a value stands, and how many octets are said to be left for it.
    struct At
    {
        const char* data;
        int length;
        unsigned int offset;
        At after(int count) const
        {
            return {data + count, length - count, offset + static_cast<unsigned int>(count)};
        }
    };

    Manager& myManager;
    int myNodesLeft;
    DtString myWrapperOpen;
    DtString myWrapperClose;
    DtOMTTree& myModel = *myManager.omtTree();
    Manager::NameMap myMappings{myManager.getRepMapList(), myManager.getRepMapListEnd()};
    Manager::NameRepMap myReps{myManager.getNameRepMapList(), myManager.getNameRepMapListEnd()};
    std::set<DtString> myBeingAligned = {};

    Tree newNode(const DtString& key, const DtString& datatype, unsigned int offset)
    {
        if (--myNodesLeft < 0) throw TooManyNodes();
        auto node = std::make_unique<DtStringTree>();
        node->setKey(key);
        node->setDatatype(datatype);
        node->setOffset(offset);
        return node;
    }

    const DtDatatypeRep* repOf(const DtString& datatype)
    {
        const auto mapping = myMappings.find(datatype);
        return mapping == myMappings.end() ? nullptr : registered(mapping->second);
    }
    const DtDatatypeRep* registered(const DtString& name)
    {
        const auto rep = myReps.find(name);
        return rep == myReps.end() ? nullptr : rep->second;
    }

    DtString shownBy(const DtDatatypeRep* rep, At at, int& consumed)
    {
        consumed = -1;
        return rep ? rep->stringRep(at.data, &consumed) : DtString();
    }

    DtString hexadecimal(At at, int& consumed)
    {
        DtString text;
        for (consumed = 0; consumed < at.length; ++consumed)
            text +=
                (consumed ? " " : "") + registered("hex")->stringRep(at.data + consumed, nullptr);
        return text;
    }

    DtString shownOrHexadecimal(const DtDatatypeRep* rep, At at, int& consumed)
    {
        const DtString text = shownBy(rep, at, consumed);
        return consumed == 0 && at.length != 0 ? hexadecimal(at, consumed) : text;
    }

    DtString enumerated(const DtString& datatype, At at, int& consumed)
    {
        const DtDatatypeRep* const rep = repOf(datatype);
        const DtString text = shownBy(rep, at, consumed);
        const bool isHex = rep && rep == registered("hex");
        char* end = nullptr;
        const DtString digits = (isHex ? "0x" : "") + text;
        const double number = std::strtod(digits.c_str(), &end);
        const auto* const node = myModel.getEnumeratedDatatypeNode(datatype);
        for (auto it = node->getEnumerationNodeList(); it != node->getEnumerationNodeEnd(); ++it)
        {
            const int own = (*it)->getNumber();
            const bool isOwn = own == number || static_cast<unsigned int>(own) == number;
            if (isOwn && *end == 0 && !text.empty()) return (*it)->getEnum();
        }
        return isHex ? DtString(static_cast<int>(number)) : text;
    }

    DtString line(const DtString& datatype, At at, int& consumed)
    {
        at.offset = 0;
        const auto kind = myManager.getDatatypeEnum(datatype);
        if (kind == Manager::DtDatatypeSimple)
            return shownOrHexadecimal(repOf(datatype), at, consumed);
        const Tree whole = tree(datatype, at, consumed, "");
        // Only for records and arrays a node counts.
        const bool isSingle =
            kind == Manager::DtDatatypeEnumerated || kind == Manager::DtDatatypeUnknown;
        if (isSingle) ++myNodesLeft;
        const DtString text = render(whole.get(), myManager.getDelimiterMap(datatype, nullptr));
        const bool isWrapped = kind == Manager::DtDatatypeArray || kind == Manager::DtDatatypeFixed;
        return isWrapped ? myWrapperOpen + text + myWrapperClose : text;
    }

    Tree tree(const DtString& datatype, At at, int& consumed, const DtString& key)
    {
        consumed = 0;
        const int pad = padding(at.offset, datatype);
        at = {at.data + pad, at.length, at.offset + static_cast<unsigned int>(pad)};
        Tree node = newNode(key, datatype, at.offset);
        const auto kind = myManager.getDatatypeEnum(datatype);
        if (kind == Manager::DtDatatypeArray) array(datatype, at, consumed, *node);
        if (kind == Manager::DtDatatypeVariant) variant(datatype, at, consumed, *node);
        if (kind == Manager::DtDatatypeFixed) fixed(datatype, at, consumed, *node);
        if (kind == Manager::DtDatatypeEnumerated)
            node->setValue(enumerated(datatype, at, consumed));
        if (kind == Manager::DtDatatypeSimple)
            node->setValue(shownBy(repOf(datatype), at, consumed));
        const bool isUnshown =
            kind == Manager::DtDatatypeSimple && at.length != 0 && consumed == -1;
        if (isUnshown || kind == Manager::DtDatatypeUnknown)
            node->setValue(hexadecimal(at, consumed));
        if (consumed >= 0) consumed += pad;
        return node;
    }

    Tree component(const DtOMTDatatypeNode& node, At at, int& consumed)
    {
        const DtString& mapping = myManager.attributeMapping(node.getName());
        if (mapping.empty()) return tree(node.getDatatype(), at, consumed, node.getName());
        Tree child = newNode(node.getName(), node.getDatatype(), at.offset);
        child->setValue(shownOrHexadecimal(registered(mapping), at, consumed));
        return child;
    }

    void fixed(const DtString& datatype, At at, int& consumed, DtStringTree& parent)
    {
        const auto* const node = myModel.getFixedDatatypeNode(datatype);
        DtStringTree* last = nullptr;
        for (auto it = node->getComponentNodeList(); it != node->getComponentNodeEnd(); ++it)
        {
            int fieldConsumed = -1;
            Tree child;
            if (consumed <= at.length) child = component(**it, at.after(consumed), fieldConsumed);
            consumed = fieldConsumed < 0 ? -1 : consumed + fieldConsumed;
            if (consumed < 0) return;
            DtStringTree* const now = child.release();
            last ? last->setNextSibling(now) : parent.setFirstChild(now);
            last = now;
        }
    }

    void variant(const DtString& datatype, At at, int& consumed, DtStringTree& parent)
    {
        const auto* const node = myModel.getVariantDatatypeNode(datatype);
        const DtString& mapping = myManager.attributeMapping(node->getName());
        const DtString text = mapping.empty()
                                  ? line(node->getDatatype(), at, consumed)
                                  : shownOrHexadecimal(registered(mapping), at, consumed);
        parent.setFirstChild(newNode(node->getDiscriminant(), node->getDatatype(),
                                     static_cast<unsigned int>(consumed))
                                 .release());
        parent.firstChild()->setValue(text);
        consumed += padding(at.offset, datatype);
        const auto end = node->getComponentNodeEnd();
        const auto it = std::find_if(node->getComponentNodeList(), end,
                                     [&](const auto* alternative)
                                     { return alternative->getEnumerator() == text; });
        if (it == end) return;
        int more = 0;
        parent.firstChild()->setNextSibling(component(**it, at.after(consumed), more).release());
        consumed += more;
    }

    void array(const DtString& datatype, At at, int& consumed, DtStringTree& parent)
    {
        const DtArrayDatatypeNode& node = *myModel.getArrayDatatypeNode(datatype);
        const int form = node.getCardinalityType();
        const int wanted = count(node, at);
        if (form == 7 || form == 10) consumed = 4 + padding(at.offset, node.getDatatype());
        if (form == 2 && at.length == 0 && node.getCardinalityMinimum() == 0) return;
        if (form == 8 && at.length <= 0) return;
        int found = 0;
        for (int more = 0; found < wanted;)
        {
            DtStringTree* const child = component(node, at.after(consumed), more).release();
            if (parent.firstChild())
                parent.firstChild()->appendToArray(child);
            else
                parent.setFirstChild(child);
            if (form == 8 && more <= 0) return;
            consumed += more;
            found += form == 4 ? more : 1;
            if (form == 2 && consumed == at.length && found >= node.getCardinalityMinimum()) return;
            if (more < 0) consumed = -1;
            if (more < 0 || (form == 8 && consumed >= at.length)) return;
            if (consumed >= at.length) break;
        }
        if (found != wanted) consumed = -1;
    }

    static int count(const DtArrayDatatypeNode& node, At at)
    {
        const int form = node.getCardinalityType();
        const int bits = form == 7 ? intAt(at.data) : 0;
        int octets = 0;
        while (form == 4 && octets < at.length && at.data[octets] != 0) ++octets;
        if (form == 1 || form == 5) return node.getCardinalityMinimum();
        if (form == 2) return node.getCardinalityMaximum();
        if (form == 3 || form == 6) return 0;
        if (form == 4) return octets < at.length ? octets + 1 : octets;
        if (form == 7) return bits > 1 ? (bits - 1) / 8 + 1 : bits;
        if (form == 8) return 2147483647;
        return form == 10 ? intAt(at.data) : 1;
    }

    DtString render(const DtStringTree* tree, const DtString& delimiter)
    {
        if (!tree) return DtString();
        const auto other = [&](const DtStringTree* node)
        {
            const auto kind = myManager.getDatatypeEnum(node->datatype());
            const bool isSingle = kind == Manager::DtDatatypeSimple ||
                                  kind == Manager::DtDatatypeEnumerated ||
                                  kind == Manager::DtDatatypeVariant;
            return render(
                node, isSingle ? delimiter : myManager.getDelimiterMap(node->datatype(), nullptr));
        };
        DtString text = tree->value() + render(tree->firstChild(), delimiter);
        if (tree->nextElement()) text += "[" + other(tree->nextElement()) + "]";
        if (tree->nextSibling()) text += delimiter + other(tree->nextSibling());
        return text;
    }

    int padding(unsigned int offset, const DtString& datatype)
    {
        if (!myManager.isImplicitPaddingEnabled()) return 0;
        const unsigned int boundary = alignment(datatype);
        return static_cast<int>((boundary - offset % boundary) % boundary);
    }

    /// Inside itself, a datatype has the alignment 1.
    unsigned int alignment(const DtString& datatype)
    {
        if (!myBeingAligned.insert(datatype).second) return 1;
        const unsigned int result = alignmentByKind(datatype);
        myBeingAligned.erase(datatype);
        return result;
    }
    unsigned int alignmentByKind(const DtString& datatype)
    {
        if (const auto* const node = myModel.getVariantDatatypeNode(datatype))
            return alignment(node->getDatatype());
        if (const auto* const node = myModel.getArrayDatatypeNode(datatype))
        {
            const int form = node->getCardinalityType();
            if (form == 7 || form == 10) return 4;
            return form == 5 || form == 0 ? 1 : alignment(node->getDatatype());
        }
        unsigned int largest = 1;
        if (const auto* const node = myModel.getFixedDatatypeNode(datatype))
            for (auto it = node->getComponentNodeList(); it != node->getComponentNodeEnd(); ++it)
                largest = std::max(largest, alignment((*it)->getDatatype()));
        else if (const DtDatatypeRep* const rep = repOf(datatype))
            largest = std::max(largest, rep->byteAlignment());
        else if (myMappings.count(datatype))
            // The name of a representation that there is not may be that of another datatype.
            return alignment(myMappings.at(datatype));
        return largest;
    }
};

}  // namespace

Decoded decodeSlowly(DtDatatypeManager& manager, const DtString& datatype, const char* data,
                     int length, const DtString& wrapperOpen, const DtString& wrapperClose)
{
    // Zeros all around, at an address like that of the data.
    constexpr std::size_t theMargin = 4096;
    std::vector<char> octets(2 * theMargin + static_cast<std::size_t>(length));
    char* begin = octets.data() + theMargin;
    while ((begin - data) % 64 != 0) ++begin;
    std::copy_n(data, length, begin);
    Decoded result{theTooMany, 0, theTooMany, 0};
    const auto walk = [&]() -> ReferenceWalk {
        return {manager, manager.nodeLimit() + length, wrapperOpen, wrapperClose};
    };
    try
    {
        result.line = walk().line(datatype, {begin, length, 0}, result.lineConsumed).str();
        const Tree tree = walk().tree(datatype, {begin, length, 0}, result.treeConsumed, "");
        result.tree = shown(tree.get());
    }
    catch (const TooManyNodes&)
    {
        result.lineConsumed = result.treeConsumed = -1;
    }
    return result;
}

std::string shown(const DtStringTree* tree)
{
    if (!tree) return "";
    return "(" + tree->key().str() + ' ' + tree->datatype().str() + ' ' +
           std::to_string(tree->offset()) + " '" + tree->value().str() + "' child " +
           shown(tree->firstChild()) + " element " + shown(tree->nextElement()) + " sibling " +
           shown(tree->nextSibling()) + ")\n";
}
