// SPDX-License-Identifier: Apache-2.0
// The octets of attribute and parameter values to readable text, and text back to octets.
#include "omtReader/datatypeManager.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/datatypeRep.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/stringTree.h"
#include "omtReader/values/componentCount.h"
#include "omtReader/values/conversionRooms.h"
#include "omtReader/values/mappingFile.h"
#include "omtReader/values/orphanCheck.h"
#include "omtReader/values/ownRepresentations.h"
#include "omtReader/values/standardMapping.h"
#include "omtReader/variantDatatypeNode.h"
#include "util/dtMessages.h"
#include "util/dtWholeFile.h"

#include <cstdio>
#include <set>

namespace
{

/// Maps a name, and every simple datatype based on it that was not mapped itself.
void mapWithSimpleDatatypes(omtreader::ConversionSettings& settings,
                            DtDatatypeManager::NameMap& mappings, const DtString& name,
                            const DtString& rep)
{
    mappings[name] = rep;
    ++settings.changes;
    settings.isDirty = true;
    if (!settings.tree) return;
    DtOMTTree& tree = *settings.tree;
    const auto end = tree.getSimpleDatatypeEndNode();
    for (auto it = tree.getSimpleDatatypeNodeList(); it != end; ++it)
        if ((*it)->getRepresentation() == name &&
            settings.explicitlyMapped.count((*it)->getName()) == 0)
            mappings[(*it)->getName()] = rep;
}

template <typename Map>
typename Map::mapped_type& entryOf(omtreader::ConversionSettings& settings, Map& map,
                                   const DtString& name)
{
    const auto [entry, isNew] = map.try_emplace(name);
    if (isNew) ++settings.changes;
    return entry->second;
}

}  // namespace

DtDatatypeManager::DtDatatypeManager()
    : mySettings(std::make_unique<omtreader::ConversionSettings>()),
      myRooms(std::make_unique<omtreader::ConversionRooms>(*this, *mySettings))
{
}

DtDatatypeManager::~DtDatatypeManager()
{
    // One representation may stand under two names.
    std::set<DtDatatypeRep*> reps;
    for (const auto& [name, rep] : mySettings->registry) reps.insert(rep);
    for (DtDatatypeRep* rep : reps) DtDatatypeRep::release(rep);
}

DtDatatypeManager* DtDatatypeManager::defaultInstance()
{
    static auto* const theDatatypeManager = new DtDatatypeManager;
    return theDatatypeManager;
}

// The model.

void DtDatatypeManager::initOMTData(DtOMTTree* tree)
{
    if (!tree) return;
    mySettings->tree = tree;
    auto& kinds = mySettings->kinds;
    auto& mappings = mySettings->mappings;
    const auto setKind = [&kinds](DtDatatypeEnum kind, auto begin, auto end)
    {
        for (auto it = begin; it != end; ++it) kinds[(*it)->getName()] = kind;
    };
    setKind(DtDatatypeVariant, tree->getVariantDatatypeNodeList(),
            tree->getVariantDatatypeEndNode());
    setKind(DtDatatypeFixed, tree->getFixedDatatypeNodeList(), tree->getFixedDatatypeEndNode());
    const auto simpleEnd = tree->getSimpleDatatypeEndNode();
    setKind(DtDatatypeSimple, tree->getSimpleDatatypeNodeList(), simpleEnd);
    for (auto it = tree->getSimpleDatatypeNodeList(); it != simpleEnd; ++it)
        mappings[(*it)->getName()] = (*it)->getRepresentation();
    setKind(DtDatatypeComplex, tree->getComplexDatatypeNodeList(),
            tree->getComplexDatatypeEndNode());
    setKind(DtDatatypeArray, tree->getArrayDatatypeNodeList(), tree->getArrayDatatypeEndNode());
    const auto enumeratedEnd = tree->getEnumeratedDatatypeEndNode();
    setKind(DtDatatypeEnumerated, tree->getEnumeratedDatatypeNodeList(), enumeratedEnd);
    for (auto it = tree->getEnumeratedDatatypeNodeList(); it != enumeratedEnd; ++it)
    {
        const int size = (*it)->getExpectedEnumerationSize();
        if (size == 1 || size == 2 || size == 4)
            mappings[(*it)->getName()] = "enum" + DtString(8 * size);
    }
    ++mySettings->changes;
    checkOrphanMappings();
}

