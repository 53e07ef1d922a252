// SPDX-License-Identifier: Apache-2.0
// Values to text and back: against a slow decoder, with random models, octets and settings; hostile
// models.
#include "modelText.h"
#include "referenceWalk.h"
#include "support.h"

#include <algorithm>
#include <random>
#include <sstream>

namespace
{

using Manager = DtDatatypeManager;
using Names = std::vector<std::string>;

/// A manager with the default representations and a model of its own.
struct Converter : Manager
{
    Converter(TreePtr ownModel, bool pads) : model(std::move(ownModel))
    {
        setImplicitPadding(pads);
        fillDefaultDatatypeRepList();
        initOMTData(model.get());
    }

    std::string encoded(const DtString& datatype, const DtString& text)
    {
        Octets out;
        getValueFromStringRep(datatype, text, out);
        return {out.begin(), out.end()};
    }

    TreePtr model;
};

/// A value at the end of a block of memory, a number of octets after an aligned address.
class Value
{
public:
    explicit Value(std::string_view octets, std::size_t shift = 0)
        : myBlock(new char[shift + octets.size()]),
          myData(myBlock.get() + shift),
          myLength(static_cast<int>(octets.size()))
    {
        std::copy(octets.begin(), octets.end(), myBlock.get() + shift);
    }

    const char* data() const { return myData; }
    int length() const { return myLength; }

    std::string line(Manager& manager, const DtString& datatype, int& consumed) const
    {
        return manager.getStringRep(datatype, myData, myLength, consumed).str();
    }
    std::unique_ptr<DtStringTree> tree(Manager& manager, const DtString& datatype,
                                       int& consumed) const
    {
        return std::unique_ptr<DtStringTree>(manager.createStringTreeRep(
            datatype, myData, myLength, consumed, nullptr, 0, nullptr, nullptr));
    }

private:
    std::unique_ptr<char[]> myBlock;
    const char* myData;
    int myLength;
};

std::string hexadecimal(const std::string& octets)
{
    std::ostringstream text;
    for (const char octet : octets) text << std::hex << (octet & 0xFF) << ' ';
    return text.str();
}

/// Makes everything up, the same for the same seed.
class Random
{
public:
    explicit Random(unsigned seed) : mySource(seed) {}

    std::size_t below(std::size_t end) { return mySource() % end; }
    bool isOneIn(std::size_t count) { return below(count) == 0; }
    const std::string& oneOf(const Names& list) { return list[below(list.size())]; }

    /// Small numbers more often than others, so that counts and discriminants fit.
    std::string octets(std::size_t length)
    {
        const std::size_t zeros = below(12);
        std::string result(length, '\0');
        for (char& octet : result)
            if (below(12) >= zeros) octet = static_cast<char>(below(isOneIn(2) ? 4 : 256));
        return result;
    }

    /// Declarations of datatypes that contain those before them.
    std::string model(const Names& reps)
    {
        std::string text =
            "enumerated E8 HLAoctet A=0 B=1 C=2 D=255;enumerated E16 HLAinteger16BE A=0 B=1 C=2;"
            "enumerated E32 HLAinteger32BE A=0 B=1 C=-1;enumerated E3 24bits A=0 B=1;";
        names = {"E8", "E16", "E32", "E3", "Nowhere"};
        for (int at = 0; at < 4; ++at) text += "simple " + add("S") + ' ' + oneOf(reps) + ';';
        for (int at = 0; at < 8; ++at)
            text += isOneIn(2) ? array(oneOf(names), anyForms) : isOneIn(2) ? variant() : record();
        return text;
    }

    /// The same of what gives the same line again. Characters stand in arrays only: one of value 0
    /// is no text, which next to another such field cannot be told from a delimiter.
    std::string encodableModel(const Names& reps)
    {
        std::string text = "simple Char char;enumerated E8 HLAoctet";
        for (int number = 0; number < 256; ++number)
            text += " N" + std::to_string(number) + '=' + std::to_string(number);
        names = {"E8"};
        for (int at = 0; at < 4; ++at) text += ";simple " + add("S") + ' ' + oneOf(reps);
        const std::string rest = oneOf(names);
        text += ';';
        for (int at = 0; at < 8; ++at)
        {
            const bool isRecord = isOneIn(2), isText = isOneIn(3), isBounded = isOneIn(3);
            const std::string element = isText ? "Char" : oneOf(names);
            const Names& forms = isBounded && !isText ? boundedForms : closedForms;
            text += isRecord ? record() : array(element, forms);
        }
        names.insert(names.end(), {"Rest", "Ended", "RestAtEnd"});
        return text + "array Rest " + rest +
               " HLAlengthlessVarArray -;array Ended Char "
               "HLAnullTerminatedArray -;fixed RestAtEnd f2:Ended f1:Rest;";
    }

