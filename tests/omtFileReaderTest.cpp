// SPDX-License-Identifier: Apache-2.0
// The reader of HLA 1.3 models: where each word goes, what each malformed clause says, how classes
// are linked, bad files.
#include "omtReader/omtFileReader.h"
#include "sexp/dtcList.h"
#include "support.h"

#include <algorithm>
#include <map>
#include <regex>

namespace
{

/// The tree of a model with these clauses.
TreePtr read(const std::string& clauses, DtOMTFileReader&& reader = DtOMTFileReader(),
             DtExerciseConn* connection = nullptr)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("m.omd", "(ObjectModel " + clauses + ")");
    return TreePtr(reader.readFile(file, connection));
}

/// Why a file is not read, or a text; empty if it is. All go through one reader.
std::string failure(const std::string& file)
{
    static DtOMTFileReader theReader;
    theReader.clearLastError();
    std::string result;
    try
    {
        TreePtr(theReader.readFile(file, nullptr));
    }
    catch (const DtOMTReadException& problem)
    {
        result = problem.what();
    }
    EXPECT_EQ(theReader.getLastError(), result.c_str());
    DtSexpReadEscapeChar = nullptr;  // it stays set after a failure
    return result;
}

std::string failureOf(const DtString& text)
{
    const TemporaryFolder folder;
    return failure(folder.write("f.omd", text.view()));
}

std::string failureOfModel(const DtString& clauses)
{
    return failureOf("(ObjectModel " + clauses + ")");
}

/// The lines of the dump that only the first model has, without empty values and those that follow
/// from others.
std::string added(const std::string& clauses, const std::string& without)
{
    static const std::regex theRest(
        R"(.* = |.*\.(fullName|parent|child|label|cardinality[TM]\w+|expectedE\w+) = .*)");
    const std::vector<DtString> known = DtString(dump(read(without))).tokens("\n");
    std::string result;
    for (const DtString& line : DtString(dump(read(clauses))).tokens("\n"))
        if (!std::count(known.begin(), known.end(), line) && !std::regex_match(line.str(), theRest))
            result += (result.empty() ? "" : "; ") + line.str();
    return result;
}

/// A kind of definition with its words, each as "keyword=field of the dump", with "=name in
/// messages" after where that is not the keyword.
struct Words
{
    const char* around;  // with "%" for the clause
    std::string entry;   // in the dump, with what goes before the field
    const char* words;
    const char* location;     // after the name in messages; none where no message is given
    bool areStrings = false;  // a value of another kind is ignored

    std::string text(const std::string& clause) const
    {
        return std::regex_replace(around, std::regex("%"), "(" + clause + ")");
    }
};

