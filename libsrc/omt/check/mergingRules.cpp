// SPDX-License-Identifier: Apache-2.0
// Rules on modules that are loaded together; merging itself follows them.
#include "omt/check/checkRun.h"

namespace omt
{

namespace
{

constexpr std::string_view theGroup = "merging";

constexpr RuleRow theRules[] = {
    rule("conflict", Severity::error, theGroup,
         "two definitions of one name that differ in octets or behaviour"),
    rule("addition", Severity::error, theGroup,
         "something added to a definition that may not be added to"),
    rule("duplicate", Severity::warning, theGroup, "a definition that a document has twice"),
    rule("wording", Severity::warning, theGroup,
         "a basic data representation in other words, of the same octets"),
    rule("switch", Severity::warning, theGroup, "a switch that two modules set unlike"),
    rule(
        "note-label", Severity::warning, theGroup,
        "a label of a note that several modules have, referred to by a class that another defines"),
    rule("mixed-editions", Severity::note, theGroup, "modules of several editions"),
};

}  // namespace

std::span<const RuleRow> mergingRules()
{
    return theRules;
}

}  // namespace omt
