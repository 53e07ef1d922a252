// SPDX-License-Identifier: Apache-2.0
#include "modelReport.h"

#include "classTree.h"
#include "datatypeTables.h"
#include "modelCounts.h"
#include "modelInput.h"
#include "modelLists.h"
#include "omtReader/boolAttrNode.h"
#include "omtReader/descriptionNode.h"
#include "omtReader/dimensionNode.h"
#include "omtReader/noteNode.h"
#include "omtReader/synchroNode.h"
#include "omtReader/tagNode.h"
#include "omtReader/timeRepNode.h"
#include "omtReader/updateRateNode.h"
#include "plainText.h"
#include "tableSection.h"

#include <algorithm>

namespace
{

using Tree = DtOMTTree;
using Row = std::vector<std::string>;

std::string contactText(const DtOMTTreePOC& contact)
{
    std::vector<std::string> name;
    for (const DtString& part : {contact.honorificName, contact.firstName, contact.lastName})
        if (!part.empty()) name.push_back(part.str());
    std::vector<std::string> parts;
    for (const std::string& part :
         {joined(name, " "), contact.orgName.str(), contact.phone.str(), contact.email.str()})
        if (!part.empty()) parts.push_back(part);
    const std::string text = joined(parts, ", ");
    return contact.type.empty() || text.empty() ? contact.type.str() + text
                                                : contact.type.str() + ": " + text;
}

/// A model merged from modules has no name of its own, only references to theirs.
std::string title(Tree& tree)
{
    if (!tree.getName().empty()) return tree.getName().str();
    const auto& references = tree.getReferences();
    const bool isMerged = std::any_of(references.begin(), references.end(),
                                      [](const auto& one) { return one.type == "Composed_From"; });
    return isMerged ? "Merged object model" : "Object model without a name";
}

std::string identification(Tree& tree)
{
    PropertyList list;
    list.add("Version", tree.getVersionNo().view());
    list.add("Type", tree.getType().view());
    list.add("HLA version", versionText(tree.hlaVersion()));
    list.add("MOM version", tree.getMOMVersion().view());
    list.add("Date", tree.getModificationDate().view());
    list.add("Purpose", tree.getPurpose().view());
    list.add("Domain", tree.getApplicationDomain().view());
    list.add("Sponsor", tree.getSponsorOrgName().view());
    list.add("Classification", tree.getSecurityClassification().view());
    list.add("Restriction", tree.getReleaseRestriction().view());
    list.add("Description", tree.getDescription().view());
    list.add("Use limitation", tree.getUseLimitation().view());
    list.add("Use history", tree.getUseHistory().view());
    for (const DtOMTTreePOC& contact : rangeOf(tree, &Tree::getPOCList, &Tree::getPOCEndNode))
        list.add("Point of contact", contactText(contact));
    for (const DtOMTTreeReference& one : tree.getReferences())
        list.add(one.type.empty() ? "Reference" : oneLine(one.type.view()),
                 one.identification.view());
    list.add("Reference", tree.getReference().view());
    list.add("Other", tree.getOther().view());
    const std::string name = oneLine(title(tree));
    return name + '\n' + std::string(std::min<std::size_t>(columnsOf(name), 100), '=') + '\n' +
           list.text();
}

/// Numbers and what they count, three on a line.
std::string counts(Tree& tree)
{
    constexpr std::size_t theCellsOnALine = 3;
    constexpr std::size_t theNumberWidth = 7;
    constexpr std::size_t theCellWidth = 33;
    std::string text;
    std::string line;
    std::size_t cells = 0;
    for (const Count& count : countsOf(tree))
    {
        if (cells == theCellsOnALine)
        {
            text += line + '\n';
            line.clear();
            cells = 0;
        }
        const std::string number = std::to_string(count.number);
        line.resize(std::max(line.size(), theCellWidth * cells++), ' ');
        line.append(theNumberWidth - std::min(number.size(), theNumberWidth), ' ');
        line += number + ' ' + count.name;
    }
    return heading("Counts") + text + line + '\n';
}

std::string distributionTables(Tree& tree)
{
    return section("Dimensions",
                   {whole("Name"), whole("Datatype"), whole("Upper bound"), wrap("Normalization"),
                    wrap("Unspecified")},
                   rangeOf(tree, &Tree::getDimensionNodeList, &Tree::getDimensionEndNode),
                   [](const DtDimensionNode& node)
                   {
                       return Row{node.getName().str(), node.getDatatype().str(),
                                  node.getUpperBound().str(), node.getNormalization().str(),
                                  node.getValue().str()};
                   }) +
           section("Transportations", {whole("Name"), whole("Reliable"), wrap("Meaning")},
                   rangeOf(tree, &Tree::getTransportationNodeList, &Tree::getTransportationEndNode),
                   [](const DtDescriptionNode& node) {
                       return Row{node.getName().str(), node.getReliable().str(),
                                  node.getDescription().str()};
                   }) +
           section("Update rates", {whole("Name"), whole("Per second"), wrap("Meaning")},
                   rangeOf(tree, &Tree::getUpdateRateNodeList, &Tree::getUpdateRateEndNode),
                   [](const DtUpdateRateNode& node) {
                       return Row{node.getName().str(), DtString(node.rate()).str(),
                                  node.semantics().str()};
                   });
}

std::string federationTables(Tree& tree)
{
    return section("Switches", {whole("Name"), whole("Enabled"), wrap("Setting")},
                   rangeOf(tree, &Tree::getSwitchNodeList, &Tree::getSwitchEndNode),
                   [](const DtBoolAttrNode& node) {
                       return Row{node.getName().str(), node.getEnabled() ? "yes" : "no",
                                  node.getNote().str()};
                   }) +
           section("Synchronization points",
                   {whole("Label"), whole("Tag datatype"), whole("Capability"), wrap("Meaning")},
                   rangeOf(tree, &Tree::getSynchroNodeList, &Tree::getSynchroEndNode),
                   [](const DtSynchroNode& node)
                   {
                       return Row{node.getName().str(), node.getDatatype().str(),
                                  node.getCapability().str(), node.getDescription().str()};
                   }) +
           section("User-supplied tags", {whole("Tag"), whole("Datatype"), wrap("Meaning")},
                   rangeOf(tree, &Tree::getTagNodeList, &Tree::getTagEndNode),
                   [](const DtTagNode& node) {
                       return Row{node.getName().str(), node.getDatatype().str(),
                                  node.getDescription().str()};
                   });
}

std::string timeAndNotes(Tree& tree)
{
    const DtTimeRepNode& time = *tree.getTimeRepNode();
    TextTable times({whole(""), whole("Datatype"), wrap("Meaning")});
    times.add({"Time stamp", time.getFedTimeDatatype().str(), time.getFedTimeSemantics().str()});
    times.add({"Lookahead", time.getLookaheadDatatype().str(), time.getLookaheadSemantics().str()});
    const bool hasTime =
        !time.getFedTimeDatatype().empty() || !time.getFedTimeSemantics().empty() ||
        !time.getLookaheadDatatype().empty() || !time.getLookaheadSemantics().empty();
    return (hasTime ? heading("Time") + times.text() : "") +
           section("Notes", {whole("Label"), wrap("Text")},
                   rangeOf(tree, &Tree::getNoteNodeList, &Tree::getNoteEndNode),
                   [](const DtNoteNode& node) {
                       return Row{node.getLabel().str(), node.getText().str()};
                   });
}

}  // namespace

std::string modelReport(DtOMTTree& tree)
{
    return identification(tree) + counts(tree) + classTrees(tree) + datatypeTables(tree) +
           distributionTables(tree) + federationTables(tree) + timeAndNotes(tree);
}
