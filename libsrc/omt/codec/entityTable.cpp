// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/entityTable.h"

#include "omt/base/inputFile.h"
#include "omt/base/nameHash.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>

namespace omt
{

namespace
{

constexpr std::size_t theCountry = 2;
constexpr std::size_t theColumns = 2 * EntityTable::theNamedLevels;

struct Level
{
    std::string_view name;
    std::int32_t highest;
};
constexpr std::array<Level, EntityCodes::theLevels> theLevelsOfAType = {
    {{"Kind", 255},
     {"Domain", 255},
     {"Country", 65535},
     {"Category", 255},
     {"Subcategory", 255},
     {"Specific", 255},
     {"Extra", 255}}
};

constexpr std::string_view theBlanks = " \t\r\n\f\v";

std::string_view withoutBlanks(std::string_view text)
{
    const std::size_t first = std::min(text.find_first_not_of(theBlanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(theBlanks) + 1);
}

std::optional<std::int32_t> numberOf(std::string_view text)
{
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

/// A text of somebody else for a sentence: short, and without controls.
std::string shown(std::string_view text)
{
    constexpr std::size_t theLongest = 30;
    std::string result(text.substr(0, theLongest));
    for (char& letter : result)
        if (static_cast<unsigned char>(letter) < 0x20) letter = ' ';
    return text.size() > theLongest ? result + "..." : result;
}

/// The named levels in one number, with one place more than a level has numbers, for open ones.
std::uint64_t packed(const EntityCodes& codes)
{
    std::uint64_t key = 0;
    for (std::size_t level = 0; level < EntityTable::theNamedLevels; ++level)
    {
        const auto places = static_cast<std::uint64_t>(theLevelsOfAType[level].highest) + 2;
        key = key * places + static_cast<std::uint64_t>(codes[level] + 1);
    }
    return key;
}

/// Which named levels are open, as bits: that of the first level is the highest, so that what says
/// more comes first.
unsigned openLevels(const EntityCodes& codes)
{
    unsigned open = 0;
    for (std::size_t level = 0; level < EntityTable::theNamedLevels; ++level)
        open = open << 1U | (codes[level] == EntityCodes::theOpen ? 1U : 0U);
    return open;
}

}  // namespace

// Codes ------------------------------------------------------------------------------------------

std::string_view entityLevelName(std::size_t level)
{
    return theLevelsOfAType[level].name;
}

std::int32_t entityLevelLimit(std::size_t level)
{
    return theLevelsOfAType[level].highest;
}

bool EntityCodes::isOpen() const
{
    return std::find(levels.begin(), levels.end(), theOpen) != levels.end();
}

bool EntityCodes::matches(const EntityCodes& other) const
{
    return std::equal(levels.begin(), levels.end(), other.levels.begin(),
                      [](std::int32_t one, std::int32_t two)
                      { return one == two || one == theOpen || two == theOpen; });
}

std::string EntityCodes::text() const
{
    std::string all;
    for (const std::int32_t number : levels)
    {
        if (!all.empty()) all += ':';
        all += number == theOpen ? "any" : std::to_string(number);
    }
    return all;
}

namespace
{

/// The texts between the separators, of which one may have blanks around it.
std::vector<std::string> piecesOf(std::string_view text)
{
    std::vector<std::string> pieces(1);
    bool isAfterBlank = false;
    for (const char letter : text)
    {
        const bool isBlank = theBlanks.find(letter) != std::string_view::npos;
        const bool isMark = letter == ':' || letter == '.';
        if (isMark || (isAfterBlank && !isBlank)) pieces.emplace_back();
        if (!isMark && !isBlank) pieces.back() += letter;
        isAfterBlank = isBlank && !pieces.back().empty();
    }
    return pieces;
}

}  // namespace

std::optional<EntityCodes> EntityCodes::read(std::string_view text, std::string& complaint)
{
    constexpr std::string_view theOpenWords[] = {"*", "any", "Any", "ANY", "-1"};
    const std::vector<std::string> pieces = piecesOf(text);
    if (pieces.size() > theLevels)
    {
        complaint = "more than seven numbers";
        return std::nullopt;
    }
    EntityCodes codes;
    for (std::size_t level = 0; level < pieces.size(); ++level)
    {
        const std::string& piece = pieces[level];
        if (std::find(std::begin(theOpenWords), std::end(theOpenWords), piece) !=
            std::end(theOpenWords))
            continue;
        const bool isNumber =
            !piece.empty() && piece.find_first_not_of("0123456789") == std::string::npos;
        const std::optional<std::int32_t> number = isNumber ? numberOf(piece) : std::nullopt;
        if (!number || *number > theLevelsOfAType[level].highest)
        {
            complaint = std::string(entityLevelName(level)) + ": \"" + shown(piece) +
                        "\" is no number from 0 to " + std::to_string(entityLevelLimit(level)) +
                        ", and no \"any\" or \"*\"";
            return std::nullopt;
        }
        codes[level] = *number;
    }
    return codes;
}

// The table --------------------------------------------------------------------------------------

struct EntityTable::Contents
{
    /// What the names are views of.
    std::string text;
    std::vector<Row> rows;
    /// Indices of rows by packed codes.
    std::unordered_map<std::uint64_t, std::size_t, NumberHash> byCodes;
    /// Which levels are open together in any row, what says more first.
    std::vector<unsigned> patterns;
    std::unordered_map<std::int32_t, std::string_view, NumberHash> countries;
};

EntityTable::EntityTable() : myContents(std::make_shared<const Contents>()) {}

const EntityTable::Row* EntityTable::find(const EntityCodes& codes) const
{
    const unsigned own = openLevels(codes);
    for (const unsigned open : myContents->patterns)
    {
        // Where the codes are open, so is a row that matches them all.
        if ((open & own) != own) continue;
        EntityCodes pattern = codes;
        for (std::size_t level = 0; level < theNamedLevels; ++level)
            if ((open >> (theNamedLevels - 1 - level) & 1U) != 0)
                pattern[level] = EntityCodes::theOpen;
        const auto place = myContents->byCodes.find(packed(pattern));
        if (place != myContents->byCodes.end()) return &myContents->rows[place->second];
    }
    return nullptr;
}

std::vector<const EntityTable::Row*> EntityTable::findAll(const EntityCodes& codes) const
{
    std::vector<const Row*> found;
    for (const Row& row : myContents->rows)
        if (row.codes.matches(codes)) found.push_back(&row);
    return found;
}

const std::vector<EntityTable::Row>& EntityTable::rows() const
{
    return myContents->rows;
}

std::string_view EntityTable::country(std::int32_t code) const
{
    const auto place = myContents->countries.find(code);
    return place == myContents->countries.end() ? std::string_view() : place->second;
}

// Reading ----------------------------------------------------------------------------------------

class EntityTableReader
{
public:
    EntityTableReader(std::string_view text, const std::string& file) : myFile(file)
    {
        myContents->text = text;
    }

    EntityTableReading run();

private:
    using Columns = std::array<std::string_view, theColumns>;
    enum Mistake
    {
        theMark,
        theMissingHeader,
        theCarriageReturn,
        theQuote,
        theShortRow,
        theWord,
        theRange,
        theMistakes
    };
    /// What to say of the first mistake of a kind, and how many there are.
    struct Noted
    {
        std::uint32_t line = 0;
        std::size_t count = 0;
        std::string text = {};
    };

    void readLine(std::string_view line);
    void checkHeader(std::string_view line);
    void readRow(std::string_view line);
    static std::size_t split(std::string_view line, Columns& columns);
    bool readCode(std::string_view column, std::size_t level, std::int32_t& code);
    void add(const EntityTable::Row& row);
    void sortRows();
    void note(Mistake mistake, std::string text);
    void refuse(std::string why, std::uint32_t line);
    void report();

    std::string myFile;
    std::shared_ptr<EntityTable::Contents> myContents = std::make_shared<EntityTable::Contents>();
    std::array<Noted, theMistakes> myNoted;
    Findings myFindings;
    std::uint32_t myLine = 0;
    std::size_t myLines = 0;
    bool myHasWholeRow = false;
};

EntityTableReading EntityTableReader::run()
{
    const std::string_view text = myContents->text;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        ++myLine;
        readLine(text.substr(at, end - at));
        at = end + 1;
    }
    const std::size_t zero = text.find('\0');
    if (text.empty())
        refuse("the file is empty", 0);
    else if (zero != std::string_view::npos)
        refuse(
            "an octet of zero, so this is no table of text",
            static_cast<std::uint32_t>(
                std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(zero), '\n') +
                1));
    else if (myLines == 0)
        refuse("there is no row after the header", 0);
    else if (!myHasWholeRow)
        refuse(
            "no row has twelve columns with commas between them, code and name of kind, domain, "
            "country, category, subcategory, specific",
            0);
    EntityTableReading result;
    if (myFindings.empty())
    {
        report();
        sortRows();
        result.table.myContents = myContents;
    }
    result.findings = std::move(myFindings);
    return result;
}

void EntityTableReader::readLine(std::string_view line)
{
    if (!line.empty() && line.back() == '\r')
    {
        note(theCarriageReturn, "the line ends with a carriage return, which is left out");
        line.remove_suffix(1);
    }
    if (myLine == 1) return checkHeader(line);
    if (line.empty()) return;
    ++myLines;
    readRow(line);
}

void EntityTableReader::checkHeader(std::string_view line)
{
    constexpr std::string_view theByteOrderMark = "\xEF\xBB\xBF";
    if (line.substr(0, theByteOrderMark.size()) == theByteOrderMark)
    {
        note(theMark, "a byte order mark before the header, which does no harm");
        line.remove_prefix(theByteOrderMark.size());
    }
    if (numberOf(withoutBlanks(line.substr(0, line.find(',')))))
        note(theMissingHeader, "the first line is taken for a header, and looks like a row");
}

/// Gives how many there are; a line may have more, which are not read.
std::size_t EntityTableReader::split(std::string_view line, Columns& columns)
{
    std::size_t count = 0;
    while (count < theColumns)
    {
        const std::size_t comma = line.find(',');
        columns[count++] = line.substr(0, comma);
        if (comma == std::string_view::npos) break;
        line.remove_prefix(comma + 1);
    }
    return count;
}

void EntityTableReader::readRow(std::string_view line)
{
    Columns columns;
    const std::size_t count = split(line, columns);
    if (count < theColumns)
        note(theShortRow, "fewer than twelve columns; the levels that are missing match any");
    const auto isQuoted = [](std::string_view one) { return !one.empty() && one.front() == '"'; };
    if (std::any_of(columns.begin(), columns.end(), isQuoted))
        note(theQuote, "a column in quotes, which mean nothing: a comma between them ends it");
    EntityTable::Row row;
    bool isRight = true;
    bool hasName = false;
    for (std::size_t level = 0; level < EntityTable::theNamedLevels; ++level)
    {
        isRight = readCode(columns[2 * level], level, row.codes[level]) && isRight;
        const bool isOpen = row.codes[level] == EntityCodes::theOpen;
        row.names[level] = isOpen ? "Any" : columns[2 * level + 1];
        hasName = hasName || (!isOpen && !row.names[level].empty());
    }
    myHasWholeRow = myHasWholeRow || (isRight && count == theColumns);
    if (isRight && hasName) add(row);
}

/// An empty column and -1 are open.
bool EntityTableReader::readCode(std::string_view column, std::size_t level, std::int32_t& code)
{
    column = withoutBlanks(column);
    if (column.empty()) return true;
    const std::optional<std::int32_t> number = numberOf(column);
    const std::string where = std::string(entityLevelName(level)) + ": ";
    if (!number)
    {
        note(theWord, where + '"' + shown(column) + "\" is no number, and the row is left out");
        return false;
    }
    code = *number;
    if (code >= EntityCodes::theOpen && code <= entityLevelLimit(level)) return true;
    note(theRange, where + std::to_string(code) + " is not from 0 to " +
                       std::to_string(entityLevelLimit(level)) + ", and the row is left out");
    return false;
}

void EntityTableReader::add(const EntityTable::Row& row)
{
    const auto [place, isNew] =
        myContents->byCodes.try_emplace(packed(row.codes), myContents->rows.size());
    if (isNew)
        myContents->rows.push_back(row);
    else
        myContents->rows[place->second] = row;
    const std::string_view country = row.names[theCountry];
    if (row.codes[theCountry] != EntityCodes::theOpen && !country.empty())
        myContents->countries.try_emplace(row.codes[theCountry], country);
}

void EntityTableReader::sortRows()
{
    std::vector<EntityTable::Row>& rows = myContents->rows;
    std::sort(rows.begin(), rows.end(),
              [](const EntityTable::Row& one, const EntityTable::Row& two)
              { return one.codes.levels < two.codes.levels; });
    std::array<bool, 1U << EntityTable::theNamedLevels> isThere = {};
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        myContents->byCodes[packed(rows[i].codes)] = i;
        isThere[openLevels(rows[i].codes)] = true;
    }
    for (unsigned open = 0; open < isThere.size(); ++open)
        if (isThere[open]) myContents->patterns.push_back(open);
}

