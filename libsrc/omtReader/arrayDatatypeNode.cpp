// SPDX-License-Identifier: Apache-2.0
// Cardinality grammar of a fixed array:
//   integer | integer "," integer ... | "[" integer "." ... "." integer "]"
#include "omtReader/arrayDatatypeNode.h"

#include "omtReader/modelRevision.h"
#include "omtReader/textScan.h"

#include <algorithm>

namespace
{

constexpr std::int32_t theBitsOfAnOctet = 8;

}  // namespace

DtArrayDatatypeNode::DtArrayDatatypeNode() = default;
DtArrayDatatypeNode::DtArrayDatatypeNode(const DtArrayDatatypeNode& other) = default;
DtArrayDatatypeNode& DtArrayDatatypeNode::operator=(const DtArrayDatatypeNode& other) = default;
DtArrayDatatypeNode::~DtArrayDatatypeNode() = default;

void DtArrayDatatypeNode::setCardinality(const DtString& cardinality)
{
    myCardinality = cardinality;
    myDerivedValuesAreStale = true;
    omtreader::noteModelChange();
}

void DtArrayDatatypeNode::setEncoding(const DtString& encoding)
{
    myEncoding = encoding;
    myDerivedValuesAreStale = true;
    omtreader::noteModelChange();
}

std::int32_t DtArrayDatatypeNode::getCardinalityType() const
{
    refresh();
    return myCardinalityType;
}

std::int32_t DtArrayDatatypeNode::getCardinalityMinimum() const
{
    refresh();
    return myCardinalityMinimum;
}

std::int32_t DtArrayDatatypeNode::getCardinalityMaximum() const
{
    refresh();
    return myCardinalityMaximum;
}

const std::vector<std::int32_t>& DtArrayDatatypeNode::getMultiDimCardinality() const
{
    refresh();
    return myMultiDimCardinality;
}

void DtArrayDatatypeNode::setDerivedValues() const
{
    const auto isOneOf = [this](auto... names) { return (... || (myEncoding == names)); };

    myCardinalityType = DtArrayForm::theLengthless;
    myCardinalityMinimum = 0;
    myCardinalityMaximum = -1;
    myMultiDimCardinality.clear();

    if (isOneOf("HLAbitArray", "BitArray"))
        myCardinalityType = DtArrayForm::theBits;
    else if (isOneOf("HLAnullTerminatedArray", "NullTerminatedArray", "RPRnullTerminatedArray"))
        myCardinalityType = DtArrayForm::theZeroEnded;
    else if (isOneOf("HLAlengthlessVarArray", "RPRlengthlessArray"))
        myCardinalityType = getDatatype() == "HLAASCIIchar" ? DtArrayForm::theZeroEnded
                                                            : DtArrayForm::theLengthless;
    else if (myEncoding == "HLAvariableArray")
        myCardinalityType = DtArrayForm::theCounted;
    else if (myEncoding.contains("addingTo"))
    {
        myCardinalityType = DtArrayForm::thePadding;
        myCardinalityMaximum = extractInteger(myEncoding) / theBitsOfAnOctet;
    }
    else if (myEncoding == "HLAfixedArray")
        deriveFixed();
    else if (const std::int32_t count = myCardinality.toInt())
    {
        myCardinalityType = DtArrayForm::theFixed;
        myCardinalityMinimum = myCardinalityMaximum = count;
    }
    myDerivedValuesAreStale = false;
}

std::int32_t DtArrayDatatypeNode::extractInteger(const DtString& text) const
{
    const std::size_t digit = text.view().find_first_of("0123456789");
    return digit == std::string_view::npos ? 0 : DtString(text.view().substr(digit)).toInt();
}

void DtArrayDatatypeNode::refresh() const
{
    if (myDerivedValuesAreStale) setDerivedValues();
}

void DtArrayDatatypeNode::deriveFixed() const
{
    const std::string_view text = myCardinality.view();
    const std::size_t bracket = text.find('[');
    if (bracket == std::string_view::npos && !myCardinality.contains(","))
    {
        myCardinalityType = DtArrayForm::theFixed;
        myCardinalityMinimum = myCardinalityMaximum = myCardinality.toInt();
    }
    else if (bracket == std::string_view::npos)
    {
        myCardinalityType = DtArrayForm::theDimensions;
        for (const DtString& size : myCardinality.sections(','))
            myMultiDimCardinality.push_back(omtreader::integerOfAnyBase(size));
    }
    else
    {
        const std::size_t dot = text.find('.');
        const std::size_t secondDot = text.find('.', dot == text.npos ? dot : dot + 1);
        const std::size_t end = text.find(']', secondDot);
        if (end == std::string_view::npos) return;  // not the form [a..b]

        myCardinalityType = DtArrayForm::theBounded;
        // A "[" after the first "." leaves no text for the minimum, which is then 0.
        const std::size_t start = std::min(bracket + 1, dot);
        myCardinalityMinimum = omtreader::integerOfAnyBase(text.substr(start, dot - start));
        myCardinalityMaximum =
            omtreader::integerOfAnyBase(text.substr(secondDot + 1, end - secondDot - 1));
    }
}
