// SPDX-License-Identifier: Apache-2.0
// An alternative of a variant record.
#pragma once

#include "omtReader/omtDatatypeNode.h"

/// One alternative of a variant record datatype, which owns it.
///
/// The datatype is that of the alternative; "NA" for one without data, which may lack a name too.
class OMTREADER_EXPORT DtAlternativeComponentNode : public DtOMTDatatypeNode
{
public:
    DtAlternativeComponentNode();
    DtAlternativeComponentNode(const DtAlternativeComponentNode& other);
    DtAlternativeComponentNode& operator=(const DtAlternativeComponentNode& other);
    ~DtAlternativeComponentNode() override;

    /// The enumerators that select this alternative, as written: one, a list separated by commas,
    /// ranges such as "[A .. B]", or "HLAother".
    virtual void setEnumerator(const DtString& enumerator) { myEnumerator = enumerator; }
    virtual const DtString& getEnumerator() const { return myEnumerator; }

    /// What the alternative means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

private:
    DtString myEnumerator;
    DtString myDescription;
};
