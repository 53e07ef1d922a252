// SPDX-License-Identifier: Apache-2.0
#include "valueTable.h"

#include "modelLists.h"
#include "namedRecords.h"
#include "omtReader/datatypeRep.h"
#include "plainText.h"
#include "textTable.h"

#include <unordered_map>

namespace
{

/// What the table needs to know of a datatype.
struct Kind
{
    bool isArray = false;
    bool isVariant = false;
    unsigned int characterSize = 0;  // in octets; 0 for anything but characters and arrays of them
    bool isText = false;
    std::string units = {};
    std::vector<RecordPart> parts = {};  // of a record that is shown as a whole
};

class ValueRows
{
public:
    ValueRows(DtDatatypeManager& manager, const DtDatatypeManager::Octets& octets)
        : myManager(manager), myOctets(octets)
    {
    }

    void add(const DtStringTree& node, const std::string& name, std::size_t depth,
             unsigned int offset);
    std::string text() const { return myTable.text(); }

private:
    const Kind& kindOf(const DtString& datatype);
    Kind findKind(const DtString& datatype);
    Kind findRepresentation(const DtString& datatype);
    std::string valueOf(const DtStringTree& node, const Kind& kind) const;
    std::string charactersOf(const DtStringTree& node, unsigned int size) const;
    void addParts(const DtStringTree& node, const Kind& kind, std::size_t depth,
                  unsigned int offset);
    void addRecordParts(const DtStringTree& node, const Kind& kind, std::size_t depth,
                        unsigned int offset);
    void addRow(unsigned int offset, const std::string& name, std::size_t depth,
                const std::string& datatype, const std::string& value, const std::string& units);

    DtDatatypeManager& myManager;
    const DtDatatypeManager::Octets& myOctets;
    std::unordered_map<DtString, Kind> myKinds;
    TextTable myTable{
        {exact("Offset"), exact("Name"), whole("Datatype"), exact("Value"), whole("Units")}
    };
};

const Kind& ValueRows::kindOf(const DtString& datatype)
{
    const auto [entry, isNew] = myKinds.try_emplace(datatype);
    if (isNew) entry->second = findKind(datatype);
    return entry->second;
}

Kind ValueRows::findKind(const DtString& datatype)
{
    switch (myManager.getDatatypeEnum(datatype))
    {
        case DtDatatypeManager::DtDatatypeArray:
        {
            const auto* const node = myManager.omtTree()->getArrayDatatypeNode(datatype);
            return {true, false, findRepresentation(node->getDatatype()).characterSize};
        }
        case DtDatatypeManager::DtDatatypeVariant:
            return {false, true};
        case DtDatatypeManager::DtDatatypeSimple:
            return findRepresentation(datatype);
        case DtDatatypeManager::DtDatatypeDefined:
        {
            Kind kind;
            kind.parts = recordPartsOf(myManager, datatype);
            return kind;
        }
        default:
            return {};
    }
}

Kind ValueRows::findRepresentation(const DtString& datatype)
{
    if (myManager.getDatatypeEnum(datatype) != DtDatatypeManager::DtDatatypeSimple) return {};
    Kind kind;
    const DtDatatypeRep* const rep = myManager.getSimpleDatatypeRep(datatype);
    const std::string_view name = rep ? rep->datatype() : "";
    kind.characterSize = name == "char" ? 1 : name == "utf16" ? 2 : 0;
    kind.isText = kind.characterSize > 0 || name == "string" || name == "utf8";
    const DtSimpleDatatypeNode* const node = myManager.omtTree()->getSimpleDatatypeNode(datatype);
    if (node && node->getUnits() != "NA") kind.units = node->getUnits().str();
    return kind;
}

/// The characters of an array. The zeros that fill it up at its end are left out; a code unit that
/// has no text of its own is shown by its number.
std::string ValueRows::charactersOf(const DtStringTree& node, unsigned int size) const
{
    std::string text;
    std::size_t end = 0;
    for (const DtStringTree* one = node.firstChild(); one; one = one->nextElement())
    {
        if (!one->value().empty() || one->offset() + size > myOctets.size())
        {
            text += visible(one->value().view());
            if (!one->value().empty()) end = text.size();
            continue;
        }
        unsigned int code = 0;
        for (unsigned int at = 0; at < size; ++at)
            code = code << 8 | static_cast<unsigned char>(myOctets[one->offset() + at]);
        char escape[8];
        std::snprintf(escape, sizeof escape, size == 1 ? "\\x%02x" : "\\u%04x", code);
        text += escape;
        if (code != 0) end = text.size();
    }
    return text.substr(0, end);
}

std::string ValueRows::valueOf(const DtStringTree& node, const Kind& kind) const
{
    if (kind.isArray && kind.characterSize > 0)
        return '"' + charactersOf(node, kind.characterSize) + '"';
    if (kind.isText) return '"' + node.value().str() + '"';
    return node.value().str();
}

// Goes down as deep as datatypes do, which is little; elements and fields are a loop.
void ValueRows::add(const DtStringTree& node, const std::string& name, std::size_t depth,
                    unsigned int offset)
{
    const Kind& kind = kindOf(node.datatype());
    addRow(offset, name, depth, node.datatype().str(), valueOf(node, kind), kind.units);
    if (!kind.parts.empty())
        addRecordParts(node, kind, depth + 1, offset);
    else if (!kind.isArray || kind.characterSize == 0)
        addParts(node, kind, depth + 1, offset);
}

void ValueRows::addRow(unsigned int offset, const std::string& name, std::size_t depth,
                       const std::string& datatype, const std::string& value,
                       const std::string& units)
{
    constexpr std::size_t theOffsetWidth = 6;
    std::string place = std::to_string(offset);
    place.insert(0, theOffsetWidth - std::min(place.size(), theOffsetWidth), ' ');
    myTable.add({place, std::string(2 * depth, ' ') + oneLine(name), datatype, value, units});
}

/// The nodes of such parts have places of their own where all others have their offset, and no
/// datatype of the model.
void ValueRows::addRecordParts(const DtStringTree& node, const Kind& kind, std::size_t depth,
                               unsigned int offset)
{
    auto part = kind.parts.begin();
    for (const DtStringTree* one = node.firstChild(); one && part != kind.parts.end();
         one = one->nextSibling(), ++part)
        addRow(offset + part->octet, one->key().str(), depth, "", one->value().str(), part->units);
}

void ValueRows::addParts(const DtStringTree& node, const Kind& kind, std::size_t depth,
                         unsigned int offset)
{
    std::size_t index = 0;
    for (const DtStringTree* part = node.firstChild(); part; part = part->nextSibling())
    {
        for (const DtStringTree* one = part; one; one = one->nextElement())
        {
            const std::string number = '[' + std::to_string(index++) + ']';
            const bool isRepeated = part->nextElement() != nullptr;
            const std::string name =
                kind.isArray ? number : one->key().str() + (isRepeated ? number : "");
            // A discriminant bears its size where all others have their offset.
            const bool isDiscriminant = kind.isVariant && one == node.firstChild();
            add(*one, name, depth, isDiscriminant ? offset : one->offset());
        }
        index = 0;
    }
}

}  // namespace

std::string valueTable(DtDatatypeManager& manager, const std::string& name,
                       const DtStringTree& value, const DtDatatypeManager::Octets& octets)
{
    ValueRows rows(manager, octets);
    std::size_t index = 0;
    for (const DtStringTree* one = &value; one; one = one->nextElement())
    {
        const std::string number = '[' + std::to_string(index++) + ']';
        rows.add(*one, value.nextElement() ? name + number : name, 0, one->offset());
    }
    return rows.text();
}