DtOMTTree* DtDatatypeManager::omtTree()
{
    return mySettings->tree;
}

DtDatatypeManager::DtDatatypeEnum DtDatatypeManager::getDatatypeEnum(const DtString& datatype)
{
    omtreader::ResolvedDatatype& resolved = myRooms->resolver.find(datatype);
    // A name that is asked for gets its place in the table.
    if (!resolved.kind) resolved.kind = &entryOf(*mySettings, mySettings->kinds, resolved.name);
    return *resolved.kind;
}

void DtDatatypeManager::checkOrphanMappings()
{
    if (!mySettings->tree) return;
    DtOMTTree& tree = *mySettings->tree;
    const omtreader::OrphanCheckScope scope(myRooms->orphans, *mySettings);
    myRooms->orphans->datatypes();
    const auto objectEnd = tree.getObjectClassNodeEnd();
    for (auto it = tree.getObjectClassNodeBegin(); it != objectEnd; ++it) checkObjOrphans(*it);
    const auto interactionEnd = tree.getInteractionClassNodeEnd();
    for (auto it = tree.getInteractionClassNodeBegin(); it != interactionEnd; ++it)
        checkIntOrphans(*it);
    ++mySettings->changes;
}

void DtDatatypeManager::checkObjOrphans(DtObjectClassFedNode* objectClass)
{
    if (!objectClass) return;
    const omtreader::OrphanCheckScope scope(myRooms->orphans, *mySettings);
    const bool isWhole = !myRooms->open().hasHost() || scope.isDeep();
    const bool isNew = myRooms->orphans->objectClasses(*objectClass, isWhole);
    ++mySettings->changes;
    if (!isWhole && isNew)
        for (DtObjectClassFedNode* child : objectClass->getChildObjects()) checkObjOrphans(child);
}

void DtDatatypeManager::checkIntOrphans(DtInteractionClassFedNode* interactionClass)
{
    if (!interactionClass) return;
    const omtreader::OrphanCheckScope scope(myRooms->orphans, *mySettings);
    const bool isWhole = !myRooms->open().hasHost() || scope.isDeep();
    const bool isNew = myRooms->orphans->interactionClasses(*interactionClass, isWhole);
    ++mySettings->changes;
    if (!isWhole && isNew)
        for (DtInteractionClassFedNode* child : interactionClass->getChildInteractions())
            checkIntOrphans(child);
}

// Flags and bounds.

void DtDatatypeManager::setImplicitPadding(bool isEnabled)
{
    mySettings->isPaddingImplicit = isEnabled;
}

bool DtDatatypeManager::isImplicitPaddingEnabled() const
{
    return mySettings->isPaddingImplicit;
}

bool DtDatatypeManager::isDirty()
{
    return mySettings->isDirty;
}

void DtDatatypeManager::setIsDirty(bool isDirty)
{
    mySettings->isDirty = isDirty;
}

void DtDatatypeManager::setNodeLimit(int nodes)
{
    mySettings->nodeLimit = nodes;
}

int DtDatatypeManager::nodeLimit() const
{
    return mySettings->nodeLimit;
}

// Representations.

void DtDatatypeManager::fillDefaultDatatypeRepList()
{
    omtreader::addOwnRepresentations(mySettings->isPaddingImplicit, [this](DtDatatypeRep* rep)
                                     { mySettings->registry[rep->datatype()] = rep; });
    ++mySettings->changes;
}

