// SPDX-License-Identifier: Apache-2.0
// Any octets as an XML object model: parsed, read, merged and freed, with a look at the links.
//
// The first octet chooses the way, the rest is the document. Digits do, so that inputs stay text:
// 0 the reader that the front-end picks, 1 the 2010 one, 2 the 2000 one; plus 4 to merge behind the
// standard MIM.
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/standardMIM.h"
#include "omtReader/xml1516FileReader.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "util/dtMessages.h"

#include <libxml/tree.h>

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <unordered_set>

namespace
{

struct FreeDocument
{
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

using Tree = DtOMTTreePtr;

enum class Format
{
    asTold,
    is2010,
    is2000
};

void require(bool holds, const char* rule)
{
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

const auto& childrenOf(const DtObjectClassFedNode& node)
{
    return node.getChildObjects();
}
const auto& childrenOf(const DtInteractionClassFedNode& node)
{
    return node.getChildInteractions();
}
const auto& membersOf(const DtObjectClassFedNode& node)
{
    return node.getAttributes();
}
const auto& membersOf(const DtInteractionClassFedNode& node)
{
    return node.getParameters();
}

/// The links of one hierarchy: downwards and upwards they say the same, and lead nowhere else.
template <typename Class, typename Place>
void checkHierarchy(Class* root, Place begin, Place end)
{
    const std::unordered_set<const DtFedNode*> classes(begin, end);
    require(classes.size() == static_cast<std::size_t>(std::distance(begin, end)),
            "a class is in the list once");
    require(!root || classes.count(root), "the root is in the list");

    std::size_t linkedAsChild = 0;
    std::size_t withParent = 0;
    for (; begin != end; ++begin)
    {
        const Class& node = **begin;
        require(node.getFullName().endsWith(node.getName().view()), "a full name ends in the name");
        if (node.getParentObject())
        {
            ++withParent;
            require(classes.count(node.getParentObject()), "a parent is in the list");
        }
        for (const Class* child : childrenOf(node))
        {
            ++linkedAsChild;
            require(classes.count(child), "a child is in the list");
            require(child->getParentObject() == &node, "a child's parent is the class it is in");
        }
        for (const auto* member : membersOf(node))
            require(member->getParentObject() == &node, "a member's parent is its class");
    }
    // With every child's parent right, equal counts mean that every parent lists its child, once.
    require(linkedAsChild == withParent, "a parent lists each child once");
}

void check(DtOMTTree& tree)
{
    checkHierarchy(tree.objectClassRoot(), tree.getObjectClassNodeBegin(),
                   tree.getObjectClassNodeEnd());
    checkHierarchy(tree.interactionClassRoot(), tree.getInteractionClassNodeBegin(),
                   tree.getInteractionClassNodeEnd());
    tree.prepareForSharing();
}

Tree read(const char* text, int length, Format format)
{
    xmlDoc* opened = nullptr;
    DtString error;
    if (DtXMLFileReader::openStream(text, length, &opened, error) != DtFedReadSuccess)
    {
        require(!opened, "a document that was not opened is null");
        return nullptr;
    }
    const std::unique_ptr<xmlDoc, FreeDocument> document(opened);
    xmlNode* root = xmlDocGetRootElement(opened);
    const bool isTold2010 = DtXMLFileReader::isEvolvedFormat(root);
    if (format == Format::is2010 || (format == Format::asTold && isTold2010))
        return Tree(DtXMLEvolvedFileReader(nullptr).processObjectModel(root));
    return Tree(DtXML1516FileReader(nullptr).processObjectModel(root));
}

Tree readMIM()
{
    return read(reinterpret_cast<const char*>(HLAstandardMIM_xml), HLAstandardMIM_xml_len,
                Format::asTold);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool isQuiet = (DtSetMessageSink([](auto, auto) {}), true);
    static const Tree theMIM = readMIM();
    require(isQuiet && theMIM, "the MIM is read");
    if (size == 0 || size > std::size_t{std::numeric_limits<int>::max()}) return 0;

    const Format format = data[0] % 4 == 1   ? Format::is2010
                          : data[0] % 4 == 2 ? Format::is2000
                                             : Format::asTold;
    const bool isBehindMIM = data[0] & 4;
    Tree module = read(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1), format);
    if (!module) return 0;
    check(*module);

    const Tree merged(new DtOMTTree);
    merged->setHlaVersion(module->hlaVersion());
    if (isBehindMIM) merged->merge(theMIM.get());
    merged->merge(module.get());
    check(*module);
    module.reset();  // what is merged must not lean on it
    check(*merged);
    return 0;
}
