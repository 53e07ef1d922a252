// SPDX-License-Identifier: Apache-2.0
#include "omtReader/xmlFileReader.h"

#include "omtReader/formats/xmlDocument.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/standardMIM.h"
#include "omtReader/xml1516FileReader.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "util/dtAssert.h"
#include "util/dtMessages.h"

#include <cstdlib>
#include <utility>

namespace
{

constexpr const char* theAssertionFile = "libsrc/omtReader/xmlFileReader";
constexpr const char* theMIMName = "HLAstandardMIM.xml";
constexpr const char* theUnexpectedProblem = "Unexpected problem reading fed file\n";

const xmlChar* xmlText(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

/// Gives a document with a root element to the caller, or says that it has none.
DtFedReadStatus handOver(omtreader::XmlDocument document, _xmlDoc** newXmlDocTree,
                         const char* noRoot, DtString& error)
{
    if (!xmlDocGetRootElement(document.get()))
    {
        error += noRoot;
        return DtFedReadBadFile;
    }
    *newXmlDocTree = document.release();
    return DtFedReadSuccess;
}

/// The children of a node of any kind, a document too. Only a namespace has something else there.
xmlNode* childrenOfAny(const xmlNode* node)
{
    return node && node->type != XML_NAMESPACE_DECL ? node->children : nullptr;
}

/// Whether the first element of a kind in a list of classes bears the name of the 2010 root.
bool startsWithRoot(xmlNode* list, const char* classWord, const char* rootName)
{
    xmlNode* const first = DtXMLFileReader::getNodeByName(list, xmlText(classWord));
    if (!first) return false;
    const xmlChar* const name = DtXMLFileReader::childContentByName(first, xmlText("name"));
    return name && xmlStrEqual(name, xmlText(rootName));
}

}  // namespace

DtXMLFileReader::DtXMLFileReader() : mySpareError(theUnexpectedProblem) {}

DtXMLFileReader::~DtXMLFileReader()
{
    for (DtOMTTree* module : myModules) DtDeleteTree()(module);
}

DtOMTTree* DtXMLFileReader::readFile(const DtFilename& name, DtExerciseConn* connection)
{
    myConnection = connection;
    if (!name.isValid()) return nullptr;
    try
    {
        xmlDoc* opened = nullptr;
        if (openFile(name.c_str(), &opened, myLastError) != DtFedReadSuccess) return nullptr;
        const omtreader::XmlDocument document(opened);
        return readOpened(xmlDocGetRootElement(opened), name);
    }
    catch (...)
    {
        setUnexpectedProblem();
        return nullptr;
    }
}

DtOMTTree* DtXMLFileReader::readOpened(xmlNode* root, const DtFilename& name)
{
    if (!isEvolvedFormat(root)) return DtXML1516FileReader(myConnection).processObjectModel(root);

    DtFilename base = name;
    base.stripPath();
    if (myMIMIsIncluded && !base.name().contains(theMIMName))
        return readFiles({name, theMIMName}, myConnection);
    return DtXMLEvolvedFileReader(myConnection).processObjectModel(root);
}

DtOMTTree* DtXMLFileReader::readFiles(const std::vector<DtFilename>& names,
                                      DtExerciseConn* connection)
{
    myConnection = connection;
    DtOMTTreePtr result(new DtOMTTree);
    result->setHlaVersion(DtHla1516_2010);
    DtXMLEvolvedFileReader reader(connection);
    for (const DtFilename& name : names)
    {
        try
        {
            xmlDoc* opened = nullptr;
            if (openModule(name, &opened) != DtFedReadSuccess) return nullptr;
            const omtreader::XmlDocument document(opened);
            xmlNode* root = xmlDocGetRootElement(opened);
            if (!isEvolvedFormat(root)) return nullptr;
            myModules.push_back(nullptr);  // the place comes first, so that no tree is ever lost
            myModules.back() = reader.processObjectModel(root);
            result->merge(myModules.back());
        }
        catch (...)
        {
            setUnexpectedProblem();  // and on with the next module
        }
    }
    return result.release();
}

/// Where there is no memory even for the text, the one that was made beforehand is used.
void DtXMLFileReader::setUnexpectedProblem() noexcept
{
    try
    {
        myLastError = theUnexpectedProblem;
    }
    catch (...)
    {
        if (mySpareError == theUnexpectedProblem) std::swap(myLastError, mySpareError);
    }
}

DtFedReadStatus DtXMLFileReader::openModule(const DtFilename& name, xmlDoc** document)
{
    if (name.name() != theMIMName) return openFile(name.c_str(), document, myLastError);
    return openStream(reinterpret_cast<const char*>(HLAstandardMIM_xml), HLAstandardMIM_xml_len,
                      document, myLastError);
}

DtFedReadStatus DtXMLFileReader::openFile(const char* fedFileName, xmlDoc** newXmlDocTree,
                                          DtString& error)
{
    DtAssert(nullptr == *newXmlDocTree, "__null == *newXmlDocTree", theAssertionFile, 265);
    DtAssert(nullptr != fedFileName, "__null != fedFileName", theAssertionFile, 266);

    DtString path = fedFileName;
    omtreader::XmlDocument document = omtreader::parseXmlFile(path.c_str());
    if (!document)
    {
        // A file that is there but is not well-formed comes this way too: another one of its name
        // may be in the directory, and if not, it is reported like one that is not there.
        const auto noFile = [&]
        {
            error += DtString("No such FED file: ") + fedFileName;
            return DtFedReadNoFile;
        };
        const char* const variable = std::getenv("RTI_CONFIG");
        if (!variable)
        {
            error += "RTI_CONFIG environment variable unbound\n";
            return noFile();
        }
        std::string_view directory = variable;
        if (!directory.empty() && (directory.back() == '/' || directory.back() == '\\'))
            directory.remove_suffix(1);
        if (directory.empty()) return noFile();
        path = DtString(directory) + "/" + fedFileName;
        document = omtreader::parseXmlFile(path.c_str());
        if (!document) return noFile();
    }
    DtVerbose << "Reading FED file: " << path << '\n';
    return handOver(std::move(document), newXmlDocTree,
                    "DtXmlFedReader:: Bad FED File.\n"
                    "\tCould not find Document Root in FED File.\n",
                    error);
}

DtFedReadStatus DtXMLFileReader::openStream(const char* buffer, int length, xmlDoc** newXmlDocTree,
                                            DtString& error)
{
    DtAssert(nullptr == *newXmlDocTree, "__null == *newXmlDocTree", theAssertionFile, 399);
    DtAssert(nullptr != buffer, "__null != buffer", theAssertionFile, 400);

    const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
    omtreader::XmlDocument document = omtreader::parseXml({buffer, size}, "FED buffer");
    if (!document) return DtFedReadBadFile;
    return handOver(std::move(document), newXmlDocTree,
                    "DtXmlFedReader:: Bad FED File buffer.\n"
                    "\tCould not find Document Root in FED File.\n",
                    error);
}

bool DtXMLFileReader::isEvolvedFormat(xmlNode*& root)
{
    if (!root) return false;
    if (root->ns && xmlStrEqual(root->ns->href, xmlText("http://standards.ieee.org/IEEE1516-2010")))
        return true;
    if (xmlNode* const list = getNodeByName(root, xmlText("transportations")))
    {
        if (xmlNode* const first = getNodeByName(list, xmlText("transportation")))
            return childContentByName(first, xmlText("reliable")) != nullptr;
        // Never so after the test before it; kept as the format has always been told.
        if (childContentByName(list, xmlText("transportation"))) return true;
    }
    if (getNodeByName(root, xmlText("updateRates"))) return true;
    if (xmlNode* const objects = getNodeByName(root, xmlText("objects")))
        return startsWithRoot(objects, "objectClass", "HLAobjectRoot");
    if (xmlNode* const interactions = getNodeByName(root, xmlText("interactions")))
        return startsWithRoot(interactions, "interactionClass", "HLAinteractionRoot");
    return false;
}

xmlNode* DtXMLFileReader::getNodeByName(xmlNode* parent, const unsigned char* name)
{
    for (xmlNode* child = childrenOfAny(parent); child; child = child->next)
        if (xmlStrEqual(child->name, name)) return child;
    return nullptr;
}

const unsigned char* DtXMLFileReader::childContentByName(xmlNode* parent, const unsigned char* name)
{
    for (xmlNode* child = childrenOfAny(parent); child; child = child->next)
    {
        const xmlNode* const first =
            xmlStrEqual(child->name, name) ? childrenOfAny(child) : nullptr;
        if (first && first->type == XML_TEXT_NODE) return first->content;
    }
    return nullptr;
}
