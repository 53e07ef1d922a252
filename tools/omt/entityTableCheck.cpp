// SPDX-License-Identifier: Apache-2.0
// A table is looked at before the library reads it: the library takes any file without a word.
#include "entityTableCheck.h"

#include "inputFile.h"
#include "modelInput.h"
#include "omtReader/entityMapperKey.h"
#include "plainText.h"
#include "util/dtMessages.h"
#include "util/dtString.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

namespace
{

constexpr std::size_t theColumns = 2 * theNamedLevels;
constexpr std::string_view theByteOrderMark = "\xEF\xBB\xBF";

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

/// One kind of mistake: what to say of the first, and how many there are.
struct Finding
{
    std::size_t line = 0;
    std::size_t count = 0;
    std::string text = {};
};

bool isNumber(std::string_view text)
{
    bool isWhole = false;
    static_cast<void>(DtString(text).toInt(&isWhole));
    return isWhole;
}

/// The columns that are read; a line may have more.
std::vector<std::string_view> columnsOf(std::string_view line)
{
    std::vector<std::string_view> columns;
    while (columns.size() < theColumns)
    {
        const std::size_t comma = line.find(',');
        columns.push_back(line.substr(0, comma));
        if (comma == std::string_view::npos) break;
        line.remove_prefix(comma + 1);
    }
    return columns;
}

class TableCheck
{
public:
    explicit TableCheck(const std::string& file) : myFile(file) {}

    void run();

private:
    void checkLine(std::string_view line);
    void checkHeader(std::string_view line);
    void checkRow(const std::vector<std::string_view>& columns);
    bool isCode(std::string_view text, const EntityLevel& level);
    void note(Mistake mistake, const std::string& text);
    void reportFindings() const;

    const std::string myFile;
    std::size_t myLine = 0;
    std::size_t myRows = 0;
    std::size_t myWholeRows = 0;
    Finding myFindings[theMistakes];
};

void TableCheck::run()
{
    std::ifstream stream(myFile, std::ios::binary);
    for (std::string line; std::getline(stream, line);)
    {
        ++myLine;
        checkLine(line);
    }
    if (myLine == 0) throw InputError(myFile + ": the file is empty");
    if (myRows == 0) throw InputError(myFile + ": there is no row behind the header");
    if (myWholeRows == 0)
        throw InputError(myFile +
                         ": no row has twelve columns with commas between them, code and "
                         "name of kind, domain, country, category, subcategory, specific");
    reportFindings();
}

void TableCheck::checkLine(std::string_view line)
{
    if (line.find('\0') != std::string_view::npos)
        throw InputError(myFile + ':' + std::to_string(myLine) +
                         ": an octet of zero, so this is no table of text");
    if (!line.empty() && line.back() == '\r')
    {
        note(theCarriageReturn, "the line ends with a carriage return, which is left out");
        line.remove_suffix(1);
    }
    if (myLine == 1) return checkHeader(line);
    if (line.empty()) return;
    ++myRows;
    checkRow(columnsOf(line));
}

void TableCheck::checkHeader(std::string_view line)
{
    if (line.substr(0, theByteOrderMark.size()) == theByteOrderMark)
    {
        note(theMark, "a byte order mark in front of the header, which does no harm");
        line.remove_prefix(theByteOrderMark.size());
    }
    if (isNumber(columnsOf(line).front()))
        note(theMissingHeader, "the first line is taken for a header, and looks like a row");
}

void TableCheck::checkRow(const std::vector<std::string_view>& columns)
{
    const bool isWhole = columns.size() == theColumns;
    if (!isWhole)
        note(theShortRow, "fewer than twelve columns; the levels that are missing match any");
    bool hasCodes = true;
    for (std::size_t at = 0; at < columns.size(); ++at)
    {
        if (!columns[at].empty() && columns[at].front() == '"')
            note(theQuote, "a column in quotes, which mean nothing: a comma between them ends it");
        if (at % 2 == 0) hasCodes = isCode(columns[at], theEntityLevels[at / 2]) && hasCodes;
    }
    if (isWhole && hasCodes) ++myWholeRows;
}

bool TableCheck::isCode(std::string_view text, const EntityLevel& level)
{
    constexpr std::size_t theLongestShown = 30;
    if (text.empty()) return true;
    bool isWhole = false;
    const int code = DtString(text).toInt(&isWhole);
    const std::string shown =
        clipped(oneLine(text.substr(0, 4 * theLongestShown)), theLongestShown);
    const std::string where = std::string(level.name) + ": ";
    if (!isWhole)
        note(theWord,
             where + '"' + shown + "\" is no number, and is read as " + std::to_string(code));
    else if (code < DtEntityMapperKey::theAny || code > level.highest)
        note(theRange, where + shown + " is not from 0 to " + std::to_string(level.highest) +
                           ", and matches nothing");
    return isWhole;
}

void TableCheck::note(Mistake mistake, const std::string& text)
{
    Finding& finding = myFindings[mistake];
    if (finding.count == 0) finding = {myLine, 0, text};
    ++finding.count;
}

void TableCheck::reportFindings() const
{
    for (const Finding& finding : myFindings)
    {
        if (finding.count == 0) continue;
        DtWarn << myFile << ':' << finding.line << ": " << finding.text;
        if (finding.count > 1) DtWarn << " (and " << finding.count - 1 << " more)";
        DtWarn << "\n";
    }
}

}  // namespace

void checkEntityTable(const std::string& file)
{
    checkReadable(file);
    if (!std::filesystem::is_regular_file(file))
        throw InputError(file + ": not a regular file; save the table to a file first");
    TableCheck(file).run();
}
