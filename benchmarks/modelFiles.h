// SPDX-License-Identifier: Apache-2.0
// Models that pieces of work read: published ones, and generated ones in files of their own.
#pragma once

#include "generatedModel.h"
#include "omtReader/omtTreePtr.h"

#include <filesystem>
#include <string>

namespace ratios
{

constexpr const char* theRPR = "evolved/RPR_FOM_v2.0_1516-2010.xml";

/// The smaller generated model takes about 5 ms to read; the larger one has ten times as much.
constexpr int theScale = 280;

/// The tree of an XML model. Ends the program where there is none.
DtOMTTreePtr readTree(const std::string& path);

/// A text in a file of its own, which goes with the process.
class ModelFile
{
public:
    /// The name has to be another for every file of the program.
    ModelFile(const std::string& name, const std::string& text);
    ModelFile(const ModelFile&) = delete;
    ModelFile& operator=(const ModelFile&) = delete;
    ~ModelFile();

    std::string path() const { return myPath.string(); }

private:
    std::filesystem::path myPath;
};

/// The path of a generated XML model, written at the first call with this scale.
std::string generatedPath(int scale);

}  // namespace ratios
