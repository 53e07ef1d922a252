// SPDX-License-Identifier: Apache-2.0
// What a program would have for six layouts if it were written for them alone: C structs, octets to
// them and back, their JSON and what reads exactly this JSON. The codec is measured beside it.
//
// Each layout has: decode() (false where the octets are none), encode() and writeJson() into room
// that is large enough (both give its end), readJson() (false for any other text), and number(),
// which reads one number straight out of octets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace byHand
{

/// The names of an enumerated datatype.
class Names
{
public:
    void add(std::int64_t number, std::string_view name);
    /// Empty for a number that has none.
    std::string_view name(std::uint32_t number) const;
    bool number(std::string_view name, std::uint32_t& number) const;

private:
    std::vector<std::string> myDense;
    std::unordered_map<std::uint32_t, std::string> mySparse;
    std::vector<std::pair<std::string, std::uint32_t>> myFew;
    std::unordered_map<std::string_view, std::uint32_t> myMany;
};

/// Filled from the model before the rest is used: the text is its own, the code is not.
struct AllNames
{
    Names algorithm, boolean, marking, parameter, part, metric, station, record;
};
AllNames& names();

struct Vector
{
    float x, y, z;
};

struct Position
{
    double x, y, z;
};

struct Spatial
{
    std::uint8_t algorithm;
    std::uint8_t isFrozen;
    Position location;
    Vector orientation, velocity, acceleration, angularVelocity;

    static constexpr const char* theType = "SpatialVariantStruct";
    static constexpr const char* theField = "SpatialRVW.WorldLocation.X";
    static bool number(const std::uint8_t* octets, std::size_t size, double& number);
    bool decode(const std::uint8_t* octets, std::size_t size);
    std::uint8_t* encode(std::uint8_t* octets) const;
    char* writeJson(char* text) const;
    bool readJson(std::string_view text);
};

struct EntityType
{
    std::uint8_t kind, domain;
    std::uint16_t country;
    std::uint8_t category, subcategory, specific, extra;

    static constexpr const char* theType = "EntityTypeStruct";
    static constexpr const char* theField = "CountryCode";
    static bool number(const std::uint8_t* octets, std::size_t size, double& number);
    bool decode(const std::uint8_t* octets, std::size_t size);
    std::uint8_t* encode(std::uint8_t* octets) const;
    char* writeJson(char* text) const;
    bool readJson(std::string_view text);
};

struct Marking
{
    std::uint8_t encoding;
    std::uint8_t data[11];

    static constexpr const char* theType = "MarkingStruct";
    static constexpr const char* theField = "MarkingEncodingType";
    static bool number(const std::uint8_t* octets, std::size_t size, double& number);
    bool decode(const std::uint8_t* octets, std::size_t size);
    std::uint8_t* encode(std::uint8_t* octets) const;
    char* writeJson(char* text) const;
    bool readJson(std::string_view text);
};

/// Discriminants.
constexpr std::uint32_t theArticulatedPart = 0;
constexpr std::uint32_t thePoint = 655360;
constexpr std::uint32_t theLine = 786432;
constexpr std::uint32_t theSphere = 65536;

struct Parameter
{
    std::uint8_t change;
    std::uint16_t attachedTo;
    std::uint32_t type;
    /// Of an articulated part.
    std::uint32_t part, metric;
    float value;
    /// Of an attached part.
    std::uint32_t station;
    EntityType store;
};

struct Parameters
{
    std::size_t count;
    Parameter all[4];

    static constexpr const char* theType = "ArticulatedParameterStructLengthlessArray";
    static constexpr const char* theField = "[2].PartAttachedTo";
    static bool number(const std::uint8_t* octets, std::size_t size, double& number);
    bool decode(const std::uint8_t* octets, std::size_t size);
    std::uint8_t* encode(std::uint8_t* octets) const;
    char* writeJson(char* text) const;
    bool readJson(std::string_view text);
};

struct Environment
{
    struct Record
    {
        std::uint32_t index, type;
        Position first, second;
        float radius;
        std::uint8_t padding[4];
    };
    std::size_t count;
    Record all[3];

    static constexpr const char* theType = "EnvironmentRecStructArray";
    static constexpr const char* theField = "[2].Index";
    static bool number(const std::uint8_t* octets, std::size_t size, double& number);
    bool decode(const std::uint8_t* octets, std::size_t size);
    std::uint8_t* encode(std::uint8_t* octets) const;
    char* writeJson(char* text) const;
    bool readJson(std::string_view text);
};

struct Text
{
    std::size_t count;
    char16_t units[20];

    static constexpr const char* theType = "HLAunicodeString";
    static constexpr const char* theField = "[5]";
    static bool number(const std::uint8_t* octets, std::size_t size, double& number);
    bool decode(const std::uint8_t* octets, std::size_t size);
    std::uint8_t* encode(std::uint8_t* octets) const;
    char* writeJson(char* text) const;
    bool readJson(std::string_view text);
};

}  // namespace byHand