// Rows of several lines, which clang-format would run into each other.
// clang-format off
const Words theWords[] = {
    {"%", "", "Name=name;VersionNumber=versionNo;Type=type;Purpose=purpose;"
     "ApplicationDomain=applicationDomain;SponsorOrgName=sponsorOrgName;"
     "ModificationDate=modificationDate;MOMVersion=MOMVersion", nullptr, true},
    {"(POCType) (POCEmail) %", "POC[0].", "POCHonorificName=honorificName;POCFirstName=firstName;"
     "POCLastName=lastName;POCOrgName=orgName;POCPhone=phone;POCEmail=email", nullptr},
    {"(Class (Name \"C\") %)", "object[0].", "Name=name;ID=identifier;Description=descriptor;"
     "SuperClass=parentIdentifier", " in Class C"},
    {"(Class (Name \"C\") (Attribute (Name \"A\") %))", "object[0].attribute[0].",
     "Name=name;DataType=datatype=Datatype;Cardinality=cardinality;Accuracy=accuracy;"
     "AccuracyCondition=accuracyCondition=Accuracy Condition;UpdateType=updateType=Update Type;"
     "UpdateCondition=updateCondition=Update Condition;TransferAccept=transferAccept;"
     "Description=description", " in Attribute A in Class C"},
    {"(Interaction (Name \"I\") %)", "interaction[0].", "Name=name;ID=identifier;"
     "Description=descriptor;SuperInteraction=parentIdentifier", " in Interaction I"},
    {"(Interaction (Name \"I\") (Parameter (Name \"P\") %))", "interaction[0].parameter[0].",
     "Name=name;DataType=datatype;Cardinality=cardinality;Accuracy=accuracy;"
     "AccuracyCondition=accuracyCondition=Accuracy Condition;Description=description",
     " in Parameter P in Interaction  I"},
    {"(ComplexDataType (Name \"D\") %)", "complex[0].", "Name=name", " in Complex Datatype D"},
    {"(ComplexDataType (Name \"D\") (ComplexComponent (FieldName \"F\") %))",
     "complex[0].component[0].", "FieldName=name=Field Name;DataType=datatype=Datatype;"
     "Cardinality=cardinality;Accuracy=accuracy;"
     "AccuracyCondition=accuracyCondition=Accuracy Condition",
     " in Complex Component F in Datatype D"},
    {"(EnumeratedDataType (Name \"D\") %)", "enumerated[0].", "Name=name",
     " in Enumerated Datatype D"},
    {"(EnumeratedDataType (Name \"D\") (Enumeration %))", "enumerated[0].enumerator[0].",
     "Enumerator=enum", " in Enumeration in Datatype D", true},
    {"(EnumeratedDataType (Name \"D\") (Enumeration %))", "enumerated[0].enumerator[0].",
     "Representation=number", " in Enumeration in Datatype D"},
    {"(Note %)", "note[0].", "NoteText=text;NoteNumber=number", " in Note"},
};
// clang-format on

TEST(OMTFileReaderTest, EachWordFillsItsFieldAndSaysWhatItLacks)
{
    for (const Words& kind : theWords)
        for (const DtString& word : DtString(kind.words).tokens(";"))
        {
            SCOPED_TRACE(kind.text(word.str()));
            const std::vector<DtString> names = word.sections('=');
            const std::string keyword = names[0].str();
            std::string other = keyword;  // keywords are compared exactly
            other.back() = static_cast<char>(other.back() ^ ('a' ^ 'A'));
            for (const std::string value : {" \"7\"", " 7", " 7 \"8\""})
            {
                const bool isRead = !kind.areStrings || value[1] == '"';
                EXPECT_EQ(added(kind.text(keyword + value), kind.text(other + value)),
                          isRead ? "." + kind.entry + names[1].str() + " = 7" : "");
            }
            const std::string& name = (names.size() < 3 ? names[0] : names[2]).str();
            EXPECT_EQ(failureOfModel(kind.text(keyword)),
                      kind.location ? "Badly formatted " + name + kind.location : "");
        }
}

TEST(OMTFileReaderTest, WhatHasNothingInItIsRefusedByTheNameSoFar)
{
    expectEach({"(Class) => Badly formatted Class", "(Interaction) => Badly formatted Interaction",
                "(EnumeratedDataType) => Badly formatted Enumerated Datatype",
                "(Class (Name C) (Attribute)) => Badly formatted Attribute in Class C",
                "(Class (Attribute) (Name C)) => Badly formatted Attribute in Class ",
                "(Class (Attribute (Name))) => Badly formatted Name in Attribute  in Class ",
                "(Interaction (Name I) (Parameter)) => Badly formatted Parameter in Interaction I",
                "(Interaction (Parameter (Name))) => "
                "Badly formatted Name in Parameter  in Interaction  ",
                "(ComplexDataType (Name D) (ComplexComponent)) => "
                "Badly formatted Complex Component in Datatype D",
                "(EnumeratedDataType (Name D) (Enumeration)) => "
                "Badly formatted Enumeration in Enumerated Datatype D",
                "(Class (Name C) 1 (Name)) (Class (Name)) (Note) => "
                "Badly formatted Name in Class "},
               failureOfModel);
    // Only a host can come to these.
    DtOMTFileReader reader;
    DtlObjPtr nothing;
    EXPECT_THROW(reader.processParameter(nothing), DtOMTReadException);
    EXPECT_EQ(reader.getLastError(), "Badly formatted Parameter");
    EXPECT_THROW(reader.processEnumeration(nothing), DtOMTReadException);
    EXPECT_EQ(reader.getLastError(), "Badly formatted Enumeration");
}

