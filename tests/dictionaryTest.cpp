// SPDX-License-Identifier: Apache-2.0
// Entity types: keys and their order, tables of names, and the dictionary that is made of them.
#include "omtReader/disDictionary.h"
#include "omtReader/entityReader.h"
#include "support.h"

#include <limits>
#include <random>

namespace
{

using Key = DtEntityMapperKey;

/// A key as it sorts: -1 after every other number.
std::vector<long> inOrder(const Key& key)
{
    std::vector<long> numbers;
    for (int at = 0; at < Key::theSize; ++at)
        numbers.push_back(key[at] == -1 ? std::numeric_limits<long>::max() : key[at]);
    return numbers;
}

Key randomKey(std::mt19937& random, int extra)
{
    const auto number = [&random] { return static_cast<int>(random() % 3) - 1; };
    if (random() % 8 == 0) return {};
    return {number(), number(), 7, number(), -1, number(), extra};
}

/// A dictionary of some tables, with "~" between them, that deletes its entries too.
struct Dictionary : DtDisDictionary
{
    explicit Dictionary(const DtString& tables)
    {
        countries().clear();
        for (const DtString& table : tables.sections('~')) load("header\n" + table);
    }
    ~Dictionary() override { deleteEnumerationEntries(); }

    void load(const DtString& table)
    {
        EXPECT_TRUE(loadFromFile(folder.write("table.csv", table.view()), true));
    }
    std::string found(const DtString& key)
    {
        const auto* const entry = findEntry(Key(key.c_str()));
        return entry ? names(*entry) : "none";
    }
    /// With "*" for "Any".
    static std::string names(const DtDisEntityTypeEntry& entry)
    {
        std::string text;
        for (const DtString& name : entry.strings())
            text += "|" + (name == "Any" ? "*" : name).str();
        return text;
    }

    TemporaryFolder folder;
};

}  // namespace

TEST(EntityMapperKeyTest, ReadsAndWritesNumbers)
{
    expectEach({"1:2:225:1:3:4:0 => 1:2:225:1:3:4:0", "0x10:1 => 16:1:0:0:0:0:0",
                "010 08 -0x2 => 8:0:-2:0:0:0:0", " => 0:0:0:0:0:0:0", "1::3:x5 => 1:0:3:0:5:0:0",
                "-1--1, -1 => -1:-1:-1:0:0:0:0", "1/2/3/4/5/6/7/8 => 1:2:3:4:5:6:7",
                "2147483648:-99999999999999999999 => 2147483647:-2147483648:0:0:0:0:0"},
               [](const DtString& text)
               {
                   Key key(text.c_str());
                   key = key.string().c_str();  // its own text
                   return Key(key).string().str();
               });
    const char* const noText = nullptr;
    Key key(noText);
    for (const int level : {1, 2, 3, 4, 5, 6, 7, -1, 0}) key[level] += 10 + level;
    EXPECT_EQ(key.string(), "36:11:12:13:14:15:16");
}

TEST(EntityMapperKeyTest, MatchesAndSorts)
{
    expectEach({"1:2:-1:-1:-1:-1:-1 1:2:225:1:3:4:0 => =>", "1:2:3:4:5:6:7 1:2:3:4:5:6:7 => =!",
                "1:2:225:1:3:4:0 1:2:225:1:3:4:-1 => =<", "1:2:3:4:5:6:7 1:2:3:4:5:6:8 => <",
                "-1:2:3:4:5:6:7 1:-1:3:4:5:6:8 => >", "0:0:0:0:0:0:-1 0:0:0:0:0:0:-2 => =>",
                "-1:-1:-1:-1:-1:-1:-1 -1:-1:-1:-1:-1:-1:-1 => =!<>"},
               [](const DtString& keys)
               {
                   const Key a(keys.tokens()[0].c_str()), b(keys.tokens()[1].c_str());
                   EXPECT_TRUE((a != b) == !b.matchPattern(a) && (a > b) == !(a < b));
                   const std::string match = a == b ? a.exactMatch(b) ? "=!" : "=" : "";
                   return match + (a < b ? "<" : "") + (b < a ? ">" : "");
               });
}

