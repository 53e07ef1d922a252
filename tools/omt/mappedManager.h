// SPDX-License-Identifier: Apache-2.0
// A datatype manager that is set up as the options of a subcommand say.
#pragma once

#include "omtReader/datatypeManager.h"

#include <CLI/CLI.hpp>

#include <string>

/// How values are shown and read.
struct ConversionChoice
{
    std::string mapFile;
    std::string delimiter;
    CLI::Option* mapOption = nullptr;
    CLI::Option* delimiterOption = nullptr;
    bool isUnpadded = false;
};

/// Adds --map, --no-padding and --delimiter to a subcommand.
void addConversionArguments(CLI::App& command, ConversionChoice& choice);

/// How many significant digits the texts of floating-point numbers have.
void setFloatPrecision(int digits);

/// The base of the managers of this tool.
class MappedManager : public DtDatatypeManager
{
public:
    /// Takes up a tree, which has to outlive this object, and the mappings. Throws InputError for a
    /// mapping file that cannot be read or is none; warns of entries that do nothing.
    void prepare(DtOMTTree& tree, const ConversionChoice& choice);

    bool processMappings(DtlObjPtr& mappings) override;

private:
    void readMappings(const std::string& file);
    void reportUnknownRepresentations(const std::string& file, const NameMap& before);

    std::string myFile;
    bool myHasMappings = false;
};
