// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/typeText.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace omt
{

namespace
{

char lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isBlank(char letter)
{
    return letter == ' ' || letter == '\t' || letter == '\n' || letter == '\r';
}

bool takePrefix(std::string_view& text, std::string_view prefix)
{
    if (!equalsWithoutCase(text.substr(0, prefix.size()), prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

std::optional<std::uint32_t> count(std::string_view text)
{
    text = trimmed(text);
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc() || stop != end || number > theLargestSize)
        return std::nullopt;
    return number;
}

struct NamedRepresentation
{
    std::string_view name;
    Representation what;
};
constexpr Scalar S = Scalar::signedInteger;
constexpr Scalar U = Scalar::unsignedInteger;
constexpr Scalar F = Scalar::floating;

// clang-format off
constexpr NamedRepresentation theStandardOnes[] = {
    {"HLAinteger16BE", {S, false, 2, 2}}, {"HLAinteger32BE", {S, false, 4, 4}},
    {"HLAinteger64BE", {S, false, 8, 8}}, {"HLAinteger16LE", {S, true, 2, 2}},
    {"HLAinteger32LE", {S, true, 4, 4}}, {"HLAinteger64LE", {S, true, 8, 8}},
    {"HLAunsignedInteger8", {U, true, 1, 1}},
    {"HLAunsignedInteger16BE", {U, false, 2, 2}}, {"HLAunsignedInteger32BE", {U, false, 4, 4}},
    {"HLAunsignedInteger64BE", {U, false, 8, 8}}, {"HLAunsignedInteger16LE", {U, true, 2, 2}},
    {"HLAunsignedInteger32LE", {U, true, 4, 4}}, {"HLAunsignedInteger64LE", {U, true, 8, 8}},
    {"HLAfloat32BE", {F, false, 4, 4}}, {"HLAfloat64BE", {F, false, 8, 8}},
    {"HLAfloat32LE", {F, true, 4, 4}}, {"HLAfloat64LE", {F, true, 8, 8}},
    {"HLAoctet", {U, false, 1, 1}},
    {"HLAoctetPairBE", {U, false, 2, 2}}, {"HLAoctetPairLE", {U, true, 2, 2}},
};

// HLA 1.3 names no octets; these are the ones of the RPR FOM. Nothing is padded by itself there.
constexpr NamedRepresentation theOnesOf13[] = {
    {"octet", {U, false, 1, 1}}, {"unsigned char", {U, false, 1, 1}},
    {"short", {S, false, 2, 1}}, {"unsigned short", {U, false, 2, 1}},
    {"long", {S, false, 4, 1}}, {"unsigned long", {U, false, 4, 1}},
    {"int", {S, false, 4, 1}}, {"unsigned int", {U, false, 4, 1}},
    {"long long", {S, false, 8, 1}}, {"unsigned long long", {U, false, 8, 1}},
    {"float", {F, false, 4, 1}}, {"double", {F, false, 8, 1}},
    {"char", {U, false, 1, 1}},
};

struct EncodingWord
{
    std::string_view word;
    Encoding what;
};
constexpr EncodingWord theEncodings[] = {
    {"fixedArray", Encoding::fixedArray}, {"variableArray", Encoding::variableArray},
    {"lengthlessArray", Encoding::lengthlessArray},
    {"lengthlessVarArray", Encoding::lengthlessArray},
    {"unpaddedLengthlessVarArray", Encoding::unpaddedLengthlessArray},
    {"unpaddedLengthlessArray", Encoding::unpaddedLengthlessArray},
    {"nullTerminatedArray", Encoding::terminatedArray},
    {"paddingTo16Array", Encoding::paddingTo16}, {"paddingTo32Array", Encoding::paddingTo32},
    {"paddingTo64Array", Encoding::paddingTo64},
    {"fixedRecord", Encoding::fixedRecord}, {"variantRecord", Encoding::variantRecord},
    {"extendedVariantRecord", Encoding::extendedVariant},
    {"extHLAvariantRecord", Encoding::extendedVariant},
    {"extendableVariantRecord", Encoding::extendableVariant},
};
// clang-format on

template <std::size_t Size>
std::optional<Representation> find(const NamedRepresentation (&table)[Size], std::string_view name)
{
    for (const NamedRepresentation& row : table)
        if (row.name == name) return row.what;
    return std::nullopt;
}

}  // namespace

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool equalsWithoutCase(std::string_view left, std::string_view right)
{
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](char one, char two) { return lower(one) == lower(two); });
}

bool containsWithoutCase(std::string_view text, std::string_view word)
{
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [](char one, char two) { return lower(one) == lower(two); }) != text.end();
}

