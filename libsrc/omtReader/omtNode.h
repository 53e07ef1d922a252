// SPDX-License-Identifier: Apache-2.0
// The base of everything in an object model that has a name.
#pragma once

#include "util/dtString.h"

/// A named entry of an object model: a class, an attribute, a datatype, a dimension and so on.
class OMTREADER_EXPORT DtOMTNode
{
public:
    DtOMTNode();
    /// Copies name and note. The unique name is not copied, here and in the assignment:
    /// a copy is another entry, and what told the first one apart does not tell this one.
    DtOMTNode(const DtOMTNode& other);
    DtOMTNode& operator=(const DtOMTNode& other);
    virtual ~DtOMTNode();

    /// Empty until set; nothing keeps two entries from having the same.
    virtual void setName(const DtString& name);
    virtual const DtString& getName() const { return myName; }

    /// A name that a host gives to tell entries of equal names apart; empty until set.
    virtual void setUniqueName(const DtString& uniqueName) { myUniqueName = uniqueName; }
    virtual const DtString& getUniqueName() const { return myUniqueName; }

    /// The note reference, or other text standing in its place, as read.
    virtual void setNote(const DtString& note) { myNote = note; }
    virtual const DtString& getNote() const { return myNote; }

private:
    DtString myName;
    DtString myNote;
    DtString myUniqueName;
};
