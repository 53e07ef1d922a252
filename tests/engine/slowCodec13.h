// SPDX-License-Identifier: Apache-2.0
// SlowCodec13 decodes values of HLA 1.3 straight from the model: complex datatypes, whose parts
// stand one after the other. It knows no plan and keeps nothing.
#pragma once

#include "omt/codec/typeText.h"
#include "omt/model/model.h"

#include <charconv>
#include <cstring>
#include <map>

class SlowCodec13
{
public:
    using Octets = std::vector<std::uint8_t>;
    explicit SlowCodec13(const omt::Model& model) : myModel(model) {}

    /// JSON, or an empty text at a fault; `left` are the octets after the value.
    std::string decode(const std::string& type, const Octets& octets, std::size_t& left)
    {
        myOctets = octets;
        myAt = 0;
        myIsFaulty = false;
        const std::string json = piece(type, octets.size(), 0);
        left = octets.size() - myAt;
        return myIsFaulty ? "" : json;
    }

private:
    using How = omt::ComponentCardinality;
    using Numbers = std::map<std::string, std::int64_t, std::less<>>;

    template <typename T>
    const T* find(const std::string& type) const
    {
        return myModel.findDatatype(type).as<T>();
    }
    static bool endsWith(std::string_view text, std::string_view end)
    {
        return text.size() > end.size() && text.substr(text.size() - end.size()) == end;
    }

    std::optional<omt::Representation> numberOf(const std::string& type) const
    {
        if (type == "boolean") return omt::Representation();
        if (!find<omt::EnumeratedData>(type)) return omt::representation13(type);
        const std::uint8_t size = endsWith(type, "Enum8") ? 1 : endsWith(type, "Enum16") ? 2 : 4;
        return omt::Representation{omt::Scalar::unsignedInteger, false, size, 1};
    }

    How howOf(const omt::Component& one) const
    {
        How how = *omt::componentCardinality(one.cardinality);
        const auto number = numberOf(one.dataType.str());
        const bool isOpen = how.padding == 0 && how.most == omt::theNone && how.decider.empty();
        if (isOpen && number && number->octets == 1 && one.name.view().substr(0, 9) == "PaddingTo")
            how.padding = static_cast<std::uint32_t>(std::stoul(one.name.str().substr(9)) / 8);
        return how;
    }
    static bool isRepeated(const How& how)
    {
        const bool isOptional = how.least == 0 && how.decider.empty();
        return how.padding != 0 || how.most > 1 || how.most == 0 || isOptional;
    }

    /// What is kept back for a component after an open one: its size, where that is fixed.
    std::optional<std::size_t> sizeOf(const std::string& type) const
    {
        if (const auto number = numberOf(type)) return number->octets;
        const auto* const record = find<omt::ComplexRecord>(type);
        if (!record) return std::nullopt;
        std::size_t all = 0;
        for (const omt::Component& one : record->components)
        {
            const std::optional<std::size_t> size = sizeOf(one);
            if (!size) return std::nullopt;
            all += *size;
        }
        return all;
    }
    std::optional<std::size_t> sizeOf(const omt::Component& one) const
    {
        const How how = howOf(one);
        const bool isConditional = !how.decider.empty() && !how.value.empty();
        if (isConditional || (isRepeated(how) && (how.padding != 0 || how.least != how.most)))
            return std::nullopt;
        if (how.least == 0 && isRepeated(how)) return 0;
        const std::optional<std::size_t> size = sizeOf(one.dataType.str());
        return size ? std::optional(isRepeated(how) ? *size * how.least : *size) : std::nullopt;
    }

    std::string piece(const std::string& type, std::size_t limit, std::size_t reserve)
    {
        if (myIsFaulty) return "";
        if (const auto what = numberOf(type)) return number(type, *what, limit);
        if (const auto* const record = find<omt::ComplexRecord>(type))
            return this->record(*record, limit, reserve);
        const bool isText = type == "string";
        std::string text;
        const std::size_t end = isText ? limit : std::max(myAt, limit - std::min(limit, reserve));
        for (; myAt < end && !(isText && myOctets[myAt] == 0); ++myAt)
            isText ? letter(text) : hexadecimal(text);
        if (isText) myIsFaulty = myAt++ == end;
        return '"' + text + '"';
    }

