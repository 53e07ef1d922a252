// SPDX-License-Identifier: Apache-2.0
// The base of representations: one value of one kind to text and back.
#pragma once

#include "util/dtExport.h"
#include "util/dtString.h"

#include <type_traits>
#include <vector>

/// Turns the octets of one value into text and text back into octets.
///
/// A DtDatatypeManager owns one object for each registered name and calls it while it walks a
/// value. Nothing is kept between calls, so one object serves every value of its kind.
///
/// A host that writes a representation of its own is called like this:
/// - A position points at the next octet of the value that was not read yet. When the manager
///   calls, at least 1024 zero octets follow the end of the value, so a text without an end ends
///   there; a representation checks no length itself.
/// - `consumed`, where it is not null, receives how many octets were read, with any gap before
///   the value; the manager goes on after them.
/// - A null position is no error: the text is empty, the number 0, and 0 octets are consumed.
/// - Encoding never adds a gap; an empty vector appends nothing to the value.
///
/// This class has no virtual destructor, so a class directly below it or below DtNumberDatatypeRep
/// says in its constructor as what it is deleted; one that does not is never deleted. All other
/// classes of the library have said so, and their destructors are virtual.
///
///     struct Flag final : DtDatatypeRep
///     {
///         Flag() : DtDatatypeRep(false) { nameOwnClass(this); }
///         const char* datatype() const override { return "flag"; }  // the name to register under
///         ...
class OMTREADER_EXPORT DtDatatypeRep
{
public:
    /// The name to register under.
    virtual const char* datatype() const = 0;
    /// The text of the value at this position.
    virtual DtString stringRep(const void* position, int* consumed) const = 0;
    /// The octets of a value with this text; a text that is no number counts as 0.
    virtual std::vector<char> valueFromStringRep(const DtString& text) const = 0;
    /// What the address of a value is a multiple of in an aligned record; in octets.
    virtual unsigned int byteAlignment() const = 0;

    /// Deletes a representation through the class that it named. One that named none is left
    /// alone: better kept to the end of the process than deleted as something it is not.
    static void release(DtDatatypeRep* rep);

protected:
    /// Whether the value is read at the next multiple of its width instead of where it is said to
    /// be.
    explicit DtDatatypeRep(bool isAligned) : myIsAligned(isAligned) {}
    /// Copies whether values are aligned. What the source named itself is not copied: the copy of a
    /// part of an object is of another class.
    DtDatatypeRep(const DtDatatypeRep& other) : myIsAligned(other.myIsAligned) {}
    DtDatatypeRep& operator=(const DtDatatypeRep& other)
    {
        myIsAligned = other.myIsAligned;
        return *this;
    }
    ~DtDatatypeRep() = default;

    /// Says as which class the object is deleted; called in a constructor with `this`. The call of
    /// a class further down replaces the one before. Below a class with a virtual destructor that
    /// has made the call there is no need for another.
    template <class Rep>
    void nameOwnClass(Rep*)
    {
        static_assert(std::has_virtual_destructor_v<Rep> || std::is_final_v<Rep>,
                      "a class below this one would be deleted as this one");
        myDelete = [](DtDatatypeRep* rep) { delete static_cast<Rep*>(rep); };
    }

    /// Where a value of `size` octets is read: at this position or, with alignment, at the next
    /// address that is a multiple of `alignment`. `consumed` receives the gap plus the size. Null
    /// and 0 for a null position.
    const void* readPosition(const void* position, unsigned int alignment, unsigned int size,
                             int* consumed) const;

private:
    bool myIsAligned;
    void (*myDelete)(DtDatatypeRep*) = nullptr;
};
