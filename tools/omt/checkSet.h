// SPDX-License-Identifier: Apache-2.0
// The models that omt check looks at together: files, a folder, or what omt.json names.
#pragma once

#include "omt/check/check.h"

#include <map>
#include <string>
#include <vector>

/// One file of a set.
struct CheckedFile
{
    /// As findings name it.
    std::string name;
    /// SHA-256 of what it holds, in hexadecimal.
    std::string hash;
    omt::Model model;
    /// What it holds.
    std::string content;
};

/// What is looked at together, and how.
struct CheckedSet
{
    /// In the order in which they are merged; those that could be read.
    std::vector<CheckedFile> files;
    /// What reading them found.
    omt::Findings findings;
    bool withMim = false;
    /// The baseline that omt.json names; empty where there is none.
    std::string baseline;
    /// Rules that omt.json turns on, and those that it turns off, for a reason.
    omt::CheckOptions rules;
};

/// Reads a set. An argument is a file, "-" for standard input, a folder, whose models are ordered
/// by their dependencies, or a file of JSON that names a set.
///
/// A file that cannot be read is an error among the findings. Throws InputError where a folder
/// holds no model, and where the JSON is none or names something that there is not.
CheckedSet readCheckedSet(const std::vector<std::string>& arguments);

/// What files hold, by their names.
using FileContents = std::map<std::string, std::string>;

/// The files that such arguments name, in the order in which they are merged. `withMim` becomes
/// true where a set asks for the standard MIM. Those of folders are read to find their order; what
/// they hold goes to `contents`, for who would read them again. Throws as above.
std::vector<std::string> filesOfSets(const std::vector<std::string>& arguments, bool& withMim,
                                     FileContents* contents = nullptr);
