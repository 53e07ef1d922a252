// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enumeratedDatatypeNode.h"

#include "omtReader/nodeLookup.h"
#include "omtReader/textScan.h"
#include "util/dtMessages.h"

#include <algorithm>
#include <typeinfo>
#include <vector>

std::int32_t DtEnumeratedDatatypeNode::defaultEnumerationSize = 2;

/// The names and numbers of the list side by side, so that a datatype with very many enumerators is
/// not searched from the front for each new one. It answers just as the search would.
///
/// A few are compared one by one. For more there are two open-addressed tables of places, at most
/// half full; a place is one more than the index of an entry, and 0 is a free slot.
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
        myEntries.push_back(entryOf(enumerator));
        if (myEntries.size() <= theMostWithoutTables) return;
        if (2 * myEntries.size() > myNames.size())
            rebuildTables();
        else
            enter(myEntries.size());
    }

    bool isSure() const { return myIsSure; }

    const DtEnumerationNode* firstClash(const DtEnumerationNode& enumerator) const
    {
        const Entry sought = entryOf(enumerator);
        if (myNames.empty())
        {
            for (const Entry& entry : myEntries)
                if (hasNumberOf(entry, sought) || hasNameOf(entry, sought)) return entry.node;
            return nullptr;
        }
        const std::uint32_t name = myNames[nameSlot(sought)];
        const std::uint32_t number = myNumbers[numberSlot(sought)];
        if (name == 0 && number == 0) return nullptr;
        const bool nameIsFirst = number == 0 || (name != 0 && name < number);
        return myEntries[(nameIsFirst ? name : number) - 1].node;
    }

private:
    struct Entry
    {
        const DtEnumerationNode* node;
        std::uint32_t nameHash;
        std::int32_t number;
    };
    using Places = std::vector<std::uint32_t>;

    static Entry entryOf(const DtEnumerationNode& enumerator)
    {
        const std::size_t hash = std::hash<std::string_view>()(enumerator.getEnum().view());
        return {&enumerator, static_cast<std::uint32_t>(hash), enumerator.getNumber()};
    }

    static bool hasNameOf(const Entry& a, const Entry& b)
    {
        return a.nameHash == b.nameHash && a.node->getEnum() == b.node->getEnum();
    }

    static bool hasNumberOf(const Entry& a, const Entry& b) { return a.number == b.number; }

    void rebuildTables()
    {
        const std::size_t size = std::max(2 * myNames.size(), 4 * theMostWithoutTables);
        myNames.assign(size, 0);
        myNumbers.assign(size, 0);
        for (std::size_t place = 1; place <= myEntries.size(); ++place) enter(place);
    }

    void enter(std::size_t place)
    {
        const Entry& entry = myEntries[place - 1];
        std::uint32_t& name = myNames[nameSlot(entry)];
        if (name == 0) name = static_cast<std::uint32_t>(place);
        std::uint32_t& number = myNumbers[numberSlot(entry)];
        if (number == 0) number = static_cast<std::uint32_t>(place);
    }

    /// The slot with the place of an entry of the same name, or the free one for it.
    std::size_t nameSlot(const Entry& sought) const
    {
        return slot(myNames, sought, sought.nameHash, hasNameOf);
    }

    std::size_t numberSlot(const Entry& sought) const
    {
        // Spread over the table, as a model may hold numbers that differ in high bits only.
        const std::uint64_t spread =
            static_cast<std::uint32_t>(sought.number) * std::uint64_t(0x9E3779B97F4A7C15);
        return slot(myNumbers, sought, static_cast<std::uint32_t>(spread >> 32), hasNumberOf);
    }

    template <typename Test>
    std::size_t slot(const Places& places, const Entry& sought, std::uint32_t hash,
                     Test isSame) const
    {
        const std::size_t mask = places.size() - 1;  // the size is a power of two
        std::size_t at = hash & mask;
        while (places[at] != 0 && !isSame(myEntries[places[at] - 1], sought)) at = (at + 1) & mask;
        return at;
    }

    static constexpr std::size_t theMostWithoutTables = 16;

    bool myIsSure = true;
    std::vector<Entry> myEntries;
    Places myNames;
    Places myNumbers;
};

namespace
{

/// The text starts as many characters into the sentence as the number says, and the number itself
/// is not shown. That is a known fault which is kept: programs watch for these texts. A number that
/// lies outside the sentence is written behind the whole of it.
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
    myClashIndex->add(*enumerator);
}

DtEnumerationNode* DtEnumeratedDatatypeNode::getEnumerationNode(const DtString& name) const
{
    return omt::firstWhere(myEnumerators.list(),
                           [&](const auto& enumerator) { return enumerator.getEnum() == name; });
}

DtEnumerationNode* DtEnumeratedDatatypeNode::getEnumerationNode(int number) const
{
    return omt::firstWhere(myEnumerators.list(), [=](const auto& enumerator)
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
        const std::int32_t bits = omt::TextScan(myRepresentation).integer();
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
    if (!myClashIndex) myClashIndex = std::make_unique<ClashIndex>(myEnumerators.list());
    if (myClashIndex->isSure()) return myClashIndex->firstClash(enumerator);

    return omt::firstWhere(myEnumerators.list(),
                           [&](const DtEnumerationNode& other) {
                               return other.getEnum() == enumerator.getEnum() ||
                                      other.getNumber() == enumerator.getNumber();
                           });
}

void DtEnumeratedDatatypeNode::forgetClashIndex()
{
    myClashIndex.reset();
}
