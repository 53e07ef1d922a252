// SPDX-License-Identifier: Apache-2.0
#include "omtReader/entityTypeDatatypeRep.h"

#include "omtReader/disDictionary.h"
#include "omtReader/values/recordOctets.h"

namespace
{

using Names = std::vector<DtString>;

constexpr unsigned int theAlignment = 2;
constexpr unsigned int theWidth = 8;
constexpr int theExtra = 6;
constexpr const char* theKeys[] = {"Kind",        "Domain",   "Country", "Category",
                                   "SubCategory", "Specific", "Extra"};

DtEntityMapperKey readKey(const void* record)
{
    const auto* const octets = static_cast<const unsigned char*>(record);
    const int country = octets[2] << 8 | octets[3];
    return {octets[0], octets[1], country, octets[4], octets[5], octets[6], octets[7]};
}

/// The name of a level; empty where there is none, as for extra.
const DtString& nameOf(const Names& names, int level)
{
    const auto index = static_cast<std::size_t>(level);
    return level < theExtra && index < names.size() ? names[index] : DtString::nullString();
}

/// The texts of all levels with the delimiter between them.
template <typename TextOf>
DtString joined(const DtString& delimiter, TextOf textOf)
{
    DtString text;
    for (int level = 0; level < theExtra; ++level)
    {
        text += textOf(level);
        text += delimiter;
    }
    return text += textOf(theExtra);
}

}  // namespace

DtEntityTypeDatatypeRep::DtEntityTypeDatatypeRep(bool isAligned, DtDisDictionary* dictionary,
                                                 const DtString& delimiter)
    : DtDefinedDatatypeRep(isAligned), myDictionary(dictionary), myDelimiter(delimiter)
{
}

DtEntityTypeDatatypeRep::~DtEntityTypeDatatypeRep() = default;

const char* DtEntityTypeDatatypeRep::datatype() const
{
    return "entityType-Defined";
}

DtString DtEntityTypeDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return stringRep(position, consumed, nullptr);
}

std::vector<char> DtEntityTypeDatatypeRep::valueFromStringRep(const DtString&) const
{
    return {};
}

unsigned int DtEntityTypeDatatypeRep::byteAlignment() const
{
    return theAlignment;
}

DtString DtEntityTypeDatatypeRep::stringRep(const void* position, int* consumed,
                                            DtObjectHistory*) const
{
    const void* const record = netValPtr(position, consumed);
    if (!record) return {};
    const DtEntityMapperKey key = readKey(record);
    const Names& names = namesOf(key);
    // A key from octets has no -1, so a level that the dictionary leaves open shows as its number.
    return joined(myDelimiter,
                  [&](int level)
                  {
                      const DtString& name = nameOf(names, level);
                      return name.empty() || name == "Any" ? DtString(key[level]) : name;
                  });
}

DtStringTree* DtEntityTypeDatatypeRep::createTreeRep(const void* position, int* consumed,
                                                     DtObjectHistory*) const
{
    const void* const record = netValPtr(position, consumed);
    if (!record) return new DtStringTree;
    const DtEntityMapperKey key = readKey(record);
    const Names& names = namesOf(key);
    std::vector<omtreader::RecordPart> parts;
    for (int level = 0; level <= theExtra; ++level)
    {
        const DtString& name = nameOf(names, level);
        const bool isNamed = !name.empty();
        parts.push_back({theKeys[level], isNamed ? "Defined" : "octet",
                         static_cast<unsigned int>(level), isNamed ? name : DtString(key[level])});
    }
    return omtreader::createChain(parts);
}

DtString DtEntityTypeDatatypeRep::originalStringRep(const void* position, int* consumed,
                                                    DtObjectHistory*) const
{
    const void* const record = netValPtr(position, consumed);
    if (!record) return {};
    const DtEntityMapperKey key = readKey(record);
    return joined(myDelimiter, [&key](int level) { return DtString(key[level]); });
}

const void* DtEntityTypeDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, theAlignment, theWidth, consumed);
}

const Names& DtEntityTypeDatatypeRep::namesOf(const DtEntityMapperKey& key) const
{
    static const Names theNone;
    DtDisEntityTypeEntry* const entry = myDictionary ? myDictionary->findEntry(key) : nullptr;
    return entry ? entry->strings() : theNone;
}
