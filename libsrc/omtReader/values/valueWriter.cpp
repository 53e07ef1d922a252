// SPDX-License-Identifier: Apache-2.0
// Text to the octets of a value, with the counts that decoding expects.
//
// No octet is written for alignment, and none for an empty text: a value that stands inside another
// one is encoded as it is on its own.
#include "omtReader/values/valueWriter.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/cardinalityForms.h"
#include "omtReader/complexComponentNode.h"
#include "omtReader/datatypeRep.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "util/dtNetworkOrder.h"

#include <algorithm>

namespace omtreader
{
namespace
{

constexpr int theCountSize = 4;

}  // namespace

/// The time between entry and return of one operation. The outermost one, and one that a host calls
/// in between for another buffer, sets where the value begins.
class ValueWriter::Call
{
public:
    Call(ValueWriter& writer, Octets& out, std::size_t textLength)
        : myWriter(writer),
          myOutBefore(writer.myOut),
          myStartBefore(writer.myStart),
          myDepthBefore(writer.myDepth)
    {
        // A short value then needs memory once. What may throw comes first: nothing has begun yet.
        constexpr std::size_t theUsualSize = 256;
        if (writer.myOut != &out && out.capacity() == 0)
            out.reserve(std::min(textLength, theUsualSize));
        writer.myBounds.begin(writer.mySettings.nodeLimit, static_cast<std::int64_t>(textLength));
        if (writer.myOut == &out) return;
        writer.myOut = &out;
        writer.myStart = out.size();
        writer.myDepth = 0;
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call()
    {
        myWriter.myOut = myOutBefore;
        myWriter.myStart = myStartBefore;
        myWriter.myDepth = myDepthBefore;
        if (myWriter.myBounds.end()) myWriter.myResolver.release();
    }

private:
    ValueWriter& myWriter;
    const Octets* myOutBefore;
    std::size_t myStartBefore;
    int myDepthBefore;
};

/// Hands the delimiter that serves a piece down to it.
class ValueWriter::Handed
{
public:
    Handed(ValueWriter& writer, const TextPiece& piece) : myWriter(writer)
    {
        writer.myHanded = piece.delimiter;
        writer.myHandedTo = piece.datatype;
    }
    Handed(const Handed&) = delete;
    Handed& operator=(const Handed&) = delete;
    ~Handed() { myWriter.myHanded = nullptr; }

private:
    ValueWriter& myWriter;
};

void ValueWriter::value(const DtString& datatype, const DtString& text, Octets& out)
{
    if (text.empty()) return;
    const Call call(*this, out, text.length());
    byKind(myResolver.find(datatype), text, out);
}

void ValueWriter::byKind(ResolvedDatatype& datatype, const DtString& text, Octets& out)
{
    switch (myResolver.kindOf(datatype))
    {
        case DtDatatypeManager::DtDatatypeSimple:
        case DtDatatypeManager::DtDatatypeDefined:
            return myManager.getValueFromDatatypeRep(datatype.name, text, out);
        case DtDatatypeManager::DtDatatypeEnumerated:
            return myManager.getValueFromEnumRep(datatype.name, text, out);
        case DtDatatypeManager::DtDatatypeComplex:
            return myManager.getValueFromComplexRep(datatype.name, text, out);
        case DtDatatypeManager::DtDatatypeArray:
            return myManager.getValueFromArrayRep(datatype.name, text, out);
        case DtDatatypeManager::DtDatatypeFixed:
            return myManager.getValueFromFixedRep(datatype.name, text, out);
        case DtDatatypeManager::DtDatatypeVariant:  // cannot be encoded
        case DtDatatypeManager::DtDatatypeUnknown:
            return;
    }
}

void ValueWriter::simple(const DtString& datatype, const DtString& text, Octets& out)
{
    append(myResolver.find(datatype), text, out);
}

void ValueWriter::append(const ResolvedDatatype& datatype, const DtString& text, Octets& out)
{
    if (datatype.number.append) return datatype.number.append(text, out);
    if (!datatype.rep) return;
    const Octets octets = datatype.rep->valueFromStringRep(text);
    out.insert(out.end(), octets.begin(), octets.end());
}

void ValueWriter::enumerated(const DtString& datatype, const DtString& text, Octets& out)
{
    const DtEnumeratedDatatypeNode* const node = myResolver.enumerated(myResolver.find(datatype));
    const DtEnumerationNode* const enumerator =
        node ? myCutter.enumerator(*node, text.view()) : nullptr;
    if (!enumerator) return;
    // Kept for compatibility, because receivers expect it: in the order opposite to the one in
    // which it is held; three octets are never written, a size of three gives two.
    const DtNetU32 number = static_cast<std::uint32_t>(enumerator->getNumber());
    const int size = node->getExpectedEnumerationSize();
    const int count = size >= 4 ? 4 : std::min(size, 2);
    for (int at = 0; at < count; ++at) out.push_back(static_cast<char>(number.octets()[3 - at]));
}

void ValueWriter::record(const DtString& datatype, const DtString& text, Octets& out)
{
    const Call call(*this, out, text.length());
    ResolvedDatatype& resolved = myResolver.find(datatype);
    const DtString& delimiter = delimiterFor(resolved.name);
    for (const TextPiece& field :
         myCutter.fields(resolved, myCutter.unwrapped(text.view()), delimiter))
        field.component ? component(field, out) : piece(field, out);
}

// A component may have several values, chained as the elements of an array are.
void ValueWriter::component(const TextPiece& values, Octets& out)
{
    const int maximum = values.component->getCardinalityMaximum();
    const ElementCount count = {1, maximum < 0 ? ElementCount::theUnlimited : std::max(maximum, 1)};
    for (const TextPiece& value :
         myCutter.elements(*values.datatype, values.text, *values.delimiter, count))
        piece(value, out);
}

void ValueWriter::array(const DtString& datatype, const DtString& text, Octets& out)
{
    const Call call(*this, out, text.length());
    ResolvedDatatype& resolved = myResolver.find(datatype);
    const DtArrayDatatypeNode* const node = myResolver.array(resolved);
    if (!node) return;
    const DtString& delimiter = delimiterFor(resolved.name);
    ResolvedDatatype& element = myResolver.component(resolved, 0, *node);
    const int form = node->getCardinalityType();
    const bool isCounted = form == DtArrayForm::theBits || form == DtArrayForm::theCounted;
    const std::size_t start = out.size();
    if (isCounted) out.insert(out.end(), theCountSize, '\0');
    const std::string_view content = myCutter.unwrapped(text.view());
    std::vector<TextPiece> pieces;
    if (!content.empty())
        pieces = myCutter.elements(element, content, delimiter, ElementCount::of(*node));
    std::size_t beforeLast = start;
    for (const TextPiece& each : pieces)
    {
        beforeLast = out.size();
        piece(each, out);
    }
    if (isCounted)
    {
        const std::size_t count = pieces.size() * (form == DtArrayForm::theBits ? 8 : 1);
        for (std::size_t at = 0; at < theCountSize; ++at)
            out[start + at] = static_cast<char>(count >> 8 * (theCountSize - 1 - at));
    }
    if (form != DtArrayForm::theZeroEnded || !element.isCharacter) return;
    // The zero at the end belongs to the array, as a count does. Its text is empty.
    const bool isEnded = pieces.empty() || (pieces.back().text.empty() && out.size() == beforeLast);
    if (isEnded || TextCutter::isPlain(content)) out.push_back('\0');
}

void ValueWriter::piece(const TextPiece& piece, Octets& out)
{
    ResolvedDatatype& datatype = *piece.datatype;
    const auto offset = static_cast<unsigned int>(out.size() - myStart);
    if (!myBounds.allowNode(datatype.name, offset, myDepth + 1)) return;
    if (!mySettings.hasHost)
    {
        if (piece.text.empty()) return;
        if (myResolver.kindOf(datatype) == DtDatatypeManager::DtDatatypeSimple)
            return append(datatype, DtString(piece.text), out);
    }
    const Handed handed(*this, piece);
    const Descent descent(myDepth);
    myManager.getValueFromStringRep(datatype.name, DtString(piece.text), out);
}

// For a value that is not part of another one, its own.
const DtString& ValueWriter::delimiterFor(const DtString& datatype)
{
    const bool isHanded = myHanded && myHandedTo->name == datatype;
    const DtString& delimiter = isHanded ? *myHanded : myManager.getDelimiterMap(datatype, nullptr);
    myHanded = nullptr;
    return delimiter;
}

}  // namespace omtreader