    Names names;

private:
    const Names boundedForms = {"HLAfixedArray [0..2]", "HLAfixedArray [1..3]"};
    const Names closedForms = {"HLAfixedArray 0",
                               "HLAfixedArray 3",
                               "HLAvariableArray Dynamic",
                               "HLAvariableArray Dynamic",
                               "RPRpaddingTo32Array -",
                               "HLAbitArray -",
                               "Other 2"};
    const Names anyForms = {"HLAfixedArray 0",          "HLAfixedArray 3",
                            "HLAfixedArray 2,2",        "HLAfixedArray [0..2]",
                            "HLAfixedArray [1..3]",     "HLAvariableArray Dynamic",
                            "HLAvariableArray Dynamic", "HLAnullTerminatedArray -",
                            "HLAlengthlessVarArray -",  "HLAbitArray -",
                            "RPRpaddingTo32Array -"};

    const std::string& add(const std::string& letter)
    {
        return names.emplace_back(letter + std::to_string(names.size()));
    }
    std::string array(const std::string& element, const Names& forms)
    {
        const std::string end = ' ' + element + ' ' + oneOf(forms) + ';';
        return "array " + add("A") + end;
    }
    std::string record()
    {
        std::string fields;
        for (std::size_t at = below(5); at > 0; --at)
            fields += " f" + std::to_string(at) + ':' + oneOf(names);
        return "fixed " + add("R") + fields + ';';
    }
    std::string variant()
    {
        std::string components = " kind:" + oneOf(names);
        for (std::size_t at = below(4); at > 0; --at)
        {
            components += ' ' + oneOf({"A", "B", "C", "0", "1", "true"});
            components += ':' + oneOf(names);
        }
        return "variant " + add("V") + components + ';';
    }

    std::mt19937 mySource;
};

const Names theExactReps = {"byte",     "short",  "int",     "long",     "float",    "double",
                            "short-LE", "int-LE", "long-LE", "float-LE", "double-LE"};

/// Whether a part that has octets has no text, which is then encoded as nothing.
bool hasEmptyPart(DtOMTTree& model, const DtStringTree& node)
{
    const DtArrayDatatypeNode* const array = model.getArrayDatatypeNode(node.datatype());
    const int form = array ? array->getCardinalityType() : 0;
    constexpr int theZeroEnded = 4;
    if (!node.firstChild() && node.value().empty())
        return !(array && array->getEncoding() != "HLAvariableArray" && form != 7) &&
               !model.getFixedDatatypeNode(node.datatype());
    for (const DtStringTree* part = node.firstChild(); part;
         part = array ? part->nextElement() : part->nextSibling())
    {
        // The array writes the zero at its end.
        const bool isEnd =
            form == theZeroEnded && !part->nextElement() && part != node.firstChild();
        if (!isEnd && hasEmptyPart(model, *part)) return true;
    }
    return false;
}

/// Whether "long", which writes 32 bits only, could not write a number of this line.
bool hasLargeNumber(const std::string& line)
{
    constexpr char theDigits[] = "0123456789";
    for (std::size_t at = 0; (at = line.find_first_of(theDigits, at)) != std::string::npos;)
    {
        const std::size_t end = std::min(line.find_first_not_of(theDigits, at), line.size());
        if (end - at > 10 || std::stoull(line.substr(at, end - at)) > 2147483647) return true;
        at = end;
    }
    return false;
}

}  // namespace

