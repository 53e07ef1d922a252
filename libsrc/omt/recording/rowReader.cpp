// SPDX-License-Identifier: Apache-2.0
#include "omt/recording/rowReader.h"

#include "omt/base/jsonWriter.h"

#include <simdjson.h>

#include <algorithm>

namespace omt
{

namespace
{

/// Columns that the result has, so that the recording may not.
constexpr std::string_view theResults[] = {"value", "fault", "notes", "left", "overlays"};

bool isResult(std::string_view name)
{
    return std::find(std::begin(theResults), std::end(theResults), name) != std::end(theResults);
}

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

/// Whether a text is a number as JSON has it.
bool isNumber(std::string_view text)
{
    std::size_t at = !text.empty() && text[0] == '-' ? 1 : 0;
    const auto digits = [&]
    {
        const std::size_t first = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
        return at - first;
    };
    const std::size_t first = at;
    const std::size_t whole = digits();
    if (whole == 0 || (whole > 1 && text[first] == '0')) return false;
    if (at < text.size() && text[at] == '.' && (++at, digits() == 0)) return false;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E'))
    {
        ++at;
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
        if (digits() == 0) return false;
    }
    return at == text.size();
}

/// The separator that stands in a header most often.
char delimiterOf(std::string_view header)
{
    char best = ',';
    std::ptrdiff_t most = 0;
    for (const char c : {',', ';', '\t'})
    {
        const std::ptrdiff_t count = std::count(header.begin(), header.end(), c);
        if (count > most) best = c;
        most = std::max(count, most);
    }
    return best;
}

/// The first line, which is removed from the text.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

}  // namespace

class RowReader::JsonParser
{
public:
    /// The object of a line, which keeps its place until the next one.
    simdjson::simdjson_result<simdjson::dom::object> parse(std::string_view text)
    {
        line.assign(text);
        line.reserve(text.size() + simdjson::SIMDJSON_PADDING);
        return parser.parse(line.data(), line.size(), false).get_object();
    }

