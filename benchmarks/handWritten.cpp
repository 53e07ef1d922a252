// SPDX-License-Identifier: Apache-2.0
#include "handWritten.h"

#include <bit>
#include <charconv>
#include <cstring>

namespace byHand
{

namespace
{

template <typename T>
T load(const std::uint8_t* octets)
{
    if constexpr (sizeof(T) == 8)
    {
        std::uint64_t bits;
        std::memcpy(&bits, octets, 8);
        return std::bit_cast<T>(__builtin_bswap64(bits));
    }
    else if constexpr (sizeof(T) == 4)
    {
        std::uint32_t bits;
        std::memcpy(&bits, octets, 4);
        return std::bit_cast<T>(__builtin_bswap32(bits));
    }
    else
    {
        std::uint16_t bits;
        std::memcpy(&bits, octets, 2);
        return std::bit_cast<T>(__builtin_bswap16(bits));
    }
}

template <typename T>
std::uint8_t* store(std::uint8_t* octets, T value)
{
    if constexpr (sizeof(T) == 8)
    {
        const std::uint64_t bits = __builtin_bswap64(std::bit_cast<std::uint64_t>(value));
        std::memcpy(octets, &bits, 8);
    }
    else if constexpr (sizeof(T) == 4)
    {
        const std::uint32_t bits = __builtin_bswap32(std::bit_cast<std::uint32_t>(value));
        std::memcpy(octets, &bits, 4);
    }
    else
    {
        const std::uint16_t bits = __builtin_bswap16(std::bit_cast<std::uint16_t>(value));
        std::memcpy(octets, &bits, 2);
    }
    return octets + sizeof(T);
}

void load(const std::uint8_t* octets, Vector& vector)
{
    vector = {load<float>(octets), load<float>(octets + 4), load<float>(octets + 8)};
}

void load(const std::uint8_t* octets, Position& position)
{
    position = {load<double>(octets), load<double>(octets + 8), load<double>(octets + 16)};
}

std::uint8_t* store(std::uint8_t* at, const Vector& vector)
{
    return store(store(store(at, vector.x), vector.y), vector.z);
}

std::uint8_t* store(std::uint8_t* at, const Position& position)
{
    return store(store(store(at, position.x), position.y), position.z);
}

constexpr char theDigits[] = "0123456789abcdef";

/// Writes JSON through a pointer.
struct Writer
{
    char* at;

    template <std::size_t size>
    void put(const char (&literal)[size])
    {
        std::memcpy(at, literal, size - 1);
        at += size - 1;
    }
    void put(std::string_view text)
    {
        std::memcpy(at, text.data(), text.size());
        at += text.size();
    }
    template <typename T>
    void number(T value)
    {
        constexpr std::size_t theLongest = 32;
        at = std::to_chars(at, at + theLongest, value).ptr;
    }
    void name(const Names& names, std::uint32_t value)
    {
        const std::string_view text = names.name(value);
        if (text.empty()) return number(value);
        *at++ = '"';
        put(text);
        *at++ = '"';
    }
    void hexadecimal(const std::uint8_t* octets, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            *at++ = theDigits[octets[i] >> 4];
            *at++ = theDigits[octets[i] & 15];
        }
    }
    // Of ASCII, up to the first zero.
    void text(const std::uint8_t* octets, std::size_t count)
    {
        *at++ = '"';
        for (std::size_t i = 0; i < count && octets[i] != 0; ++i)
        {
            if (octets[i] == '"' || octets[i] == '\\') *at++ = '\\';
            *at++ = static_cast<char>(octets[i]);
        }
        *at++ = '"';
    }
    void position(const Position& position)
    {
        put("{\"X\":");
        number(position.x);
        put(",\"Y\":");
        number(position.y);
        put(",\"Z\":");
        number(position.z);
        put("}");
    }
    void entityType(const EntityType& type)
    {
        put("{\"EntityKind\":");
        number(type.kind);
        put(",\"Domain\":");
        number(type.domain);
        put(",\"CountryCode\":");
        number(type.country);
        put(",\"Category\":");
        number(type.category);
        put(",\"Subcategory\":");
        number(type.subcategory);
        put(",\"Specific\":");
        number(type.specific);
        put(",\"Extra\":");
        number(type.extra);
        put("}");
    }
};

/// Reads exactly the JSON that Writer writes.
struct Reader
{
    const char* at;
    const char* end;

