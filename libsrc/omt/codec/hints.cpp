// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/hints.h"

#include "omt/base/character.h"
#include "omt/base/inputFile.h"
#include "omt/base/nameHash.h"
#include "omt/codec/hintsData.h"
#include "omt/codec/typeText.h"

#include <charconv>
#include <optional>

namespace omt
{

namespace
{

/// Reads a document of hints, which is JSON of a narrow shape: objects, arrays and texts, whole
/// numbers.
class HintsReader
{
public:
    HintsReader(std::string_view text, HintsReading& result) : myText(text), myResult(result) {}

    void run()
    {
        object([this](const std::string& key) { return section(key); });
        if (!myHasFailed && peek() != '\0') fail("something follows the hints");
        if (!myHasFailed && !myHasVersion) fail("\"version\" is missing");
        if (!myHasFailed) checkTables();
        if (!myHasFailed) return;
        myResult.hints.hints.clear();
        myResult.hints.tables.clear();
    }

private:
    bool fail(std::string why)
    {
        if (!myHasFailed) refuse(std::move(why), line());
        return false;
    }

    void refuse(std::string why, std::uint32_t line)
    {
        myHasFailed = true;
        myResult.findings.push_back({
            Severity::error, "hints", std::move(why), {myResult.hints.file, line}
        });
    }

    std::uint32_t line()
    {
        for (; myCounted < myAt; ++myCounted)
            if (myText[myCounted] == '\n') ++myLine;
        return myLine;
    }

    char peek()
    {
        constexpr std::string_view theBlanks = " \t\r\n";
        while (myAt < myText.size() && theBlanks.find(myText[myAt]) != std::string_view::npos)
            ++myAt;
        return myAt < myText.size() ? myText[myAt] : '\0';
    }

    bool takes(char letter)
    {
        if (peek() != letter) return false;
        ++myAt;
        return true;
    }

    bool expect(char letter)
    {
        return takes(letter) || fail(std::string("a \"") + letter + "\" is missing");
    }

    bool text(std::string& into)
    {
        into.clear();
        if (!takes('"')) return fail("a text is expected");
        while (myAt < myText.size() && myText[myAt] != '"')
        {
            const char letter = myText[myAt++];
            if (static_cast<unsigned char>(letter) < 0x20) return fail("a text does not end");
            if (letter != '\\')
                into += letter;
            else if (!escape(into))
                return fail("no such escape");
        }
        if (myAt == myText.size()) return fail("a text does not end");
        ++myAt;
        return true;
    }

    /// What follows a backslash.
    bool escape(std::string& into)
    {
        constexpr std::string_view theLetters = "\"\\/bfnrt";
        constexpr std::string_view theMeanings = "\"\\/\b\f\n\r\t";
        const char letter = myAt < myText.size() ? myText[myAt++] : '\0';
        if (const std::size_t place = theLetters.find(letter); place != theLetters.npos)
        {
            into += theMeanings[place];
            return true;
        }
        std::uint32_t code = 0;
        if (letter != 'u' || !hexadecimal(code)) return false;
        if (code >> 10 == 0x36)
        {
            // The first half of a pair of surrogates.
            std::uint32_t second = 0;
            if (myText.substr(myAt, 2) != "\\u") return false;
            myAt += 2;
            if (!hexadecimal(second) || second >> 10 != 0x37) return false;
            code = 0x10000 + ((code & 0x3FF) << 10) + (second & 0x3FF);
        }
        appendUtf8(into, code);
        return code >> 10 != 0x37;
    }

    bool hexadecimal(std::uint32_t& code)
    {
        const std::string_view digits = myText.substr(myAt, 4);
        const char* const end = digits.data() + digits.size();
        myAt += digits.size();
        return digits.size() == 4 && std::from_chars(digits.data(), end, code, 16).ptr == end;
    }

    /// Calls `visit(key)` before each value of an object.
    template <typename Visit>
    bool object(const Visit& visit)
    {
        if (!expect('{')) return false;
        if (takes('}')) return true;
        do
        {
            std::string key;
            if (!text(key) || !expect(':') || !visit(key)) return false;
        } while (takes(','));
        return expect('}');
    }

    bool section(const std::string& key)
    {
        constexpr std::pair<std::string_view, Hint::What> theLists[] = {
            {"texts",       Hint::What::text      },
            {"entityTypes", Hint::What::entityType},
            {"positions",   Hint::What::position  },
        };
        if (key == "version") return version();
        if (key == "tables") return object([this](const std::string& name) { return table(name); });
        if (key == "numbers")
            return object(
                [this](const std::string& name)
                {
                    std::string table;
                    return text(table) && add(Hint::What::table, name, table);
                });
        for (const auto& [name, what] : theLists)
            if (key == name) return list(what);
        return fail("\"" + key + "\" is no part of hints");
    }

    bool version()
    {
        peek();
        if (!takes('1')) return fail("the version is not 1");
        myHasVersion = true;
        return true;
    }

    bool list(Hint::What what)
    {
        if (!expect('[')) return false;
        if (takes(']')) return true;
        do
        {
            std::string name;
            if (!text(name) || !add(what, name, "")) return false;
        } while (takes(','));
        return expect(']');
    }

    bool add(Hint::What what, const std::string& name, const std::string& table)
    {
        myResult.hints.hints.push_back({what, name, table, line()});
        return true;
    }

    bool table(const std::string& name)
    {
        NumberTable& table = myResult.hints.tables.emplace_back();
        table.name = name;
        return object(
            [this, &table](const std::string& number)
            {
                const std::optional<std::int64_t> key = wholeNumber(number);
                if (!key) return fail("\"" + number + "\" is no whole number");
                table.rows.emplace_back(*key, "");
                return text(table.rows.back().second);
            });
    }

    void checkTables()
    {
        NameSet names;
        for (const NumberTable& one : myResult.hints.tables) names.insert(one.name);
        for (const Hint& hint : myResult.hints.hints)
        {
            const bool isThere = hint.what != Hint::What::table || names.count(hint.table) != 0;
            if (!isThere) return refuse("there is no table \"" + hint.table + '"', hint.line);
        }
    }

    std::string_view myText;
    HintsReading& myResult;
    std::size_t myAt = 0;
    std::size_t myCounted = 0;
    std::uint32_t myLine = 1;
    bool myHasVersion = false;
    bool myHasFailed = false;
};

}  // namespace

HintsReading readHints(std::string_view json, const std::string& file)
{
    HintsReading result;
    result.hints.file = file;
    HintsReader(json, result).run();
    return result;
}

HintsReading readHintsFile(const std::string& file)
{
    constexpr std::size_t theMostOctets = std::size_t{64} << 20;
    const InputFile input = readWhole(file, theMostOctets);
    if (input.fault.empty()) return readHints(input.octets, file);
    HintsReading result;
    result.findings.push_back({Severity::error, "unreadable", input.fault, {file}});
    return result;
}

std::string_view builtInHints()
{
    return {reinterpret_cast<const char*>(omtRprHints), static_cast<std::size_t>(omtRprHints_len)};
}

}  // namespace omt