TEST(WalkerTest, DecodesAsTheSlowWalk)
{
    const Messages messages;
    Names reps = theExactReps;
    for (const char* rep : {"char", "bool", "hex", "string", "utf8", "utf16", "unsigned-int",
                            "unsigned-long", "enum8", "enum16", "enum32", "---"})
        reps.push_back(rep);
    for (unsigned seed = 0; seed < 600 && !HasFailure(); ++seed)
    {
        Random random(seed);
        const std::string declarations = random.model(reps);
        Converter manager(modelOf(declarations), random.isOneIn(2));
        manager.setNodeLimit(500);
        const char* const open = random.isOneIn(3) ? "<" : "";
        manager.setArrayWrapper(open, ">");
        std::string settings = manager.isImplicitPaddingEnabled() ? "padding\n" : "";
        const auto set = [&](auto operation, const Names& names, const Names& values)
        {
            if (!random.isOneIn(8)) return;
            const std::string name = random.oneOf(names), value = random.oneOf(values);
            settings += name + " '" + value + "'\n";
            (manager.*operation)(name, value);
        };
        for (const std::string& name : random.names)
        {
            // Changed in between, so that nothing outdated may be used.
            set(&Manager::addRepMapping, {"E8", "E16", "E32", "E3"},
                {"byte", "int-LE", "unsigned-long", "hex", "utf8", "---"});
            set(&Manager::addAttributeMapping, {"f1", "f2", "A", random.names.back()}, reps);
            set(&Manager::addDelimiterMap, random.names, {",", "; ", ""});
            const std::string octets = random.octets(random.below(48));
            const Value value(octets, random.below(16));
            SCOPED_TRACE("seed " + std::to_string(seed) + '\n' + declarations + '\n' + settings +
                         name + ": " + hexadecimal(octets));
            const Decoded expected =
                decodeSlowly(manager, name, value.data(), value.length(), open, ">");
            int consumed = 0;
            const std::string line = value.line(manager, name, consumed);
            EXPECT_EQ(consumed, expected.lineConsumed);
            const std::string tree = shown(value.tree(manager, name, consumed).get());
            EXPECT_EQ(consumed, expected.treeConsumed);
            if (expected.tree == theTooMany) continue;
            EXPECT_EQ(line, expected.line);
            EXPECT_EQ(tree, expected.tree);
            if (HasFailure()) return;  // one is enough to read
        }
    }
}

TEST(WalkerTest, EncodesWhatItDecodes)
{
    const Messages messages;
    const Names theDelimiters = {" ", ",", "; ", "|"};
    int count = 0;
    for (unsigned seed = 0; seed < 600 && !HasFailure(); ++seed)
    {
        Random random(seed);
        const std::string declarations = random.encodableModel(theExactReps);
        Converter manager(modelOf(declarations), false);
        manager.setNodeLimit(500);
        manager.setDefaultDelimiter(random.oneOf(theDelimiters));
        for (const std::string& name : random.names)
            if (random.isOneIn(4)) manager.addDelimiterMap(name, random.oneOf(theDelimiters));
        for (const std::string& name : random.names)
        {
            std::string octets = random.octets(random.below(64));
            // As characters they could be taken for brackets and delimiters.
            for (char& octet : octets)
                if (std::string_view("[] ,;|").find(octet) != std::string_view::npos) octet = 'x';
            int consumed = 0, consumedAgain = 0;
            Value(octets).line(manager, name, consumed);
            if (consumed <= 0 || consumed > static_cast<int>(octets.size())) continue;
            octets.resize(static_cast<std::size_t>(consumed));
            const std::string line = Value(octets).line(manager, name, consumedAgain);
            if (consumed != consumedAgain || line.empty() || hasLargeNumber(line)) continue;
            if (hasEmptyPart(*manager.model, *Value(octets).tree(manager, name, consumed)))
                continue;
            ++count;
            const std::string encoded = manager.encoded(name, line);
            SCOPED_TRACE("seed " + std::to_string(seed) + '\n' + declarations + '\n' + name + ": " +
                         hexadecimal(octets) + "\ngave " + hexadecimal(encoded));
            EXPECT_EQ(Value(encoded).line(manager, name, consumed), line);
            EXPECT_EQ(consumed, static_cast<int>(encoded.size()));
        }
    }
    EXPECT_GT(count, 3000);
}

