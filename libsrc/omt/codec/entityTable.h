// SPDX-License-Identifier: Apache-2.0
// EntityTable names entity types: seven numbers each, out of a table of codes and names.
#pragma once

#include "omt/base/finding.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// Kind, domain, country, category, subcategory, specific and extra of an entity type as DIS has
/// them: 0 to 255 each, the country 0 to 65535.
struct OMT_EXPORT EntityCodes
{
    /// Stands for any number.
    static constexpr std::int32_t theOpen = -1;
    static constexpr std::size_t theLevels = 7;

    std::array<std::int32_t, theLevels> levels = {theOpen, theOpen, theOpen, theOpen,
                                                  theOpen, theOpen, theOpen};

    std::int32_t operator[](std::size_t level) const { return levels[level]; }
    std::int32_t& operator[](std::size_t level) { return levels[level]; }
    /// Whether a level is open.
    bool isOpen() const;
    /// Whether both have the same number wherever neither is open.
    bool matches(const EntityCodes& other) const;
    /// The numbers with ":" between them, "any" for an open one.
    std::string text() const;

    /// Reads up to seven numbers with ":", "." or blanks between them; "*", "any" and -1 are open,
    /// and so is each that is missing. For any other text nothing, and why in `complaint`.
    static std::optional<EntityCodes> read(std::string_view text, std::string& complaint);
};

/// "Kind" for level 0, up to "Extra" for level 6; the largest number of a level.
OMT_EXPORT std::string_view entityLevelName(std::size_t level);
OMT_EXPORT std::int32_t entityLevelLimit(std::size_t level);

struct EntityTableReading;

/// The names of entity types. Immutable; copies share everything, and threads may.
class OMT_EXPORT EntityTable
{
public:
    /// The table names all levels but the extra one.
    static constexpr std::size_t theNamedLevels = 6;

    struct Row
    {
        /// The extra level is open.
        EntityCodes codes;
        /// Of an open level "Any"; may be empty.
        std::array<std::string_view, theNamedLevels> names;
    };

    /// An empty table.
    EntityTable();

    /// Reads a header and rows of twelve columns with commas between them: code and name of kind,
    /// domain, country, category, subcategory, specific. An empty code is open. Nothing is quoted:
    /// a comma in a name ends it. Rows without a name are left out, and of two rows with the same
    /// codes the later one counts. Findings: an error where this is no such table, which then is
    /// empty; a warning for each kind of mistake in rows, at the first one. A row with a code that
    /// is none is left out.
    static EntityTableReading read(std::string_view text, const std::string& file);
    /// The same from a file, "-" being standard input.
    static EntityTableReading readFile(const std::string& file);

    /// The row that says most of an entity type: one that is open at a level only where none has
    /// its number, earlier levels first, and at each level where the codes are. Null where no row
    /// matches; valid as long as a copy of the table. Takes about the same time for any table.
    const Row* find(const EntityCodes& codes) const;
    /// All rows that match codes of which some are open, in the order of rows().
    std::vector<const Row*> findAll(const EntityCodes& codes) const;
    /// In the order of the codes, open ones first.
    const std::vector<Row>& rows() const;
    /// The first name that the table has for a country; empty where it has none.
    std::string_view country(std::int32_t code) const;

private:
    friend class EntityTableReader;
    struct Contents;
    std::shared_ptr<const Contents> myContents;
};

/// What came of reading a table.
struct EntityTableReading
{
    EntityTable table;
    Findings findings;
};

}  // namespace omt
