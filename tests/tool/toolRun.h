// SPDX-License-Identifier: Apache-2.0
// Runs omt as a user does, in a folder of its own.
#pragma once

#include "support.h"

#include <string>
#include <string_view>

/// How a run of omt ended, and what it wrote.
struct Outcome
{
    int status;
    std::string out;
    std::string err;
};

/// A small model of HLA 1.3, "Old": classes Car and Crash, complex datatypes Place and Report.
extern const char* const theOldModel;

/// The base of tests that run omt in a temporary folder.
class ToolRun : public testing::Test
{
protected:
    void write(const std::string& name, std::string_view content) { myFolder.write(name, content); }
    /// A place in the temporary folder, and what a file there holds.
    std::filesystem::path path(const std::string& name) const { return myFolder.path() / name; }
    std::string content(const std::string& name) const;

    /// Runs omt in the temporary folder with arguments as a shell takes them.
    Outcome run(const std::string& arguments, const std::string& environment = "env -u RTI_CONFIG");

private:
    TemporaryFolder myFolder;
};