void DtDatatypeManager::addDatatypeRep(DtDatatypeRep* rep)
{
    if (!rep) return;
    mySettings->isDirty = true;
    mySettings->registry[rep->datatype()] = rep;
    ++mySettings->changes;
}

void DtDatatypeManager::addDefinedDatatypeRep(DtDatatypeRep* rep)
{
    if (!rep) return;
    const DtString name = rep->datatype();
    mySettings->isDirty = true;
    mySettings->registry[name] = rep;
    mySettings->mappings[name] = name;
    mySettings->kinds[name] = DtDatatypeDefined;
    ++mySettings->changes;
}

DtDatatypeRep* DtDatatypeManager::getSimpleDatatypeRep(const DtString& name)
{
    const DtString& mapped = entryOf(*mySettings, mySettings->mappings, name);
    return entryOf(*mySettings, mySettings->registry, mapped.empty() ? name : mapped);
}

DtDatatypeManager::NameRepMap::const_iterator DtDatatypeManager::getNameRepMapList()
{
    return mySettings->registry.begin();
}

DtDatatypeManager::NameRepMap::const_iterator DtDatatypeManager::getNameRepMapListEnd()
{
    return mySettings->registry.end();
}

// Mappings.

void DtDatatypeManager::addRepMapping(const DtString& datatype, const DtString& rep)
{
    mySettings->explicitlyMapped.insert(datatype);
    mapWithSimpleDatatypes(*mySettings, mySettings->mappings, datatype, rep);
}

void DtDatatypeManager::removeRepMapping(const DtString& datatype)
{
    mySettings->isDirty = true;
    mySettings->mappings.erase(datatype);
    ++mySettings->changes;
}

void DtDatatypeManager::addAttributeMapping(const DtString& attribute, const DtString& rep)
{
    mapWithSimpleDatatypes(*mySettings, mySettings->attributeMappings, attribute, rep);
}

void DtDatatypeManager::removeAttributeMapping(const DtString& attribute)
{
    mySettings->isDirty = true;
    mySettings->attributeMappings.erase(attribute);
    ++mySettings->changes;
}

const DtString& DtDatatypeManager::attributeMapping(const DtString& attribute) const
{
    const auto entry = mySettings->attributeMappings.find(attribute);
    return entry == mySettings->attributeMappings.end() ? DtString::nullString() : entry->second;
}

bool DtDatatypeManager::modifyRepMapping(const DtString& datatype, const DtString& rep)
{
    DtString& mapped = entryOf(*mySettings, mySettings->mappings, datatype);
    if (mapped.empty()) return false;
    mapped = rep;
    mySettings->isDirty = true;
    ++mySettings->changes;
    return true;
}

DtDatatypeManager::NameMap::const_iterator DtDatatypeManager::getRepMapList()
{
    return mySettings->mappings.begin();
}

DtDatatypeManager::NameMap::const_iterator DtDatatypeManager::getRepMapListEnd()
{
    return mySettings->mappings.end();
}

void DtDatatypeManager::addDelimiterMap(const DtString& datatype, const DtString& delimiter)
{
    mySettings->delimiters[datatype] = delimiter;
    ++mySettings->changes;
}

void DtDatatypeManager::removeDelimiterMap(const DtString& datatype)
{
    mySettings->delimiters.erase(datatype);
    ++mySettings->changes;
}

void DtDatatypeManager::setDefaultDelimiter(const DtString& delimiter)
{
    mySettings->defaultDelimiter = delimiter;
}

void DtDatatypeManager::setArrayWrapper(const DtString& open, const DtString& close)
{
    mySettings->wrapperOpen = open;
    mySettings->wrapperClose = close;
}

const DtString& DtDatatypeManager::getDelimiterMap(const DtString& datatype, bool* found)
{
    const DtString* const delimiter = myRooms->resolver.find(datatype).delimiter;
    if (found) *found = delimiter != nullptr;
    return delimiter ? *delimiter : mySettings->defaultDelimiter;
}

