// SPDX-License-Identifier: Apache-2.0
// A tree of the host's own, which notes what is added and leaves something out.
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

/// A model without the management classes that the MIM brings along.
class HarbourTree : public DtOMTTree
{
public:
    ~HarbourTree() override { deleteAuxiliaryTables(); }

    void addObjectClassNode(DtObjectClassFedNode* node) override
    {
        std::cout << "class " << node->getName() << '\n';
        DtOMTTree::addObjectClassNode(node);
    }
    void addFixedDatatypeNode(DtFixedDatatypeNode* node) override
    {
        ++myRecords;
        DtOMTTree::addFixedDatatypeNode(node);
    }
    DtObjectClassFedNode* mergeObjectNode(const DtObjectClassFedNode& source) override
    {
        return source.getName() == "HLAmanager" ? nullptr : DtOMTTree::mergeObjectNode(source);
    }
    int records() const { return myRecords; }

private:
    int myRecords = 0;
};

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr model(
        reader.readFiles({"models/HarbourBase.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!model) return 1;
    HarbourTree tree;
    tree.setHlaVersion(model->hlaVersion());
    tree.merge(model.get());
    std::cout << tree.records() << " fixed records\n";
}