std::optional<Representation> representation(const BasicData& data, std::string& complaint)
{
    const std::string_view texts[] = {data.name, data.interpretation, data.encoding};
    const auto says = [&texts](std::string_view word)
    {
        return std::any_of(std::begin(texts), std::end(texts),
                           [word](std::string_view text)
                           { return containsWithoutCase(text, word); });
    };
    const std::optional<std::uint32_t> bits = count(data.size);
    Representation what;
    if (!bits || *bits == 0 || *bits % 8 != 0)
        complaint = "its size is no whole number of octets";
    else if (*bits > 64)
        complaint = "it is longer than 8 octets";
    else if (says("float") && *bits != 32 && *bits != 64)
        complaint = "a floating point number has 32 or 64 bits";
    if (!complaint.empty()) return std::nullopt;
    what.octets = static_cast<std::uint8_t>(*bits / 8);
    what.boundary = what.octets <= 2 ? what.octets : what.octets <= 4 ? 4 : 8;
    what.isLittleEndian = equalsWithoutCase(trimmed(data.endian), "little");
    what.scalar = says("float") ? F : says("unsigned") || says("octet") || says("[0,") ? U : S;
    return what;
}

std::optional<Representation> standardRepresentation(std::string_view name)
{
    return find(theStandardOnes, name);
}

std::optional<Representation> representation13(std::string_view name)
{
    return find(theOnesOf13, name);
}

Encoding encoding(std::string_view text)
{
    text = trimmed(text);
    for (const EncodingWord& row : theEncodings)
        if (equalsWithoutCase(text, row.word)) return row.what;
    if (!takePrefix(text, "HLA") && !takePrefix(text, "RPR")) return Encoding::unknown;
    for (const EncodingWord& row : theEncodings)
        if (equalsWithoutCase(text, row.word)) return row.what;
    return Encoding::unknown;
}

namespace
{

std::optional<Cardinality> dimension(std::string_view text)
{
    text = trimmed(text);
    if (equalsWithoutCase(text, "dynamic")) return Cardinality{};
    if (text.size() > 2 && text.front() == '[' && text.back() == ']')
        text = text.substr(1, text.size() - 2);
    const std::size_t dots = text.find("..");
    const std::optional<std::uint32_t> first = count(text.substr(0, dots));
    if (!first) return std::nullopt;
    if (dots == std::string_view::npos) return Cardinality{*first, *first};
    const std::optional<std::uint32_t> last = count(text.substr(dots + 2));
    if (!last || *last < *first) return std::nullopt;
    return Cardinality{*first, *last};
}

}  // namespace

std::optional<std::vector<Cardinality>> cardinality(std::string_view text)
{
    std::vector<Cardinality> dimensions;
    for (bool isMore = true; isMore;)
    {
        const std::size_t comma = text.find(',');
        const std::optional<Cardinality> one = dimension(text.substr(0, comma));
        constexpr std::size_t theMostDimensions = 16;
        if (!one || dimensions.size() == theMostDimensions) return std::nullopt;
        dimensions.push_back(*one);
        isMore = comma != std::string_view::npos;
        if (isMore) text.remove_prefix(comma + 1);
    }
    return dimensions;
}

