// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlEdition.h"

#include <algorithm>
#include <charconv>

namespace omt
{

namespace
{

constexpr std::string_view theNamespace2010 = "http://standards.ieee.org/IEEE1516-2010";
constexpr std::string_view theNamespace2025 = "http://standards.ieee.org/IEEE1516-2025";

bool holds(std::string_view text, std::string_view piece)
{
    return text.find(piece) != std::string_view::npos;
}

/// What an edition without a namespace is written in, by words that only one of them has.
Edition editionByContent(std::string_view text)
{
    if (!holds(text, "<modelIdentification") && !holds(text, "<name")) return Edition::ieee2000;
    for (const std::string_view word :
         {"<referenceDataTypes", "<directedInteraction", "<valueRequired", "<inputDataTypes",
          "<logicalTime", "noteReferences="})
        if (holds(text, word)) return Edition::ieee2025;
    return Edition::ieee2010;
}

/// The year in a namespace, the last one; 0 where there is none.
unsigned yearIn(std::string_view namespaceName)
{
    unsigned year = 0;
    for (std::size_t at = namespaceName.find("20"); at != std::string_view::npos;
         at = namespaceName.find("20", at + 1))
    {
        const char* const digits = namespaceName.data() + at;
        const char* const end = digits + std::min<std::size_t>(4, namespaceName.size() - at);
        unsigned number = 0;
        if (std::from_chars(digits, end, number).ptr == digits + 4) year = number;
    }
    return year;
}

/// The edition nearest to a namespace that is none of an edition. One of 1516-2000 has no namespace
/// of its own and is known by its XML attributes.
Edition nearestEdition(std::string_view namespaceName, std::string_view text)
{
    const Edition edition = editionByContent(text);
    if (edition == Edition::ieee2000 && holds(text, " name=")) return edition;
    const unsigned year = yearIn(namespaceName);
    if (year == 0) return edition == Edition::ieee2000 ? Edition::ieee2010 : edition;
    return year < 2025 ? Edition::ieee2010 : Edition::ieee2025;
}

}  // namespace

DocumentEdition editionOfDocument(std::string_view namespaceName, std::string_view text)
{
    if (namespaceName == theNamespace2010) return {Edition::ieee2010};
    if (namespaceName == theNamespace2025) return {Edition::ieee2025};
    if (namespaceName.empty()) return {editionByContent(text)};
    return {nearestEdition(namespaceName, text), false};
}

}  // namespace omt
