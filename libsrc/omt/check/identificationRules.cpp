// SPDX-License-Identifier: Apache-2.0
// Rules on how a module names and dates itself, and on the documents that it refers to.
#include "omt/check/checkRun.h"

namespace omt
{

namespace
{

bool isOfXml(Edition edition)
{
    return edition == Edition::ieee2010 || edition == Edition::ieee2025;
}

/// What the OMT schemas of 2010 and 2025 require.
constexpr std::string_view theRequired[] = {
    "name", "type", "version", "modificationDate", "securityClassification", "description"};

void findMissing(CheckRun& run)
{
    run.eachModule(
        [&](const Module& module)
        {
            if (!isOfXml(module.edition)) return;
            const Identification& identification = module.identification;
            std::string missing;
            for (const Row& row : rowsOf(Kind::identification))
                if (row.oneText && textOf(identification, row).empty() &&
                    std::find(std::begin(theRequired), std::end(theRequired), row.key) !=
                        std::end(theRequired))
                    missing += (missing.empty() ? "" : ", ") + std::string(row.key);
            if (identification.contacts.empty())
                missing += (missing.empty() ? "" : ", ") + std::string("poc");
            if (!missing.empty())
                run.report(identification, identification.name,
                           "the identification of the model lacks " + missing);
        });
}

void findOddTypes(CheckRun& run)
{
    run.eachModule(
        [&](const Module& module)
        {
            const Text& type = module.identification.type;
            if (isOfXml(module.edition) && !type.empty() && type != "FOM" && type != "SOM")
                run.report(module.identification, type,
                           quoted(type) + " is no type of an object model: FOM or SOM");
        });
}

unsigned numberAt(std::string_view text, std::size_t at, std::size_t size)
{
    unsigned number = 0;
    for (const char c : text.substr(at, size))
        number = number * 10 + static_cast<unsigned>(c - '0');
    return number;
}

/// "2010-08-16": a day of the calendar.
bool isDate(std::string_view text)
{
    if (text.size() != 10) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (i == 4 || i == 7 ? text[i] != '-' : text[i] < '0' || text[i] > '9') return false;
    const unsigned year = numberAt(text, 0, 4);
    const unsigned month = numberAt(text, 5, 2);
    const unsigned day = numberAt(text, 8, 2);
    constexpr unsigned theDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = month == 2 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month >= 1 && month <= 12 && day >= 1 && day <= theDays[month - 1] + (isLeap ? 1 : 0);
}

void findOddDates(CheckRun& run)
{
    run.eachModule(
        [&](const Module& module)
        {
            const Text& date = module.identification.modificationDate;
            if (isOfXml(module.edition) && !date.empty() && !isDate(date))
                run.report(module.identification, date,
                           quoted(date) + " is no date such as 2010-08-16");
        });
}

/// What RFC 3986 and the addresses built on it have in no place.
bool isUri(std::string_view text)
{
    return text.find_first_of(" \t\r\n<>\"{}|\\^`") == std::string_view::npos;
}

void findOddReferences(CheckRun& run)
{
    run.eachModule(
        [&](const Module& module)
        {
            if (!isOfXml(module.edition)) return;
            for (const Reference& reference : module.identification.references)
                if (!isUri(reference.identification))
                    run.report(
                        reference, reference.identification,
                        quoted(reference.identification) + " is no address (URI) of a document");
        });
}

void findLonelyReferences(CheckRun& run)
{
    run.eachModule(
        [&](const Module& module)
        {
            if (!isOfXml(module.edition)) return;
            for (const Reference& reference : module.identification.references)
                if (saysSomething(reference.type.view()) !=
                    saysSomething(reference.identification.view()))
                    run.report(reference,
                               reference.type.isThere() ? reference.type : reference.identification,
                               saysSomething(reference.type.view())
                                   ? "a reference of the type " + quoted(reference.type) +
                                         " names no document"
                                   : "the reference to " + quoted(reference.identification) +
                                         " does not say of which type it is");
        });
}

constexpr Severity warning = Severity::warning;
constexpr std::string_view theGroup = "identification";

constexpr RuleRow theRules[] = {
    rule("incomplete-identification", warning, theGroup,
         "a module that lacks name, type, version, date, classification, description or contact",
         findMissing),
    rule("model-type", warning, theGroup, "a type of a model other than FOM and SOM", findOddTypes),
    rule("modification-date", Severity::error, theGroup, "a date that is none", findOddDates),
    rule("reference-uri", Severity::note, theGroup, "a reference that is no URI",
         findOddReferences),
    rule("incomplete-reference", warning, theGroup, "a reference without its type or its document",
         findLonelyReferences),
    rule("missing-dependency", Severity::note, theGroup,
         "a module that is named as a dependency and was not given"),
};

}  // namespace

std::span<const RuleRow> identificationRules()
{
    return theRules;
}

}  // namespace omt
