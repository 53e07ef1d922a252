// SPDX-License-Identifier: Apache-2.0
#include "omtReader/entityMapperKey.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>

DtEntityMapperKey::DtEntityMapperKey(const char* text)
{
    *this = text;
}

DtEntityMapperKey::DtEntityMapperKey(const DtEntityMapperKey& other)
{
    *this = other;
}

DtEntityMapperKey& DtEntityMapperKey::operator=(const DtEntityMapperKey& other)
{
    if (this == &other) return *this;
    myText = DtString();
    std::copy(std::begin(other.myNumbers), std::end(other.myNumbers), std::begin(myNumbers));
    return *this;
}

DtEntityMapperKey& DtEntityMapperKey::operator=(const char* text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    constexpr int theBaseOfThePrefix = 0;
    const char* rest = text ? text : "";
    for (std::int32_t& number : myNumbers)
    {
        char* end = nullptr;
        const long read = std::strtol(rest, &end, theBaseOfThePrefix);
        number = static_cast<std::int32_t>(std::clamp<long>(read, Limits::min(), Limits::max()));
        rest = *end ? end + 1 : end;
    }
    return *this;
}

const DtString& DtEntityMapperKey::string() const
{
    myText = DtString(myNumbers[0]);
    for (int place = 1; place < theSize; ++place)
    {
        myText += ':';
        myText += DtString(myNumbers[place]);
    }
    return myText;
}

bool DtEntityMapperKey::operator==(const DtEntityMapperKey& other) const
{
    return std::equal(std::begin(myNumbers), std::end(myNumbers), std::begin(other.myNumbers),
                      [](std::int32_t mine, std::int32_t others)
                      { return mine == others || mine == theAny || others == theAny; });
}

bool DtEntityMapperKey::matchPattern(const DtEntityMapperKey& other) const
{
    return *this == other;
}

bool DtEntityMapperKey::exactMatch(const DtEntityMapperKey& other) const
{
    return std::equal(std::begin(myNumbers), std::end(myNumbers), std::begin(other.myNumbers));
}