TEST(OMTFileReaderTest, WhatFilesOfTheTimeHold)
{
    EXPECT_THAT(dump(read("(Name \"POC\")")), testing::Not(testing::HasSubstr("POC[")));
    const Messages messages;
    expectEach(
        {R"((Name "\050a\"b\'\\c\q\051") => .name = (a"b'\c\q))",
         "(Purpose \"p\"[6, 7]) ; (Name \"q\")\r\n(Type\r\n\"a\r\n\") => "
         ".type = a\r; .purpose = p",
         "(Name \"A\") (MOMVersion) (Name) (Name N) ((Name) \"B\") => .name = A",
         std::string("(Name \"A\0B\") => .name = A\0B", 27),
         // A walk ends at what is no list, or an empty one.
         "(Name \"A\") word (Name \"B\") => .name = A", "(Name \"A\") () (Name \"B\") => .name = A",
         "(Note (NoteNumber 6) 5 (NoteNumber 7)) (Note (NoteNumber 8)) => "
         ".note[0].number = 6; .note[1].number = 8",
         "(POCFirstName \"A\") (POCFirstName B) => .POC[0].firstName = B",
         "(EnumeratedDataType (Enumeration (Enumerator Red) (Representation 1))) => "
         ".enumerated[0].enumerator[0].number = 1",
         "(Note (NoteNumber 9999999999)) (Note (NoteNumber -9999999999)) => "
         ".note[0].number = 1410065407; .note[1].number = -1410065407",
         "(Note (NoteNumber 4294967295)) => .note[0].number = -1"},
        [](const DtString& clauses) { return added(clauses.str(), "(Name)"); });
    EXPECT_EQ(messages.list(),
              std::vector<std::string>(
                  {"Warning: number 9999999999 is out of range and was read as 1410065407\n",
                   "Warning: number -9999999999 is out of range and was read as -1410065407\n"}));
}

/// The names of the parents, "-" for a root, of classes given as name, identifier, "<" and
/// identifier of the parent, such as "a1<0 b2<1"; then the warnings.
std::string parents(const DtString& links)
{
    static const std::regex theLink(R"((\w)(\S*)<(\S*))");
    static const std::regex theMissing(R"(\(\w+ \))");
    static const std::regex theParent(R"(\.(object|interaction)\[\d+\]\.parent = (\w+))");
    const std::string clauses =
        std::regex_replace(links.str(), theLink,
                           "(Class (Name $1)(ID $2)(SuperClass $3)) (Interaction (Name $1)(ID "
                           "$2)(SuperInteraction $3))");
    const Messages messages;
    std::map<std::string, std::string> result;  // of both hierarchies
    const TreePtr tree = read(std::regex_replace(clauses, theMissing, ""));
    std::smatch match;
    for (const DtString& line : DtString(dump(tree)).tokens("\n"))
        if (std::regex_match(line.str(), match, theParent))
            result[match[1]] += match.length(2) > 1 ? "-" : match[2].str();
    EXPECT_EQ(result["object"], result["interaction"]);
    for (const std::string& message : messages.list()) result["object"] += "; " + message;
    return result["object"];
}

TEST(OMTFileReaderTest, ClassesAreLinkedByAnyIdentifiers)
{
    const auto rings = [](const std::string& namesAndIdentifiers)
    {
        std::string result;
        for (const char* const root : {"ObjectRoot", "InteractionRoot"})
            for (std::size_t at = 0; at < namesAndIdentifiers.size(); at += 2)
                result += "; Warning: class \"" + namesAndIdentifiers.substr(at, 1) +
                          "\" with identifier " + namesAndIdentifiers.substr(at + 1, 1) +
                          " would be its own ancestor; it was put under \"" + root + "\"\n";
        return result;
    };
    expectEach(
        {"a1< b2<0 c3<9 d-4<1 e5<-4 => ---ad", "a< b<1 c0<0 => ---", "a1<2 b2<3 c3<0 => bc-",
         "a1<0 b2<2 c3<2 => --b" + rings("b2"), "a1<2 b2<1 c3<1 => b-a" + rings("b2"),
         "a3<1 b2<3 c1<2 => ca-" + rings("c1"), "a1<2 b3<4 c4<3 d2<1 => dc--" + rings("c4d2"),
         // Of an identifier that occurs again, the first class is meant.
         "a1<0 b1<1 c2<1 => -aa", "a1<2 b1<0 c2<1 => c--" + rings("c2")},
        parents);
    const TreePtr tree = read("(Class (Name A)) (Interaction (Name I))");
    const std::string before = dump(tree);
    DtOMTFileReader().buildObjectClassTree(tree.get());
    DtOMTFileReader().buildInteractionClassTree(tree.get());
    EXPECT_EQ(dump(tree), before) << "a tree that has roots is left alone";
}