// Keys that are open all over are each less than the other, which no map survives.
TEST(DisDictionaryTest, KeepsAllRowsAmongOpenOnes)
{
    std::mt19937 random(1);
    Dictionary dictionary("");
    std::map<std::vector<long>, Key> rows;
    for (int file = 0; file < 12; ++file)
    {
        DtString table = "header\n";
        for (int row = 0; row < 12; ++row, table += '\n')
        {
            const Key key = randomKey(random, -1);
            rows.try_emplace(inOrder(key), key);
            for (int at = 0; at < 6; ++at) table += key[at] < 0 ? ",," : DtString(key[at]) + ",n,";
        }
        dictionary.load(table);
        rows.try_emplace(inOrder(Key()), Key());  // the last line
        ASSERT_EQ(dictionary.enumerationList().size(), rows.size());
        for (auto row = rows.begin(); const auto& [key, entry] : dictionary.enumerationList())
            ASSERT_TRUE(key.exactMatch(row->second) && entry->exactMatch((row++)->second));
        for (int count = 0; count < 60; ++count)
        {
            const Key key = randomKey(random, count % 2 - 1);
            const Key next = rows.lower_bound(inOrder(key))->second;
            const bool isOpen = key.exactMatch(Key());
            const auto* const entry = dictionary.findEntry(key);
            ASSERT_EQ(std::as_const(dictionary).findEntry(key), entry);
            ASSERT_EQ(entry != nullptr, next == key && !isOpen) << key.string();
            ASSERT_TRUE(!entry || entry->exactMatch(next)) << key.string();
            for (const auto& [order, other] : rows)
                ASSERT_EQ(key < other, inOrder(key) < order || (isOpen && other.exactMatch(Key())));
        }
    }
}

TEST(DisDictionaryTest, TakesWhateverTablesHold)
{
    const std::string zero(1, '\0'), large(10'000'000, 'x'),
        open = "-1:-1:-1:-1:-1:-1:-1|*|*|*|*|*|*;";
    expectEach({"1,P,1,L,225,C,1,T,1,H,3,X => 1:1:225:1:1:3:-1|P|L|C|T|H|X;", " => " + open,
                "\n => " + open, "1,P,,L,5,C,,,2,,3 => 1:-1:5:-1:2:3:-1|P|*|C|*||;",
                "1,,1,,1,,1,,1,,1,F,7 => 1:1:1:1:1:1:-1||||||F;",
                "1,,1,,1,,1,,1,,1,F\r => 1:1:1:1:1:1:-1||||||F\r;",
                "1,\"P,Q\",2,L => 1:0:0:-1:-1:-1:-1|\"P|2||*|*|*;",
                "0x1,a,99999999999,b,-1,c,3z,d, 4,e,-2,f => 0:2147483647:-1:3:4:-2:-1|a|b|*|d|e|f;",
                "1,A" + zero + ",2" + zero + ",B => 1:2:-1:-1:-1:-1:-1|A" + zero + "|B|*|*|*|*;",
                "1," + large + ",2,B => 1:2:-1:-1:-1:-1:-1|" + large + "|B|*|*|*|*;",
                "1,A,,,7,First~1,B,,,7,Second => 1:-1:7:-1:-1:-1:-1|B|*|Second|*|*|*;"},
               [](const DtString& tables)
               {
                   std::string text;
                   Dictionary dictionary(tables);
                   for (const auto& [key, entry] : dictionary.enumerationList())
                       text += key.string().str() + Dictionary::names(*entry) + ';';
                   return text;
               });
    Dictionary dictionary("1,A,,,7,First~1,B,,,7,Second");
    EXPECT_EQ(dictionary.findCountry(7) + dictionary.findCountry(8), "First");
    dictionary.load("header\n3,,,,8,Late");  // too late: it was asked for
    EXPECT_EQ(dictionary.findCountry(8), "");
    EXPECT_EQ(DtDisDictionary::countries().size(), 2);
    DtDisEntry& root = dictionary.disEntries();
    EXPECT_EQ(root.find(1)->name() + root.find(1)->find(-1)->find(7)->name(), "AFirst");
    EXPECT_EQ(root.find(2), nullptr);
    EXPECT_EQ(root.entries().size(), 3);
    DtDisEntry* const added = root.addDisEntry(2, "B");
    EXPECT_EQ(root.find(2), added);
    dictionary.deleteEnumerationEntries();
    EXPECT_TRUE(dictionary.enumerationList().empty());
}