    template <std::size_t size>
    bool is(const char (&literal)[size])
    {
        if (static_cast<std::size_t>(end - at) < size - 1) return false;
        if (std::memcmp(at, literal, size - 1) != 0) return false;
        at += size - 1;
        return true;
    }
    template <typename T>
    bool number(T& value)
    {
        const auto [stop, error] = std::from_chars(at, end, value);
        at = stop;
        return error == std::errc();
    }
    bool name(const Names& names, std::uint32_t& value)
    {
        if (at == end || *at != '"') return number(value);
        ++at;
        const void* const quote = std::memchr(at, '"', static_cast<std::size_t>(end - at));
        if (!quote) return false;
        const std::string_view text(at,
                                    static_cast<std::size_t>(static_cast<const char*>(quote) - at));
        at += text.size() + 1;
        return names.number(text, value);
    }
    bool name(const Names& names, std::uint8_t& value)
    {
        std::uint32_t number = 0;
        if (!name(names, number) || number > 0xFF) return false;
        value = static_cast<std::uint8_t>(number);
        return true;
    }
    bool digit(std::uint8_t& value)
    {
        if (at == end) return false;
        const char letter = *at++;
        if (letter >= '0' && letter <= '9')
            value = static_cast<std::uint8_t>(letter - '0');
        else if (letter >= 'a' && letter <= 'f')
            value = static_cast<std::uint8_t>(letter - 'a' + 10);
        else
            return false;
        return true;
    }
    bool hexadecimal(std::uint8_t* octets, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            std::uint8_t high = 0;
            std::uint8_t low = 0;
            if (!digit(high) || !digit(low)) return false;
            octets[i] = static_cast<std::uint8_t>(high << 4 | low);
        }
        return true;
    }
    bool text(std::uint8_t* octets, std::size_t count)
    {
        std::memset(octets, 0, count);
        if (!is("\"")) return false;
        for (std::size_t i = 0; at != end && *at != '"'; ++i)
        {
            if (*at == '\\') ++at;
            if (i == count || at == end) return false;
            octets[i] = static_cast<std::uint8_t>(*at++);
        }
        return is("\"");
    }
    bool position(Position& position)
    {
        return is("{\"X\":") && number(position.x) && is(",\"Y\":") && number(position.y) &&
               is(",\"Z\":") && number(position.z) && is("}");
    }
    bool entityType(EntityType& type)
    {
        return is("{\"EntityKind\":") && number(type.kind) && is(",\"Domain\":") &&
               number(type.domain) && is(",\"CountryCode\":") && number(type.country) &&
               is(",\"Category\":") && number(type.category) && is(",\"Subcategory\":") &&
               number(type.subcategory) && is(",\"Specific\":") && number(type.specific) &&
               is(",\"Extra\":") && number(type.extra) && is("}");
    }
    bool isAtEnd() const { return at == end; }
};

Reader readerOf(std::string_view text)
{
    return {text.data(), text.data() + text.size()};
}

}  // namespace

// Names ------------------------------------------------------------------------------------------

void Names::add(std::int64_t number, std::string_view name)
{
    constexpr std::uint32_t theMostDense = 1024;
    const auto bits = static_cast<std::uint32_t>(number);
    if (bits < theMostDense)
    {
        if (myDense.size() <= bits) myDense.resize(bits + 1);
        myDense[bits] = name;
    }
    else
        mySparse.emplace(bits, name);
    // The texts stay where the model has them.
    myFew.emplace_back(name, bits);
    myMany.emplace(name, bits);
}

std::string_view Names::name(std::uint32_t number) const
{
    if (number < myDense.size()) return myDense[number];
    const auto place = mySparse.find(number);
    return place == mySparse.end() ? std::string_view() : place->second;
}

bool Names::number(std::string_view name, std::uint32_t& number) const
{
    constexpr std::size_t theFew = 20;
    if (myFew.size() <= theFew)
    {
        for (const auto& one : myFew)
            if (one.first == name)
            {
                number = one.second;
                return true;
            }
        return false;
    }
    const auto place = myMany.find(name);
    if (place == myMany.end()) return false;
    number = place->second;
    return true;
}

AllNames& names()
{
    static AllNames theNames;
    return theNames;
}

// Spatial ----------------------------------------------------------------------------------------

namespace
{

constexpr std::uint8_t theRVW = 4;
constexpr std::size_t theSpatialSize = 84;

}  // namespace

bool Spatial::number(const std::uint8_t* octets, std::size_t size, double& number)
{
    if (size < 16 || octets[0] != theRVW) return false;
    number = load<double>(octets + 8);
    return true;
}