TEST(WalkerTest, EncodesWhatPeopleWrite)
{
    const std::string theBase =
        "simple B byte;simple I int;simple C char;array V B HLAvariableArray "
        "Dynamic;array T C HLAnullTerminatedArray -;array P B HLAfixedArray 2;fixed R a:B v:V b:I;"
        "enumerated E HLAinteger16BE Low=1 High=258;variant W k:E Low:B;fixed D a:C b:C c:B;"
        "enumerated F HLAinteger32BE High=66051;fixed X a:B w:W b:B;";
    Converter manager(modelOf(theBase), true);
    manager.setArrayWrapper("{", "}");
    expectEach({"T HELLO => 48 45 4c 4c 4f 0 ", "T H[I] => 48 49 ", "P 1[2[3]] => 1 2 ",
                "F High => 3 2 1 0 ", "V {1[2]} => 0 0 0 2 1 2 ", "R 1  2 => 1 0 0 0 2 ",
                "R {1 {2[3]} 4} => 1 0 0 0 2 2 3 0 0 0 4 ", "R 1 => 1 ", "R  => ",
                "R 1 2[3] 4 5 => 1 0 0 0 2 2 3 0 0 0 4 ", "R 1 x => 1 0 0 0 1 0 ", "E High => 2 1 ",
                "E 258 => ", "W Low 1 => ", "X 1 Low 2 3 => 1 3 ", "X 1 High 3 => 1 3 ",
                "D   7 => 7 ", "D    7 => 20 7 ", "D     7 => 20 20 7 "},
               [&](const DtString& input)
               {
                   // What is there already stays; nothing is aligned.
                   std::vector<char> out = {'\xFF'};
                   manager.getValueFromStringRep(input.view().substr(0, 1), input.view().substr(2),
                                                 out);
                   EXPECT_EQ(out.at(0), '\xFF');
                   return hexadecimal({out.begin() + 1, out.end()});
               });
}

TEST(WalkerTest, DecodesAndEncodesComplexDatatypes)
{
    const std::string theBase = "simple B byte;enumerated Kind HLAoctet One=1 Two=2;complex C ";
    // Components, octets, line and how much was consumed.
    expectEach({"a:B:3|01 02 03 => 1[2[3]]|3", "a:B:3|01 02 => 1[2[0]]|-1",
                "a:B:1-3 b:B:1|01 02 03 04 => 1[2[3]] 4|4", "a:B:0+|01 02 03 => 1[2[3]]|3",
                "a:B:1 b:B:0-1 c:B:0+|01 02 => 1 2|2", "a:B:1+| => 0|-1",
                "k:Kind:1 a:B:0-1_(k_=_2) b:B:1|02 05 06 => Two 5 6|3",
                "k:Kind:1 a:B:0-1_(k_=_2) b:B:1|01 05 => One 5|2",
                "k:Kind:1 a:B:(k_=_Two) b:B:1|02 05 06 => Two 5 6|3",
                "k:Kind:1 a:B:(k_=_Two) b:B:1|01 06 => One 6|2",
                "n:B:1 a:B:0+_(n) b:B:1|02 05 06 07 => 2 5[6] 7|4",
                "n:B:1 a:B:0+_(n) b:B:1|00 07 => 0 7|2",
                "a:B:1 p:B:%8 b:B:1|01 00 00 00 00 00 00 00 02 => 1 2|9 1 2 "},
               [&](const DtString& input)
               {
                   Converter manager(modelOf(theBase + input.sections('|')[0].str() + ';'), false);
                   const std::vector<char> given = octets(input.sections('|')[1].view());
                   const std::string value(given.begin(), given.end());
                   int consumed = 0;
                   const std::string line = Value(value).line(manager, "C", consumed);
                   const std::string again = consumed > 0 ? manager.encoded("C", line) : value;
                   // Padding components are not written.
                   const std::string other = again == value ? "" : ' ' + hexadecimal(again);
                   return line + '|' + std::to_string(consumed) + other;
               });
}

