// SPDX-License-Identifier: Apache-2.0
// Text to the octets of a value, with the counts and the padding that decoding expects.
#include "omtReader/values/valueWriter.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/datatypeRep.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/values/arrayForm.h"
#include "util/dtNetworkOrder.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace omtreader
{
namespace
{

constexpr int thePaddingComponent = 6;
constexpr int theCountSize = 4;

void appendZeros(DtDatatypeManager::Octets& out, int count)
{
    if (count > 0) out.insert(out.end(), static_cast<std::size_t>(count), '\0');
}

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
        writer.myBounds.begin(writer.mySettings.nodeLimit, static_cast<std::int64_t>(textLength));
        if (writer.myOut == &out) return;
        writer.myOut = &out;
        writer.myStart = out.size();
        writer.myDepth = 0;
        // A short value then needs memory once.
        constexpr std::size_t theUsualSize = 256;
        if (out.capacity() == 0) out.reserve(std::min(textLength, theUsualSize));
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call()
    {
        myWriter.myOut = myOutBefore;
        myWriter.myStart = myStartBefore;
        myWriter.myDepth = myDepthBefore;
        if (!myWriter.myBounds.end()) return;
        myWriter.myCutter.release();
        myWriter.myResolver.release();
    }

private:
    ValueWriter& myWriter;
    const Octets* myOutBefore;
    std::size_t myStartBefore;
    int myDepthBefore;
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
        case DtDatatypeManager::DtDatatypeVariant:  // cannot be encoded, on purpose
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
    if (datatype.append) return datatype.append(text, out);
    if (!datatype.rep) return;
    const Octets octets = datatype.rep->valueFromStringRep(text);
    out.insert(out.end(), octets.begin(), octets.end());
}

void ValueWriter::enumerated(const DtString& datatype, const DtString& text, Octets& out)
{
    const DtEnumeratedDatatypeNode* const node = myResolver.enumerated(myResolver.find(datatype));
    const DtEnumerationNode* const enumerator = node ? node->getEnumerationNode(text) : nullptr;
    if (!enumerator) return;
    // In the order opposite to the one in which it is held, on purpose; three octets are never
    // written, a size of three gives two.
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
    const std::size_t start = out.size();
    const DtComplexDatatypeNode* const complex =
        myResolver.fixed(resolved) ? nullptr : myResolver.complex(resolved);
    const DtComplexComponentNode* last = nullptr;
    for (const TextPiece& field :
         myCutter.fields(resolved, myCutter.unwrapped(text.view()), delimiter))
    {
        if (!field.component)
        {
            piece(field, out);
            continue;
        }
        padBetween(*complex, std::exchange(last, field.component), field.component, start, out);
        component(field, out);
    }
    if (complex) padBetween(*complex, last, nullptr, start, out);
}

// A component may have several values, chained as the elements of an array are.
void ValueWriter::component(const TextPiece& values, Octets& out)
{
    const int maximum = values.component->getCardinalityMaximum();
    const std::int64_t most =
        maximum < 0 ? std::numeric_limits<std::int32_t>::max() : std::max(maximum, 1);
    for (const TextPiece& value :
         myCutter.elements(*values.datatype, values.text, *values.delimiter, most))
        piece(value, out);
}

// Padding components have no text; they stand behind one component and before the next.
void ValueWriter::padBetween(const DtComplexDatatypeNode& record,
                             const DtComplexComponentNode* behind,
                             const DtComplexComponentNode* before, std::size_t start, Octets& out)
{
    auto& nodes = const_cast<DtComplexDatatypeNode&>(record);
    auto it = nodes.getComponentNodeList();
    const auto end = nodes.getComponentNodeEnd();
    if (behind) it = std::next(std::find(it, end, behind));
    for (; it != end && *it != before; ++it)
    {
        const int boundary = (*it)->getCardinalityMaximum();
        if ((*it)->getCardinalityType() != thePaddingComponent || boundary <= 1) continue;
        const auto length = static_cast<int>(out.size() - start);
        appendZeros(out, (boundary - length % boundary) % boundary);
    }
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
    const std::size_t start = out.size();
    if (form == theBitForm || form == theVariableForm)
    {
        appendZeros(out, theCountSize);
        // As of the array's own offset, as it is read.
        pad(element, start, out);
    }
    const std::string_view content = myCutter.unwrapped(text.view());
    const std::int64_t most = TextCutter::mostElements(*node);
    std::vector<TextPiece> pieces;
    if (!content.empty()) pieces = myCutter.elements(element, content, delimiter, most);
    const std::int64_t empties = content.empty() && TextCutter::hasFixedCount(*node) ? most : 0;
    for (const TextPiece& each : pieces) piece(each, out);
    for (std::int64_t at = 0; at < empties && !myBounds.isPast(); ++at)
        piece({&element, {}, &delimiter, nullptr}, out);
    if (form == theBitForm || form == theVariableForm)
    {
        const std::size_t count = pieces.size() * (form == theBitForm ? 8 : 1);
        for (std::size_t at = 0; at < theCountSize; ++at)
            out[start + at] = static_cast<char>(count >> 8 * (theCountSize - 1 - at));
    }
    const bool needsEnd = form == theZeroEndedForm && element.isCharacter &&
                          (content.empty() || TextCutter::isPlain(content));
    if (needsEnd) out.push_back('\0');
}

void ValueWriter::piece(const TextPiece& piece, Octets& out)
{
    ResolvedDatatype& datatype = *piece.datatype;
    const auto offset = static_cast<unsigned int>(out.size() - myStart);
    if (!myBounds.allowNode(datatype.name, offset, myDepth + 1)) return;
    pad(datatype, out.size(), out);
    const bool isSingle = myResolver.kindOf(datatype) == DtDatatypeManager::DtDatatypeSimple;
    if (isAlone && isSingle) return append(datatype, DtString(piece.text), out);
    myHanded = piece.delimiter;
    myHandedTo = &datatype;
    const Descent descent(myDepth);
    // A piece that is empty keeps its place, while an empty text on its own stands for nothing.
    if (piece.text.empty())
        byKind(datatype, DtString(), out);
    else
        myManager.getValueFromStringRep(datatype.name, DtString(piece.text), out);
    myHanded = nullptr;
}

// For a value that is not part of another one, its own.
const DtString& ValueWriter::delimiterFor(const DtString& datatype)
{
    const bool isHanded = myHanded && myHandedTo->name == datatype;
    const DtString& delimiter = isHanded ? *myHanded : myManager.getDelimiterMap(datatype, nullptr);
    myHanded = nullptr;
    return delimiter;
}

void ValueWriter::pad(ResolvedDatatype& datatype, std::size_t place, Octets& out)
{
    const auto offset = static_cast<unsigned int>(place - myStart);
    appendZeros(out, myAlignment.paddingBefore(datatype, offset));
}

}  // namespace omtreader