DtDatatypeManager::NameMap::const_iterator DtDatatypeManager::getDelimiterList()
{
    return mySettings->delimiters.begin();
}

DtDatatypeManager::NameMap::const_iterator DtDatatypeManager::getDelimiterListEnd()
{
    return mySettings->delimiters.end();
}

void DtDatatypeManager::addArrayBracketMap(const DtString& datatype, bool hasBrackets)
{
    mySettings->brackets[datatype] = hasBrackets;
}

void DtDatatypeManager::removeArrayBracketMap(const DtString& datatype)
{
    mySettings->brackets.erase(datatype);
}

void DtDatatypeManager::setDefaultArrayBracket(bool hasBrackets)
{
    mySettings->defaultBracket = DtString(hasBrackets ? 1 : 0);
}

bool DtDatatypeManager::getArrayBracketMap(const DtString& datatype, bool* found)
{
    const auto entry = mySettings->brackets.find(datatype);
    const bool isMapped = entry != mySettings->brackets.end();
    if (found) *found = isMapped;
    // Kept for compatibility, because programs rely on it: that there is a default decides, and
    // not what it says.
    return isMapped ? entry->second : !mySettings->defaultBracket.empty();
}

DtDatatypeManager::BracketMap::const_iterator DtDatatypeManager::getArrayBracketList()
{
    return mySettings->brackets.begin();
}

DtDatatypeManager::BracketMap::const_iterator DtDatatypeManager::getArrayBracketListEnd()
{
    return mySettings->brackets.end();
}

// The mapping file.

void DtDatatypeManager::readFile(DtString path)
{
    std::FILE* const file = std::fopen(path.c_str(), "r");
    if (!file) return;
    DtlObjPtr mappings;
    {
        DtlFileInputStream stream(file);
        if (!omtreader::readMappingList(stream, path, mappings)) return;
    }
    processMappings(mappings);
    mySettings->isDirty = false;
}

void DtDatatypeManager::readStandardMappings()
{
    DtlStringInputStream stream(omtreader::standardMapping());
    DtlObjPtr mappings;
    if (omtreader::readMappingList(stream, "standard.map", mappings)) processMappings(mappings);
    mySettings->isDirty = false;
}

bool DtDatatypeManager::processMappings(DtlObjPtr& mappings)
{
    omtreader::applyMappings(*this, mappings);
    return true;
}

void DtDatatypeManager::writeFile(DtString path)
{
    const std::error_code error =
        DtWriteWholeFile(path.str(), omtreader::mappingText(*mySettings).view());
    // A file that cannot be opened is passed over: hosts offer names that may not be writable.
    constexpr std::errc theToldReasons[] = {std::errc::no_space_on_device, std::errc::io_error,
                                            std::errc::file_too_large,
                                            std::errc::not_enough_memory};
    for (const std::errc reason : theToldReasons)
        if (error == reason)
            DtWarn << path << ": the mappings are not written: " << error.message() << std::endl;
}

// Decoding.

DtString DtDatatypeManager::getFedNodeStringRep(const DtDatatypeFedNode* node, const void* data,
                                                int length, int& consumed)
{
    consumed = 0;
    return node ? myRooms->open().walker.line(*node, {data, length, consumed}) : DtString();
}

DtString DtDatatypeManager::getStringRep(const DtString& datatype, const void* data, int length,
                                         int& consumed)
{
    return myRooms->open().walker.line(datatype, {data, length, consumed});
}

DtString DtDatatypeManager::getStringRep(const DtOMTDatatypeNode& node, const void* data,
                                         int length, int& consumed)
{
    return myRooms->open().walker.line(node, {data, length, consumed});
}

DtStringTree* DtDatatypeManager::createStringTreeRep(const DtString& datatype, const void* data,
                                                     int length, int& consumed,
                                                     const DtOMTNode* keyNode, unsigned int offset,
                                                     DtStringTree* root, DtObjectHistory* history)
{
    return myRooms->open().walker.tree(datatype, {data, length, consumed}, keyNode, offset, root,
                                       history);
}

