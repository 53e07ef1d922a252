// SPDX-License-Identifier: Apache-2.0
// Rules on dimensions, update rates, switches, tags, times and notes.
#include "omt/check/checkRun.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace omt
{

namespace
{

std::optional<std::uint64_t> wholeNumber(std::string_view text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

void findOddBounds(CheckRun& run)
{
    run.each(&Tables::dimensions,
             [&](const Dimension& dimension)
             {
                 const Text& bound = dimension.upperBound;
                 if (saysSomething(bound.view()) && wholeNumber(bound).value_or(0) == 0)
                     run.report(dimension, bound,
                                "the upper bound of " + called(dimension) + " is " + quoted(bound) +
                                    ", and has to be a number from 1");
             });
}

void findOddInputs(CheckRun& run)
{
    run.each(&Tables::dimensions,
             [&](const Dimension& dimension)
             {
                 for (const Text& name : dimension.dataTypes)
                 {
                     const Datatype datatype = run.model().findDatatype(name);
                     if (datatype && datatype.kind() != Kind::simpleData &&
                         datatype.kind() != Kind::enumeratedData)
                         run.report(dimension, name,
                                    called(dimension) + " is along " + quoted(name) +
                                        ", which is neither simple nor enumerated");
                 }
             });
}

/// How many names a normalization such as "linearEnumerated (Level, [Low, High])" lists; none for
/// another one.
std::optional<std::size_t> levels(std::string_view normalization)
{
    const std::size_t open = normalization.find('[');
    const std::size_t close = normalization.find(']', open == std::string_view::npos ? 0 : open);
    if (!normalization.starts_with("linearEnumerated") || open == std::string_view::npos ||
        close == std::string_view::npos || close == open + 1)
        return std::nullopt;
    const std::string_view list = normalization.substr(open, close - open);
    return 1 + static_cast<std::size_t>(std::count(list.begin(), list.end(), ','));
}

void findLostLevels(CheckRun& run)
{
    run.each(&Tables::dimensions,
             [&](const Dimension& dimension)
             {
                 const auto bound = wholeNumber(dimension.upperBound);
                 const auto count = levels(dimension.normalization);
                 if (bound && count && *bound < *count)
                     run.report(dimension, dimension.upperBound,
                                called(dimension) + " has the upper bound " +
                                    dimension.upperBound.str() + ", and a normalization of " +
                                    std::to_string(*count) + " levels");
             });
}

/// "Excluded", "7", "[7)" or "[0..7)".
bool isDimensionValue(std::string_view text)
{
    if (text == "Excluded" || wholeNumber(text)) return true;
    if (text.size() < 3 || text.front() != '[' || text.back() != ')') return false;
    text = text.substr(1, text.size() - 2);
    const std::size_t dots = text.find("..");
    if (dots == std::string_view::npos) return wholeNumber(text).has_value();
    return wholeNumber(text.substr(0, dots)) && wholeNumber(text.substr(dots + 2));
}

void findOddValues(CheckRun& run)
{
    run.each(&Tables::dimensions,
             [&](const Dimension& dimension)
             {
                 if (saysSomething(dimension.value.view()) && !isDimensionValue(dimension.value))
                     run.report(dimension, dimension.value,
                                "the value of " + called(dimension) + " is " +
                                    quoted(dimension.value) +
                                    ", and may be Excluded, a number, [N) or [N..M)");
             });
}

void findOddRates(CheckRun& run)
{
    run.each(&Tables::updateRates,
             [&](const UpdateRate& rate)
             {
                 double number = 0;
                 const std::string_view text = rate.rate;
                 const auto [end, error] =
                     std::from_chars(text.data(), text.data() + text.size(), number);
                 if (error != std::errc() || end != text.data() + text.size() || !(number > 0))
                     run.report(
                         rate, rate.rate,
                         called(rate) + " is " + quoted(text) + ", and has to be a number above 0");
             });
}

/// The rows that a table of a fixed number has, by edition.
constexpr std::string_view theTags[] = {
    "updateReflectTag",         "sendReceiveTag",        "deleteRemoveTag", "divestitureRequestTag",
    "divestitureCompletionTag", "acquisitionRequestTag", "requestUpdateTag"};
constexpr std::string_view theTimes2010[] = {"timeStamp", "lookahead"};
constexpr std::string_view theTimes2025[] = {"logicalTime", "logicalTimeInterval"};
constexpr std::string_view theSwitches[] = {"autoProvide",
                                            "conveyRegionDesignatorSets",
                                            "attributeScopeAdvisory",
                                            "attributeRelevanceAdvisory",
                                            "objectClassRelevanceAdvisory",
                                            "interactionRelevanceAdvisory",
                                            "serviceReporting",
                                            "exceptionReporting",
                                            "delaySubscriptionEvaluation",
                                            "automaticResignAction"};
constexpr std::string_view theSwitches2010[] = {"conveyProducingFederate"};
constexpr std::string_view theSwitches2025[] = {
    "nonRegulatedGrant", "allowRelaxedDDM", "advisoriesUseKnownClass", "sendServiceReportsToFile"};

bool isIn(std::span<const std::string_view> words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

void findUnknownRows(CheckRun& run)
{
    run.eachWritten(
        [&](const auto& definition)
        {
            using T = std::decay_t<decltype(definition)>;
            const Edition edition = run.edition(definition);
            const bool is2025 = edition == Edition::ieee2025;
            if (!is2025 && edition != Edition::ieee2010) return;
            const std::string_view name = definition.name;
            bool isKnown = true;
            if constexpr (std::is_same_v<T, Tag>) isKnown = isIn(theTags, name);
            if constexpr (std::is_same_v<T, Time>)
                isKnown = is2025 ? isIn(theTimes2025, name) : isIn(theTimes2010, name);
            if constexpr (std::is_same_v<T, Switch>)
                isKnown = isIn(theSwitches, name) ||
                          (is2025 ? isIn(theSwitches2025, name) : isIn(theSwitches2010, name));
            if (!isKnown)
                run.report(definition, definition.name,
                           quoted(name) + " is no " + std::string(nameOf(T::theKind)) + " of " +
                               std::string(nameOf(edition)));
        });
}

constexpr std::string_view theStates[] = {"true", "false", "1", "0"};
constexpr std::string_view theStates2000[] = {"Enabled", "Disabled"};
constexpr std::string_view theActions[] = {
    "UnconditionallyDivestAttributes",    "DeleteObjects",
    "CancelPendingOwnershipAcquisitions", "DeleteObjectsThenDivest",
    "CancelThenDeleteThenDivest",         "NoAction"};

void findOddStates(CheckRun& run)
{
    run.eachWritten(
        [&](const auto& definition)
        {
            if constexpr (std::is_same_v<std::decay_t<decltype(definition)>, Switch>)
            {
                const bool isAction = definition.name == "automaticResignAction";
                const bool is2000 = run.edition(definition) == Edition::ieee2000;
                const std::string_view state = definition.value;
                if (isAction ? isIn(theActions, state)
                             : isIn(is2000 ? std::span<const std::string_view>(theStates2000)
                                           : std::span<const std::string_view>(theStates),
                                    state))
                    return;
                run.report(definition, definition.value,
                           called(definition) + " is " +
                               (state.empty() ? "not set" : quoted(state)) +
                               (isAction ? ", and may be an action such as NoAction"
                                : is2000 ? ", and may be Enabled or Disabled"
                                         : ", and may be true or false"));
            }
        });
}

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr std::string_view theGroup = "tables";

constexpr RuleRow theRules[] = {
    rule("dimension-bound", error, theGroup,
         "an upper bound of a dimension that is no number from 1", findOddBounds),
    rule("dimension-input", warning, theGroup,
         "a dimension along a datatype that is neither simple nor enumerated", findOddInputs),
    rule("dimension-levels", warning, theGroup, "a dimension with more levels than its upper bound",
         findLostLevels),
    rule("dimension-value", error, theGroup, "a default of a dimension that is no range",
         findOddValues),
    rule("update-rate", error, theGroup, "an update rate that is no number above 0", findOddRates),
    rule("unknown-row", error, theGroup, "a tag, time or switch that the edition does not have",
         findUnknownRows),
    rule("switch-state", error, theGroup, "a state that a switch does not have", findOddStates),
    rule("unknown-note", warning, theGroup, "a note that is nowhere"),
};

}  // namespace

std::span<const RuleRow> tableRules()
{
    return theRules;
}

}  // namespace omt
