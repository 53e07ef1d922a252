// SPDX-License-Identifier: Apache-2.0
#include "octetDump.h"

#include <algorithm>
#include <charconv>

namespace
{

using Octets = std::vector<std::uint8_t>;

// No tool prints longer lines; what is longer is not looked at for a column of text.
constexpr std::size_t theLongestLine = 4096;
constexpr std::size_t theMostRepeated = std::size_t{1} << 26;
constexpr std::size_t theLargestDump = std::size_t{1} << 26;
// What stands further from the offset is no octet: a column of text alone.
constexpr std::size_t theWidestGap = 8;
// Wireshark shows what is no letter so.
constexpr std::string_view theMiddleDot = "\xC2\xB7";

bool isBlank(char c)
{
    return theBlanks.find(c) != std::string_view::npos;
}

bool isHexadecimal(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return hexadecimalDigit(c) >= 0; });
}

/// A word, and the blanks after it; a tab counts as many.
struct Word
{
    std::string_view text;
    std::size_t at;
    std::size_t gap;
};

/// One line of a dump.
struct Line
{
    std::size_t start = 0;  ///< in the whole text
    std::string_view offset = {};
    bool hasColon = false;
    bool isOfDebugger = false;
    std::size_t gap = 0;  ///< blanks after the offset
    std::vector<Word> words = {};
    std::string_view rest = {};  ///< from the first word on
    bool isAfterStar = false;    ///< lines before it were left out, as they repeat the last one

    bool hasBars = false;  ///< around the column of text
    bool hasColumn = false;
    Octets octets = {};

    std::size_t place(std::size_t at) const { return start + at; }
};

std::vector<Word> wordsOf(std::string_view line)
{
    std::vector<Word> words;
    for (std::size_t at = 0; at < line.size();)
    {
        std::size_t end = at;
        while (end < line.size() && !isBlank(line[end])) ++end;
        std::size_t gap = 0;
        std::size_t next = end;
        for (; next < line.size() && isBlank(line[next]); ++next) gap += line[next] == ' ' ? 1 : 8;
        if (end > at) words.push_back({line.substr(at, end - at), at, gap});
        at = next;
    }
    return words;
}

/// A debugger prints an address, perhaps a symbol such as <buffer+8>, a colon, and 0x01 after tabs.
void readDebugger(Line& line)
{
    std::vector<Word>& words = line.words;
    const std::string_view symbol = words.size() > 1 ? words[1].text : std::string_view();
    const bool hasSymbol =
        symbol.size() > 3 && symbol.front() == '<' && symbol.substr(symbol.size() - 2) == ">:";
    if (hasSymbol) words.erase(words.begin() + 1);
    line.hasColon = hasSymbol || words[0].text.back() == ':';
    for (std::size_t i = 1; line.hasColon && i < words.size(); ++i)
    {
        if (words[i].text.size() != 4 || words[i].text.substr(0, 2) != "0x") return;
        words[i].text.remove_prefix(2);
        words[i].gap = 1;
        line.isOfDebugger = true;
    }
}

// Blanks before the line are passed over.
std::optional<Line> splitLine(std::string_view text, std::size_t at)
{
    Line line;
    line.start = at;
    line.rest = text;
    line.words = wordsOf(text.substr(0, theLongestLine));
    if (line.words.empty() || text.size() > theLongestLine) return std::nullopt;
    readDebugger(line);
    std::string_view offset = line.words[0].text;
    if (offset.back() == ':') offset.remove_suffix(1);
    if (line.hasColon && offset.substr(0, 2) == "0x") offset.remove_prefix(2);
    const std::size_t least = line.hasColon ? 2 : 4;
    const std::size_t most = line.hasColon ? 16 : 8;
    if (offset.size() < least || offset.size() > most || !isHexadecimal(offset))
        return std::nullopt;
    line.offset = offset;
    line.gap = line.words[0].gap;
    line.words.erase(line.words.begin());
    return line;
}

// The column
// ---------------------------------------------------------------------------------------

/// Whether a text is what a dump prints for octets from one of them on; a blank may stand in the
/// middle, and blanks at the end may be lost.
bool isTextFrom(std::string_view text, const Octets& octets, std::size_t first, bool hasMiddle)
{
    std::size_t at = first;
    for (; at < octets.size() && !text.empty(); ++at)
    {
        if (hasMiddle && at == 8)
        {
            if (text.front() != ' ') return false;
            text.remove_prefix(1);
            if (text.empty()) break;
        }
        const bool isPrinted = octets[at] >= 0x20 && octets[at] < 0x7F;
        const bool isMiddleDot = text.substr(0, 2) == theMiddleDot;
        const bool isDot = text.front() == '.' || isMiddleDot;
        const bool isSame = isPrinted && text.front() == static_cast<char>(octets[at]);
        if (!isSame && !(isDot && (!isPrinted || octets[at] == ' '))) return false;
        text.remove_prefix(isMiddleDot ? 2 : 1);
    }
    return text.empty() && std::all_of(octets.begin() + static_cast<std::ptrdiff_t>(at),
                                       octets.end(), [](std::uint8_t o) { return o == ' '; });
}

