// SPDX-License-Identifier: Apache-2.0
// S-expressions: what is read, what is refused, and lists of any length and depth.
#include "sexp/dtcList.h"
#include "support.h"
#include "util/dtException.h"

#include <utility>

namespace
{

/// An object as text: numbers after "#", strings in quotes.
std::string print(const DtlObjPtr& object)
{
    const std::string& word = object->string().str();
    if (DtcStringp(object)) return std::string(1, '"').append(word).append(1, '"');
    if (object->kind() == DtlObj::Kind::fixnum) return std::string(1, '#').append(word);
    if (object->kind() == DtlObj::Kind::symbol) return word;
    std::string text(1, '(');
    for (DtlObjPtr list = object; DtcListp(list); list = DtcCdr(list))
        text.append(text.size() > 1 ? " " : "").append(print(DtcCar(list)));
    return text.append(1, ')');
}

/// All forms up to the end, or up to what is wrong.
std::string readAll(DtlInputStream& stream)
{
    DtSexpEnvironment environment;
    const DtlObjPtr eof = DtcIntern("eof", environment.env());
    std::string text;
    try
    {
        for (DtlObjPtr form; !DtcEq(form = DtcRead(stream, environment.env()), eof);)
            text += print(form) + "|";
    }
    catch (const DtException& exception)
    {
        text += exception.what();
    }
    return text;
}

std::string readText(const DtString& text)
{
    DtlStringInputStream stream(text.view());
    return readAll(stream);
}

DtlObjPtr readOne(std::string_view text, DtSexpEnvironment& environment)
{
    DtlStringInputStream stream(text);
    return DtcRead(stream, environment.env());
}

std::string times(std::size_t count, const std::string& text)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

}  // namespace

TEST(SexpTest, ReadsFormsAndNamesTheLineOfWhatIsNone)
{
    expectEach(
        {" => ", " \t\r\n; (only a comment => ", "(a b)(c) d => (a b)|(c)|d|",
         "(a(b\"c\"d)e) => (a (b \"c\" d) e)|", "(a ())() => (a ())|()|", "x;y\n;z\rw => x|w|",
         "([6, 09/10/1997 1.3 + - +- 1e3 don't) => ([6, 09/10/1997 1.3 + - +- 1e3 don't)|",
         "(7 -7 +7 007 7x) => (#7 #-7 #7 #7 7x)|",
         "99999999999999999999 -99999999999999999999 => "
         "#9223372036854775807|#-9223372036854775808|",
         "(\"a ;(\n)\" \"\") => (\"a ;(\n)\" \"\")|", "\"12\" => \"12\"|",
         "\x01\xFF\xC3\xA4(\x7F) => \x01\xFF\xC3\xA4|(\x7F)|",
         "(a)\n) => (a)|line 2: a \")\" without its \"(\"",
         "\n(a\n(b\n(c) => line 3: the list that begins here does not end",
         "(\"x\n\"\n\"y\n) => line 3: the string that begins here does not end"},
        readText);
    EXPECT_EQ(readText(std::string_view("a\0b (\"\0\")", 9)), std::string("a\0b|(\"\0\")|", 10));
}

TEST(SexpTest, EscapesHoldWhileTheirCharacterIsSet)
{
    DtSexpReadEscapeChar = nullptr;  // whatever was read before in this thread
    expectEach({R"("a\n" => "a\n"|)", R"("\" => "\"|)"}, readText);
    DtSexpReadEscapeChar = "\\";
    expectEach(
        {R"("\"\'\\n" => ""'\n"|)", "\"\\n\\r\\t\" => \"\n\r\t\"|",
         R"("\050\51x\1011" => "()xA1"|)", "\"\\0111\" => \"\t1\"|", R"("\400\8\x" => " 0\8\x"|)",
         R"(a\"" => a\|""|)", R"("\" => line 1: the string that begins here does not end)"},
        readText);
    DtSexpReadEscapeChar = "%";
    expectEach({R"("%"%%n\n" => ""%n\n"|)"}, readText);
    DtSexpReadEscapeChar = nullptr;
}

TEST(SexpTest, ListsTakeNoStack)
{
    DtSexpEnvironment environment;
    const std::pair<const char*, const char*> cases[] = {
        {"a ",  ""   },
        {"(",   ")"  },
        {"(a ", " b)"}
    };
    for (const auto& [before, after] : cases)
    {
        SCOPED_TRACE(before);
        const std::string head = std::string(1, '(').append(times(200000, before));
        const std::string tail = times(200000, after).append(1, ')');
        const DtlObjPtr list = readOne(head + "x" + tail, environment);
        EXPECT_TRUE(DtcEqual(list, readOne(head + "x" + tail, environment)));
        for (const char* other : {"y", "\"x\"", "()"})
            EXPECT_FALSE(DtcEqual(list, readOne(head + other + tail, environment)));
    }
    const DtlObjPtr symbol = DtcMakeSymbol("a");
    EXPECT_FALSE(DtcEq(symbol, DtcMakeSymbol("a")));
    EXPECT_TRUE(DtcEqual(symbol, DtcMakeSymbol("a")));
}

TEST(SexpTest, AccessorsTakeWhatTheyAreGiven)
{
    // Text and number of the first, second and third element.
    expectEach(
        {"(a \"12x\" -7) => a/0 12x/12 -7/-7 ",
         "(3000000000 \"3000000000\" 5x) => 3000000000/3000000000 3000000000/2147483647 5x/5 ",
         "(() (b)) => /0 /0 /0 ", "() => /0 /0 /0 ", "\"a\" => /0 /0 /0 "},
        [](const DtString& text)
        {
            DtSexpEnvironment environment;
            const DtlObjPtr form = readOne(text.view(), environment);
            std::string values;
            for (const DtlObjPtr& object : {DtcCar(form), DtcCadr(form), DtcCaddr(form)})
                values += object->string().str() + "/" + DtString(object->fixnum()).str() + " ";
            return values;
        });
}

TEST(SexpTest, FilesAreReadInPieces)
{
    const TemporaryFolder folder;
    const std::string name = folder.write("forms", times(50000, "(ab \"c\n\")") + ")");
    DtlFileInputStream file(std::fopen(name.c_str(), "r"));
    EXPECT_EQ(readAll(file),
              times(50000, "(ab \"c\n\")|") + "line 50001: a \")\" without its \"(\"");
}
