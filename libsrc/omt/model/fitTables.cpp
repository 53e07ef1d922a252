// SPDX-License-Identifier: Apache-2.0
// Fits tables that differ between 1516-2010 and 1516-2025: time, switches, tags, references to
// instances, dimensions.
#include "omt/model/fitting.h"
#include "omt/model/schemaValues.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace omt
{

namespace
{

struct Renamed
{
    std::string_view in2010;
    std::string_view in2025;
};

/// Names that stand for the same; empty where the edition has no such thing.
constexpr Renamed theTimes[] = {
    {"timeStamp", "logicalTime"        },
    {"lookahead", "logicalTimeInterval"},
};

constexpr Renamed theTags[] = {
    {"updateReflectTag",         "updateReflectTag"        },
    {"sendReceiveTag",           "sendReceiveTag"          },
    {"deleteRemoveTag",          "deleteRemoveTag"         },
    {"divestitureRequestTag",    "divestitureRequestTag"   },
    {"divestitureCompletionTag", "divestitureCompletionTag"},
    {"acquisitionRequestTag",    "acquisitionRequestTag"   },
    {"requestUpdateTag",         "requestUpdateTag"        },
};

constexpr Renamed theSwitches[] = {
    {"autoProvide",                  "autoProvide"                 },
    {"conveyRegionDesignatorSets",   "conveyRegionDesignatorSets"  },
    {"conveyProducingFederate",      ""                            },
    {"attributeScopeAdvisory",       "attributeScopeAdvisory"      },
    {"attributeRelevanceAdvisory",   "attributeRelevanceAdvisory"  },
    {"objectClassRelevanceAdvisory", "objectClassRelevanceAdvisory"},
    {"interactionRelevanceAdvisory", "interactionRelevanceAdvisory"},
    {"serviceReporting",             "serviceReporting"            },
    {"exceptionReporting",           "exceptionReporting"          },
    {"delaySubscriptionEvaluation",  "delaySubscriptionEvaluation" },
    {"",                             "nonRegulatedGrant"           },
    {"automaticResignAction",        "automaticResignAction"       },
    {"",                             "allowRelaxedDDM"             },
    {"",                             "advisoriesUseKnownClass"     },
    {"",                             "sendServiceReportsToFile"    },
};

constexpr std::string_view theResignActions[] = {
    "UnconditionallyDivestAttributes",    "DeleteObjects",
    "CancelPendingOwnershipAcquisitions", "DeleteObjectsThenDivest",
    "CancelThenDeleteThenDivest",         "NoAction"};

}  // namespace

/// Puts a table of definitions that are named by their elements into the order of the schema, each
/// once, and loses what the edition does not have.
template <typename T, typename Rows>
void Fitting::fitNamed(std::vector<T>& table, const Rows& rows)
{
    std::vector<T> fitted;
    for (const Renamed& row : rows)
    {
        const std::string_view word = isNew() ? row.in2025 : row.in2010;
        if (word.empty()) continue;
        bool isThere = false;
        for (T& each : table)
        {
            const bool isMeant = each.name == row.in2010 || each.name == row.in2025;
            if (!each.name.isThere() || !isMeant) continue;
            if (!std::exchange(isThere, true))
            {
                fitted.push_back(each);
                fitted.back().name = text(word, each.name);
            }
            else
                lose(each, each.name, "the second " + describe(each, T::theKind));
            each.name = {};
        }
    }
    for (const T& each : table)
        if (each.name.isThere()) lose(each, each.name, describe(each, T::theKind));
    table = std::move(fitted);
}

void Fitting::fitTables()
{
    fitNamed(tables().times, theTimes);
    fitNamed(tables().tags, theTags);
    fitNamed(tables().switches, theSwitches);
    for (Switch& each : tables().switches) fitValue(each);
    fitDimensions();
    if (!isNew()) fitReferenceData();
}

/// A switch is on or off, but for the one that is an action.
void Fitting::fitValue(Switch& each)
{
    if (!each.value.isThere()) return;
    const Text before = each.value;
    if (each.name == "automaticResignAction")
    {
        const auto* const known =
            std::find(std::begin(theResignActions), std::end(theResignActions), before.view());
        if (known != std::end(theResignActions)) return;
        each.value = {};
    }
    else
    {
        const std::optional<std::string> value = accepted(before, ValueForm::boolean, myEdition);
        each.value = value ? text(*value, before) : Text();
    }
    if (!each.value.isThere())
        lose(each, before, "`" + before.str() + "` of " + describe(each, Kind::switchSetting));
}

/// 1516-2010 has one datatype for a dimension; 1516-2025 asks for what describes its use.
void Fitting::fitDimensions()
{
    for (Dimension& dimension : tables().dimensions)
    {
        if (!isNew() && dimension.dataTypes.size() > 1)
        {
            for (std::size_t i = 1; i < dimension.dataTypes.size(); ++i)
                lose(dimension, dimension.dataTypes[i],
                     "the datatype `" + dimension.dataTypes[i].str() + "` of " +
                         describe(dimension, Kind::dimension));
            dimension.dataTypes = List<Text>(dimension.dataTypes.begin(), 1);
        }
        if (!isNew()) continue;
        if (!dimension.dataTypes.isThere())
            dimension.dataTypes = List<Text>(myBuilder.list(std::vector<Text>(1)).begin(), 0);
        for (Text* const needed : {&dimension.inputDataDescription, &dimension.normalization,
                                   &dimension.outputDataSemantics})
            if (!needed->isThere()) *needed = myBuilder.text("");
    }
}

/// In 1516-2010 a reference is a value of its representation, which gets its name.
void Fitting::fitReferenceData()
{
    for (const ReferenceData& data : tables().referenceData)
    {
        lose(data, data.referenceClass,
             "the class `" + data.referenceClass.str() + "` and the attribute `" +
                 data.referencedAttribute.str() + "` of " + describe(data, Kind::referenceData));
        const Datatype represented = myModel.findDatatype(data.representation);
        if (const auto* const array = represented.as<ArrayData>())
        {
            ArrayData copy = *array;
            static_cast<Definition&>(copy) = data;
            if (data.semantics.isThere()) copy.semantics = data.semantics;
            tables().arrayData.push_back(copy);
            continue;
        }
        SimpleData copy;
        static_cast<Definition&>(copy) = data;
        copy.representation = data.representation;
        copy.semantics = data.semantics;
        tables().simpleData.push_back(copy);
    }
    tables().referenceData.clear();
}

}  // namespace omt
