// SPDX-License-Identifier: Apache-2.0
// The DIS dictionary: against splitting the same lines, against an ordered map, and as it grows.
#include "modelFiles.h"
#include "omtReader/disDictionary.h"
#include "ratio.h"

#include <array>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace
{

using ratios::secondsOf;

constexpr const char* theTable = "dis/entity-types.csv";
constexpr int theColumns = 12;
constexpr int theCountryColumn = 4;

using Columns = std::vector<std::string>;

Columns split(const std::string& line)
{
    Columns columns;
    std::size_t start = 0;
    for (std::size_t end = line.find(','); end != line.npos; end = line.find(',', start))
    {
        columns.push_back(line.substr(start, end - start));
        start = end + 1;
    }
    columns.push_back(line.substr(start));
    return columns;
}

std::vector<Columns> readTable(const std::string& path)
{
    std::vector<Columns> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) rows.push_back(split(line));
    return rows;
}

std::string tablePath()
{
    return ratios::modelPath(theTable).string();
}

/// The table ten times over, each time with other countries.
std::string tenTables()
{
    std::vector<Columns> rows = readTable(tablePath());
    std::string text = "header\n";
    for (int copy = 0; copy < 10; ++copy)
        for (std::size_t row = 1; row < rows.size(); ++row)
        {
            std::string& country = rows[row].at(theCountryColumn);
            if (copy > 0 && !country.empty()) country = std::to_string(std::stoi(country) + 1000);
            for (const std::string& column : rows[row]) text += column + ',';
            text.back() = '\n';
        }
    return text;
}

std::string tenTablesPath()
{
    static const ratios::ModelFile theFile("ten.csv", tenTables());
    return theFile.path();
}

/// A made table: four levels of codes below each country, with names.
std::string madeTable(int rows)
{
    constexpr int theCodes = 8;
    std::string text = "header\n";
    for (int row = 0; row < rows; ++row)
    {
        text += "1,Platform,2,Air";
        int code = 1 + row / (theCodes * theCodes * theCodes);
        for (int level = 2, rest = row; 2 * level < theColumns; ++level, rest /= theCodes)
        {
            text += ',' + std::to_string(code) + ",Entry " + std::to_string(code);
            code = 1 + rest % theCodes;
        }
        text += '\n';
    }
    return text;
}

double splitLines()
{
    const std::string path = tablePath();
    std::vector<Columns> rows;
    return secondsOf([&] { rows = readTable(path); });
}

double load(const std::string& path)
{
    DtDisDictionary dictionary;
    const double seconds = secondsOf([&] { dictionary.loadFromFile(path, true); });
    dictionary.deleteEnumerationEntries();
    return seconds;
}

double loadOne()
{
    return load(tablePath());
}

double loadTen()
{
    return load(tenTablesPath());
}

double loadMade(int rows)
{
    static std::map<int, ratios::ModelFile> theFiles;
    if (!theFiles.count(rows))
        theFiles.try_emplace(rows, std::to_string(rows) + ".csv", madeTable(rows));
    return load(theFiles.at(rows).path());
}

using Numbers = std::array<int, 7>;

/// The rows of the table as complete entity types.
const std::vector<Numbers>& allNumbers()
{
    static const std::vector<Numbers> theNumbers = []
    {
        std::vector<Numbers> all;
        const std::vector<Columns> rows = readTable(tablePath());
        for (std::size_t row = 1; row < rows.size(); ++row)
        {
            Numbers numbers = {};
            for (std::size_t level = 0; 2 * level < theColumns; ++level)
                numbers[level] = std::atoi(rows[row].at(2 * level).c_str());
            all.push_back(numbers);
        }
        return all;
    }();
    return theNumbers;
}

/// The seconds of a million look-ups, with what was found added up so that none is left out.
template <typename Key, typename Find>
double findMillion(const std::vector<Key>& keys, Find find)
{
    constexpr std::size_t theCount = 1'000'000;
    static volatile std::size_t theFound = 0;
    return secondsOf(
        [&]
        {
            std::size_t found = 0;
            for (std::size_t i = 0; i < theCount; ++i) found += find(keys[i * 7919 % keys.size()]);
            theFound = theFound + found;
        });
}

double findInMap()
{
    static const std::map<Numbers, int> theMap = []
    {
        std::map<Numbers, int> map;
        for (const Numbers& numbers : allNumbers()) map[numbers] = 1;
        return map;
    }();
    return findMillion(allNumbers(), [](const Numbers& numbers)
                       { return theMap.lower_bound(numbers)->second != 0; });
}

/// A key as a member: a container of keys alone calls their destructor, which is not virtual.
struct Probe
{
    DtEntityMapperKey key;
};

double findInDictionary()
{
    static const auto theDictionary = []
    {
        auto dictionary = std::make_unique<DtDisDictionary>();
        dictionary->loadFromFile(tablePath(), true);
        return dictionary;
    }();
    static const std::vector<Probe> theProbes = []
    {
        std::vector<Probe> probes;
        for (const Numbers& n : allNumbers())
            probes.push_back({
                {n[0], n[1], n[2], n[3], n[4], n[5], n[6]}
            });
        return probes;
    }();
    return findMillion(theProbes, [](const Probe& probe)
                       { return theDictionary->findEntry(probe.key) != nullptr; });
}

}  // namespace

std::vector<ratios::Ratio> ratios::entityTypesRatios()
{
    return {
        {"dis_load",        splitLines, loadOne,          theTable},
        {"dis_load_growth", loadOne,    loadTen,          theTable},
        {"dis_find",        findInMap,  findInDictionary, theTable},
    };
}

std::vector<ratios::Growth> ratios::entityTypesGrowth()
{
    return {
        {"Loading entity types", "rows of the table", 2000, loadMade},
    };
}