DtStringTree* DtDatatypeManager::createStringTreeRep(const DtOMTDatatypeNode& node,
                                                     const void* data, int length, int& consumed,
                                                     unsigned int offset, DtStringTree* root,
                                                     DtObjectHistory* history)
{
    return myRooms->open().walker.tree(node, {data, length, consumed}, offset, root, history);
}

DtStringTree* DtDatatypeManager::createStringTreeRep(const DtDatatypeFedNode* node,
                                                     const void* data, int length, int& consumed,
                                                     unsigned int offset, DtObjectHistory* history)
{
    consumed = 0;
    return node ? myRooms->open().walker.tree(*node, {data, length, consumed}, offset, history)
                : nullptr;
}

DtString DtDatatypeManager::convertStringTreeToString(DtStringTree* tree, const DtString& delimiter)
{
    if (!tree) return DtString();
    omtreader::ConversionRooms& rooms = myRooms->open();
    const omtreader::CountedCall call(rooms.bounds, mySettings->nodeLimit);
    return rooms.hasHost() ? rooms.renderer.lineByParts(*tree, delimiter)
                           : rooms.renderer.line(*tree, delimiter);
}

void DtDatatypeManager::getDatatypeRep(const DtString& datatype, const void* data, int length,
                                       int& consumed, DtString& text)
{
    myRooms->open().reader.mapped(datatype, {data, length, consumed}, text);
}

void DtDatatypeManager::getAttributeRep(const DtString& name, const void* data, int length,
                                        int& consumed, DtString& text)
{
    myRooms->open().reader.attribute(name, {data, length, consumed}, text);
}

void DtDatatypeManager::getDefaultRep(const void* data, int length, int& consumed, DtString& text)
{
    myRooms->open().reader.hexadecimal({data, length, consumed}, text);
}

void DtDatatypeManager::getEnumRep(const DtString& datatype, const void* data, int length,
                                   int& consumed, DtString& text)
{
    myRooms->open().reader.enumerated(datatype, {data, length, consumed}, text);
}

void DtDatatypeManager::getVariantRep(const DtString& datatype, const void* data, int length,
                                      int& consumed, DtString& text)
{
    myRooms->open().walker.variantLine(datatype, {data, length, consumed}, text);
}

void DtDatatypeManager::getArrayRep(const DtString& datatype, const void* data, int length,
                                    int& consumed, DtString& text)
{
    myRooms->open().walker.arrayLine(datatype, {data, length, consumed}, text);
}

void DtDatatypeManager::getArrayRepBySize(const DtString& datatype, const void* data, int length,
                                          int& consumed, DtString& text)
{
    myRooms->open().reader.octets(datatype, {data, length, consumed}, text);
}

void DtDatatypeManager::getArrayRepByCount(DtArrayDatatypeNode* node, const void* data, int length,
                                           int& consumed, DtString& text)
{
    consumed = 0;
    text = DtString();
    if (node) myRooms->open().walker.arrayLineByCount(*node, {data, length, consumed}, text);
}

void DtDatatypeManager::createFixedTreeRep(const DtString& datatype, const void* data, int length,
                                           int& consumed, DtStringTree* parent, DtStringTree* root,
                                           unsigned int offset, DtObjectHistory* history)
{
    myRooms->open().walker.enter(&omtreader::ValueWalker::walkFixed, datatype,
                                 {data, length, consumed}, {parent, root, offset, history});
}

void DtDatatypeManager::createComplexTreeRep(const DtString& datatype, const void* data, int length,
                                             int& consumed, DtStringTree* parent,
                                             DtStringTree* root, unsigned int offset,
                                             DtObjectHistory* history)
{
    myRooms->open().walker.enter(&omtreader::ValueWalker::walkComplex, datatype,
                                 {data, length, consumed}, {parent, root, offset, history});
}