TEST(WalkerTest, StopsAtItsBoundsAndSaysSoOnce)
{
    std::string theLevels = "fixed L40;";
    for (int level = 39; level >= 0; --level)
    {
        const std::string next = ":L" + std::to_string(level + 1);
        theLevels += "fixed L" + std::to_string(level) + " a" + next + " b" + next + ';';
    }
    const std::string theCount = "\x7F\xFF\xFF\xFF";
    // A record whose second field finds nothing left has shown all octets and taken none.
    const std::string theLost = "simple T nowhere;simple K byte;fixed Lost a:T b:T;";
    const auto repeated = [](int times, const std::string& text)
    {
        std::string all;
        while (times-- > 0) all += text;
        return all;
    };
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    struct
    {
        const char* datatype;
        std::string declarations;
        std::string octets;
        bool isStopped;
    } const theCases[] = {
        {"Itself", "fixed Itself a:Itself;", "\1", true},
        {"EachOther", "fixed EachOther a:Back;fixed Back a:EachOther;", "\1", true},
        {"OwnKind", "variant OwnKind a:OwnKind;", "\1", true},
        {"Elements", "array Elements Elements HLAfixedArray 2;", "\1", true},
        {"Rest", "array Rest Rest HLAlengthlessVarArray -;", "\1", true},
        {"Nothings", "fixed R;array Nothings R HLAvariableArray Dynamic;", theCount + "\1\1", true},
        {"NoTexts", "simple T utf8;array NoTexts T HLAvariableArray Dynamic;",
         theCount + std::string(1 << 18, 'a') + '\xE4', true},
        {"L0", theLevels, "\1", true},
        {"Kinds", "simple K byte;variant V kind:K;array Kinds V HLAvariableArray Dynamic;",
         theCount + std::string(30'000, '\1'), true},  // two nodes for each octet
        {"Opens", theLost + "array Open Lost HLAlengthlessVarArray -;"
                            "array Opens Open HLAvariableArray Dynamic;",
         theCount + std::string(500, '\1'), true},
        {"Choices", theLost + "variant C kind:K 1:Lost;array Choices C HLAvariableArray Dynamic;",
         theCount + std::string(500, '\1'), true},
        {"Alternatives", theLost + "variant A kind:K" + repeated(1000, " other:K") +
                         ";array Alternatives A HLAvariableArray Dynamic;",
         theCount + std::string(10'000, '\1'), true},
        {"Conditions", "simple B byte;complex Conditions" + repeated(1000, " here:B:1") +
                       repeated(1000, " there:B:0-1_(missing_=_1)") + ';',
         std::string(1000, '\1'), true},
        {"CircleOfMaps", "simple a b;simple b a;fixed CircleOfMaps x:a;", "\1\2", false},
    };
    // clang-format on
    for (const auto& each : theCases)
        for (const bool pads : {false, true})
        {
            SCOPED_TRACE(each.datatype);
            SCOPED_TRACE(pads);
            Converter manager(modelOf(each.declarations), pads);
            manager.setNodeLimit(20000);
            const auto decode = [&](bool asLine)
            {
                const Messages messages;
                int consumed = 0;
                const Value value(each.octets);
                if (asLine)
                    EXPECT_LT(value.line(manager, each.datatype, consumed).size(),
                              200'000 + 100 * each.octets.size());
                else
                    value.tree(manager, each.datatype, consumed);
                EXPECT_EQ(consumed < 0, each.isStopped);
                EXPECT_EQ(std::count_if(messages.list().begin(), messages.list().end(),
                                        [](const std::string& text)
                                        { return text.rfind("Stopped at", 0) == 0; }),
                          each.isStopped ? 1 : 0);
            };
            decode(true);
            decode(false);
            const Messages messages;
            manager.encoded(each.datatype, "1 2 3[4]");
        }
}

TEST(WalkerTest, TakesNullAtEveryDoor)
{
    const Messages messages;
    Converter manager(modelOf("simple B byte;fixed R a:B b:B;array V B HLAfixedArray 2;"
                              "variant W k:B 0:B;complex C a:B:1;"),
                      true);
    DtStringTree parent;
    for (const auto walk :
         {&DtDatatypeManager::createFixedTreeRep, &DtDatatypeManager::createArrayTreeRep,
          &DtDatatypeManager::createVariantTreeRep, &DtDatatypeManager::createComplexTreeRep,
          &DtDatatypeManager::createDefinedTreeRep})
        for (const char* datatype : {"R", "V", "W", "C", "B"})
        {
            int consumed = 0;
            (manager.*walk)(datatype, nullptr, 8, consumed, &parent, &parent, 0, nullptr);
            EXPECT_EQ(consumed, 0) << datatype;
            (manager.*walk)(datatype, "\1\1\1", 3, consumed, nullptr, nullptr, 0, nullptr);
            EXPECT_EQ(consumed, -1) << datatype << " without a node";
        }
    EXPECT_EQ(parent.firstChild(), nullptr);
}
