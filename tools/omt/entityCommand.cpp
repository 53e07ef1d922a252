// SPDX-License-Identifier: Apache-2.0
#include "entityCommand.h"

#include "engineInput.h"
#include "errors.h"
#include "omt/codec/entityTable.h"
#include "plainText.h"
#include "textTable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace
{

using Json = nlohmann::ordered_json;
using Codes = omt::EntityCodes;
using EntityRows = std::vector<const omt::EntityTable::Row*>;

constexpr std::size_t theCountry = 2;

struct EntityChoice
{
    std::string file;
    std::vector<std::string> key;
    std::size_t limit = 20;
    bool asJson = false;
};

/// The row that fits a whole key best, or all rows that fit a key with open numbers.
EntityRows findRows(const omt::EntityTable& table, const Codes& key)
{
    if (key.isOpen()) return table.findAll(key);
    const omt::EntityTable::Row* const row = table.find(key);
    return row ? EntityRows{row} : EntityRows();
}

/// What a country is called; nothing where the row is open there.
std::string_view countryOf(const omt::EntityTable& table, const omt::EntityTable::Row& row)
{
    const std::int32_t code = row.codes[theCountry];
    return code == Codes::theOpen ? "" : table.country(code);
}

/// The names of a row, level by level, beside the numbers of the key.
std::string rowReport(const omt::EntityTable& table, const Codes& key,
                      const omt::EntityTable::Row& row)
{
    TextTable levels({whole("Level"), whole("Code"), wrap("Name")});
    for (std::size_t level = 0; level < Codes::theLevels; ++level)
        levels.add({std::string(omt::entityLevelName(level)), std::to_string(key[level]),
                    std::string(level < row.names.size() ? row.names[level] : "")});
    PropertyList properties;
    properties.add("Row", row.codes.text());
    properties.add("Country", countryOf(table, row));
    return levels.text() + '\n' + properties.text();
}

std::string rowList(const EntityRows& rows, std::size_t limit)
{
    TextTable list({whole("Row"), wrap("Names")});
    for (std::size_t at = 0; at < std::min(limit, rows.size()); ++at)
    {
        const std::vector<std::string> names(rows[at]->names.begin(), rows[at]->names.end());
        list.add({rows[at]->codes.text(), joined(names, ":")});
    }
    if (rows.size() <= limit) return list.text();
    return list.text() + "  and " + std::to_string(rows.size() - limit) + " more\n";
}

/// The numbers with colons between them, -1 for an open one.
std::string numbersOf(const Codes& codes)
{
    std::vector<std::string> numbers;
    for (const std::int32_t code : codes.levels) numbers.push_back(std::to_string(code));
    return joined(numbers, ":");
}

std::string jsonOf(const omt::EntityTable& table, const Codes& key, const EntityRows& rows,
                   std::size_t limit)
{
    Json result = {
        {"key",     numbersOf(key)},
        {"matches", Json::array() }
    };
    for (std::size_t at = 0; at < std::min(limit, rows.size()); ++at)
        result["matches"].push_back({
            {"row", numbersOf(rows[at]->codes)},
            {"names", rows[at]->names},
            {"country", countryOf(table, *rows[at])}
        });
    result["more"] = rows.size() - result["matches"].size();
    return result.dump(2, ' ', true, Json::error_handler_t::replace) + '\n';
}

Result show(const EntityChoice& choice)
{
    std::string complaint;
    const std::optional<Codes> key = Codes::read(joined(choice.key, " "), complaint);
    if (!key) throw InputError("the key: " + complaint);
    const omt::EntityTableReading reading = omt::EntityTable::readFile(choice.file);
    writeFindings(reading.findings);
    if (hasError(reading.findings)) return theFailure;
    const EntityRows rows = findRows(reading.table, *key);
    if (rows.empty()) throw InputError(choice.file + ": no entity type matches " + key->text());
    if (choice.asJson) return {jsonOf(reading.table, *key, rows, choice.limit)};
    return {key->isOpen() ? rowList(rows, choice.limit)
                          : rowReport(reading.table, *key, *rows.front())};
}

}  // namespace

Command addEntityCommand(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("entity", "Give the names of a DIS entity type");
    auto choice = std::make_shared<EntityChoice>();
    command
        ->add_option("CSV", choice->file,
                     "The table: a header, and rows of code and name of kind, domain, country, "
                     "category, subcategory and specific")
        ->required();
    command
        ->add_option(
            "KEY", choice->key,
            "Kind, domain, country, category, subcategory, specific and extra, with \":\", "
            "\".\" or blanks between them")
        ->required();
    command->add_option("--limit", choice->limit, "The most rows to list (20)")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000));
    command->add_flag("--json", choice->asJson, "One JSON object, for programs");
    command->footer(
        "A number of KEY that is missing is open, and so are \"any\", \"*\" and -1: all rows that\n"
        "match are listed. Seven numbers give the one row that says most of them: a row that is\n"
        "open at a level only where none has its number. Without a match the exit status is 1.\n"
        "\n"
        "Examples:\n"
        "  omt entity entity-types.csv 1:3:999:1:1:2:0\n"
        "  omt entity entity-types.csv 1:3:999 --limit 5\n"
        "  omt entity entity-types.csv any:any:any:any:any:1");
    return {command, [choice] { return show(*choice); }};
}
