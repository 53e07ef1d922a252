// SPDX-License-Identifier: Apache-2.0
// Any octets as an XML object model: parsed, read, merged, written and freed, with a look at the
// links.
//
// The first octet chooses the way, the rest is the document. Digits do, so that inputs stay text:
// 0 the reader that the front-end picks, 1 the 2010 one, 2 the 2000 one; plus 4 to merge behind the
// standard MIM.
#include "omtReader/standardMIM.h"
#include "omtReader/xml1516FileReader.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "treeChecks.h"
#include "util/dtMessages.h"

#include <libxml/tree.h>

#include <limits>
#include <memory>

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
