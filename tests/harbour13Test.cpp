// SPDX-License-Identifier: Apache-2.0
// The Harbour sample in the HLA 1.3 format: against the same in XML, and values of its datatypes.
#include "omtReader/datatypeManager.h"
#include "omtReader/hierarchy.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"

#include <algorithm>

namespace
{

/// Adds the classes and their members by the path below the root.
template <typename Class>
void addClasses(DtOMTTree& tree, std::vector<DtString>& lines)
{
    using Classes = omtreader::Hierarchy<Class>;
    const DtString root = Classes::root(tree)->getName();
    const auto add = [&](const DtFedNode& node, const DtString& text)
    { lines.push_back(DtString(node.getFullName().view().substr(root.length())) + ": " + text); };
    for (auto it = Classes::begin(tree); it != Classes::end(tree); ++it)
    {
        if (*it != Classes::root(tree)) add(**it, (*it)->getDescriptor());
        for (const auto* member : Classes::members(**it)) add(*member, member->getDescription());
    }
}

/// What both formats have a place for.
std::vector<DtString> content(DtOMTTree& tree)
{
    std::vector<DtString> lines;
    addClasses<DtObjectClassFedNode>(tree, lines);
    addClasses<DtInteractionClassFedNode>(tree, lines);
    std::sort(lines.begin(), lines.end());  // the root may be the first one or the last
    for (auto it = tree.getEnumeratedDatatypeNodeList(); it != tree.getEnumeratedDatatypeEndNode();
         ++it)
        for (auto at = (*it)->getEnumerationNodeList(); at != (*it)->getEnumerationNodeEnd(); ++at)
            lines.push_back((*it)->getName() + (*at)->getEnum() + DtString((*at)->getNumber()));
    for (auto it = tree.getNoteNodeList(); it != tree.getNoteEndNode(); ++it)
        lines.push_back((*it)->getText());
    return lines;
}

/// The names and texts of a value, its elements and the values behind it.
DtString shown(const DtStringTree* value)
{
    if (!value) return "";
    return " " + value->key() + "=" +
           (value->firstChild() ? "{" + shown(value->firstChild()) + "}" : value->value()) +
           shown(value->nextElement()) + shown(value->nextSibling());
}

TEST(Harbour13Test, HoldsWhatTheXmlModelsHoldAndDecodes)
{
    const Messages messages;
    const DtString models =
        std::filesystem::path(__FILE__).parent_path().string() + "/../examples/models/";
    const TreePtr model(DtOMTFileReader().readFile(models + "Harbour.omd", nullptr));
    const TreePtr evolved(DtXMLFileReader().readFiles(
        {models + "HarbourBase.xml", models + "HarbourTraffic.xml"}, nullptr));
    ASSERT_TRUE(evolved);
    EXPECT_EQ(content(*model), content(*evolved));
    EXPECT_EQ(model->getPurpose().view().substr(0, 20), "\"Harbour\" (HLA 1.3):");

    DtDatatypeManager manager;
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(model.get());
    manager.readStandardMappings();
    for (auto it = manager.getRepMapList(); it != manager.getRepMapListEnd(); ++it)
        EXPECT_NE(it->second, "---") << it->first << " has no representation";
    const auto decoded = [&](const DtString& given)
    {
        const std::size_t end = given.view().find(' ');
        const std::string datatype(given.view().substr(0, end));
        const std::vector<char> value = octets(given.view().substr(end));
        const int length = static_cast<int>(value.size());
        int ofLine = 0, ofTree = 0;
        const DtString line = manager.getStringRep(datatype, value.data(), length, ofLine);
        const std::unique_ptr<DtStringTree> tree(manager.createStringTreeRep(
            datatype, value.data(), length, ofTree, nullptr, 0, nullptr, nullptr));
        const bool isWhole = ofLine == length && ofTree == length;
        return (line + " |" + shown(tree->firstChild()) + (isWhole ? "" : " | and more")).str();
    };
    expectEach(
        {"CargoVariant 00 01 00 00 01 9C 00 00 02 60 00 00 00 25 => Containers 412 608 37 | "
         "Kind=Containers ContainerLoad={ TwentyFoot=412 FortyFoot=608 Refrigerated=37}",
         "CargoVariant 00 00 => None | Kind=None",
         "WaypointArray 00 00 00 01 3F F0 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
         "00 00 00 00 => 1 1 0 0 | Count=1 Waypoint={ X=1 Y=0 Z=0}",
         "DraughtArray 40 1D 00 00 00 00 00 00 40 1E 00 00 00 00 00 00 40 1F 00 00 00 00 00 00 => "
         "7.25[7.5[7.75]] | Draught=7.25 Draught=7.5 Draught=7.75"},
        decoded);
    EXPECT_EQ(messages.list(), std::vector<std::string>());
}

}  // namespace