bool Spatial::decode(const std::uint8_t* octets, std::size_t size)
{
    if (size < theSpatialSize || octets[0] != theRVW) return false;
    algorithm = octets[0];
    load(octets + 8, location);
    isFrozen = octets[32];
    load(octets + 36, orientation);
    load(octets + 48, velocity);
    load(octets + 60, acceleration);
    load(octets + 72, angularVelocity);
    return true;
}

std::uint8_t* Spatial::encode(std::uint8_t* octets) const
{
    std::memset(octets, 0, 8);
    octets[0] = algorithm;
    store(octets + 8, location);
    std::memset(octets + 32, 0, 4);
    octets[32] = isFrozen;
    store(octets + 36, orientation);
    store(octets + 48, velocity);
    store(octets + 60, acceleration);
    return store(octets + 72, angularVelocity);
}

char* Spatial::writeJson(char* text) const
{
    Writer to{text};
    to.put("{\"DeadReckoningAlgorithm\":");
    to.name(names().algorithm, algorithm);
    to.put(",\"SpatialRVW\":{\"WorldLocation\":");
    to.position(location);
    to.put(",\"IsFrozen\":");
    to.name(names().boolean, isFrozen);
    to.put(",\"Orientation\":{\"Psi\":");
    to.number(orientation.x);
    to.put(",\"Theta\":");
    to.number(orientation.y);
    to.put(",\"Phi\":");
    to.number(orientation.z);
    to.put("},\"VelocityVector\":{\"XVelocity\":");
    to.number(velocity.x);
    to.put(",\"YVelocity\":");
    to.number(velocity.y);
    to.put(",\"ZVelocity\":");
    to.number(velocity.z);
    to.put("},\"AccelerationVector\":{\"XAcceleration\":");
    to.number(acceleration.x);
    to.put(",\"YAcceleration\":");
    to.number(acceleration.y);
    to.put(",\"ZAcceleration\":");
    to.number(acceleration.z);
    to.put("},\"AngularVelocity\":{\"XAngularVelocity\":");
    to.number(angularVelocity.x);
    to.put(",\"YAngularVelocity\":");
    to.number(angularVelocity.y);
    to.put(",\"ZAngularVelocity\":");
    to.number(angularVelocity.z);
    to.put("}}}");
    return to.at;
}

bool Spatial::readJson(std::string_view text)
{
    Reader from = readerOf(text);
    return from.is("{\"DeadReckoningAlgorithm\":") && from.name(names().algorithm, algorithm) &&
           from.is(",\"SpatialRVW\":{\"WorldLocation\":") && from.position(location) &&
           from.is(",\"IsFrozen\":") && from.name(names().boolean, isFrozen) &&
           from.is(",\"Orientation\":{\"Psi\":") && from.number(orientation.x) &&
           from.is(",\"Theta\":") && from.number(orientation.y) && from.is(",\"Phi\":") &&
           from.number(orientation.z) && from.is("},\"VelocityVector\":{\"XVelocity\":") &&
           from.number(velocity.x) && from.is(",\"YVelocity\":") && from.number(velocity.y) &&
           from.is(",\"ZVelocity\":") && from.number(velocity.z) &&
           from.is("},\"AccelerationVector\":{\"XAcceleration\":") && from.number(acceleration.x) &&
           from.is(",\"YAcceleration\":") && from.number(acceleration.y) &&
           from.is(",\"ZAcceleration\":") && from.number(acceleration.z) &&
           from.is("},\"AngularVelocity\":{\"XAngularVelocity\":") &&
           from.number(angularVelocity.x) && from.is(",\"YAngularVelocity\":") &&
           from.number(angularVelocity.y) && from.is(",\"ZAngularVelocity\":") &&
           from.number(angularVelocity.z) && from.is("}}}") && from.isAtEnd() &&
           algorithm == theRVW;
}

// Entity type ------------------------------------------------------------------------------------

bool EntityType::number(const std::uint8_t* octets, std::size_t size, double& number)
{
    if (size < 4) return false;
    number = load<std::uint16_t>(octets + 2);
    return true;
}

bool EntityType::decode(const std::uint8_t* octets, std::size_t size)
{
    if (size < 8) return false;
    *this = {octets[0], octets[1], load<std::uint16_t>(octets + 2), octets[4], octets[5],
             octets[6], octets[7]};
    return true;
}

