// SPDX-License-Identifier: Apache-2.0
// Reading HLA 1.3: nothing is lost, classes find their parents, and what is wrong is said.
#include "omt/model/parts.h"
#include "omt/model/read.h"
#include "omt/model/rows.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

namespace
{

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

omt::Reading readText(std::string_view text)
{
    return omt::readDocuments({
        {"x.omd", text}
    });
}

std::vector<std::string> texts(const omt::Findings& findings)
{
    std::vector<std::string> lines;
    for (const omt::Finding& finding : findings)
        lines.push_back((std::ostringstream() << finding).str());
    return lines;
}

/// Keywords of clauses with their value, and "[" with each label of a note, with their lines.
using Values = std::multiset<std::tuple<std::string, std::string, std::uint32_t>>;

/// A slow reader of clauses, apart from the one that is tested.
class Scan
{
public:
    Scan(std::string_view text, std::uint32_t line, Values& values)
        : myText(text), myLine(line), myValues(values)
    {
        while (true)
        {
            const char c = peek();
            if (c == 0) return;
            if (c == '(')
            {
                myKeywordLine = myLine;
                take();
                myKeyword = word();
                const char next = peek();
                if (next == '"' || (next != '(' && next != ')'))
                    myValues.emplace(myKeyword, next == '"' ? string() : word(), myKeywordLine);
            }
            else if (c == '[')
                for (take(); peek() != ']';) myValues.emplace("[", label(), 0);
            else
                take();
        }
    }

private:
    char peek()
    {
        while (myAt < myText.size() && std::isspace(static_cast<unsigned char>(myText[myAt])))
            take();
        return myAt < myText.size() ? myText[myAt] : '\0';
    }
    char take()
    {
        if (myText[myAt] == '\n') ++myLine;
        return myText[myAt++];
    }
    std::string word()
    {
        peek();
        std::string word;
        while (myAt < myText.size() && !std::strchr(" \t\r\n()[\"", myText[myAt])) word += take();
        return word;
    }
    std::string label()
    {
        std::string label;
        while (std::isalnum(static_cast<unsigned char>(peek()))) label += take();
        if (peek() == ',') take();
        return label;
    }
    std::string string()
    {
        std::string text;
        for (take(); myText[myAt] != '"';)
        {
            char c = take();
            if (c == '\\')
            {
                c = take();
                c = c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
                if (c == '0') c = static_cast<char>((take() - '0') * 8 + take() - '0');
            }
            text += c;
        }
        take();
        return text;
    }

