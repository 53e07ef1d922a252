// SPDX-License-Identifier: Apache-2.0
// A note.
#pragma once

#include "util/dtString.h"

/// A text that other entries refer to by its label. Owned by the tree it was added to.
class OMTREADER_EXPORT DtNoteNode
{
public:
    DtNoteNode();
    DtNoteNode(const DtNoteNode& other);
    DtNoteNode& operator=(const DtNoteNode& other);
    virtual ~DtNoteNode();

    virtual void setText(const DtString& text) { myText = text; }
    virtual const DtString& getText() const { return myText; }

    /// The label as a number. There is no number besides the label: setting it writes the label,
    /// and a label that is no number reads as the integer it starts with, or 0.
    virtual void setNumber(int number) { myLabel = DtString(number); }
    virtual int getNumber() const { return myLabel.toInt(); }

    /// "0" at first.
    virtual void setLabel(const DtString& label) { myLabel = label; }
    virtual const DtString& getLabel() const { return myLabel; }

private:
    DtString myText;
    DtString myLabel = "0";
};