    std::string number(const std::string& type, const omt::Representation& what, std::size_t limit)
    {
        myIsFaulty = limit - myAt < what.octets;
        if (myIsFaulty) return "";
        std::uint64_t bits = 0;
        for (int i = 0; i < what.octets; ++i) bits = bits << 8 | myOctets[myAt++];
        myLast = static_cast<std::int64_t>(bits);
        if (type == "boolean" && bits < 2) return bits == 1 ? "\"HLAtrue\"" : "\"HLAfalse\"";
        if (const auto* const names = find<omt::EnumeratedData>(type))
            for (const omt::Enumerator& one : names->enumerators)
                if (one.values.size() > 0 && omt::wholeNumber(one.values[0]) == myLast)
                    return '"' + one.name.str() + '"';
        if (what.scalar != omt::Scalar::floating) return std::to_string(bits);
        char text[40];
        float four = 0;
        double eight = 0;
        const auto low = static_cast<std::uint32_t>(bits);
        std::memcpy(&four, &low, 4);
        std::memcpy(&eight, &bits, 8);
        return {text, what.octets == 4 ? std::to_chars(text, text + 40, four).ptr
                                       : std::to_chars(text, text + 40, eight).ptr};
    }

    std::string record(const omt::ComplexRecord& data, std::size_t limit, std::size_t reserve)
    {
        Numbers numbers;
        std::string all;
        for (std::size_t i = 0; i < data.components.size() && !myIsFaulty; ++i)
        {
            const omt::Component& one = data.components[i];
            const How how = howOf(one);
            std::size_t kept = reserve;
            for (std::size_t j = i + 1; j < data.components.size(); ++j)
                if (howOf(data.components[j]).decider.empty())
                    kept += sizeOf(data.components[j]).value_or(0);
            const auto decider = numbers.find(how.decider);
            if (!how.value.empty() &&
                (decider == numbers.end() || decider->second != valueOf(data, how)))
                continue;
            std::optional<std::int64_t> stated;
            if (!how.decider.empty() && how.value.empty() && decider != numbers.end())
                stated = decider->second;
            const std::string before = i > 0 ? data.components[i - 1].name.str() : "";
            if (how.decider.empty() && how.least != how.most &&
                (before.substr(0, 8) == "NumberOf" || endsWith(before, "SetCount")))
                stated = numbers[before];
            all += (all.empty() ? "\"" : ",\"") + one.name.str() + "\":";
            all += isRepeated(how) ? repeated(one, how, stated, limit, kept)
                                   : piece(one.dataType.str(), limit, kept);
            if (!isRepeated(how) && numberOf(one.dataType.str())) numbers[one.name.str()] = myLast;
        }
        return '{' + all + '}';
    }

    std::int64_t valueOf(const omt::ComplexRecord& data, const How& how) const
    {
        for (const omt::Component& one : data.components)
            if (one.name.view() == how.decider)
                if (const auto* const names = find<omt::EnumeratedData>(one.dataType.str()))
                    for (const omt::Enumerator& name : names->enumerators)
                        if (name.name.view() == how.value) return *omt::wholeNumber(name.values[0]);
        return omt::wholeNumber(how.value).value_or(-1);
    }

    std::string repeated(const omt::Component& one, const How& how,
                         std::optional<std::int64_t> stated, std::size_t limit, std::size_t kept)
    {
        const std::string type = one.dataType.str();
        const bool isPadding = how.padding != 0;
        if (isPadding) stated = (how.padding - myAt % how.padding) % how.padding;
        if (!isPadding && how.least == how.most) stated = how.least;
        const std::size_t end = stated ? limit : std::max(myAt, limit - std::min(limit, kept));
        const bool isHexadecimal = isPadding || type == "octet";
        const bool isText = type == "char";
        std::string all;
        for (std::int64_t i = 0; (stated ? i < *stated : myAt < end) && !myIsFaulty; ++i)
        {
            if (isHexadecimal || isText)
            {
                myIsFaulty = myAt == end;
                if (myIsFaulty) break;
                isText ? letter(all) : hexadecimal(all);
                ++myAt;
                continue;
            }
            if (i > 0) all += ',';
            all += piece(type, end, stated ? kept : 0);
        }
        return isHexadecimal || isText ? '"' + all + '"' : '[' + all + ']';
    }

    /// Values have few controls, and nothing else to escape.
    void letter(std::string& text) const
    {
        const std::uint8_t octet = myOctets[myAt];
        text += octet < 0x10 ? "\\u000" + std::to_string(octet)
                             : std::string(1, static_cast<char>(octet));
    }
    void hexadecimal(std::string& text) const
    {
        constexpr char theDigits[] = "0123456789abcdef";
        text += theDigits[myOctets[myAt] >> 4];
        text += theDigits[myOctets[myAt] & 15];
    }

    const omt::Model& myModel;
    Octets myOctets;
    std::size_t myAt = 0;
    std::int64_t myLast = 0;
    bool myIsFaulty = false;
};
