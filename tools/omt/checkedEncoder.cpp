// SPDX-License-Identifier: Apache-2.0
#include "checkedEncoder.h"

#include "modelInput.h"
#include "modelLists.h"
#include "omt/base/nearestNames.h"
#include "omtReader/datatypeRep.h"
#include "representationTexts.h"

#include <utility>

namespace
{

std::string inQuotes(const DtString& text)
{
    return '"' + text.str() + '"';
}

}  // namespace

DtDatatypeManager::Octets CheckedEncoder::encode(const std::string& datatype,
                                                 const std::string& text)
{
    myName = datatype;
    myComposites.clear();
    myHasBegun = false;
    Octets out;
    getValueFromStringRep(datatype, text, out);
    return out;
}

/// Counts the parts of the innermost record or array. The value as a whole is encoded by
/// getValueFromStringRep() too, which then goes on to its kind's own operation.
void CheckedEncoder::beginPart(const DtString& datatype)
{
    if (myHasBegun || myComposites.empty())
    {
        myHasBegun = false;
        return;
    }
    Composite& parent = myComposites.back();
    const auto& fields = parent.fields;
    while (parent.next < fields.size() && fields[parent.next]->getDatatype() != datatype)
        ++parent.next;
    ++parent.next;
}

std::string CheckedEncoder::path() const
{
    std::string text = myName;
    for (const Composite& one : myComposites)
    {
        if (one.next == 0) continue;
        if (one.isArray)
            text += '[' + std::to_string(one.next - 1) + ']';
        else if (one.next <= one.fields.size())
            text += '.' + one.fields[one.next - 1]->getName().str();
    }
    return text;
}

void CheckedEncoder::refuse(const std::string& why) const
{
    throw InputError(path() + ": " + why);
}

bool CheckedEncoder::isImpossible(const DtString& datatype)
{
    const DtDatatypeEnum kind = getDatatypeEnum(datatype);
    return kind == DtDatatypeVariant || kind == DtDatatypeUnknown;
}

std::string CheckedEncoder::whyImpossible(const DtString& datatype)
{
    if (getDatatypeEnum(datatype) == DtDatatypeVariant)
        return datatype.str() + " is a variant record, which cannot be encoded from text";
    return "the model does not define " + datatype.str();
}

void CheckedEncoder::getValueFromStringRep(const DtString& datatype, const DtString& text,
                                           Octets& out)
{
    beginPart(datatype);
    if (isImpossible(datatype)) refuse(whyImpossible(datatype));
    myHasBegun = !myComposites.empty();
    if (!myComposites.empty())
    {
        padAfterCount(datatype, out);
        pad(datatype, out.size(), out);
    }
    if (text.empty() && !myComposites.empty())
        encodeEmpty(datatype, out);
    else
        MappedManager::getValueFromStringRep(datatype, text, out);
    myHasBegun = false;
}

void CheckedEncoder::pad(const DtString& datatype, std::size_t offset, Octets& out)
{
    const int padding = implicitPadding(static_cast<unsigned int>(offset), datatype);
    out.insert(out.end(), static_cast<std::size_t>(padding), '\0');
}

/// Between a count and the first element stands padding as of the array's own offset, as it is
/// read.
void CheckedEncoder::padAfterCount(const DtString& element, Octets& out)
{
    Composite& array = myComposites.back();
    if (std::exchange(array.hasCount, false)) pad(element, array.start, out);
}

/// The base writes nothing for an empty text.
void CheckedEncoder::encodeEmpty(const DtString& datatype, Octets& out)
{
    switch (getDatatypeEnum(datatype))
    {
        case DtDatatypeEnumerated:
            return getValueFromEnumRep(datatype, DtString(), out);
        case DtDatatypeComplex:
            return getValueFromComplexRep(datatype, DtString(), out);
        case DtDatatypeArray:
            return getValueFromArrayRep(datatype, DtString(), out);
        case DtDatatypeFixed:
            return getValueFromFixedRep(datatype, DtString(), out);
        default:
            return getValueFromDatatypeRep(datatype, DtString(), out);
    }
}

