// SPDX-License-Identifier: Apache-2.0
#include "writerLaws.h"

#include <algorithm>

namespace
{

/// Tells a writer only what it cannot know.
class Pieces : public omt::Visitor
{
public:
    explicit Pieces(omt::ValueWriter& writer) : myWriter(writer) {}

    void field(std::string_view name) override { myField = name; }
    void element() override { myField = {}; }
    // Of a variant record whose alternative is left out.
    void endRecord() override
    {
        if (myIsAfterNumber) myWriter.endRecord();
        myIsAfterNumber = false;
    }
    void beginArray(std::size_t count) override { myWriter.beginArray(count), forget(); }
    void endArray() override { forget(); }
    void integer(std::int64_t number, bool isUnsigned) override
    {
        myWriter.integer(number, isUnsigned), remember();
    }
    void label(std::string_view name, std::int64_t number) override
    {
        if (name.size() % 2 == 0)
            myWriter.integer(number);
        else
            myWriter.label(name, number);
        remember();
    }
    void number(double number) override { myWriter.number(number), forget(); }
    void text(std::string_view text) override { myWriter.text(text), forget(); }
    void octets(omt::Octets octets) override
    {
        // Padding and unknown alternatives have to be named.
        if (myField.data()) myWriter.field(myField);
        myWriter.octets(octets), forget();
    }

private:
    void forget()
    {
        myField = {};
        myIsAfterNumber = false;
    }
    void remember()
    {
        myField = {};
        myIsAfterNumber = true;
    }

    omt::ValueWriter& myWriter;
    std::string_view myField;
    bool myIsAfterNumber = false;
};

/// One call for two octets.
void call(omt::ValueWriter& writer, const omt::Type& type, unsigned what, unsigned with)
{
    const std::int64_t edges[] = {with,
                                  -1,
                                  INT64_MIN,
                                  INT64_MAX,
                                  std::int64_t{1} << with % 63,
                                  -(std::int64_t{1} << with % 63)};
    const std::int64_t number = edges[with % 8 < 6 ? with % 8 : 0];
    const std::string text(with % 16, static_cast<char>('A' + with % 3));
    switch (what % 16)
    {
        case 0:
            return writer.beginArray(with == 255 ? 1000000000 : with % 8);
        case 1:
            return writer.number(static_cast<double>(number) / (with % 2 + 1));
        case 2:
            return writer.number(static_cast<float>(number));
        case 3:
            return writer.text(text);
        case 4:
            return writer.octets(omt::Octets(text));
        case 5:
            return writer.endRecord();
        case 6:
            return writer.endArray();
        case 7:
            return writer.element();
        case 8:
            return writer.beginRecord();
        case 9:
            return writer.field("octets");
        case 10:
            if (type.partCount() > 0) writer.field(type.partName(with % type.partCount()));
            return;
        case 11:
            return writer.text(std::u16string(text.begin(), text.end()));
        case 12:
            return writer.integer(number, with % 2 == 0);
        default:
            return writer.integer(with);
    }
}

}  // namespace

std::string checkWriting(const omt::Type& type, const omt::Value& value, const std::string& json)
{
    // A visitor is told neither.
    for (const char* const what : {"\"rest\":", "{\"nan\":"})
        if (json.find(what) != std::string::npos) return "";
    omt::ValueWriter writer(type);
    Pieces pieces(writer);
    const omt::Octets octets = value.octets();
    for (omt::Visitor* const visitor :
         {static_cast<omt::Visitor*>(&writer), static_cast<omt::Visitor*>(&pieces)})
    {
        value.visit(*visitor);
        std::vector<std::uint8_t> again = {1, 2};
        if (const auto error = writer.finish(again))
            return "a value that is told is written: " + error->path + ": " + error->what;
        if (!std::equal(again.begin() + 2, again.end(), octets.begin(), octets.end()))
            return "a value that is told gives the same octets";
    }
    return "";
}

std::string checkCalls(const omt::Type& type, omt::Octets octets)
{
    constexpr std::size_t theMostCalls = 48;
    omt::ValueWriter writer(type);
    std::vector<std::pair<unsigned, unsigned>> taken;
    omt::Value value;
    for (std::size_t i = 0; i + 1 < octets.size() && i < 4 * theMostCalls; i += 2)
    {
        // A mistake ends a value, so that the calls before it are made again.
        taken.emplace_back(octets[i], octets[i + 1]);
        for (const auto& [what, with] : taken) call(writer, type, what, with);
        omt::Octets written;
        const auto error = writer.finish(written);
        if (error && (error->what.empty() || !written.empty()))
            return "a mistake has a reason and gives no octets";
        if (!error && (!type.decode(written, value) || value.left() > 0))
            return "what was written is a value";
        constexpr std::string_view theMissing = "is missing";
        const std::string_view what = error ? std::string_view(error->what) : theMissing;
        const bool isWrong = what.size() < theMissing.size() ||
                             what.substr(what.size() - theMissing.size()) != theMissing;
        if (isWrong || taken.size() > theMostCalls) taken.pop_back();
    }
    return "";
}