std::uint8_t* EntityType::encode(std::uint8_t* octets) const
{
    octets[0] = kind;
    octets[1] = domain;
    store(octets + 2, country);
    octets[4] = category;
    octets[5] = subcategory;
    octets[6] = specific;
    octets[7] = extra;
    return octets + 8;
}

char* EntityType::writeJson(char* text) const
{
    Writer to{text};
    to.entityType(*this);
    return to.at;
}

bool EntityType::readJson(std::string_view text)
{
    Reader from = readerOf(text);
    return from.entityType(*this) && from.isAtEnd();
}

// Marking ----------------------------------------------------------------------------------------

bool Marking::number(const std::uint8_t* octets, std::size_t size, double& number)
{
    if (size < 1) return false;
    number = octets[0];
    return true;
}

bool Marking::decode(const std::uint8_t* octets, std::size_t size)
{
    if (size < 1 + sizeof data) return false;
    encoding = octets[0];
    std::memcpy(data, octets + 1, sizeof data);
    return true;
}

std::uint8_t* Marking::encode(std::uint8_t* octets) const
{
    octets[0] = encoding;
    std::memcpy(octets + 1, data, sizeof data);
    return octets + 1 + sizeof data;
}

char* Marking::writeJson(char* text) const
{
    Writer to{text};
    to.put("{\"MarkingEncodingType\":");
    to.name(names().marking, encoding);
    to.put(",\"MarkingData\":");
    to.text(data, sizeof data);
    to.put("}");
    return to.at;
}

bool Marking::readJson(std::string_view text)
{
    Reader from = readerOf(text);
    return from.is("{\"MarkingEncodingType\":") && from.name(names().marking, encoding) &&
           from.is(",\"MarkingData\":") && from.text(data, sizeof data) && from.is("}") &&
           from.isAtEnd();
}

// Articulated parameters -------------------------------------------------------------------------

namespace
{

constexpr std::uint32_t theAttachedPart = 1;
constexpr std::size_t theParameterSize = 20;

void writeParameter(Writer& to, const Parameter& one)
{
    to.put("{\"ArticulatedParameterChange\":");
    to.number(one.change);
    to.put(",\"PartAttachedTo\":");
    to.number(one.attachedTo);
    to.put(",\"ParameterValue\":{\"ArticulatedParameterType\":");
    to.name(names().parameter, one.type);
    if (one.type == theArticulatedPart)
    {
        to.put(",\"ArticulatedParts\":{\"Class\":");
        to.name(names().part, one.part);
        to.put(",\"TypeMetric\":");
        to.name(names().metric, one.metric);
        to.put(",\"Value\":");
        to.number(one.value);
    }
    else
    {
        to.put(",\"AttachedParts\":{\"Station\":");
        to.name(names().station, one.station);
        to.put(",\"StoreType\":");
        to.entityType(one.store);
    }
    to.put("}}}");
}

bool readParameter(Reader& from, Parameter& one)
{
    if (!from.is("{\"ArticulatedParameterChange\":") || !from.number(one.change) ||
        !from.is(",\"PartAttachedTo\":") || !from.number(one.attachedTo) ||
        !from.is(",\"ParameterValue\":{\"ArticulatedParameterType\":") ||
        !from.name(names().parameter, one.type))
        return false;
    if (one.type == theArticulatedPart)
        return from.is(",\"ArticulatedParts\":{\"Class\":") && from.name(names().part, one.part) &&
               from.is(",\"TypeMetric\":") && from.name(names().metric, one.metric) &&
               from.is(",\"Value\":") && from.number(one.value) && from.is("}}}");
    return one.type == theAttachedPart && from.is(",\"AttachedParts\":{\"Station\":") &&
           from.name(names().station, one.station) && from.is(",\"StoreType\":") &&
           from.entityType(one.store) && from.is("}}}");
}

}  // namespace

bool Parameters::number(const std::uint8_t* octets, std::size_t size, double& number)
{
    // Both alternatives have the same size.
    for (std::size_t at = 0; at < 2 * theParameterSize; at += theParameterSize)
        if (size < at + theParameterSize || load<std::uint32_t>(octets + at + 4) > theAttachedPart)
            return false;
    if (size < 2 * theParameterSize + 4) return false;
    number = load<std::uint16_t>(octets + 2 * theParameterSize + 2);
    return true;
}

