// SPDX-License-Identifier: Apache-2.0
// Reads the short texts in which datatypes say how they are encoded.
#pragma once

#include "omt/codec/plan.h"
#include "omt/model/definitions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// What a basic data representation comes to.
struct Representation
{
    Scalar scalar = Scalar::unsignedInteger;
    bool isLittleEndian = false;
    /// 1 to 8.
    std::uint8_t octets = 1;
    std::uint8_t boundary = 1;
};

/// By size, endian and interpretation; else what is wrong, as half a sentence.
std::optional<Representation> representation(const BasicData& data, std::string& complaint);
/// The representations of the standard, by name, and those of HLA 1.3.
std::optional<Representation> standardRepresentation(std::string_view name);
std::optional<Representation> representation13(std::string_view name);
inline constexpr std::string_view theStandardNames[] = {
    "HLAinteger16BE",         "HLAinteger32BE",         "HLAinteger64BE",
    "HLAinteger16LE",         "HLAinteger32LE",         "HLAinteger64LE",
    "HLAunsignedInteger8",    "HLAunsignedInteger16BE", "HLAunsignedInteger32BE",
    "HLAunsignedInteger64BE", "HLAunsignedInteger16LE", "HLAunsignedInteger32LE",
    "HLAunsignedInteger64LE", "HLAfloat32BE",           "HLAfloat64BE",
    "HLAfloat32LE",           "HLAfloat64LE",           "HLAoctet",
    "HLAoctetPairBE",         "HLAoctetPairLE"};
inline constexpr std::string_view theNamesOf13[] = {
    "octet",         "unsigned char", "short",        "unsigned short", "long",
    "unsigned long", "int",           "unsigned int", "long long",      "unsigned long long",
    "float",         "double",        "char"};

enum class Encoding
{
    unknown,
    fixedArray,
    variableArray,
    lengthlessArray,
    unpaddedLengthlessArray,
    terminatedArray,
    paddingTo16,
    paddingTo32,
    paddingTo64,
    fixedRecord,
    variantRecord,
    extendedVariant,
    extendableVariant
};
/// Without case and without the prefixes HLA and RPR.
Encoding encoding(std::string_view text);

/// One dimension of a cardinality.
struct Cardinality
{
    std::uint32_t least = 0;
    std::uint32_t most = theNone;
    bool isNumber() const { return least == most; }
};
/// "Dynamic", "8", "2,3", "[1..5]": one for each dimension, or nothing for another text.
std::optional<std::vector<Cardinality>> cardinality(std::string_view text);

/// The cardinality of a component of HLA 1.3.
struct ComponentCardinality
{
    std::uint32_t least = 1;
    std::uint32_t most = 1;
    /// "%8": padding.
    std::uint32_t padding = 0;
    /// The component in parentheses, and the value it needs to have.
    std::string_view decider;
    std::string_view value;
};
std::optional<ComponentCardinality> componentCardinality(std::string_view text);

/// A whole number: decimal or 0x hexadecimal, any sign, up to 64 bits, those above 2^63 as two's
/// complement.
std::optional<std::int64_t> wholeNumber(std::string_view text);

/// A part of an alternative's enumerators: one name, or a range with both ends in.
struct EnumeratorRange
{
    std::string_view first;
    std::string_view last;
};
/// "A, B", "[A .. C], D".
std::vector<EnumeratorRange> enumeratorRanges(std::string_view text);

/// A sum over names of fields; nothing for a text that is none.
struct SumToken
{
    Step::What what = Step::What::number;
    std::int64_t number = 0;
    std::string_view name;
};
/// In reverse Polish notation, of whole numbers, names, + - and *.
std::optional<std::vector<SumToken>> sum(std::string_view text);

std::string_view trimmed(std::string_view text);
bool equalsWithoutCase(std::string_view left, std::string_view right);
bool containsWithoutCase(std::string_view text, std::string_view word);

}  // namespace omt