void DtDatatypeManager::createArrayTreeRep(const DtString& datatype, const void* data, int length,
                                           int& consumed, DtStringTree* parent, DtStringTree* root,
                                           unsigned int offset, DtObjectHistory* history)
{
    myRooms->open().walker.enter(&omtreader::ValueWalker::walkArray, datatype,
                                 {data, length, consumed}, {parent, root, offset, history});
}

void DtDatatypeManager::createDefinedTreeRep(const DtString& datatype, const void* data, int length,
                                             int& consumed, DtStringTree* node, DtStringTree* root,
                                             unsigned int offset, DtObjectHistory* history)
{
    myRooms->open().walker.enter(&omtreader::ValueWalker::walkDefined, datatype,
                                 {data, length, consumed}, {node, root, offset, history});
}

void DtDatatypeManager::createVariantTreeRep(const DtString& datatype, const void* data, int length,
                                             int& consumed, DtStringTree* parent,
                                             DtStringTree* root, unsigned int offset,
                                             DtObjectHistory* history)
{
    myRooms->open().walker.enter(&omtreader::ValueWalker::walkVariant, datatype,
                                 {data, length, consumed}, {parent, root, offset, history});
}

int DtDatatypeManager::getArrayDatatypeCount(DtArrayDatatypeNode* node, const void* data,
                                             int length, DtStringTree*, DtStringTree*)
{
    return node ? myRooms->open().reader.arrayCount(*node, data, length) : 0;
}

int DtDatatypeManager::getComplexDatatypeCount(DtComplexComponentNode* node, const void*, int,
                                               DtStringTree* root, DtStringTree* parent)
{
    if (!node) return 0;
    const omtreader::CountedCall call(myRooms->bounds, mySettings->nodeLimit);
    return omtreader::ComponentCount(myRooms->resolver, myRooms->bounds).of(*node, root, parent);
}

// Alignment.

int DtDatatypeManager::implicitPadding(unsigned int offset, const DtString& datatype)
{
    return myRooms->open().alignment.padding(offset, datatype);
}

int DtDatatypeManager::byteAlignment(const DtString& datatype)
{
    return myRooms->open().alignment.alignment(datatype);
}

int DtDatatypeManager::byteAlignmentFromRep(const DtString& datatype)
{
    return myRooms->alignment.fromRepresentation(datatype);
}

int DtDatatypeManager::byteAlignmentFixed(const DtString& datatype)
{
    return myRooms->alignment.ofFixed(datatype);
}

int DtDatatypeManager::byteAlignmentArray(const DtString& datatype)
{
    return myRooms->alignment.ofArray(datatype);
}

int DtDatatypeManager::byteAlignmentVariant(const DtString& datatype)
{
    return myRooms->alignment.ofVariant(datatype);
}

int DtDatatypeManager::byteAlignmentComplex(const DtString&)
{
    return -1;
}

// Encoding.

void DtDatatypeManager::getValueFromStringRep(const DtString& datatype, const DtString& text,
                                              Octets& out)
{
    myRooms->open().writer.value(datatype, text, out);
}

void DtDatatypeManager::getValueFromDatatypeRep(const DtString& datatype, const DtString& text,
                                                Octets& out)
{
    myRooms->open().writer.simple(datatype, text, out);
}

void DtDatatypeManager::getValueFromEnumRep(const DtString& datatype, const DtString& text,
                                            Octets& out)
{
    myRooms->open().writer.enumerated(datatype, text, out);
}

void DtDatatypeManager::getValueFromFixedRep(const DtString& datatype, const DtString& text,
                                             Octets& out)
{
    myRooms->open().writer.record(datatype, text, out);
}

void DtDatatypeManager::getValueFromComplexRep(const DtString& datatype, const DtString& text,
                                               Octets& out)
{
    myRooms->open().writer.record(datatype, text, out);
}

void DtDatatypeManager::getValueFromArrayRep(const DtString& datatype, const DtString& text,
                                             Octets& out)
{
    myRooms->open().writer.array(datatype, text, out);
}