    std::string_view myText;
    std::size_t myAt = 0;
    std::uint32_t myLine;
    Values& myValues;
    std::string myKeyword;
    std::uint32_t myKeywordLine = 0;
};

void addAsides(const omt::Definition& definition, Values& values)
{
    for (const omt::Aside& aside : definition.asides)
    {
        std::istringstream labels(aside.text.str());
        if (aside.what == omt::Aside::What::element)
            Scan(aside.text, aside.text.line(), values);
        else if (aside.what == omt::Aside::What::notes)
            for (std::string label; labels >> label;) values.emplace("[", label, 0);
    }
}

template <typename T>
void addValues(const T& definition, Values& values)
{
    for (const omt::Row& row : omt::rowsOf(T::theKind))
    {
        if (row.oneText && (definition.*row.oneText).isThere())
            values.emplace(row.words.in13, (definition.*row.oneText).str(),
                           (definition.*row.oneText).line());
        if (row.someTexts)
            for (const omt::Text& text : definition.*row.someTexts)
                values.emplace(row.words.in13, text.str(), text.line());
    }
    addAsides(definition, values);
    omt::forEachPartList<T>(
        [&](auto list)
        {
            for (const auto& part : definition.*list)
                if constexpr (!std::is_same_v<std::decay_t<decltype(part)>, omt::Text>)
                    addValues(part, values);
        });
}

Values valuesOf(const omt::Model& model)
{
    Values values;
    addValues(model.modules().front().identification, values);
    omt::forEachNamedTable(
        [&](auto table)
        {
            for (const auto& definition : model.tables().*table) addValues(definition, values);
        });
    for (const omt::Note& note : model.tables().notes) addValues(note, values);
    return values;
}

/// All that a document can hold at once, routing spaces and odd clauses included.
constexpr char theDocument[] =
    "; kept\n(OMDT v1.3)\n(ObjectModel (Name \"M\") (POCPhone \"1\") (POCPhone \"2\") (POCOrgName "
    "O)\n"
    "(POCOrgName \"P\") (Strange (Thing \"a)b\" 1))\n"
    "(RoutingSpace (Name \"Space\" [1]) (Dimension (Name \"x\") (DimensionType \"float\")\n"
    "(DimensionMinimum 0) (DimensionMaximum \"9\") (RangeSetUnits \"m\") (Odd 4)))\n"
    "(Class (ID 2) (Name \"Low\") (SuperClass 1) (Attribute (Name \"a\" [1, 2]) (DataType long)\n"
    "(RoutingSpace \"Space\") (Units \"tab\\t\\050x\\051 \\\"q\\\"\\r\\n\")))\n"
    "(Class (ID 1) (Name \"Top\"))\n"
    "(Note (NoteNumber 1) (NoteText \"one\")) (Note (NoteNumber 2) (NoteText \"two\")))\n";

TEST(Hla13, losesNothing)
{
    std::map<std::string, std::string> documents = {
        {"all kinds", theDocument}
    };
    if (const char* const folder = std::getenv("OMT_MODELS"))
        for (const char* const name : {"Billiard.omd", "RPR2-D17.omd"})
        {
            std::ifstream in(folder + ("/hla13/" + std::string(name)), std::ios::binary);
            documents[name] = std::string(std::istreambuf_iterator<char>(in), {});
        }
    for (const auto& [name, text] : documents)
    {
        SCOPED_TRACE(name);
        Values expected;
        Scan(text.substr(0, 1) == ";" ? text.substr(6) : text, 1, expected);
        const Values found = valuesOf(readText(text).model);
        Values lost;
        std::set_difference(expected.begin(), expected.end(), found.begin(), found.end(),
                            std::inserter(lost, lost.end()));
        EXPECT_THAT(lost, ::testing::IsEmpty());
        EXPECT_EQ(found.size(), expected.size());
    }
}

TEST(Hla13, countsPublishedModels)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    const omt::Reading reading = omt::read({folder + std::string("/hla13/RPR2-D17.omd")});
    const omt::Tables& tables = reading.model.tables();
    EXPECT_THAT(texts(reading.findings), ::testing::IsEmpty());
    EXPECT_THAT((std::vector{tables.objectClasses.size(), tables.interactionClasses.size(),
                             tables.enumeratedData.size(), tables.complexRecords.size(),
                             tables.notes.size()}),
                ElementsAre(63, 78, 99, 95, 88));
    const omt::ObjectClass* const aircraft = reading.model.findObjectClass("Aircraft");
    ASSERT_TRUE(aircraft);
    EXPECT_EQ(reading.model.fullName(*aircraft), "BaseEntity.PhysicalEntity.Platform.Aircraft");
}

TEST(Hla13, readsParentsContactsNotesAndComments)
{
    const omt::Reading reading = readText(theDocument);
    const omt::Tables& tables = reading.model.tables();
    EXPECT_THAT(texts(reading.findings), ElementsAre(HasSubstr("x.omd:4: warning: \"Strange\""),
                                                     HasSubstr("x.omd:6: warning: \"Odd\"")));
    EXPECT_EQ(reading.model.fullName(tables.objectClasses.at(1)), "Top.Low");
    const omt::Attribute& attribute = tables.objectClasses.at(1).attributes[0];
    EXPECT_EQ(attribute.units, "tab\t(x) \"q\"\r\n");
    EXPECT_EQ(attribute.units.line(), 8U);
    EXPECT_THAT(reading.model.noteLabels(attribute, 0), ElementsAre("1", "2"));
    const omt::Identification& identification = reading.model.modules()[0].identification;
    EXPECT_EQ(identification.contacts.size(), 2U);
    EXPECT_EQ(identification.contacts[0].telephones.size(), 2U);
    EXPECT_EQ(identification.asides[0].text, "kept");
}

