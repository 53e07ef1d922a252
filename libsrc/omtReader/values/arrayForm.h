// SPDX-License-Identifier: Apache-2.0
// Names for the ways in which an array says how many elements it has.
#pragma once

namespace omtreader
{

/// The forms of an array's cardinality, see DtArrayDatatypeNode::getCardinalityType(). 3 and 6 are
/// forms of components only and have no elements.
enum ArrayForm
{
    theFixedForm = 1,
    theBoundedForm = 2,
    theZeroEndedForm = 4,
    thePaddingForm = 5,
    theBitForm = 7,
    theLengthlessForm = 8,
    theDimensionsForm = 9,
    theVariableForm = 10
};

}  // namespace omtreader
