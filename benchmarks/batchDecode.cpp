// SPDX-License-Identifier: Apache-2.0
// Recorded rows of CSV to rows of JSON with their values, beside a program written by hand for the
// members of the recording that prints the same text: on one thread, and on two.
#include "modelFiles.h"
#include "randomValues.h"
#include "ratio.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <thread>

namespace
{

using ratios::Maker;
using ratios::rprCodec;
using ratios::secondsOf;
using ratios::theRPR;

constexpr std::size_t theRows = 100000;
constexpr std::size_t theBlock = 1U << 20;
constexpr std::string_view theHeader = "time,event,kind,object,class,member,octets\n";

/// What a row of a layout says besides the time: as CSV from its kind to its member, and as JSON.
struct Member
{
    const char* csv;
    const char* name;
};
constexpr Member theMembers[] = {
    {",update,Tank 7,BaseEntity.PhysicalEntity,Spatial,",    "Spatial"           },
    {",update,Tank 7,BaseEntity.PhysicalEntity,EntityType,", "EntityType"        },
    {",update,Tank 7,BaseEntity.PhysicalEntity,Marking,",    "Marking"           },
    {",update,Cloud,EnvironmentProcess,EnvironmentRecData,", "EnvironmentRecData"},
};

template <typename Layout>
void appendOctets(const Layout& value, std::string& rows)
{
    std::uint8_t octets[8192];
    for (const std::uint8_t *one = octets, *end = value.encode(octets); one != end; ++one)
    {
        constexpr char theDigits[] = "0123456789abcdef";
        rows += theDigits[*one >> 4];
        rows += theDigits[*one & 0xF];
    }
}

/// Rows as an exercise has them: mostly where things are, now and then what they are.
std::string makeRows()
{
    Maker maker;
    byHand::Spatial spatial{};
    byHand::EntityType type{};
    byHand::Marking marking{};
    byHand::Environment environment{};
    std::string rows;
    for (std::size_t i = 0; i < theRows; ++i)
    {
        const std::size_t which = i % 10 < 6 ? 0 : i % 10 - 6;
        rows += std::to_string(static_cast<double>(i) / 100) + ',' + std::to_string(i);
        rows += theMembers[which].csv;
        if (which == 0) maker.make(spatial), appendOctets(spatial, rows);
        if (which == 1) maker.make(type), appendOctets(type, rows);
        if (which == 2) maker.make(marking), appendOctets(marking, rows);
        if (which == 3) maker.make(environment), appendOctets(environment, rows);
        rows += '\n';
    }
    return rows;
}

const std::string& rows()
{
    static const std::string theText = makeRows();
    return theText;
}

// By hand ----------------------------------------------------------------------------------------

constexpr std::array<std::uint8_t, 256> theDigits = []
{
    std::array<std::uint8_t, 256> digits{};
    digits.fill(0xFF);
    for (std::uint8_t i = 0; i < 10; ++i) digits['0' + i] = i;
    for (std::uint8_t i = 0; i < 6; ++i)
        digits['a' + i] = digits['A' + i] = static_cast<std::uint8_t>(10 + i);
    return digits;
}();

template <typename Layout>
char* writeValue(const std::uint8_t* octets, std::size_t size, char* out)
{
    Layout value{};
    return value.decode(octets, size) ? value.writeJson(out) : out;
}

char* copy(std::string_view text, char* out)
{
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

/// A text of JSON, of which nothing is to be escaped; no other stands in the recording.
char* quoted(std::string_view text, char* out)
{
    *out++ = '"';
    for (const char c : text)
    {
        if (c < 0x20 || c == '"' || c == '\\') std::abort();
        *out++ = c;
    }
    *out++ = '"';
    return out;
}

char* decodeRow(std::string_view line, char* out)
{
    constexpr std::string_view theKeys[] = {
        "{\"time\":",  ",\"event\":",  ",\"kind\":",  ",\"object\":",
        ",\"class\":", ",\"member\":", ",\"octets\":"};
    std::string_view cells[std::size(theKeys)];
    for (std::string_view& cell : cells)
    {
        const auto* const end =
            static_cast<const char*>(std::memchr(line.data(), ',', line.size()));
        cell = line.substr(0, end ? static_cast<std::size_t>(end - line.data()) : line.size());
        line.remove_prefix(std::min(cell.size() + 1, line.size()));
    }
    for (std::size_t i = 0; i < std::size(cells); ++i)
    {
        out = copy(theKeys[i], out);
        out = i < 2 ? copy(cells[i], out) : quoted(cells[i], out);
    }
    const std::string_view digits = cells[6];
    std::uint8_t octets[8192];
    std::size_t size = 0;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
    {
        const std::uint8_t high = theDigits[static_cast<unsigned char>(digits[at])];
        const std::uint8_t low = theDigits[static_cast<unsigned char>(digits[at + 1])];
        if ((high | low) > 15) std::abort();
        octets[size++] = static_cast<std::uint8_t>(high << 4 | low);
    }
    out = copy(",\"value\":", out);
    if (cells[5] == theMembers[0].name) out = writeValue<byHand::Spatial>(octets, size, out);
    if (cells[5] == theMembers[1].name) out = writeValue<byHand::EntityType>(octets, size, out);
    if (cells[5] == theMembers[2].name) out = writeValue<byHand::Marking>(octets, size, out);
    if (cells[5] == theMembers[3].name) out = writeValue<byHand::Environment>(octets, size, out);
    return copy("}\n", out);
}

void decodeByHand(std::string_view text, std::string& result)
{
    constexpr std::size_t theRoom = 16384;
    std::size_t size = 0;
    while (!text.empty())
    {
        const std::size_t end = text.find('\n');
        if (result.size() < size + theRoom) result.resize(2 * result.size() + theRoom);
        const char* const begin = result.data() + size;
        size +=
            static_cast<std::size_t>(decodeRow(text.substr(0, end), result.data() + size) - begin);
        text.remove_prefix(end + 1);
    }
    result.resize(size);
}

// Both -------------------------------------------------------------------------------------------

/// Blocks of whole lines, as they come from a file.
std::vector<std::string_view> blocks()
{
    std::vector<std::string_view> all;
    for (std::string_view rest = rows(); !rest.empty(); rest.remove_prefix(all.back().size()))
        all.push_back(rest.substr(0, rest.substr(0, theBlock).rfind('\n') + 1));
    return all;
}

omt::UpdateDecoder decoder()
{
    omt::UpdateDecoder one(rprCodec());
    std::string_view header = theHeader;
    std::string none;
    if (one.begin(header, none)) std::abort();
    return one;
}

/// Ends the program where the two do not print the same.
void compare()
{
    ratios::fillNames();
    std::string byHand;
    std::string ours;
    decodeByHand(blocks().front(), byHand);
    decoder().decode(blocks().front(), ours);
    if (byHand == ours) return;
    std::fprintf(stderr, "batch_decode: by hand\n%.600s\nand not\n%.600s\n", byHand.c_str(),
                 ours.c_str());
    std::exit(1);
}

double timeByHand()
{
    static const bool isCompared = (compare(), true);
    static_cast<void>(isCompared);
    return secondsOf(
        []
        {
            std::string result;
            for (const std::string_view block : blocks())
            {
                result.clear();
                decodeByHand(block, result);
            }
        });
}

/// Each thread takes every so manieth block.
template <std::size_t theJobs>
double decode()
{
    rows();
    const omt::UpdateDecoder one = decoder();
    return secondsOf(
        [&one]
        {
            const std::vector<std::string_view> all = blocks();
            const auto work = [&](std::size_t first)
            {
                omt::UpdateDecoder mine = one;
                std::string result;
                for (std::size_t i = first; i < all.size(); i += theJobs)
                {
                    result.clear();
                    mine.decode(all[i], result);
                }
            };
            std::vector<std::jthread> others;
            for (std::size_t i = 1; i < theJobs; ++i) others.emplace_back(work, i);
            work(0);
        });
}

}  // namespace

std::vector<ratios::Ratio> ratios::batchDecodeRatios()
{
    return {
        {"batch_decode",      timeByHand, decode<1>, theRPR},
        {"batch_decode_jobs", timeByHand, decode<2>, theRPR}
    };
}