    /// The values of the last object as cells.
    void readCells(const simdjson::dom::object& object, const std::vector<std::string>& columns,
                   Row& row)
    {
        row.cells.assign(columns.size(), {});
        texts.resize(columns.size());
        for (const simdjson::dom::key_value_pair pair : object)
        {
            const auto column = std::find(columns.begin(), columns.end(), pair.key);
            const auto place = static_cast<std::size_t>(column - columns.begin());
            if (column == columns.end())
                row.problem =
                    "the key \"" + std::string(pair.key) + "\", which the first row has not";
            else if (pair.value.get(row.cells[place]) != simdjson::SUCCESS)
                row.cells[place] = texts[place] = simdjson::minify(pair.value);
        }
    }

private:
    simdjson::dom::parser parser;
    std::string line;
    /// Cells that are no texts in JSON.
    std::vector<std::string> texts;
};

RowReader::RowReader(bool needsCells)
    : myNeedsCells(needsCells), myParser(std::make_unique<JsonParser>())
{
}

RowReader::RowReader(const RowReader& other)
    : myNeedsCells(other.myNeedsCells),
      myIsJson(other.myIsJson),
      myDelimiter(other.myDelimiter),
      myColumns(other.myColumns),
      myKeys(other.myKeys),
      myPlaces(other.myPlaces),
      myParser(std::make_unique<JsonParser>())
{
}

RowReader::~RowReader() = default;

std::optional<std::string> RowReader::begin(std::string_view& text)
{
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    while (!text.empty() &&
           std::string_view(" \t\r\n").find(text.front()) != std::string_view::npos)
        text.remove_prefix(1);
    if (text.empty()) return "the recording is empty; it begins with a header, or is JSON lines";
    myIsJson = text.front() == '{';
    if (!myIsJson) return beginCsv(text);
    std::string_view rest = text;
    return myNeedsCells ? beginJson(takeLine(rest)) : std::nullopt;
}

std::optional<std::string> RowReader::beginCsv(std::string_view& text)
{
    const std::string_view header = takeLine(text);
    myDelimiter = delimiterOf(header);
    std::vector<std::string_view> names;
    if (const char* const problem = splitCsv(header, names))
        return std::string("the header is no row of CSV: ") + problem;
    for (const std::string_view name : names) myColumns.emplace_back(withoutBlanks(name));
    return findPlaces();
}

std::optional<std::string> RowReader::beginJson(std::string_view line)
{
    simdjson::dom::object object;
    if (myParser->parse(line).get(object) != simdjson::SUCCESS)
        return "the first row is no JSON object, so that its columns are not known";
    for (const simdjson::dom::key_value_pair pair : object) myColumns.emplace_back(pair.key);
    return findPlaces();
}

std::optional<std::string> RowReader::findPlaces()
{
    const auto place = [this](std::string_view name) -> std::optional<std::size_t>
    {
        const auto found = std::find(myColumns.begin(), myColumns.end(), name);
        if (found == myColumns.end()) return std::nullopt;
        return found - myColumns.begin();
    };
    myPlaces = {place("time"),  place("event"),  place("kind"),
                place("class"), place("member"), place("octets")};
    for (std::string name : myColumns)
    {
        if (std::count(myColumns.begin(), myColumns.end(), name) > 1)
            return "the column \"" + name + "\" stands twice in the header";
        if (isResult(name)) return "the column \"" + name + "\" has the name of a result";
        std::string key;
        JsonWriter(key).text(name);
        myKeys.push_back(key + ':');
    }
    if (!myPlaces.member || !myPlaces.octets)
        return std::string("the header has no column \"") +
               (myPlaces.member ? "octets" : "member") +
               "\"; a recording has time, event, kind, object, class, member and octets";
    return std::nullopt;
}

/// What stands between the quotes of a cell, each doubled one once.
std::string_view RowReader::unquoted(std::string_view inner)
{
    if (inner.find('"') == std::string_view::npos) return inner;
    const std::size_t start = myTexts.size();
    for (std::size_t at = 0; at < inner.size(); ++at)
    {
        myTexts += inner[at];
        if (inner[at] == '"') ++at;
    }
    return std::string_view(myTexts).substr(start);
}

const char* RowReader::splitCsv(std::string_view line, std::vector<std::string_view>& cells)
{
    cells.clear();
    myTexts.clear();
    myTexts.reserve(line.size());
    for (std::size_t at = 0;;)
    {
        std::size_t end = line.find(myDelimiter, at);
        if (at < line.size() && line[at] == '"')
        {
            // The quote that ends it is the first one with no other after it.
            std::size_t last = line.find('"', at + 1);
            while (last != line.npos && last + 1 < line.size() && line[last + 1] == '"')
                last = line.find('"', last + 2);
            if (last == line.npos) return "a quoted cell does not end in its line";
            end = last + 1 < line.size() ? last + 1 : line.npos;
            if (end != line.npos && line[end] != myDelimiter)
                return "something stands after the quote that ends a cell";
            cells.push_back(unquoted(line.substr(at + 1, last - at - 1)));
        }
        else
            cells.push_back(line.substr(at, end == line.npos ? end : end - at));
        if (end == line.npos) return nullptr;
        at = end + 1;
    }
}

void RowReader::read(std::string_view line, Row& row)
{
    row.kind = row.className = row.member = row.octets = row.json = {};
    row.problem.clear();
    row.isLine = false;
    if (myIsJson)
        readJson(line, row);
    else
        readCsv(line, row);
}

void RowReader::readCsv(std::string_view line, Row& row)
{
    if (const char* const problem = splitCsv(line, row.cells)) return refuse(line, problem, row);
    if (row.cells.size() != myColumns.size())
        return refuse(line,
                      std::to_string(row.cells.size()) + " cells, and the header has " +
                          std::to_string(myColumns.size()),
                      row);
    const auto cell = [&row](std::optional<std::size_t> place)
    { return place ? row.cells[*place] : std::string_view(); };
    row.kind = cell(myPlaces.kind);
    row.className = cell(myPlaces.className);
    row.member = cell(myPlaces.member);
    row.octets = cell(myPlaces.octets);
    if (!myNeedsCells) writeCells(row);
    row.json = myJson;
}

void RowReader::writeCells(const Row& row)
{
    myJson.clear();
    for (std::size_t i = 0; i < row.cells.size(); ++i)
    {
        myJson += i == 0 ? '{' : ',';
        myJson += myKeys[i];
        const bool mayBeNumber = i == myPlaces.time || i == myPlaces.event;
        if (mayBeNumber && isNumber(row.cells[i]))
            myJson += row.cells[i];
        else
            JsonWriter(myJson).text(row.cells[i]);
    }
}

/// A line that is no row is given back as it stands, so that nothing of it is lost.
void RowReader::refuse(std::string_view line, std::string problem, Row& row)
{
    row.problem = std::move(problem);
    row.isLine = true;
    row.cells.assign(std::max<std::size_t>(myColumns.size(), 1), {});
    row.cells[0] = line;
    myJson = "{\"row\":";
    JsonWriter(myJson).text(line);
    row.json = myJson;
}

void RowReader::readJson(std::string_view line, Row& row)
{
    simdjson::dom::object object;
    const simdjson::error_code error = myParser->parse(line).get(object);
    if (error != simdjson::SUCCESS)
        return refuse(line, std::string("no JSON object: ") + simdjson::error_message(error), row);
    const std::pair<std::string_view, std::string_view*> known[] = {
        {"kind",   &row.kind     },
        {"class",  &row.className},
        {"member", &row.member   },
        {"octets", &row.octets   }
    };
    for (const simdjson::dom::key_value_pair pair : object)
    {
        std::string_view text;
        if (isResult(pair.key))
            return refuse(line, "the key \"" + std::string(pair.key) + "\" is that of a result",
                          row);
        if (pair.value.get(text) != simdjson::SUCCESS) continue;
        for (const auto& [name, place] : known)
            if (pair.key == name) *place = text;
    }
    if (row.octets.data() && row.member.empty()) row.problem = "no text \"member\"";
    row.json = line.substr(0, line.rfind('}'));
    if (myNeedsCells) myParser->readCells(object, myColumns, row);
}

}  // namespace omt