TEST(OMTFileReaderTest, HandlesAreForConnectedHostsAndMayFail)
{
    static std::string asked;
    struct Host : DtOMTFileReader
    {
        void setAttributeHandles(DtObjectClassFedNode* node) override { fail(*node); }
        void setParameterHandles(DtInteractionClassFedNode* node) override { fail(*node); }
        static void fail(const DtFedNode& node) { throw asked += node.getFullName().str() + " "; }
    };
    const std::string theModel =
        "(Class (Name ObjectRoot)(ID 1)) (Class (Name B)(SuperClass 1)) (Interaction (Name I))";
    read(theModel, Host());
    EXPECT_EQ(asked, "");
    read(theModel, Host(), reinterpret_cast<DtExerciseConn*>(&asked));
    EXPECT_EQ(asked, "ObjectRoot.ObjectRoot ObjectRoot.ObjectRoot.B InteractionRoot.I ");
}

TEST(OMTFileReaderTest, BadFilesAreRefusedAndHarmNoOther)
{
    const TemporaryFolder folder;
    EXPECT_EQ(failure(folder.path() / "none"), "Failed to Open OMT File");
    EXPECT_EQ(failure(folder.path()), "Failed to Open OMT Input Stream");
    const std::string noTag = " => Could not find ObjectModel tag";
    const std::string bad = " => Badly formatted OMT file, line ";
    const std::string million(1000000, '(');
    expectEach(
        {" => OMT Input file is empty", " ; (ObjectModel (Name))\r\n; => OMT Input file is empty",
         "(OMDT 1) ObjectModel (objectmodel (Type)) ((ObjectModel (Name)))" + noTag,
         "(\"ObjectModel\" (Name \"A\"))" + noTag, "()" + noTag,
         "(ObjectModel) => Could not find ObjectModel tree",
         "(ObjectModel\n\n(Name \"A\"" + bad + "3: the list that begins here does not end",
         "(ObjectModel\n(Name \"A))" + bad + "2: the string that begins here does not end",
         "(OMDT 1))\n(ObjectModel (Name))" + bad + "1: a \")\" without its \"(\"",
         million + bad + "1: the list that begins here does not end",
         // Only lists that begin with the symbol count, and nothing after the first.
         "(DIF 1) \"\\\"(\" (ObjectModel (Name)" + million + std::string(1000000, ')') + ") )( => ",
         "(ObjectModel 1) => "},
        [](const DtString& text)
        {
            const std::string result = failureOf(text);
            EXPECT_EQ(read("(Name \"\\\"\")")->getName(), "\"");
            EXPECT_EQ(DtSexpReadEscapeChar, nullptr);
            return result;
        });
}

TEST(OMTFileReaderTest, AModelThatIsCutOrLacksAnOctetIsReadOrRefused)
{
    const Messages messages;
    std::string text = "(ObjectModel ";
    for (const Words& kind : theWords)
        text += kind.text(DtString(kind.words).sections('=')[0].str() + " \"7\\\"\\050\"") + "\n";
    text += "(Note (NoteNumber 6)))";
    EXPECT_EQ(failureOf(text), "");
    for (std::size_t length = 0; length < text.size(); ++length)
    {
        EXPECT_NE(failureOf(text.substr(0, length)), "") << length;
        // Any other exception would end the test.
        failureOf(text.substr(0, length) + text.substr(length + 1));
    }
}

}  // namespace
