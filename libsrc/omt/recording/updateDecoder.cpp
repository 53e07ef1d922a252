// SPDX-License-Identifier: Apache-2.0
#include "omt/recording/updateDecoder.h"

#include "omt/base/jsonWriter.h"
#include "omt/base/nameHash.h"
#include "omt/codec/overlay.h"
#include "omt/recording/flatColumns.h"
#include "omt/recording/octetText.h"
#include "omt/recording/rowReader.h"

#include <algorithm>
#include <stdexcept>

namespace omt
{

namespace
{

/// What a row's class and member mean.
struct Target
{
    std::optional<Type> type;
    /// Why there is no type.
    std::string why;
    bool isWanted = true;
};

/// The most targets that are kept, whatever names a recording has.
constexpr std::size_t theMostTargets = 65536;

void writeFault(const Fault& fault, std::string& out)
{
    JsonWriter json(out);
    json.beginObject();
    json.property("what", fault.what);
    json.property("path", fault.path);
    json.property("offset", fault.offset);
    json.property("needed", fault.needed);
    json.property("left", fault.left);
    json.endObject();
}

void writeNotes(const std::vector<ValueNote>& notes, std::string& out)
{
    JsonWriter json(out);
    json.beginArray();
    for (const ValueNote& note : notes)
    {
        json.beginObject();
        json.property("what", note.what);
        json.property("path", note.path);
        json.property("offset", note.offset);
        json.endObject();
    }
    json.endArray();
}

/// A fault for what is wrong with a row as a whole.
Fault rowFault(std::string what)
{
    Fault fault;
    fault.what = std::move(what);
    return fault;
}

Fault leftFault(const Value& value)
{
    Fault fault = rowFault("octets are left over after the value");
    fault.offset = value.octets().size();
    fault.left = value.left();
    return fault;
}

}  // namespace

UpdateCounts& UpdateCounts::operator+=(const UpdateCounts& other)
{
    rows += other.rows;
    written += other.written;
    faults += other.faults;
    noted += other.noted;
    return *this;
}

struct UpdateDecoder::Parts
{
    Parts(const Codec& aCodec, UpdateOptions someOptions);
    Parts(const Parts& other);

    const Target& target(const Row& row);
    Target find(char kind, const std::string& path) const;
    bool isWanted(const std::string& path) const;
    void decode(std::string_view line, std::string& result);
    std::optional<Fault> decodeOctets(const Row& row, const Target& target);
    std::vector<Overlay> findOverlays() const;
    void writeJson(const std::optional<Fault>& fault, bool hasValue, std::string& result);
    void writeCsv(const std::optional<Fault>& fault, bool hasValue, std::string& result);

