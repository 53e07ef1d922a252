// SPDX-License-Identifier: Apache-2.0
// read() turns object model documents of any edition into one model and a list of findings.
#pragma once

#include "omt/model/model.h"

#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// A document in memory. The octets are not needed any more when reading has ended.
struct Document
{
    /// What findings call it.
    std::string name;
    std::string_view octets;
};

struct ReadOptions
{
    /// Merges the standard MIM of the newest edition among the documents, before all of them.
    ReadOptions& withMim(bool isWanted = true)
    {
        mim = isWanted;
        return *this;
    }

    bool mim = false;
    /// Larger documents are refused.
    std::size_t mostOctets = std::size_t{1} << 30;
};

/// What came of reading.
struct Reading
{
    Model model;
    /// In the order of the documents, then what concerns several of them.
    Findings findings;

    /// Whether every document could be read and nothing contradicts something else: no finding is
    /// an error.
    OMT_EXPORT bool isSound() const;
};

/// Reads files, "-" being standard input, and merges them in this order. Never throws for what a
/// file holds: a document that cannot be read is an error among the findings, and the others
/// follow.
OMT_EXPORT Reading read(const std::vector<std::string>& files, const ReadOptions& options = {});

/// The same for documents in memory.
OMT_EXPORT Reading readDocuments(const std::vector<Document>& documents,
                                 const ReadOptions& options = {});

/// One document as a model of its own, not merged and not checked against others; what is wrong
/// with it is added to the findings.
OMT_EXPORT Model readModule(const Document& document, Findings& findings,
                            const ReadOptions& options = {});

/// Documents as a model each, in their order and not merged; those that cannot be read are left
/// out. Where the options ask for the MIM, it is the first.
OMT_EXPORT std::vector<Model> readModules(const std::vector<Document>& documents,
                                          Findings& findings, const ReadOptions& options = {});

/// The standard MIM for these models, that of the newest edition among them, as a module that is
/// built in.
OMT_EXPORT Model readMim(const std::vector<Model>& models);

/// Merges models in this order, by the rules of IEEE 1516.2 for modules; every contradiction is
/// added to the findings. Takes time by the size of the models.
OMT_EXPORT Model merge(const std::vector<Model>& models, Findings& findings);

/// Adds a finding for every name that a model refers to and does not define, with the module or the
/// MIM that would help.
OMT_EXPORT void checkReferences(const Model& model, Findings& findings);

/// The text of the standard MIM of an edition, in XML: that of 2025, or that of 2010 for the
/// others.
OMT_EXPORT std::string_view standardMim(Edition edition);

}  // namespace omt
