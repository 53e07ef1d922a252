// SPDX-License-Identifier: Apache-2.0
// Encodes a text, and refuses what does not fit where the library would write something else.
#pragma once

#include "mappedManager.h"
#include "omtReader/omtDatatypeNode.h"

#include <string>
#include <vector>

/// A manager whose encoding throws InputError, which names the part of the value and what is wrong
/// with its text.
///
/// Beyond what the base writes, implicit padding gets its octets, and a part without text those of
/// a character of value 0, an empty array and the like. An array of a fixed number of characters
/// that is written as plain text is filled up with zero octets.
class CheckedEncoder : public MappedManager
{
public:
    Octets encode(const std::string& datatype, const std::string& text);

    void getValueFromStringRep(const DtString& datatype, const DtString& text,
                               Octets& out) override;
    void getValueFromDatatypeRep(const DtString& datatype, const DtString& text,
                                 Octets& out) override;
    void getValueFromEnumRep(const DtString& datatype, const DtString& text, Octets& out) override;
    void getValueFromFixedRep(const DtString& datatype, const DtString& text, Octets& out) override;
    void getValueFromComplexRep(const DtString& datatype, const DtString& text,
                                Octets& out) override;
    void getValueFromArrayRep(const DtString& datatype, const DtString& text, Octets& out) override;

private:
    /// A record or array whose parts are being encoded.
    struct Composite
    {
        bool isArray = false;
        std::vector<const DtOMTDatatypeNode*> fields = {};  // as far as it is known
        std::size_t next = 0;                               // field or element
        std::size_t start = 0;                              // where it begins in the octets
        bool hasCount = false;
    };

    void beginPart(const DtString& datatype);
    std::string path() const;
    [[noreturn]] void refuse(const std::string& why) const;
    bool isImpossible(const DtString& datatype);
    std::string whyImpossible(const DtString& datatype);
    void pad(const DtString& datatype, std::size_t offset, Octets& out);
    void padAfterCount(const DtString& element, Octets& out);
    void encodeEmpty(const DtString& datatype, Octets& out);
    void checkCount(const DtString& datatype, std::size_t found, Octets& out);

    std::string myName;
    std::vector<Composite> myComposites;
    bool myHasBegun = false;  // the part that the next step encodes
};
