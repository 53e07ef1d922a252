// SPDX-License-Identifier: Apache-2.0
#include "namedRecords.h"

#include "entityTable.h"
#include "messages.h"
#include "modelInput.h"
#include "modelLists.h"
#include "omt/base/nearestNames.h"
#include "omtReader/entityTypeDatatypeRep.h"
#include "omtReader/latLongCoordinatesDatatypeRep.h"

#include <algorithm>
#include <memory>

namespace
{

/// What the representations below have in common.
class NamedRecord
{
public:
    virtual ~NamedRecord() = default;
    virtual std::vector<RecordPart> parts() const = 0;
};

/// Entity types under the name that their datatype has in a model.
class NamedEntityType final : public DtEntityTypeDatatypeRep, public NamedRecord
{
public:
    NamedEntityType(bool isAligned, std::unique_ptr<EntityTable> table,
                    const NamedRecordChoice& choice)
        : DtEntityTypeDatatypeRep(isAligned, table.get(), choice.entityDelimiter),
          myTable(std::move(table)),
          myDatatype(choice.entityDatatype)
    {
    }

    const char* datatype() const override { return myDatatype.c_str(); }
    std::vector<RecordPart> parts() const override
    {
        return {
            {0, ""},
            {1, ""},
            {2, ""},
            {4, ""},
            {5, ""},
            {6, ""},
            {7, ""}
        };
    }

private:
    const std::unique_ptr<EntityTable> myTable;
    const std::string myDatatype;
};

/// Positions under the name that their datatype has in a model.
class NamedPosition final : public DtLatLongCoordinateDatatypeRep, public NamedRecord
{
public:
    NamedPosition(bool isAligned, const NamedRecordChoice& choice)
        : DtLatLongCoordinateDatatypeRep(isAligned), myDatatype(choice.positionDatatype)
    {
    }

    const char* datatype() const override { return myDatatype.c_str(); }
    std::vector<RecordPart> parts() const override
    {
        return {
            {0,  "degree"},
            {8,  "degree"},
            {16, "metre" }
        };
    }

private:
    const std::string myDatatype;
};

/// How many octets a value of nothing but zeros has; 0 if it takes all that there are, as where the
/// mappings say nothing of a part.
int sizeOf(DtDatatypeManager& manager, const std::string& datatype)
{
    const HeldWarnings ignored;
    const DtDatatypeManager::Octets zeros(256);
    const auto length = static_cast<int>(zeros.size());
    int consumed = 0;
    manager.getStringRep(datatype, zeros.data(), length, consumed);
    return consumed < length ? std::max(consumed, 0) : 0;
}

std::string whyNotShown(DtDatatypeManager& manager, const std::string& datatype, int width)
{
    std::vector<std::string> names;
    for (const Datatype& one : datatypesOf(*manager.omtTree())) names.push_back(nameOf(one).str());
    if (std::find(names.begin(), names.end(), datatype) == names.end())
        return omt::unknownName("datatype", datatype, names);
    const int size = sizeOf(manager, datatype);
    if (size == 0 || size == width) return "";
    return "the size of " + datatype + " is " + std::to_string(size) + " and not " +
           std::to_string(width) + " octets";
}

/// Whether the model has a datatype of this size. One that the user named has to be there.
bool isThere(DtDatatypeManager& manager, const std::string& datatype, int width,
             const CLI::Option& option)
{
    const std::string why = whyNotShown(manager, datatype, width);
    if (why.empty()) return true;
    const std::string sentence = option.get_name() + ": " + why;
    if (option.count() > 0) throw InputError(sentence);
    DtWarn << sentence << "\n";
    return false;
}

}  // namespace

void addNamedRecordArguments(CLI::App& command, NamedRecordChoice& choice)
{
    choice.entityTableOption =
        command
            .add_option("--entity-types", choice.entityTable,
                        "Show entity types by the names of a table; see omt entity --help")
            ->type_name("CSV");
    command.add_option("--entity-delimiter", choice.entityDelimiter, "Between the names (\":\")")
        ->type_name("TEXT")
        ->needs(choice.entityTableOption);
    choice.entityDatatypeOption = command
                                      .add_option("--entity-type-datatype", choice.entityDatatype,
                                                  "The record of entity types (EntityTypeStruct)")
                                      ->type_name("NAME")
                                      ->needs(choice.entityTableOption);
    CLI::Option* const geodetic =
        command.add_flag("--geodetic", choice.isGeodetic,
                         "Show positions as latitude, longitude and height on WGS 84");
    choice.positionDatatypeOption = command
                                        .add_option("--position-datatype", choice.positionDatatype,
                                                    "The record of positions (WorldLocationStruct)")
                                        ->type_name("NAME")
                                        ->needs(geodetic);
}

void addNamedRecords(DtDatatypeManager& manager, const NamedRecordChoice& choice)
{
    constexpr int theEntityTypeWidth = 8;
    constexpr int thePositionWidth = 24;
    const bool isAligned = manager.isImplicitPaddingEnabled();
    if (*choice.entityTableOption)
    {
        auto table = std::make_unique<EntityTable>(choice.entityTable);
        if (isThere(manager, choice.entityDatatype, theEntityTypeWidth,
                    *choice.entityDatatypeOption))
            manager.addDefinedDatatypeRep(new NamedEntityType(isAligned, std::move(table), choice));
    }
    if (choice.isGeodetic &&
        isThere(manager, choice.positionDatatype, thePositionWidth, *choice.positionDatatypeOption))
        manager.addDefinedDatatypeRep(new NamedPosition(isAligned, choice));
}

std::vector<RecordPart> recordPartsOf(DtDatatypeManager& manager, const DtString& datatype)
{
    const auto* const record =
        dynamic_cast<const NamedRecord*>(manager.getSimpleDatatypeRep(datatype));
    return record ? record->parts() : std::vector<RecordPart>();
}
