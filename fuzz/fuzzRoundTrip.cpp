// SPDX-License-Identifier: Apache-2.0
// Any text as a value to encode, and any octets: decoded, encoded and decoded again.
// Without padding and empty parts the line stays the same.
//
// The first octet chooses, as valueModel.h says; its second bit that the rest is a text.
#include "valueChecks.h"
#include "valueModel.h"

#include <string_view>

namespace
{

using Octets = DtDatatypeManager::Octets;

constexpr std::size_t theMostOctets = 256;

Octets encode(DtDatatypeManager& manager, const DtString& datatype, const DtString& text)
{
    constexpr std::size_t theMostOfAPiece = 32;  // count, paddings and octets
    const std::size_t before = heldMemory();
    Octets octets;
    manager.getValueFromStringRep(datatype, text, octets);
    const std::size_t allowed = static_cast<std::size_t>(manager.nodeLimit()) + text.length();
    require(octets.size() <= theMostOfAPiece * allowed, "no more octets than pieces can have");
    requireMemory(before + 65536 + 2 * theMostOfAPiece * allowed);
    return octets;
}

/// The line of the value that the octets begin with; empty where they do not hold a whole one.
DtString lineOfWhole(DtDatatypeManager& manager, const DtString& datatype, Octets& octets)
{
    int consumed = 0;
    Value{manager, datatype, octets.data(), static_cast<int>(octets.size())}.line(consumed);
    if (consumed <= 0 || static_cast<std::size_t>(consumed) > octets.size()) return DtString();
    octets.resize(static_cast<std::size_t>(consumed));
    int again = 0;
    const DtString line = Value{manager, datatype, octets.data(), consumed}.line(again);
    return again == consumed ? line : DtString();
}

/// Whether a part has no text, which encodes to nothing.
bool hasEmptyPart(DtDatatypeManager& manager, const DtString& datatype, const Octets& octets)
{
    int consumed = 0;
    const std::unique_ptr<DtStringTree> tree =
        Value{manager, datatype, octets.data(), static_cast<int>(octets.size())}.tree(consumed);
    std::vector<const DtStringTree*> open{tree.get()};
    while (!open.empty())
    {
        const DtStringTree* const node = open.back();
        open.pop_back();
        if (!node) continue;
        if (!node->firstChild() && node->value().empty()) return true;
        open.insert(open.end(), {node->firstChild(), node->nextElement(), node->nextSibling()});
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    if (size == 0 || size > theMostOctets) return 0;
    DtDatatypeManager& manager = managerFor(data[0]);
    const std::size_t choice = datatypeFor(data[0]);
    const DtString datatype = theDatatypes[choice];
    const char* const rest = reinterpret_cast<const char*>(data + 1);
    Octets octets(rest, rest + size - 1);
    if (data[0] & 2) octets = encode(manager, datatype, std::string_view(rest, size - 1));

    const DtString line = lineOfWhole(manager, datatype, octets);
    Octets again = encode(manager, datatype, line);
    if (choice >= theExactCount || manager.isImplicitPaddingEnabled() || line.empty()) return 0;
    if (hasEmptyPart(manager, datatype, octets)) return 0;
    const std::size_t encoded = again.size();
    require(lineOfWhole(manager, datatype, again) == line, "the same line again");
    require(again.size() == encoded, "nothing is encoded that is not decoded");
    return 0;
}