    const Codec codec;
    const UpdateOptions options;
    RowReader reader;
    std::optional<FlatColumns> columns;
    /// What UpdateOptions::member means.
    std::vector<const Member*> wanted;
    UpdateCounts counts;
    // Kept for their memory.
    Row row;
    std::string name;
    std::vector<std::uint8_t> octets;
    Value value;
    OwnNameMap<Target> targets;
};

UpdateDecoder::Parts::Parts(const Codec& aCodec, UpdateOptions someOptions)
    : codec(aCodec), options(std::move(someOptions)), reader(options.asCsv)
{
    if (options.member.empty())
    {
        if (options.asCsv) throw std::invalid_argument("CSV takes a member to have columns of");
        return;
    }
    const Type type = codec.member(options.member);
    for (const MemberUse& use : codec.model().findMembers(options.member))
        wanted.push_back(&use.member());
    if (!options.asCsv) return;
    columns = FlatColumns::of(type);
    if (!columns)
        throw std::invalid_argument(options.member + " comes to more than " +
                                    std::to_string(FlatColumns::theMost) + " columns");
}

UpdateDecoder::Parts::Parts(const Parts& other)
    : codec(other.codec),
      options(other.options),
      reader(other.reader),
      columns(other.columns),
      wanted(other.wanted)
{
}

UpdateDecoder::UpdateDecoder(const Codec& codec, UpdateOptions options)
    : myParts(std::make_unique<Parts>(codec, std::move(options)))
{
}

UpdateDecoder::UpdateDecoder(const UpdateDecoder& other)
    : myParts(std::make_unique<Parts>(*other.myParts))
{
}

UpdateDecoder::~UpdateDecoder() = default;

const UpdateCounts& UpdateDecoder::counts() const
{
    return myParts->counts;
}

std::optional<std::string> UpdateDecoder::begin(std::string_view& text, std::string& result)
{
    if (auto why = myParts->reader.begin(text)) return why;
    if (!myParts->columns) return std::nullopt;
    for (const std::string& name : myParts->reader.columns())
    {
        appendCell(name, ',', result);
        result += ',';
    }
    for (const std::string& name : myParts->columns->names())
    {
        appendCell(name, ',', result);
        result += ',';
    }
    result += "fault\n";
    return std::nullopt;
}

void UpdateDecoder::decode(std::string_view rows, std::string& result)
{
    while (!rows.empty())
    {
        const std::size_t end = std::min(rows.find('\n'), rows.size());
        std::string_view line = rows.substr(0, end);
        rows.remove_prefix(std::min(end + 1, rows.size()));
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (!line.empty()) myParts->decode(line, result);
    }
}

/// The type of a member; of an attribute ("a") or a parameter ("p") only, where the kind says so.
Target UpdateDecoder::Parts::find(char kind, const std::string& path) const
{
    Target target;
    try
    {
        target.type = kind == 'a'   ? codec.attribute(path)
                      : kind == 'p' ? codec.parameter(path)
                                    : codec.member(path);
    }
    catch (const UnknownName& unknown)
    {
        target.why = unknown.what();
    }
    target.isWanted = options.member.empty() || isWanted(path);
    return target;
}

/// Whether a path leads to the member that is wanted, of its class or of one below.
bool UpdateDecoder::Parts::isWanted(const std::string& path) const
{
    const std::vector<MemberUse> all = codec.model().findMembers(path);
    return std::any_of(
        all.begin(), all.end(),
        [this](const MemberUse& use)
        { return std::find(wanted.begin(), wanted.end(), &use.member()) != wanted.end(); });
}

const Target& UpdateDecoder::Parts::target(const Row& one)
{
    const char kind = one.kind == "update" ? 'a' : one.kind == "interaction" ? 'p' : 'm';
    name.assign(1, kind);
    if (!one.className.empty()) (name += one.className) += '.';
    name += one.member;
    const auto found = targets.find(name);
    if (found != targets.end()) return found->second;
    if (targets.size() == theMostTargets) targets.clear();
    return targets.emplace(name, find(kind, name.substr(1))).first->second;
}

std::optional<Fault> UpdateDecoder::Parts::decodeOctets(const Row& one, const Target& target)
{
    std::string why;
    if (!target.type) return rowFault(target.why);
    if (!readOctets(one.octets, octets, why)) return rowFault(std::move(why));
    target.type->decodeInPlace(octets, value);
    if (value.fault()) return value.fault();
    if (value.left() != 0) return leftFault(value);
    return std::nullopt;
}

void UpdateDecoder::Parts::decode(std::string_view line, std::string& result)
{
    reader.read(line, row);
    ++counts.rows;
    std::optional<Fault> fault;
    bool hasValue = false;
    if (!row.problem.empty())
        fault = rowFault(row.problem);
    else if (!row.member.empty())
    {
        const Target& one = target(row);
        if (!one.isWanted) return;
        fault = decodeOctets(row, one);
        hasValue = !fault;
    }
    else if (!options.member.empty())
        return;
    ++counts.written;
    counts.faults += fault.has_value();
    if (columns)
        writeCsv(fault, hasValue, result);
    else
        writeJson(fault, hasValue, result);
}

/// Those of the last value that are wanted.
std::vector<Overlay> UpdateDecoder::Parts::findOverlays() const
{
    if (!options.entities && !options.withGeodetics) return {};
    std::vector<Overlay> all = overlays(value, options.entities ? &*options.entities : nullptr);
    std::erase_if(all,
                  [this](const Overlay& one)
                  {
                      return one.kind == Overlay::Kind::entityType ? !options.entities
                             : one.kind == Overlay::Kind::geodetic ? !options.withGeodetics
                                                                   : false;
                  });
    return all;
}

void UpdateDecoder::Parts::writeJson(const std::optional<Fault>& fault, bool hasValue,
                                     std::string& result)
{
    result += row.json;
    const auto key = [&result](std::string_view text)
    {
        const std::size_t last = result.find_last_not_of(" \t");
        if (result[last] != '{') result += ',';
        result += text;
    };
    if (hasValue)
    {
        key("\"value\":");
        value.appendJson(result, options.json);
        if (!value.notes().empty())
        {
            ++counts.noted;
            key("\"notes\":");
            writeNotes(value.notes(), result);
        }
        const std::vector<Overlay> shown = findOverlays();
        if (!shown.empty())
        {
            key("\"overlays\":");
            appendJson(result, shown);
        }
    }
    if (fault)
    {
        key("\"fault\":");
        writeFault(*fault, result);
    }
    result += "}\n";
}

void UpdateDecoder::Parts::writeCsv(const std::optional<Fault>& fault, bool hasValue,
                                    std::string& result)
{
    for (std::size_t i = 0; i < row.cells.size(); ++i)
    {
        if (i != 0) result += ',';
        appendCell(row.cells[i], ',', result);
    }
    columns->append(hasValue ? value.root() : Item(), ',', result);
    result += ',';
    if (fault)
        appendCell(fault->path.empty() ? fault->what : fault->path + ": " + fault->what, ',',
                   result);
    counts.noted += hasValue && !value.notes().empty();
    result += '\n';
}

}  // namespace omt