void EntityTableReader::note(Mistake mistake, std::string text)
{
    Noted& noted = myNoted[mistake];
    if (noted.count++ == 0) noted = {myLine, 1, std::move(text)};
}

void EntityTableReader::refuse(std::string why, std::uint32_t line)
{
    myFindings.push_back({
        Severity::error, "entity-table", std::move(why), {myFile, line}
    });
}

void EntityTableReader::report()
{
    for (const Noted& noted : myNoted)
    {
        if (noted.count == 0) continue;
        const std::string more =
            noted.count > 1 ? " (and " + std::to_string(noted.count - 1) + " more)" : "";
        myFindings.push_back({
            Severity::warning, "entity-table", noted.text + more, {myFile, noted.line}
        });
    }
}

EntityTableReading EntityTable::read(std::string_view text, const std::string& file)
{
    return EntityTableReader(text, file).run();
}

EntityTableReading EntityTable::readFile(const std::string& file)
{
    constexpr std::size_t theMostOctets = std::size_t{1} << 30;
    const InputFile input = readWhole(file, theMostOctets);
    if (input.fault.empty()) return read(input.octets, file);
    EntityTableReading result;
    result.findings.push_back({Severity::error, "unreadable", input.fault, {file}});
    return result;
}

}  // namespace omt
