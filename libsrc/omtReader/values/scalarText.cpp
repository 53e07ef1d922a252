// SPDX-License-Identifier: Apache-2.0
// Knows the texts of our own number classes, and turns them to octets without a vector for each.
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

#include <typeinfo>

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

constexpr auto theBig = std::endian::big;
constexpr auto theLittle = std::endian::little;

struct NumberClass
{
    const std::type_info& type;
    NumberTraits traits;
};

}  // namespace

NumberTraits numberTraitsOf(const DtDatatypeRep& rep)
{
    using enum NumberText;
    static const NumberClass theClasses[] = {
        {typeid(DtDoubleDatatypeRep),   {any, appendDouble<theBig>}                    },
        {typeid(DtDoubleLEDatatypeRep), {any, appendDouble<theLittle>}                 },
        {typeid(DtFloatDatatypeRep),    {any, appendFloat<theBig>}                     },
        {typeid(DtFloatLEDatatypeRep),  {any, appendFloat<theLittle>}                  },
        {typeid(DtByteDatatypeRep),     {whole, nullptr}                               },
        {typeid(DtShortDatatypeRep),    {whole, appendInteger<std::int16_t, theBig>}   },
        {typeid(DtShortLEDatatypeRep),  {whole, appendInteger<std::int16_t, theLittle>}},
        {typeid(DtIntDatatypeRep),      {whole, appendInteger<std::int32_t, theBig>}   },
        {typeid(DtIntLEDatatypeRep),    {whole, appendInteger<std::int32_t, theLittle>}},
        {typeid(DtLongDatatypeRep),     {whole, nullptr}                               },
        {typeid(DtLongLEDatatypeRep),   {whole, nullptr}                               },
        {typeid(DtEnum8DatatypeRep),    {whole, nullptr}                               },
        {typeid(DtEnum16DatatypeRep),   {whole, nullptr}                               },
        {typeid(DtEnum32DatatypeRep),   {whole, nullptr}                               },
    };
    for (const auto& [type, traits] : theClasses)
        if (typeid(rep) == type) return traits;
    return {};
}

}  // namespace omtreader
