// SPDX-License-Identifier: Apache-2.0
// Single values: the octets in place, what a representation shows of them, how many there are.
#include "omtReader/values/valueReader.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/arrayDatatypeRep.h"
#include "omtReader/cardinalityForms.h"
#include "omtReader/enumDatatypeRep.h"
#include "omtReader/hexDatatypeRep.h"
#include "omtReader/intDatatypeRep.h"

#include <cmath>
#include <cstring>

namespace omtreader
{

void ValueReader::represent(const DtDatatypeRep& rep, const DtString& name,
                            const EncodedValue& value, DtString& text)
{
    value.consumed = 0;
    text = rep.stringRep(value.data, &value.consumed);
    if (!value.data) return;
    // It may have looked far ahead without getting on, and be asked again at the same place.
    const bool isAllowed = value.consumed > 0
                               ? myBounds.allowOctets(value.consumed, name)
                               : myBounds.allowWork(octetsToZero(value.data, value.length), name);
    if (!isAllowed) value.consumed = -1;
}

// No more than `length`; after the value there are zeros.
std::int64_t ValueReader::octetsToZero(const void* from, int length) const
{
    if (!from) return 0;
    const ValueOctets& view = myViews[myOpenViews - 1];
    const auto* const begin = static_cast<const char*>(from);
    const std::int64_t left =
        std::clamp<std::int64_t>(view.begin() + view.length() - begin, 0, std::max(length, 0));
    const void* const zero = std::memchr(begin, 0, static_cast<std::size_t>(left));
    return zero ? static_cast<const char*>(zero) - begin : left;
}

void ValueReader::mapped(const DtString& datatype, EncodedValue value, DtString& text)
{
    text = DtString();
    value.consumed = -1;
    const Call call(*this, value);
    const ResolvedDatatype& resolved = myResolver.find(datatype);
    if (resolved.rep) represent(*resolved.rep, resolved.name, value, text);
}

void ValueReader::attribute(const DtString& name, EncodedValue value, DtString& text)
{
    text = DtString();
    value.consumed = -1;
    const Call call(*this, value);
    const auto mapping = mySettings.attributeMappings.find(name);
    if (mapping == mySettings.attributeMappings.end()) return;
    const DtDatatypeRep* const rep = mySettings.registered(mapping->second);
    if (rep) represent(*rep, name, value, text);
}

void ValueReader::hexadecimal(EncodedValue value, DtString& text)
{
    text = DtString();
    value.consumed = 0;
    const Call call(*this, value);
    if (!value.data) return;
    // A manager that was never filled shows octets all the same.
    static const DtHexDatatypeRep theHex;
    const DtDatatypeRep* const registered = mySettings.registered("hex");
    const DtDatatypeRep& rep = registered ? *registered : theHex;
    if (!myBounds.allowOctets(std::max(value.length, 0), rep.datatype()))
    {
        value.consumed = -1;
        return;
    }
    while (value.consumed < value.length)
    {
        int pieceConsumed = 0;
        const DtString piece = rep.stringRep(advance(value.data, value.consumed), &pieceConsumed);
        if (value.consumed > 0) text += ' ';
        text += piece;
        if (pieceConsumed <= 0) break;
        addTo(value.consumed, pieceConsumed);
    }
}

void ValueReader::enumerated(const DtString& datatype, EncodedValue value, DtString& text)
{
    text = DtString();
    value.consumed = -1;
    const Call call(*this, value);
    ResolvedDatatype& resolved = myResolver.find(datatype);
    if (!resolved.rep) return;
    const auto number = enumeratorNumber(*resolved.rep, value, text);
    if (!number) return;
    // 32 bits are looked up as they are, with and without a sign.
    constexpr std::int64_t theLowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t theHighest = std::numeric_limits<std::uint32_t>::max();
    const DtString* name = nullptr;
    if (*number >= theLowest && *number <= theHighest)
        name = myResolver.enumerator(resolved, static_cast<std::int32_t>(*number & theHighest));
    const bool isAllowed = !name || myBounds.allowNames(name->length(), resolved.name);
    text = name && isAllowed ? *name : DtString(static_cast<long long>(*number));
}

// Whatever representation is mapped tells the number. Where it is none, its text stands.
std::optional<std::int64_t> ValueReader::enumeratorNumber(const DtDatatypeRep& rep,
                                                          const EncodedValue& value, DtString& text)
{
    value.consumed = 0;
    if (const auto* const enumeration = dynamic_cast<const DtEnumDatatypeRep*>(&rep))
        return enumeration->enumVal(value.data, &value.consumed);
    if (const auto* const hexadecimal = dynamic_cast<const DtHexDatatypeRep*>(&rep))
        return static_cast<std::int64_t>(hexadecimal->numberRep(value.data, &value.consumed));
    represent(rep, rep.datatype(), value, text);
    if (const auto* const numeric = dynamic_cast<const DtNumberDatatypeRep*>(&rep))
    {
        // The text may be a word, a character or a rounded number. Only a number too large for a
        // double is better told by its text.
        constexpr double theLargestExact = 9007199254740992.0;
        const double number = numeric->numberRep(value.data, &value.consumed);
        if (number != std::floor(number)) return std::nullopt;
        if (std::abs(number) < theLargestExact) return static_cast<std::int64_t>(number);
    }
    bool isWhole = false;
    const std::int64_t number = text.toInt64(&isWhole);
    return isWhole ? std::optional(number) : std::nullopt;
}

void ValueReader::octets(const DtString& datatype, EncodedValue value, DtString& text)
{
    text = DtString();
    value.consumed = -1;
    const Call call(*this, value);
    const DtDatatypeRep* const mapped = myResolver.find(datatype).rep;
    if (const auto* const rep = dynamic_cast<const DtArrayDatatypeRep*>(mapped))
        text = rep->stringRep(value.data, std::max(value.length, 0), &value.consumed);
    else
        myManager.getDefaultRep(value.data, value.length, value.consumed, text);
}

int ValueReader::arrayCount(const DtArrayDatatypeNode& node, const void* data, int length)
{
    switch (node.getCardinalityType())
    {
        case DtArrayForm::theFixed:
        case DtArrayForm::thePadding:
            return node.getCardinalityMinimum();
        case DtArrayForm::theBounded:
            return node.getCardinalityMaximum();
        case DtArrayForm::theOpenComponent:
        case DtArrayForm::thePaddingComponent:
            return 0;
        case DtArrayForm::theLengthless:
            return std::numeric_limits<int>::max();
        default:
            break;
    }
    int ignored = 0;
    EncodedValue value{data, length, ignored};
    const Call call(*this, value);
    switch (node.getCardinalityType())
    {
        case DtArrayForm::theZeroEnded:
        {
            const int count = static_cast<int>(octetsToZero(value.data, length));
            myBounds.allowWork(count, node.getName());
            return count < length ? count + 1 : count;
        }
        case DtArrayForm::theBits:
        {
            const int bits = DtIntDatatypeRep::intValFromBuffer(value.data);
            return bits > 1 ? (bits - 1) / 8 + 1 : bits;
        }
        case DtArrayForm::theCounted:
            return DtIntDatatypeRep::intValFromBuffer(value.data);
        default:
            return 1;
    }
}

}  // namespace omtreader