bool Parameters::decode(const std::uint8_t* octets, std::size_t size)
{
    count = 0;
    for (; size > 0; octets += theParameterSize, size -= theParameterSize)
    {
        if (size < theParameterSize || count == std::size(all)) return false;
        Parameter& one = all[count++];
        one.change = octets[0];
        one.attachedTo = load<std::uint16_t>(octets + 2);
        one.type = load<std::uint32_t>(octets + 4);
        if (one.type == theArticulatedPart)
        {
            one.part = load<std::uint32_t>(octets + 8);
            one.metric = load<std::uint32_t>(octets + 12);
            one.value = load<float>(octets + 16);
        }
        else if (one.type == theAttachedPart)
        {
            one.station = load<std::uint32_t>(octets + 8);
            one.store.decode(octets + 12, 8);
        }
        else
            return false;
    }
    return true;
}

std::uint8_t* Parameters::encode(std::uint8_t* octets) const
{
    for (std::size_t i = 0; i < count; ++i)
    {
        const Parameter& one = all[i];
        octets[0] = one.change;
        octets[1] = 0;
        store(octets + 2, one.attachedTo);
        octets = store(octets + 4, one.type);
        if (one.type == theArticulatedPart)
            octets = store(store(store(octets, one.part), one.metric), one.value);
        else
            octets = one.store.encode(store(octets, one.station));
    }
    return octets;
}

char* Parameters::writeJson(char* text) const
{
    Writer to{text};
    to.put("[");
    for (std::size_t i = 0; i < count; ++i)
    {
        if (i > 0) to.put(",");
        writeParameter(to, all[i]);
    }
    to.put("]");
    return to.at;
}

bool Parameters::readJson(std::string_view text)
{
    Reader from = readerOf(text);
    count = 0;
    if (!from.is("[")) return false;
    do
    {
        if (count == std::size(all) || !readParameter(from, all[count++])) return false;
    } while (from.is(","));
    return from.is("]") && from.isAtEnd();
}

// Environment records ----------------------------------------------------------------------------

namespace
{

/// The octets of an alternative, or 0.
std::size_t sizeOf(std::uint32_t type)
{
    return type == thePoint ? 24 : type == theLine ? 48 : type == theSphere ? 32 : 0;
}

void writeRecord(Writer& to, const Environment::Record& one)
{
    to.put("{\"Index\":");
    to.number(one.index);
    to.put(",\"DataVariant\":{\"Type\":");
    to.name(names().record, one.type);
    if (one.type == thePoint)
    {
        to.put(",\"Point1GeometryData\":");
        to.position(one.first);
        return to.put("}}");
    }
    if (one.type == theLine)
    {
        to.put(",\"Line1GeometryData\":{\"StartPointLocation\":");
        to.position(one.first);
        to.put(",\"EndPointLocation\":");
        to.position(one.second);
        return to.put("}}}");
    }
    to.put(",\"BoundingSphereGeometryData\":{\"CentroidLocation\":");
    to.position(one.first);
    to.put(",\"Radius\":");
    to.number(one.radius);
    to.put(",\"Padding\":\"");
    to.hexadecimal(one.padding, sizeof one.padding);
    to.put("\"}}}");
}

bool readRecord(Reader& from, Environment::Record& one)
{
    if (!from.is("{\"Index\":") || !from.number(one.index) ||
        !from.is(",\"DataVariant\":{\"Type\":") || !from.name(names().record, one.type))
        return false;
    if (one.type == thePoint)
        return from.is(",\"Point1GeometryData\":") && from.position(one.first) && from.is("}}");
    if (one.type == theLine)
        return from.is(",\"Line1GeometryData\":{\"StartPointLocation\":") &&
               from.position(one.first) && from.is(",\"EndPointLocation\":") &&
               from.position(one.second) && from.is("}}}");
    return one.type == theSphere &&
           from.is(",\"BoundingSphereGeometryData\":{\"CentroidLocation\":") &&
           from.position(one.first) && from.is(",\"Radius\":") && from.number(one.radius) &&
           from.is(",\"Padding\":\"") && from.hexadecimal(one.padding, sizeof one.padding) &&
           from.is("\"}}}");
}

}  // namespace

bool Environment::number(const std::uint8_t* octets, std::size_t size, double& number)
{
    if (size < 8 || load<std::uint32_t>(octets) < 3) return false;
    std::size_t at = 8;
    for (int i = 0; i < 2; ++i)
    {
        if (size < at + 16) return false;
        const std::size_t length = load<std::uint32_t>(octets + at + 12);
        if (length > size - at - 16) return false;
        at += 16 + length;
    }
    if (size < at + 4) return false;
    number = load<std::uint32_t>(octets + at);
    return true;
}

