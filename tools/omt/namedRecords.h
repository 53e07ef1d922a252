// SPDX-License-Identifier: Apache-2.0
// Records that are shown as a whole: entity types by their names, positions in degrees.
#pragma once

#include "omtReader/datatypeManager.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// Which records are shown as a whole, and what their datatypes are called.
struct NamedRecordChoice
{
    std::string entityTable;
    std::string entityDelimiter = ":";
    std::string entityDatatype = "EntityTypeStruct";
    bool isGeodetic = false;
    std::string positionDatatype = "WorldLocationStruct";
    CLI::Option* entityTableOption = nullptr;
    CLI::Option* entityDatatypeOption = nullptr;
    CLI::Option* positionDatatypeOption = nullptr;
};

/// Adds --entity-types, --geodetic and what belongs to them to a subcommand.
void addNamedRecordArguments(CLI::App& command, NamedRecordChoice& choice);

/// Registers the representations with a manager that has its model and its mappings. Throws
/// InputError for a table that cannot be read, and for a datatype that the user named and that the
/// model has not, or in another size; warns of one that goes without saying.
void addNamedRecords(DtDatatypeManager& manager, const NamedRecordChoice& choice);

/// One part of a record that is shown as a whole.
struct RecordPart
{
    unsigned int octet;  // of the record, at which it begins
    const char* units;
};

/// The parts of the records of a datatype, in the order of their nodes; none for a datatype that is
/// not shown as a whole.
std::vector<RecordPart> recordPartsOf(DtDatatypeManager& manager, const DtString& datatype);
