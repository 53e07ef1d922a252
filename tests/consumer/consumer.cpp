// SPDX-License-Identifier: Apache-2.0
// A host against the installed library: it reads the MIM, derives from classes of the library and
// touches something of every kind that it exports, so that a symbol left out shows at link time.
#include "omtReader/attributeFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/standardMIM.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "util/dtException.h"
#include "util/dtMessages.h"

#include <cstdio>
#include <memory>
#include <string>

namespace
{

class CountingReader : public DtXMLEvolvedFileReader
{
public:
    using DtXMLEvolvedFileReader::DtXMLEvolvedFileReader;
    DtAttributeFedNode* processAttribute(_xmlNode*& element, DtObjectClassFedNode* owner) override
    {
        ++attributes;
        return DtXMLEvolvedFileReader::processAttribute(element, owner);
    }
    int attributes = 0;
};

bool holds(bool condition, const char* what)
{
    if (!condition) std::fprintf(stderr, "consumer: %s\n", what);
    return condition;
}

bool readsTheMIM()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles({"HLAstandardMIM.xml"}, nullptr));
    if (!holds(tree != nullptr, "the built-in MIM is not read")) return false;
    const DtObjectClassFedNode* federate =
        tree->getObjectClassNode("HLAobjectRoot.HLAmanager.HLAfederate");
    const bool isFound = federate && federate->findAttribute("HLAfederateName");
    return holds(isFound, "HLAfederateName is not in the MIM");
}

bool catchesAndReplaces()
{
    std::string heard;
    DtSetMessageSink([&](DtMessageLevel, std::string_view text) { heard += text; });
    DtWarn << "100% heard\n";
    DtSetMessageSink({});
    try
    {
        throw DtException("thrown", "here");
    }
    catch (const std::exception& exception)
    {
        return holds(std::string(exception.what()) == "here: thrown", "another exception text") &&
               holds(heard == "100% heard\n", "the message did not reach the host's sink");
    }
}

}  // namespace

int main()
{
    CountingReader reader(nullptr);
    _xmlNode* none = nullptr;
    const std::unique_ptr<DtOMTTree> empty(reader.processObjectModel(none));
    return holds(empty && reader.attributes == 0, "an empty document gives no tree") &&
                   holds(HLAstandardMIM_xml_len > 0, "the MIM is empty") && readsTheMIM() &&
                   catchesAndReplaces()
               ? 0
               : 1;
}
