// SPDX-License-Identifier: Apache-2.0
#include "entityCommand.h"

#include "entityKey.h"
#include "entityTable.h"
#include "entityTableCheck.h"
#include "modelInput.h"
#include "plainText.h"
#include "textTable.h"

#include <nlohmann/json.hpp>

#include <memory>

namespace
{

using Json = nlohmann::ordered_json;
using Rows = std::vector<const DtDisEntityTypeEntry*>;

struct EntityChoice
{
    std::string file;
    std::vector<std::string> key;
    int limit = 20;
    bool asJson = false;
};

/// The row that fits a whole key best, or all rows that fit a key with open numbers.
Rows findRows(const EntityTable& table, const DtEntityMapperKey& key)
{
    Rows rows;
    if (!isOpen(key))
    {
        if (const DtDisEntityTypeEntry* const row = table.findEntry(key)) rows.push_back(row);
        return rows;
    }
    for (const auto& [pattern, row] : table.enumerationList())
        if (pattern == key) rows.push_back(row);
    return rows;
}

/// What a country is called; nothing where the row is open there.
std::string countryOf(EntityTable& table, const DtDisEntityTypeEntry& row)
{
    constexpr int theCountry = 2;
    const int code = row[theCountry];
    return code == DtEntityMapperKey::theAny ? "" : table.findCountry(code).str();
}

/// The names of a row, level by level, beside the numbers of the key.
std::string rowReport(EntityTable& table, const DtEntityMapperKey& key,
                      const DtDisEntityTypeEntry& row)
{
    TextTable levels({whole("Level"), whole("Code"), wrap("Name")});
    for (int place = 0; place < DtEntityMapperKey::theSize; ++place)
    {
        const auto at = static_cast<std::size_t>(place);
        levels.add({theEntityLevels[at].name, std::to_string(key[place]),
                    at < row.strings().size() ? row.strings()[at].str() : ""});
    }
    PropertyList properties;
    properties.add("Row", textOf(row));
    properties.add("Country", countryOf(table, row));
    return levels.text() + '\n' + properties.text();
}

std::string rowList(const Rows& rows, std::size_t limit)
{
    TextTable list({whole("Row"), wrap("Names")});
    for (std::size_t at = 0; at < std::min(limit, rows.size()); ++at)
    {
        std::vector<std::string> names;
        for (const DtString& name : rows[at]->strings()) names.push_back(name.str());
        list.add({textOf(*rows[at]), joined(names, ":")});
    }
    if (rows.size() <= limit) return list.text();
    return list.text() + "  and " + std::to_string(rows.size() - limit) + " more\n";
}

std::string jsonOf(EntityTable& table, const DtEntityMapperKey& key, const Rows& rows,
                   std::size_t limit)
{
    Json result;
    result["key"] = key.string().str();
    result["matches"] = Json::array();
    for (std::size_t at = 0; at < std::min(limit, rows.size()); ++at)
    {
        Json match;
        match["row"] = rows[at]->string().str();
        match["names"] = Json::array();
        for (const DtString& name : rows[at]->strings()) match["names"].push_back(name.str());
        match["country"] = countryOf(table, *rows[at]);
        result["matches"].push_back(std::move(match));
    }
    result["more"] = rows.size() - result["matches"].size();
    return result.dump(2, ' ', true, Json::error_handler_t::replace) + '\n';
}

std::string show(const EntityChoice& choice)
{
    const DtEntityMapperKey key = readEntityKey(joined(choice.key, " "));
    EntityTable table(choice.file);
    const Rows rows = findRows(table, key);
    if (rows.empty()) throw InputError(choice.file + ": no entity type matches " + textOf(key));
    const auto limit = static_cast<std::size_t>(choice.limit);
    if (choice.asJson) return jsonOf(table, key, rows, limit);
    return isOpen(key) ? rowList(rows, limit) : rowReport(table, key, *rows.front());
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
    return {command, [choice] { return Result{show(*choice)}; }};
}
