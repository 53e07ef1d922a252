// SPDX-License-Identifier: Apache-2.0
// Cardinality grammar, blanks allowed between the parts:
//   "%" integer
//   [ integer [ "-" integer | "+" ] ] [ ( "(" | "," ) word [ "=" word ] ]
// where a word ends at a blank only and may so carry the closing ")".
#include "omtReader/complexComponentNode.h"

#include "omtReader/textScan.h"

namespace
{

void dropLast(DtString& text)
{
    text = DtString(text.view().substr(0, text.length() - 1));
}

struct Numbers
{
    std::int32_t form;
    std::int32_t minimum;
    std::int32_t maximum;
};

/// What is before a condition.
Numbers readNumbers(omtreader::TextScan& text)
{
    text.skipBlanks();
    if (text.takes('%')) return {DtComponentForm::thePadding, 0, text.integer()};
    if (text.isAt('(')) return {DtComponentForm::theCondition, 0, 1};
    const std::int32_t minimum = text.integer();
    text.skipBlanks();
    if (text.takes('-')) return {DtComponentForm::theRange, minimum, text.integer()};
    if (text.takes('+')) return {DtComponentForm::theOpen, minimum, -1};
    return {DtComponentForm::theSingle, minimum, minimum};
}

}  // namespace

DtComplexComponentNode::DtComplexComponentNode() = default;
DtComplexComponentNode::DtComplexComponentNode(const DtComplexComponentNode& other) = default;
DtComplexComponentNode& DtComplexComponentNode::operator=(const DtComplexComponentNode& other) =
    default;
DtComplexComponentNode::~DtComplexComponentNode() = default;

void DtComplexComponentNode::setCardinality(const DtString& cardinality)
{
    myCardinality = cardinality;
    myDerivedValuesAreStale = true;
}

std::int32_t DtComplexComponentNode::getCardinalityMinimum() const
{
    refresh();
    return myCardinalityMinimum;
}

std::int32_t DtComplexComponentNode::getCardinalityMaximum() const
{
    refresh();
    return myCardinalityMaximum;
}

const DtString& DtComplexComponentNode::getConditionalComponent() const
{
    refresh();
    return myConditionalComponent;
}

const DtString& DtComplexComponentNode::getConditionalValue() const
{
    refresh();
    return myConditionalValue;
}

std::int32_t DtComplexComponentNode::getCardinalityType() const
{
    refresh();
    return myCardinalityType;
}

void DtComplexComponentNode::setDerivedValues() const
{
    omtreader::TextScan text(myCardinality);
    myDerivedValuesAreStale = false;
    const Numbers numbers = readNumbers(text);
    myCardinalityType = numbers.form;
    myCardinalityMinimum = numbers.minimum;
    myCardinalityMaximum = numbers.maximum;
    if (numbers.form == DtComponentForm::thePadding) return;

    text.skipBlanks();
    if (!text.takes('(') && !text.takes(',')) return;
    myConditionalComponent = text.word();
    text.skipBlanks();
    if (text.takes('='))
    {
        myConditionalValue = text.word();
        if (myConditionalValue.endsWith(")")) dropLast(myConditionalValue);
        myCardinalityType = DtComponentForm::theConditionWithValue;
        return;
    }
    // The index looked at comes from the length of the value and not of the component, and the
    // value is the one of an earlier text, if there was one: so the ")" after a component usually
    // stays. A slip of old that is kept: what reads the component counts on it.
    const auto index = static_cast<std::ptrdiff_t>(myConditionalValue.length()) - 1;
    if (myConditionalComponent.charAt(index) == ')') dropLast(myConditionalComponent);
}

void DtComplexComponentNode::refresh() const
{
    if (myDerivedValuesAreStale) setDerivedValues();
}
