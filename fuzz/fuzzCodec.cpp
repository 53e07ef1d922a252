// SPDX-License-Identifier: Apache-2.0
// A model, two zero octets, and octets: every datatype of the model decodes them and reads them as
// JSON, and obeys the laws of codecs. A first octet "h" has hints in between as well.
#include "codecLaws.h"
#include "omt/omt.h"
#include "writerLaws.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr std::string_view theSeparator("\0\0", 2);

void require(const std::string& broken, std::string_view type)
{
    if (broken.empty()) return;
    std::fprintf(stderr, "broken: %s, by %.*s\n", broken.c_str(), static_cast<int>(type.size()),
                 type.data());
    std::abort();
}

std::string_view takePart(std::string_view& octets)
{
    const std::size_t end = std::min(octets.find(theSeparator), octets.size());
    const std::string_view part = octets.substr(0, end);
    octets.remove_prefix(std::min(octets.size(), end + theSeparator.size()));
    return part;
}

std::vector<std::string> namesOf(const omt::Model& model)
{
    constexpr std::size_t theMost = 24;
    std::vector<std::string> names;
    const auto add = [&names](const auto& table)
    {
        for (const auto& data : table)
            if (names.size() < theMost) names.push_back(data.name.str());
    };
    const omt::Tables& tables = model.tables();
    add(tables.variantRecords), add(tables.fixedRecords), add(tables.complexRecords);
    add(tables.arrayData), add(tables.enumeratedData), add(tables.simpleData),
        add(tables.basicData);
    return names;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    omt::CodecOptions options;
    const bool hasHints = !rest.empty() && rest.front() == 'h';
    if (hasHints) rest.remove_prefix(1);
    const std::string_view document = takePart(rest);
    if (hasHints) options.hints = omt::readHints(takePart(rest), "hints").hints;
    options.isPaddedFromStart = hasHints && !rest.empty() && rest.front() == 'p';
    const std::vector<omt::Document> documents = {
        {"model", document}
    };
    const omt::Model model = omt::readDocuments(documents).model;
    const omt::Codec codec(model, options);
    // A copy of just this size lets a sanitizer see the end.
    const std::vector<std::uint8_t> octets(rest.begin(), rest.end());
    // Arrow has names of C, which end at a zero octet.
    const bool hasColumns = document.find('\0') == std::string_view::npos;
    CodecLaws laws;
    for (const std::string& name : namesOf(model))
    {
        const std::optional<omt::Type> type = codec.findType(name);
        if (!type) continue;
        require(laws.check(*type, octets), name);
        if (hasColumns) require(laws.checkColumns(*type, octets), name);
        require(laws.checkCuts(*type, octets, false), name);
        require(laws.checkText(*type, rest), name);
        require(checkCalls(*type, octets), name);
    }
    return 0;
}