// One line
// -----------------------------------------------------------------------------------------

void addWord(Line& line, const Word& word, std::size_t width, bool isLast)
{
    const bool isUsual = word.text.size() == width || (isLast && word.text.size() < width);
    if (!isHexadecimal(word.text) || word.text.size() % 2 != 0 || !isUsual)
        throw OctetRefusal{line.place(word.at), '"' + std::string(word.text) +
                                                    "\" is neither an octet as those before "
                                                    "it nor their text"};
    for (std::size_t i = 0; i < word.text.size(); i += 2)
        line.octets.push_back(static_cast<std::uint8_t>(hexadecimalDigit(word.text[i]) << 4 |
                                                        hexadecimalDigit(word.text[i + 1])));
}

/// Cuts off a column between bars, as hexdump -C and od print it.
void takeBars(Line& line)
{
    const auto bar = std::find_if(line.words.begin(), line.words.end(),
                                  [](const Word& word)
                                  { return word.text.front() == '|' || word.text.front() == '>'; });
    if (bar == line.words.end()) return;
    const std::string_view column = trimmed(line.rest.substr(bar->at));
    const char end = column.front() == '|' ? '|' : '<';
    if (column.size() < 2 || column.back() != end)
        throw OctetRefusal{line.place(bar->at), "the column of text does not end"};
    line.hasBars = line.hasColumn = true;
    line.words.erase(bar, line.words.end());
}

// What follows octets after two blanks is their text; only after eight of them dumps have such a
// gap among the octets as well.
void readLine(Line& line)
{
    takeBars(line);
    if (!line.words.empty() && line.gap > theWidestGap)
        throw OctetRefusal{line.place(line.words[0].at), "what stands here is far from the offset"};
    const std::size_t width = line.words.empty() ? 0 : line.words[0].text.size();
    for (std::size_t i = 0; i < line.words.size(); ++i)
    {
        const Word& word = line.words[i];
        addWord(line, word, width, i + 1 == line.words.size() || word.gap > 1);
        if (i + 1 == line.words.size() || line.hasBars) continue;
        const std::size_t next = line.words[i + 1].at;
        const bool isText = isTextOf(trimmed(line.rest.substr(next)), line.octets);
        if (isText && word.gap > 1)
        {
            line.hasColumn = true;
            return;
        }
        const bool isMiddle = word.gap == 2 && width == 2 && line.octets.size() == 8;
        if (isText || (word.gap > 1 && !isMiddle))
            throw OctetRefusal{line.place(next),
                               isText ? "this may be octets, or the text of those before it"
                                      : "what stands here is not the text of the octets before it"};
    }
}

// All lines
// ----------------------------------------------------------------------------------------

std::optional<std::uint64_t> offsetOf(const Line& line, int base)
{
    std::uint64_t number = 0;
    const char* const end = line.offset.data() + line.offset.size();
    const auto [stop, error] = std::from_chars(line.offset.data(), end, number, base);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

/// Adds the lines that a star stands for.
bool repeatTo(std::uint64_t size, std::size_t period, Octets& octets)
{
    if (period == 0 || size < octets.size() || size > theMostRepeated) return false;
    if ((size - octets.size()) % period != 0) return false;
    while (octets.size() < size) octets.push_back(octets[octets.size() - period]);
    return true;
}

/// The octets of all lines where their offsets count them; else the line that does not follow.
std::optional<Octets> joinedBy(const std::vector<Line>& lines, int base, std::size_t& wrong)
{
    Octets octets;
    const std::optional<std::uint64_t> start = offsetOf(lines[0], base);
    for (wrong = 0; wrong < lines.size(); ++wrong)
    {
        const Line& line = lines[wrong];
        const std::optional<std::uint64_t> offset = offsetOf(line, base);
        if (!start || !offset || *offset < *start) return std::nullopt;
        if (line.isAfterStar && !repeatTo(*offset - *start, lines[wrong - 1].octets.size(), octets))
            return std::nullopt;
        if (*offset - *start != octets.size()) return std::nullopt;
        octets.insert(octets.end(), line.octets.begin(), line.octets.end());
    }
    return octets;
}

/// The same with offsets in hexadecimal, octal or decimal digits.
std::optional<Octets> joinedOctets(const std::vector<Line>& lines, std::size_t& wrong)
{
    std::size_t other = 0;
    std::optional<Octets> octets = joinedBy(lines, 16, wrong);
    if (!octets) octets = joinedBy(lines, 8, other);
    if (!octets) octets = joinedBy(lines, 10, other);
    return octets;
}

/// All lines, or nothing where one of them does not begin with an offset.
std::optional<std::vector<Line>> splitLines(std::string_view text)
{
    std::vector<Line> lines;
    bool isAfterStar = false;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view one = text.substr(at, end - at);
        const bool isStar = trimmed(one) == "*" && !lines.empty();
        isAfterStar = isAfterStar || isStar;
        if (!isStar && !trimmed(one).empty())
        {
            std::optional<Line> line = splitLine(one, at);
            if (!line) return std::nullopt;
            line->isAfterStar = isAfterStar;
            isAfterStar = false;
            lines.push_back(std::move(*line));
        }
        at = end + 1;
    }
    if (lines.empty() || isAfterStar) return std::nullopt;
    return lines;
}