void CheckedEncoder::getValueFromDatatypeRep(const DtString& datatype, const DtString& text,
                                             Octets& out)
{
    beginPart(datatype);
    const DtDatatypeRep* const rep = getSimpleDatatypeRep(datatype);
    if (!rep) refuse("no representation is mapped to " + datatype.str());
    const std::string why = whyNotEncoded(rep->datatype(), text);
    if (!why.empty()) refuse(inQuotes(text) + ' ' + why);
    MappedManager::getValueFromDatatypeRep(datatype, text, out);
}

void CheckedEncoder::getValueFromEnumRep(const DtString& datatype, const DtString& text,
                                         Octets& out)
{
    beginPart(datatype);
    const auto* const node = omtTree()->getEnumeratedDatatypeNode(datatype);
    if (node && !node->getEnumerationNode(text))
    {
        std::vector<std::string> names;
        for (const DtEnumerationNode* one : enumeratorsOf(*node))
            names.push_back(one->getEnum().str());
        refuse(omt::unknownName("enumerator", text.view(), names));
    }
    MappedManager::getValueFromEnumRep(datatype, text, out);
}

void CheckedEncoder::getValueFromFixedRep(const DtString& datatype, const DtString& text,
                                          Octets& out)
{
    beginPart(datatype);
    Composite record;
    if (const auto* const node = omtTree()->getFixedDatatypeNode(datatype))
        for (const DtOMTDatatypeNode* field : partsOf(*node)) record.fields.push_back(field);
    // A field that cannot be encoded would be left out without a word if its text is empty.
    for (const DtOMTDatatypeNode* field : record.fields)
        if (isImpossible(field->getDatatype()))
            refuse("field " + field->getName().str() + ": " + whyImpossible(field->getDatatype()));
    myComposites.push_back(std::move(record));
    MappedManager::getValueFromFixedRep(datatype, text, out);
    myComposites.pop_back();
}

void CheckedEncoder::getValueFromComplexRep(const DtString& datatype, const DtString& text,
                                            Octets& out)
{
    beginPart(datatype);
    Composite record;
    if (auto* const node = omtTree()->getComplexDatatypeNode(datatype))
        for (const DtComplexComponentNode* component : partsOf(*node))
        {
            // Behind a component that may occur more or less than once nobody can tell which is on.
            if (component->getCardinalityMinimum() != 1 || component->getCardinalityMaximum() != 1)
                break;
            record.fields.push_back(component);
        }
    myComposites.push_back(std::move(record));
    MappedManager::getValueFromComplexRep(datatype, text, out);
    myComposites.pop_back();
}

void CheckedEncoder::getValueFromArrayRep(const DtString& datatype, const DtString& text,
                                          Octets& out)
{
    beginPart(datatype);
    Composite array{true};
    array.start = out.size();
    const auto* const node = omtTree()->getArrayDatatypeNode(datatype);
    constexpr int theBitForm = 7;
    constexpr int theVariableForm = 10;
    const int form = node ? node->getCardinalityType() : 0;
    array.hasCount = form == theBitForm || form == theVariableForm;
    myComposites.push_back(std::move(array));
    MappedManager::getValueFromArrayRep(datatype, text, out);
    if (node) padAfterCount(node->getDatatype(), out);
    const std::size_t found = myComposites.back().next;
    myComposites.pop_back();
    checkCount(datatype, found, out);
}

void CheckedEncoder::checkCount(const DtString& datatype, std::size_t found, Octets& out)
{
    constexpr int theFixedForm = 1;
    const auto* const node = omtTree()->getArrayDatatypeNode(datatype);
    if (!node || node->getCardinalityType() != theFixedForm) return;
    const auto needed = static_cast<std::size_t>(std::max(node->getCardinalityMinimum(), 0));
    if (found >= needed) return;
    const DtDatatypeRep* const rep = getSimpleDatatypeRep(node->getDatatype());
    if (!rep || std::string_view(rep->datatype()) != "char")
        refuse(std::to_string(needed) + " elements needed, " + std::to_string(found) + " found");
    out.insert(out.end(), needed - found, '\0');
}