TEST(DisDictionaryTest, FindsTheNextRowIfItMatches)
{
    Dictionary dictionary("1,P\n1,P,1,L,5,C\n1,P,1,L,5,C,1,T,1,H\n1,P,1,L,5,C,1,T,1,H,3,X");
    const auto find = [&](const DtString& key) { return dictionary.found(key); };
    // Where another row comes next, no better one is looked for.
    expectEach({"1:1:5:1:1:3:0 => |P|L|C|T|H|X", "1:1:5:1:1:4 => |P|L|C|T|H|*", "2:1 => none",
                "1:1:5:1:2:3 => |P|L|C|*|*|*", "1:1:6 => |P|*|*|*|*|*", "1:1:5:1:1:2 => none",
                "1:1:5:-1:-1:-1:-1 => |P|L|C|*|*|*", "1:1:5:1:0:3 => none"},
               find);
    dictionary.load("header\n");
    expectEach({"2 => |*|*|*|*|*|*", "1:1:5:1:1:2 => none", "-1:-1:-1:-1:-1:-1:-1 => none"}, find);
}

TEST(CSVReaderTest, TakesAnyFileForATable)
{
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    expectEach({path + " => 0 0", path + "/none => 0 -1", " => 0 -1", "/dev/null => 0 0"},
               [](const DtString& name)
               {
                   EXPECT_TRUE(Dictionary("").loadFromFile(name, false));
                   return std::to_string(Dictionary("").countLines(name.c_str())) + ' ' +
                          std::to_string(DtCSVReader(name).intVar(0, nullptr));
               });
    DtEntityReader reader(folder.write("table.csv", "a,7\n7;,-1;").c_str());
    EXPECT_TRUE(reader.readLine());
    EXPECT_EQ(reader.stringVar(0, 1) + DtString(reader.numColumns()), "a,72");
    EXPECT_TRUE(reader.readLine() && !reader.readLine());
    EXPECT_EQ(reader.stringVar(0, 0) + DtString(reader.numColumns()), "7;2");
    reader.setSeparator(';');
    expectEach({"0 0 => 7 7", "0 1 => 7;,-1 7", "1 9 => ,-1; 0", "2 2 =>  -1", "3 3 =>  -1",
                "-1 1 =>  -1", "1 0 =>  0"},
               [&](const DtString& range)
               {
                   const int first = range.tokens()[0].toInt(), last = range.tokens()[1].toInt();
                   const std::string number = std::to_string(reader.intVar(first, nullptr));
                   return reader.stringVar(first, last).str() + ' ' + number;
               });
}

using EntityTypesTest = ModelsTest;
TEST_F(EntityTypesTest, FindsEveryPublishedRow)
{
    const DtString table = model("dis/entity-types.csv");
    Dictionary dictionary("");
    EXPECT_EQ(dictionary.countLines(table.c_str()), 12279);  // the last one is empty
    dictionary.loadFromFile(table, false);
    EXPECT_EQ(dictionary.found("1:1:225:1:1:3:0"),
              "|Platform|Land|United States|Tank|M1 Abrams|M1A2");
    EXPECT_EQ(dictionary.enumerationList().size(), 12266 + 1);  // 12 rows have the key of another
    for (const auto& [key, entry] : dictionary.enumerationList())
        EXPECT_EQ(dictionary.findEntry(key), key.exactMatch(Key()) ? nullptr : entry)
            << key.string();
}