/// How many digits each word of the octets has, where all have the same number; else 0.
std::size_t widthOf(const std::vector<Line>& lines)
{
    const std::size_t width = lines[0].words.empty() ? 0 : lines[0].words[0].text.size();
    for (const Line& line : lines)
        for (const Word& word : line.words)
        {
            const bool isUsual = isHexadecimal(word.text) && word.text.size() == width;
            if (!isUsual) return 0;
            if (word.gap > 1) break;
        }
    return width;
}

bool isZero(std::string_view offset)
{
    return offset.find_first_not_of('0') == std::string_view::npos;
}

bool hasBar(const Line& line)
{
    return std::any_of(line.words.begin(), line.words.end(),
                       [](const Word& word)
                       { return word.text.front() == '|' || word.text.front() == '>'; });
}

/// Whether such a first line is that of a dump whatever else stands in it.
bool isSurely(const Line& line)
{
    return line.hasColon || line.offset.size() % 2 != 0 || hasBar(line);
}

/// Whether lines that may be a dump are none: blocks of digits, the first as long as the others, or
/// one line that does not begin at 0.
bool isPlain(const std::vector<Line>& lines)
{
    const std::size_t width = widthOf(lines);
    if (width == 0 || width == lines[0].offset.size()) return true;
    return lines.size() == 1 && lines[0].gap == 1 && (width != 2 || !isZero(lines[0].offset));
}

void refuseAmbiguous(const std::vector<Line>& lines)
{
    const Line& line = lines[0];
    if (lines.size() > 1 || line.hasColumn || line.isOfDebugger) return;
    const bool isUsual = isZero(line.offset) && line.offset.size() > 2 &&
                         (isSurely(line) || (line.gap > 1 && widthOf(lines) == 2));
    if (!isUsual)
        throw OctetRefusal{line.place(0), '"' + std::string(line.offset) +
                                              "\" may be octets, or the offset of a dump; leave an "
                                              "offset out, and write octets with two digits each"};
}

void refuseWords(const Line& line)
{
    if (line.hasColon || line.hasColumn || line.words.empty()) return;
    if (line.words[0].text.size() == 2) return;
    throw OctetRefusal{line.place(line.words[0].at),
                       "words of several octets, which hexdump and od may print the other way "
                       "round; use hexdump -C, od -tx1 or xxd"};
}

}  // namespace

int hexadecimalDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool isTextOf(std::string_view text, const Octets& octets)
{
    if (text.empty() || text.size() > 3 * octets.size()) return false;
    for (std::size_t first = 0; first < octets.size(); ++first)
    {
        if (isTextFrom(text, octets, first, false) || isTextFrom(text, octets, first, true))
            return true;
        if (octets[first] != ' ') break;
    }
    return false;
}

std::optional<std::vector<std::uint8_t>> readDump(std::string_view text)
{
    const std::size_t begin = std::min(text.find_first_not_of(theBlanks), text.size());
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    if (!splitLine(text.substr(begin, end - begin), begin)) return std::nullopt;
    if (text.size() > theLargestDump)
        throw OctetRefusal{begin, "this may be a dump, and is too long for one"};
    std::optional<std::vector<Line>> lines = splitLines(text);
    if (!lines || (!isSurely(lines->front()) && isPlain(*lines))) return std::nullopt;
    for (Line& line : *lines) readLine(line);
    refuseAmbiguous(*lines);
    std::size_t wrong = 0;
    std::optional<Octets> octets = joinedOctets(*lines, wrong);
    const Line& first = lines->front();
    if (!octets && !isSurely(first) && first.gap == 1) return std::nullopt;
    refuseWords(first);
    if (!octets)
        throw OctetRefusal{(*lines)[wrong].place(0), "the offset " +
                                                         std::string((*lines)[wrong].offset) +
                                                         " does not count the octets before it"};
    return octets;
}
