// SPDX-License-Identifier: Apache-2.0
// A host against the installed library: it reads the MIM, derives from classes of the library and
// touches something of every kind that it exports, so that a symbol left out shows at link time.
#include "omtReader/attributeFedNode.h"
#include "omtReader/attributeHistory.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/definedDatatypeRep.h"
#include "omtReader/doubleDatatypeRep.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/standardMIM.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "sexp/dtcList.h"
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

/// A representation of the host's own, over one of the library.
class Kilometres : public DtDoubleDatatypeRep
{
public:
    Kilometres() : DtDoubleDatatypeRep(false) {}
    const char* datatype() const override { return "kilometres"; }
    DtString stringRep(const void* data, int* consumed) const override
    {
        return DtDoubleDatatypeRep::stringRep(data, consumed) + " km";
    }
};

class CountingManager : public DtDatatypeManager
{
public:
    int byteAlignment(const DtString& datatype) override
    {
        ++alignments;
        return DtDatatypeManager::byteAlignment(datatype);
    }
    int alignments = 0;
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

bool decodes()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles({"HLAstandardMIM.xml"}, nullptr));
    CountingManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.addDatatypeRep(new Kilometres);
    manager.initOMTData(tree.get());
    manager.readStandardMappings();
    manager.addRepMapping("HLAcount", "kilometres");

    DtAttributeFedNode distance;
    distance.setDatatype("HLAcount");
    const char octets[] = {0x3F, static_cast<char>(0xF8), 0, 0, 0, 0, 0, 0};
    DtAttributeHistory history(manager);
    history.setByteStream(octets, sizeof octets);
    const DtStringTree* value = history.createStringTree(&distance, 0);
    const auto* defined =
        dynamic_cast<const DtDefinedDatatypeRep*>(manager.getSimpleDatatypeRep("HLAcount"));
    return holds(value && value->value() == "1.5 km", "the host's representation is not used") &&
           holds(!defined && manager.alignments > 0, "the host's manager is not asked");
}

bool readsForms()
{
    DtSexpEnvironment environment;
    DtlStringInputStream stream("(host \"text\" 7)");
    const DtlObjPtr form = DtcRead(stream, environment.env());
    return holds(DtcCadr(form)->string() == "text" && DtcCaddr(form)->fixnum() == 7,
                 "a form is not read");
}

}  // namespace

int main()
{
    CountingReader reader(nullptr);
    _xmlNode* none = nullptr;
    const std::unique_ptr<DtOMTTree> empty(reader.processObjectModel(none));
    return holds(empty && reader.attributes == 0, "an empty document gives no tree") &&
                   holds(HLAstandardMIM_xml_len > 0, "the MIM is empty") && readsTheMIM() &&
                   catchesAndReplaces() && decodes() && readsForms()
               ? 0
               : 1;
}
