// SPDX-License-Identifier: Apache-2.0
// Lists the representations that every manager begins with, and knows the texts of their numbers.
#include "omtReader/values/ownRepresentations.h"

#include "omtReader/boolDatatypeRep.h"
#include "omtReader/byteDatatypeRep.h"
#include "omtReader/charDatatypeRep.h"
#include "omtReader/doubleLEDatatypeRep.h"
#include "omtReader/enum16DatatypeRep.h"
#include "omtReader/enum32DatatypeRep.h"
#include "omtReader/enum8DatatypeRep.h"
#include "omtReader/floatLEDatatypeRep.h"
#include "omtReader/hexDatatypeRep.h"
#include "omtReader/intLEDatatypeRep.h"
#include "omtReader/longLEDatatypeRep.h"
#include "omtReader/shortLEDatatypeRep.h"
#include "omtReader/stringDatatypeRep.h"
#include "omtReader/utf16DatatypeRep.h"
#include "omtReader/utf8DatatypeRep.h"
#include "omtReader/values/numberRows.h"

#include <typeinfo>

namespace omtreader
{
namespace
{

using Add = std::function<void(DtDatatypeRep*)>;

template <class Rep>
void addNew(bool isAligned, const Add& add)
{
    if constexpr (std::is_constructible_v<Rep, bool, bool>)
        for (const bool isUnsigned : {false, true}) add(new Rep(isAligned, isUnsigned));
    else if constexpr (std::is_constructible_v<Rep, bool>)
        add(new Rep(isAligned));
    else
        add(new Rep);
}

/// A class, how its objects are made, and what is known of them.
struct OwnClass
{
    const std::type_info& type;
    void (*addNew)(bool isAligned, const Add& add);
    NumberTraits traits;
};

template <class Rep>
OwnClass own(NumberText text = NumberText::none)
{
    return {
        typeid(Rep), addNew<Rep>, {text, nullptr}
    };
}

template <class Rep, typename Number, std::endian Order>
OwnClass own(NumberRow<Number, Order>)
{
    constexpr AppendText theAppend = [](const DtString& text, std::vector<char>& octets)
    {
        using Octets = ScalarOctets<Number, Order>;
        Octets::append(Octets::parse(text), octets);
    };
    OwnClass one = own<Rep>(std::is_integral_v<Number> ? NumberText::whole : NumberText::any);
    one.traits.append = theAppend;
    return one;
}

const auto& ownClasses()
{
    static const OwnClass theClasses[] = {
        own<DtDoubleDatatypeRep>(theDoubleRow),
        own<DtDoubleLEDatatypeRep>(theDoubleLERow),
        own<DtFloatDatatypeRep>(theFloatRow),
        own<DtFloatLEDatatypeRep>(theFloatLERow),
        own<DtShortDatatypeRep>(theShortRow),
        own<DtShortLEDatatypeRep>(theShortLERow),
        own<DtIntDatatypeRep>(theIntRow),
        own<DtIntLEDatatypeRep>(theIntLERow),
        own<DtLongDatatypeRep>(theLongRow),
        own<DtLongLEDatatypeRep>(theLongLERow),
        own<DtByteDatatypeRep>(NumberText::whole),
        own<DtEnum8DatatypeRep>(NumberText::whole),
        own<DtEnum16DatatypeRep>(NumberText::whole),
        own<DtEnum32DatatypeRep>(NumberText::whole),
        own<DtBoolDatatypeRep>(),
        own<DtCharDatatypeRep>(),
        own<DtHexDatatypeRep>(),
        own<DtStringDatatypeRep>(),
        own<DtUtf8DatatypeRep>(),
        own<DtUtf16DatatypeRep>(),
    };
    return theClasses;
}

}  // namespace

void addOwnRepresentations(bool isAligned, const Add& add)
{
    for (const OwnClass& one : ownClasses()) one.addNew(isAligned, add);
}

NumberTraits numberTraitsOf(const DtDatatypeRep& rep)
{
    for (const auto& [type, addNew, traits] : ownClasses())
        if (typeid(rep) == type) return traits;
    return {};
}

}  // namespace omtreader
