// SPDX-License-Identifier: Apache-2.0
// Rules on documents as such: what they are, and what no edition knows in them.
#include "omt/check/checkRun.h"

namespace omt
{

namespace
{

void findUnknownAttributes(CheckRun& run)
{
    run.eachWritten(
        [&](const auto& definition)
        {
            for (const Aside& aside : definition.asides)
                if (aside.what == Aside::What::attribute &&
                    aside.name.view().find(':') == std::string_view::npos)
                    run.report(
                        definition, aside.name,
                        quoted(aside.name) + " is no XML attribute of " +
                            std::string(nameOf(std::decay_t<decltype(definition)>::theKind)) +
                            "; it is kept as it is");
        });
}

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr Severity note = Severity::note;
constexpr std::string_view theGroup = "document";

constexpr RuleRow theRules[] = {
    rule("unreadable", error, theGroup, "a file that is not there or cannot be read"),
    rule("no-object-model", error, theGroup, "a document that is no object model"),
    rule("not-well-formed", error, theGroup, "XML, or HLA 1.3, that is not well-formed"),
    rule("prefixes", error, theGroup, "more prefixes of namespaces than can be meant"),
    rule("doctype", note, theGroup, "a document type, which is not looked at"),
    rule("unknown-namespace", warning, theGroup, "a namespace that is none of an edition"),
    rule("unknown-entity", warning, theGroup, "an entity that nothing in the document explains"),
    rule("other-edition", warning, theGroup, "an element that only another edition has"),
    rule("unknown-element", warning, theGroup, "an element that no edition has there"),
    rule("unknown-attribute", warning, theGroup, "an XML attribute that no edition has there",
         findUnknownAttributes),
    rule("element-order", warning, theGroup, "an element after one that it has to precede"),
    rule("repeated-property", warning, theGroup, "a property that is there twice"),
    rule("repeated-section", warning, theGroup, "a table that is there twice"),
    rule("stray-text", warning, theGroup, "text where none belongs"),
    rule("outside", warning, theGroup, "something of HLA 1.3 outside of the object model"),
    rule("unknown-clause", warning, theGroup, "a clause that HLA 1.3 does not have there"),
    rule("odd-clause", warning, theGroup,
         "a clause of HLA 1.3 of another shape than it should have"),
    rule("class-ring", warning, theGroup, "classes of HLA 1.3 that are each other's parents"),
};

}  // namespace

std::span<const RuleRow> documentRules()
{
    return theRules;
}

}  // namespace omt
