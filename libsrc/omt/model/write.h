// SPDX-License-Identifier: Apache-2.0
// writeXml() turns a model into an XML document of IEEE 1516-2010 or 1516-2025.
#pragma once

#include "omt/model/model.h"

#include <cstdint>
#include <string>
#include <vector>

namespace omt
{

struct WriteOptions
{
    /// Writes what the model says even where the schema of the edition would refuse it: nothing is
    /// repaired, converted or left out. For one module, in the edition that it was read in.
    WriteOptions& asRead(bool isWanted = true)
    {
        isAsRead = isWanted;
        return *this;
    }

    /// Gives the origin of each line that is written.
    WriteOptions& withOrigins(bool isWanted = true)
    {
        hasOrigins = isWanted;
        return *this;
    }

    bool isAsRead = false;
    bool hasOrigins = false;
};

/// Where a line of a written document was read.
struct LineOrigin
{
    /// An index of Model::modules().
    std::uint32_t module = 0;
    /// From 1; 0 for a line that no document has.
    std::uint32_t line = 0;
};

/// What came of writing.
struct Writing
{
    /// The document in UTF-8, lines ending in LF.
    std::string text;
    /// What is lost, and what was made because the edition asks for it: a name, a label, a date.
    /// Each with the place that it was read from.
    Findings findings;
    /// For each line of the text, where it was wanted, the origin of the element that it begins.
    std::vector<LineOrigin> origins = {};
};

/// Writes all modules of a model as one document that the DIF schema of the edition, 2010 or 2025,
/// accepts. Tables, definitions and properties stand in the order of the schema; comments, notes
/// and what no property knows stand with the definition that they came with. The same model gives
/// the same octets. Throws std::invalid_argument for another edition.
OMT_EXPORT Writing writeXml(const Model& model, Edition edition, const WriteOptions& options = {});

}  // namespace omt
