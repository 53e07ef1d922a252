// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enumeratedDatatypeNode.h"

#include "omtReader/indexTable.h"
#include "omtReader/modelRevision.h"
#include "omtReader/nodeLookup.h"
#include "omtReader/textScan.h"
#include "util/dtMessages.h"

#include <algorithm>
#include <typeinfo>
#include <vector>

std::int32_t DtEnumeratedDatatypeNode::defaultEnumerationSize = 2;

/// The names and numbers of the list side by side, so that a datatype with very many enumerators is
/// not searched from the front for each new one. It answers just as the search would.
class DtEnumeratedDatatypeNode::ClashIndex
{
public:
    explicit ClashIndex(const EnumerationList& enumerators)
    {
        for (const DtEnumerationNode* enumerator : enumerators) add(*enumerator);
    }

    void add(const DtEnumerationNode& enumerator)
    {
        // A class that derives from the enumerator may change its answers without telling.
        myIsSure = myIsSure && typeid(enumerator) == typeid(DtEnumerationNode);
        myNames.add(hashOf(enumerator), myEnumerators.size());
        myNumbers.add(numberOf(enumerator), myEnumerators.size());
        myEnumerators.push_back(&enumerator);
    }

    bool isSure() const { return myIsSure; }

    const DtEnumerationNode* firstClash(const DtEnumerationNode& enumerator) const
    {
        const std::size_t name =
            myNames.find(hashOf(enumerator), [&](std::size_t index)
                         { return myEnumerators[index]->getEnum() == enumerator.getEnum(); });
        const std::size_t number =
            myNumbers.find(numberOf(enumerator), [&](std::size_t index)
                           { return myEnumerators[index]->getNumber() == enumerator.getNumber(); });
        const std::size_t first = std::min(name, number);
        return first == omtreader::IndexTable::theNone ? nullptr : myEnumerators[first];
    }

private:
    static std::size_t hashOf(const DtEnumerationNode& enumerator)
    {
        return std::hash<std::string_view>()(enumerator.getEnum().view());
    }

    static std::size_t numberOf(const DtEnumerationNode& enumerator)
    {
        return static_cast<std::uint32_t>(enumerator.getNumber());
    }

    bool myIsSure = true;
    std::vector<const DtEnumerationNode*> myEnumerators;
    omtreader::IndexTable myNames;
    omtreader::IndexTable myNumbers;
};

namespace
{

constexpr std::size_t theSizeWorthAnIndex = 32;

/// The text starts as many characters into the sentence as the number says, and the number itself
/// is not shown. That is a known fault which is kept: programs watch for these texts. A number that
/// lies outside the sentence is written after the whole of it.
void warnOfDuplicatedNumber(int number)
{
    constexpr std::string_view theSentence = "Duplicated enum number ";
    if (number >= 0 && static_cast<std::size_t>(number) <= theSentence.size())
        DtWarn << theSentence.substr(static_cast<std::size_t>(number)) << std::flush;
    else
        DtWarn << theSentence << number << std::flush;
}

}  // namespace

DtEnumeratedDatatypeNode::DtEnumeratedDatatypeNode() = default;

DtEnumeratedDatatypeNode::DtEnumeratedDatatypeNode(const DtEnumeratedDatatypeNode& other)
    : DtOMTNode(other),
      myDescription(other.myDescription),
      myRepresentation(other.myRepresentation),
      myEnumerators(other.myEnumerators)
{
    for (DtEnumerationNode* enumerator : myEnumerators.list()) enumerator->myOwner = this;
}

DtEnumeratedDatatypeNode& DtEnumeratedDatatypeNode::operator=(const DtEnumeratedDatatypeNode& other)
{
    if (this == &other) return *this;
    DtOMTNode::operator=(other);
    forgetClashIndex();
    myDescription = other.myDescription;
    myRepresentation = other.myRepresentation;
    myEnumerators = other.myEnumerators;
    for (DtEnumerationNode* enumerator : myEnumerators.list()) enumerator->myOwner = this;
    return *this;
}

DtEnumeratedDatatypeNode::~DtEnumeratedDatatypeNode() = default;

void DtEnumeratedDatatypeNode::addEnumerationNode(DtEnumerationNode* enumerator)
{
    if (!enumerator) return;
    if (const DtEnumerationNode* const clash = firstClash(*enumerator))
    {
        if (clash->getEnum() == enumerator->getEnum())
            DtWarn << "Duplicated enum name " << enumerator->getEnum() << std::flush;
        else
            warnOfDuplicatedNumber(enumerator->getNumber());
        return;
    }
    myEnumerators.add(enumerator);
    enumerator->myOwner = this;
    if (myClashIndex) myClashIndex->add(*enumerator);
    omtreader::noteModelChange();
}

DtEnumerationNode* DtEnumeratedDatatypeNode::getEnumerationNode(const DtString& name) const
{
    return omtreader::firstWhere(
        myEnumerators.list(), [&](const auto& enumerator) { return enumerator.getEnum() == name; });
}

DtEnumerationNode* DtEnumeratedDatatypeNode::getEnumerationNode(int number) const
{
    return omtreader::firstWhere(myEnumerators.list(), [=](const auto& enumerator)
                                 { return enumerator.getNumber() == number; });
}

DtEnumeratedDatatypeNode::EnumerationList::const_iterator
DtEnumeratedDatatypeNode::getEnumerationNodeList() const
{
    return myEnumerators.list().begin();
}

DtEnumeratedDatatypeNode::EnumerationList::const_iterator
DtEnumeratedDatatypeNode::getEnumerationNodeEnd() const
{
    return myEnumerators.list().end();
}

std::int32_t DtEnumeratedDatatypeNode::getExpectedEnumerationSize() const
{
    if (!myRepresentation.empty())
    {
        const std::int32_t bits = omtreader::TextScan(myRepresentation).integer();
        if (bits >= 1) return bits / 8;
        if (myRepresentation == "HLAoctet") return 1;
        if (myRepresentation.startsWith("HLAinteger16")) return 2;
        if (myRepresentation.startsWith("HLAinteger32")) return 4;
    }
    const DtString& name = getName();
    if (name.endsWith("8")) return 1;
    if (name.endsWith("16")) return 2;
    if (name.endsWith("32")) return 4;
    if (name == "RPRboolean") return 1;
    return defaultEnumerationSize;
}

const DtEnumerationNode* DtEnumeratedDatatypeNode::firstClash(const DtEnumerationNode& enumerator)
{
    if (!myClashIndex && myEnumerators.list().size() >= theSizeWorthAnIndex)
        myClashIndex = std::make_unique<ClashIndex>(myEnumerators.list());
    if (myClashIndex && myClashIndex->isSure()) return myClashIndex->firstClash(enumerator);

    return omtreader::firstWhere(myEnumerators.list(),
                                 [&](const DtEnumerationNode& other) {
                                     return other.getEnum() == enumerator.getEnum() ||
                                            other.getNumber() == enumerator.getNumber();
                                 });
}

void DtEnumeratedDatatypeNode::forgetClashIndex()
{
    myClashIndex.reset();
}