struct Faulty
{
    const char* what;
    std::string text;
    std::vector<std::string> findings;
    std::size_t classes;
};

TEST(Hla13, saysWhatIsWrongAndKeepsTheRest)
{
    const std::string deep(200000, '(');
    const std::string chain = [&]
    {
        std::string text = "(ObjectModel";
        for (int i = 100000; i > 0; --i)
            text += "(Class (ID " + std::to_string(i) + ")(Name c)(SuperClass " +
                    std::to_string(i - 1) + "))";
        return text + ")";
    }();
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    const Faulty theFaults[] = {
        {"open string", "(ObjectModel\n(Name \"a)\n)", {"x.omd:2: error: ends within the string that begins here [malformed]"}, 0},
        {"open notes", "(ObjectModel (Name \"a\"\n[1)", {"x.omd:2: error: ends within the notes that begin here [malformed]"}, 0},
        {"stray parenthesis", "(ObjectModel)\n)", {"x.omd:2: error: has a closing parenthesis without an opening one [malformed]"}, 0},
        {"a part outside", "(ObjectModel)\n(Class (ID 1) (Name \"a\"))", {"x.omd:2: warning: \"Class\" stands outside of the object model; it is kept as it is [outside]"}, 0},
        {"early end", "(ObjectModel\n(Class (ID 1)", {"x.omd:2: error: ends before the clause that begins here is closed [malformed]"}, 0},
        {"deep nesting", "(ObjectModel (Class " + deep + std::string(200002, ')'), {"x.omd:1: warning: \"\" is no clause of object class; it is kept as it is [unknown-clause]", "x.omd:1: error: there is an object class without a name [no-name]"}, 1},
        {"another form", "(OMDT v1)\n(Other)", {"x.omd: error: is no object model: there is no clause \"ObjectModel\" [no-object-model]"}, 0},
        {"FED", "; x\n( FED (x))", {"x.omd: error: is a FED file, which has neither datatypes nor descriptions; the OMT file of the model is read [no-object-model]"}, 0},
        {"ring, unknown and equal numbers",
         "(ObjectModel\n(Class (ID 1)(Name a)(SuperClass 2))\n(Class (ID 2)(Name b)(SuperClass 1))\n(Class (ID 2)(Name c)(SuperClass 9))\n(Class (ID x)(Name d)))",
         {"x.omd:4: warning: object class \"c\" has the number 2 of \"b\" [number-twice]",
          "x.omd:5: warning: \"ID\" has no number [odd-clause]",
          "x.omd:4: warning: object class \"c\" stands below number 9, which no class has; it is read as a root [unknown-class]",
          "x.omd:3: warning: object class \"b\" stands below itself; it is read as a root [class-ring]"}, 4},
        {"odd and repeated clauses", "(ObjectModel\n(Class (Name a)\n(Name b)\n(Description (x))))",
         {"x.omd:3: warning: \"Name\" of object class is there twice; the first counts [repeated-property]",
          "x.omd:4: warning: \"Description\" of object class is no word or string alone; it is kept as it is [odd-clause]"}, 1},
        {"a long chain, children first", chain, {}, 100000},
    };
    // clang-format on
    for (const Faulty& fault : theFaults)
    {
        SCOPED_TRACE(fault.what);
        const omt::Reading reading = readText(fault.text);
        EXPECT_THAT(texts(reading.findings), ElementsAreArray(fault.findings));
        EXPECT_EQ(reading.model.objectClasses().size(), fault.classes);
    }
    const omt::Reading western = readText("(ObjectModel (Name \"\xE4\x80\"))");
    EXPECT_EQ(western.model.modules().at(0).identification.name, "\xC3\xA4\xE2\x82\xAC");
}

}  // namespace
