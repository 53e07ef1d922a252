// SPDX-License-Identifier: Apache-2.0
// The texts of numbers to octets, without a vector for each of them.
#include "omtReader/values/scalarText.h"

#include "omtReader/byteDatatypeRep.h"
#include "omtReader/doubleLEDatatypeRep.h"
#include "omtReader/enum16DatatypeRep.h"
#include "omtReader/enum32DatatypeRep.h"
#include "omtReader/enum8DatatypeRep.h"
#include "omtReader/floatLEDatatypeRep.h"
#include "omtReader/intLEDatatypeRep.h"
#include "omtReader/longLEDatatypeRep.h"
#include "omtReader/shortLEDatatypeRep.h"
#include "omtReader/values/scalarOctets.h"

#include <typeindex>
#include <typeinfo>
#include <unordered_map>

namespace omtreader
{
namespace
{

template <std::endian Order>
void appendDouble(const DtString& text, std::vector<char>& octets)
{
    ScalarOctets<double, Order>::append(text.toDouble(), octets);
}

template <std::endian Order>
void appendFloat(const DtString& text, std::vector<char>& octets)
{
    ScalarOctets<float, Order>::append(readFloat(text), octets);
}

template <typename Integer, std::endian Order>
void appendInteger(const DtString& text, std::vector<char>& octets)
{
    ScalarOctets<Integer, Order>::append(static_cast<Integer>(text.toInt()), octets);
}

struct Entry
{
    const std::type_info& type;
    AppendText append;
};

}  // namespace

AppendText appendTextOf(const DtDatatypeRep& rep)
{
    constexpr auto theBig = std::endian::big;
    constexpr auto theLittle = std::endian::little;
    static const Entry theClasses[] = {
        {typeid(DtDoubleDatatypeRep), appendDouble<theBig>},
        {typeid(DtDoubleLEDatatypeRep), appendDouble<theLittle>},
        {typeid(DtFloatDatatypeRep), appendFloat<theBig>},
        {typeid(DtFloatLEDatatypeRep), appendFloat<theLittle>},
        {typeid(DtIntDatatypeRep), appendInteger<std::int32_t, theBig>},
        {typeid(DtIntLEDatatypeRep), appendInteger<std::int32_t, theLittle>},
        {typeid(DtShortDatatypeRep), appendInteger<std::int16_t, theBig>},
        {typeid(DtShortLEDatatypeRep), appendInteger<std::int16_t, theLittle>},
    };
    for (const auto& [type, append] : theClasses)
        if (typeid(rep) == type) return append;
    return nullptr;
}

NumberText numberTextOf(const DtDatatypeRep* rep)
{
    static const std::unordered_map<std::type_index, NumberText> theClasses = {
        {typeid(DtByteDatatypeRep),     NumberText::whole},
        {typeid(DtShortDatatypeRep),    NumberText::whole},
        {typeid(DtShortLEDatatypeRep),  NumberText::whole},
        {typeid(DtIntDatatypeRep),      NumberText::whole},
        {typeid(DtIntLEDatatypeRep),    NumberText::whole},
        {typeid(DtLongDatatypeRep),     NumberText::whole},
        {typeid(DtLongLEDatatypeRep),   NumberText::whole},
        {typeid(DtEnum8DatatypeRep),    NumberText::whole},
        {typeid(DtEnum16DatatypeRep),   NumberText::whole},
        {typeid(DtEnum32DatatypeRep),   NumberText::whole},
        {typeid(DtFloatDatatypeRep),    NumberText::any  },
        {typeid(DtFloatLEDatatypeRep),  NumberText::any  },
        {typeid(DtDoubleDatatypeRep),   NumberText::any  },
        {typeid(DtDoubleLEDatatypeRep), NumberText::any  },
    };
    if (!rep) return NumberText::none;
    const auto entry = theClasses.find(typeid(*rep));
    return entry == theClasses.end() ? NumberText::none : entry->second;
}

}  // namespace omtreader
