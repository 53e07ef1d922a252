// SPDX-License-Identifier: Apache-2.0
#include "checkedEncoder.h"

#include "modelInput.h"
#include "modelLists.h"
#include "omt/base/nearestNames.h"
#include "omtReader/datatypeRep.h"
#include "representationTexts.h"

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

/// Counts the parts of the innermost record or array. What has an empty text comes straight to its
/// kind's own operation, all else through getValueFromStringRep() first.
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
    myHasBegun = !text.empty() && !myComposites.empty();
    MappedManager::getValueFromStringRep(datatype, text, out);
    myHasBegun = false;
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
    myComposites.push_back({true});
    MappedManager::getValueFromArrayRep(datatype, text, out);
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
