// SPDX-License-Identifier: Apache-2.0
#include "omt/model/read.h"

#include "omt/base/inputFile.h"
#include "omt/base/textEncoding.h"
#include "omt/model/modelBuilder.h"
#include "omt/model/moduleCheck.h"
#include "omt/model/omt13Reader.h"
#include "omt/model/standardMim.h"
#include "omt/model/xmlReader.h"

#include <algorithm>
#include <utility>

namespace omt
{

namespace
{

constexpr std::string_view theMimName = "standard MIM";

/// Octets that begin documents of other kinds, and what to say of them.
struct OtherKind
{
    std::string_view begins;
    std::string_view text;
};

constexpr OtherKind theOtherKinds[] = {
    {"\x1F\x8B",       "is compressed with gzip; decompress it first"},
    {"PK\x03\x04",     "is a ZIP archive; unpack it first"           },
    {"%PDF",           "is a PDF document, no object model"          },
    {"(FED",
     "is a FED file, which has neither datatypes nor descriptions; the OMT file of the "
     "model is read"                                                 },
    {"<!DOCTYPE html", "is an HTML page, no object model"            },
    {"<!doctype html", "is an HTML page, no object model"            },
    {"<html",          "is an HTML page, no object model"            },
    {"<HTML",          "is an HTML page, no object model"            },
};

std::string_view withoutBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n\f");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// Why a document is none that can be read, or nothing.
std::string_view otherKind(std::string_view octets)
{
    const std::string_view text = withoutBlanks(octets);
    if (octets.empty()) return "is empty";
    if (text.empty()) return "holds nothing but blanks";
    for (const OtherKind& kind : theOtherKinds)
        if (text.substr(0, kind.begins.size()) == kind.begins) return kind.text;
    return {};
}

void refuse(const std::string& name, const char* finding, std::string text, Findings& findings)
{
    findings.push_back({
        Severity::error, finding, std::move(text), {name, 0, 0}
    });
}

/// Which text a document has, and by which reader it goes.
bool readText(const Document& document, std::string_view text, ModelBuilder& builder,
              Findings& findings)
{
    const std::string_view begin = withoutBlanks(text);
    if (!begin.empty() && begin.front() == '<')
        return XmlReader(document.name, text, builder, findings).read();
    if (looksLike13(begin)) return read13(document.name, text, builder, findings);
    refuse(document.name, "no-object-model",
           "is no object model: it begins neither as XML nor as HLA 1.3", findings);
    return false;
}

Reading combine(const std::vector<Model>& models, Findings findings)
{
    Reading reading;
    reading.findings = std::move(findings);
    if (models.empty()) return reading;
    reading.model = merge(models, reading.findings);
    checkReferences(reading.model, reading.findings);
    return reading;
}

}  // namespace

bool Reading::isSound() const
{
    return std::none_of(findings.begin(), findings.end(),
                        [](const Finding& finding) { return finding.severity == Severity::error; });
}

std::string_view standardMim(Edition edition)
{
    const bool is2025 = edition == Edition::ieee2025;
    const unsigned char* const octets = is2025 ? omtStandardMim2025 : omtStandardMim2010;
    const std::int32_t length = is2025 ? omtStandardMim2025_len : omtStandardMim2010_len;
    return {reinterpret_cast<const char*>(octets), static_cast<std::size_t>(length)};
}

Model readModule(const Document& document, Findings& findings, const ReadOptions& options)
{
    std::string_view fault;
    if (document.octets.size() > options.mostOctets)
        fault = "is larger than what was asked to be read";
    else
        fault = otherKind(document.octets);
    DecodedText decoded;
    if (fault.empty())
    {
        decodeText(document.octets, decoded);
        fault = decoded.fault.empty() ? otherKind(decoded.text) : decoded.fault;
    }
    if (!fault.empty())
    {
        refuse(document.name, "no-object-model", std::string(fault), findings);
        return {};
    }
    ModelBuilder builder;
    if (!readText(document, decoded.text, builder, findings)) return {};
    builder.tables().modules.front().isBuiltIn = document.name == theMimName;
    Model model = builder.build();
    checkModule(model, findings);
    return model;
}

std::vector<Model> readModules(const std::vector<Document>& documents, Findings& findings,
                               const ReadOptions& options)
{
    std::vector<Model> models;
    for (const Document& document : documents)
    {
        Model model = readModule(document, findings, options);
        if (!model.modules().empty()) models.push_back(std::move(model));
    }
    if (options.mim) models.insert(models.begin(), readMim(models));
    return models;
}

Model readMim(const std::vector<Model>& models)
{
    Edition newest = Edition::ieee2010;
    for (const Model& model : models) newest = std::max(newest, model.edition());
    Findings ignored;
    return readModule({std::string(theMimName), standardMim(newest)}, ignored);
}

Reading readDocuments(const std::vector<Document>& documents, const ReadOptions& options)
{
    Findings findings;
    const std::vector<Model> models = readModules(documents, findings, options);
    return combine(models, std::move(findings));
}

Reading read(const std::vector<std::string>& files, const ReadOptions& options)
{
    Findings findings;
    std::vector<Model> models;
    for (const std::string& name : files)
    {
        const InputFile file = readWhole(name, options.mostOctets);
        if (!file.fault.empty())
        {
            refuse(name, "unreadable", file.fault, findings);
            continue;
        }
        Model model = readModule({name, file.octets}, findings, options);
        if (!model.modules().empty()) models.push_back(std::move(model));
    }
    if (options.mim) models.insert(models.begin(), readMim(models));
    return combine(models, std::move(findings));
}

}  // namespace omt
