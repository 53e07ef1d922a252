// SPDX-License-Identifier: Apache-2.0
// check() finds all that is wrong with a set of object models, by a table of rules.
#pragma once

#include "omt/model/read.h"

#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// One rule. Its name is that of the findings it makes, its severity theirs.
///
/// An error is what makes octets unreadable, a set contradict itself, or what the standard forbids
/// and a federate may refuse; a warning what the standard forbids and mostly works all the same; a
/// note what is worth knowing.
struct Rule
{
    std::string_view name;
    Severity severity = Severity::error;
    /// "document", "identification", "names", "classes", "2025", "datatypes", "enumerations",
    /// "arrays", "records", "variants", "tables", "merging", "layouts" or "lint".
    std::string_view group;
    /// What is found, half a sentence in the present tense.
    std::string_view sentence;
};

/// All rules, those that reading and merging follow included, by group.
OMT_EXPORT const std::vector<Rule>& rules();

/// Which rules are followed: all but the lints, and what is said here. Names are those of rules or
/// groups; for a rule that is named both ways, being disabled counts.
struct CheckOptions
{
    std::vector<std::string> enable;
    std::vector<std::string> disable;
};

/// Whether findings of this name are wanted. A name that is no rule's is.
OMT_EXPORT bool isEnabled(std::string_view rule, const CheckOptions& options);

/// All findings about models that are loaded together, in this order, but those of reading each.
/// The standard MIM that libomt carries is not looked at itself. Takes time by the size of the
/// models, whatever they hold. Throws std::invalid_argument for a name in the options that is
/// neither a rule nor a group.
OMT_EXPORT Findings check(const std::vector<Model>& modules, const CheckOptions& options = {});

/// The same for documents, with what reading finds. `reading` is as for read().
OMT_EXPORT Findings check(const std::vector<Document>& documents, const CheckOptions& options = {},
                          const ReadOptions& reading = {});

/// The order in which models are to be loaded: each after those that its modules name as
/// dependencies, else as given. Indices of `modules`.
OMT_EXPORT std::vector<std::size_t> dependencyOrder(const std::vector<Model>& modules);

}  // namespace omt