bool Environment::decode(const std::uint8_t* octets, std::size_t size)
{
    if (size < 8) return false;
    count = load<std::uint32_t>(octets);
    if (count > std::size(all)) return false;
    std::size_t at = 8;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (size < at + 16) return false;
        Record& one = all[i];
        one.index = load<std::uint32_t>(octets + at);
        one.type = load<std::uint32_t>(octets + at + 8);
        const std::size_t length = load<std::uint32_t>(octets + at + 12);
        at += 16;
        if (length != sizeOf(one.type) || length == 0 || length > size - at) return false;
        load(octets + at, one.first);
        if (one.type == theLine) load(octets + at + 24, one.second);
        if (one.type == theSphere)
        {
            one.radius = load<float>(octets + at + 24);
            std::memcpy(one.padding, octets + at + 28, 4);
        }
        at += length;
    }
    return true;
}

std::uint8_t* Environment::encode(std::uint8_t* octets) const
{
    octets = store(octets, static_cast<std::uint32_t>(count));
    octets = store(octets, std::uint32_t{0});
    for (std::size_t i = 0; i < count; ++i)
    {
        const Record& one = all[i];
        octets = store(store(octets, one.index), std::uint32_t{0});
        octets = store(store(octets, one.type), static_cast<std::uint32_t>(sizeOf(one.type)));
        octets = store(octets, one.first);
        if (one.type == theLine) octets = store(octets, one.second);
        if (one.type != theSphere) continue;
        octets = store(octets, one.radius);
        std::memcpy(octets, one.padding, 4);
        octets += 4;
    }
    return octets;
}

char* Environment::writeJson(char* text) const
{
    Writer to{text};
    to.put("[");
    for (std::size_t i = 0; i < count; ++i)
    {
        if (i > 0) to.put(",");
        writeRecord(to, all[i]);
    }
    to.put("]");
    return to.at;
}

bool Environment::readJson(std::string_view text)
{
    Reader from = readerOf(text);
    count = 0;
    if (!from.is("[")) return false;
    do
    {
        if (count == std::size(all) || !readRecord(from, all[count++])) return false;
    } while (from.is(","));
    return from.is("]") && from.isAtEnd();
}

// Text -------------------------------------------------------------------------------------------

bool Text::number(const std::uint8_t* octets, std::size_t size, double& number)
{
    if (size < 4) return false;
    const std::size_t units = load<std::uint32_t>(octets);
    if (units <= 5 || units > (size - 4) / 2) return false;
    number = load<std::uint16_t>(octets + 4 + 2 * 5);
    return true;
}

bool Text::decode(const std::uint8_t* octets, std::size_t size)
{
    if (size < 4) return false;
    count = load<std::uint32_t>(octets);
    if (count > std::size(units) || count > (size - 4) / 2) return false;
    for (std::size_t i = 0; i < count; ++i) units[i] = load<char16_t>(octets + 4 + 2 * i);
    return true;
}

std::uint8_t* Text::encode(std::uint8_t* octets) const
{
    octets = store(octets, static_cast<std::uint32_t>(count));
    for (std::size_t i = 0; i < count; ++i) octets = store(octets, units[i]);
    return octets;
}

// Of the characters below U+0800, which names are made of.
char* Text::writeJson(char* text) const
{
    *text++ = '"';
    for (std::size_t i = 0; i < count; ++i)
    {
        const unsigned code = units[i];
        if (code >= 0x80)
        {
            *text++ = static_cast<char>(0xC0 | code >> 6);
            *text++ = static_cast<char>(0x80 | (code & 0x3F));
            continue;
        }
        if (code == '"' || code == '\\') *text++ = '\\';
        *text++ = static_cast<char>(code);
    }
    *text++ = '"';
    return text;
}

bool Text::readJson(std::string_view text)
{
    if (text.size() < 2 || text.front() != '"' || text.back() != '"') return false;
    count = 0;
    for (std::size_t i = 1; i + 1 < text.size(); ++i)
    {
        unsigned code = static_cast<unsigned char>(text[i]);
        if (code == '\\')
            code = static_cast<unsigned char>(text[++i]);
        else if (code >= 0x80)
            code = (code & 0x1FU) << 6 | (static_cast<unsigned char>(text[++i]) & 0x3FU);
        if (count == std::size(units)) return false;
        units[count++] = static_cast<char16_t>(code);
    }
    return true;
}

}  // namespace byHand