std::optional<ComponentCardinality> componentCardinality(std::string_view text)
{
    ComponentCardinality what;
    text = trimmed(text);
    if (text.empty()) return what;
    if (text.front() == '%')
    {
        what.padding = count(text.substr(1)).value_or(0);
        if (what.padding != 2 && what.padding != 4 && what.padding != 8) return std::nullopt;
        return what;
    }
    const std::size_t open = text.find_first_of("(,");
    if (open != std::string_view::npos)
    {
        std::string_view condition = trimmed(text.substr(open + 1));
        if (!condition.empty() && condition.back() == ')') condition.remove_suffix(1);
        const std::size_t equal = condition.find('=');
        what.decider = trimmed(condition.substr(0, equal));
        if (equal != std::string_view::npos) what.value = trimmed(condition.substr(equal + 1));
        text = trimmed(text.substr(0, open));
        what.least = 0;
        if (text.empty()) return what;
    }
    const std::size_t dash = text.find('-');
    const bool isOpen = text.back() == '+';
    if (isOpen) text.remove_suffix(1);
    const std::optional<std::uint32_t> first = count(text.substr(0, dash));
    const std::optional<std::uint32_t> last =
        dash == std::string_view::npos ? first : count(text.substr(dash + 1));
    if (!first || !last || *last < *first) return std::nullopt;
    what.least = *first;
    what.most = isOpen ? theNone : *last;
    return what;
}

std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    text = trimmed(text);
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    const bool isHexadecimal = text.size() > 2 && text[0] == '0' && lower(text[1]) == 'x';
    if (isHexadecimal) text.remove_prefix(2);
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, isHexadecimal ? 16 : 10);
    if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
    if (isNegative && number > std::uint64_t{1} << 63) return std::nullopt;
    return static_cast<std::int64_t>(isNegative ? ~number + 1 : number);
}

std::vector<EnumeratorRange> enumeratorRanges(std::string_view text)
{
    std::vector<EnumeratorRange> ranges;
    while (!text.empty())
    {
        const std::size_t comma = text.find(',');
        std::string_view one = trimmed(text.substr(0, comma));
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
        if (one.empty()) continue;
        if (one.size() > 2 && one.front() == '[' && one.back() == ']')
            one = one.substr(1, one.size() - 2);
        const std::size_t dots = one.find("..");
        const std::string_view first = trimmed(one.substr(0, dots));
        ranges.push_back(
            {first, dots == std::string_view::npos ? first : trimmed(one.substr(dots + 2))});
    }
    return ranges;
}

namespace
{

/// Turns a sum into reverse Polish notation, multiplication first.
class SumReader
{
public:
    explicit SumReader(std::string_view text) : myText(text) {}

    std::optional<std::vector<SumToken>> read()
    {
        if (!product()) return std::nullopt;
        for (skip(); !myText.empty(); skip())
        {
            const char sign = myText.front();
            if (sign != '+' && sign != '-') return std::nullopt;
            myText.remove_prefix(1);
            if (!product()) return std::nullopt;
            myTokens.push_back({sign == '+' ? Step::What::add : Step::What::subtract, 0, {}});
        }
        return std::move(myTokens);
    }

private:
    void skip() { myText = trimmed(myText); }

    bool product()
    {
        if (!factor()) return false;
        for (skip(); !myText.empty() && myText.front() == '*'; skip())
        {
            myText.remove_prefix(1);
            if (!factor()) return false;
            myTokens.push_back({Step::What::multiply, 0, {}});
        }
        return true;
    }

    bool factor()
    {
        skip();
        const std::size_t end = std::min(myText.find_first_of("+-* \t\r\n"), myText.size());
        const std::string_view word = myText.substr(0, end);
        if (word.empty() || myTokens.size() + 2 > theMostSteps) return false;
        myText.remove_prefix(end);
        if (const std::optional<std::uint32_t> number = count(word))
            myTokens.push_back({Step::What::number, *number, {}});
        else
            myTokens.push_back({Step::What::field, 0, word});
        return true;
    }

    std::string_view myText;
    std::vector<SumToken> myTokens;
};

}  // namespace

std::optional<std::vector<SumToken>> sum(std::string_view text)
{
    return SumReader(text).read();
}

}  // namespace omt
