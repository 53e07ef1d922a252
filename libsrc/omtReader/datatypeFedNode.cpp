// SPDX-License-Identifier: Apache-2.0
// Cardinality grammar: integer [ "+" | "-" integer ].
#include "omtReader/datatypeFedNode.h"

#include "omtReader/textScan.h"

#include <algorithm>

DtDatatypeFedNode::DtDatatypeFedNode() = default;
DtDatatypeFedNode::DtDatatypeFedNode(DtFedNode* parent) : DtFedNode(parent) {}
DtDatatypeFedNode::DtDatatypeFedNode(const DtDatatypeFedNode& other) = default;
DtDatatypeFedNode& DtDatatypeFedNode::operator=(const DtDatatypeFedNode& other) = default;
DtDatatypeFedNode::~DtDatatypeFedNode() = default;

void DtDatatypeFedNode::setCardinality(const DtString& cardinality)
{
    myCardinality = cardinality;
    myDerivedValuesAreStale = true;
}

std::int32_t DtDatatypeFedNode::getCardinalityType() const
{
    refresh();
    return myCardinalityType;
}

std::int32_t DtDatatypeFedNode::getCardinalityMinimum() const
{
    refresh();
    return myCardinalityMinimum;
}

std::int32_t DtDatatypeFedNode::getCardinalityMaximum() const
{
    refresh();
    return myCardinalityMaximum;
}

void DtDatatypeFedNode::setDerivedValues() const
{
    omtreader::TextScan text(myCardinality);
    myCardinalityMinimum = text.integer();
    if (text.isAt('+'))
    {
        myCardinalityType = DtMemberForm::theOpen;
        myCardinalityMaximum = 0;  // stands for "no limit"
    }
    else if (text.takes('-'))
    {
        myCardinalityType = DtMemberForm::theRange;
        myCardinalityMaximum = std::max(text.integer(), myCardinalityMinimum);
    }
    else
    {
        myCardinalityType = DtMemberForm::theSingle;
        myCardinalityMaximum = myCardinalityMinimum;
    }
    myDerivedValuesAreStale = false;
}

void DtDatatypeFedNode::refresh() const
{
    if (myDerivedValuesAreStale) setDerivedValues();
}
