// SPDX-License-Identifier: Apache-2.0
// The Harbour sample in the HLA 1.3 format against the same in XML.
#include "omtReader/datatypeManager.h"
#include "omtReader/hierarchy.h"
#include "omtReader/omtFileReader.h"
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

TEST(Harbour13Test, HoldsWhatTheXmlModelsHold)
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
    EXPECT_EQ(messages.list(), std::vector<std::string>());
}

}  // namespace
