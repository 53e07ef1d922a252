// SPDX-License-Identifier: Apache-2.0
// The rooms behind a datatype manager's door, furnished for one manager.
#include "omtReader/values/conversionRooms.h"

namespace omtreader
{

using Manager = DtDatatypeManager;

ConversionRooms::ConversionRooms(DtDatatypeManager& manager, ConversionSettings& settings)
    : myManager(manager),
      myOwnTable(virtualTable(&manager)),
      resolver(manager, settings, bounds),
      alignment(manager, settings, resolver, bounds),
      renderer(manager, resolver),
      reader(manager, settings, resolver, bounds),
      walker(manager, settings, resolver, alignment, reader, bounds),
      cutter(manager, settings, resolver, renderer, bounds),
      writer(manager, settings, resolver, cutter, bounds)
{
}

void ConversionRooms::lookAtManager()
{
    const char* const table = myTable = virtualTable(&myManager);
    const auto isOurs = [&](auto... operations)
    { return !(isReplaced(table, myOwnTable, operations) || ...); };
    resolver.hasHostsKinds = !isOurs(&Manager::getDatatypeEnum);
    renderer.hasHostsDelimiters = !isOurs(&Manager::getDelimiterMap);
    alignment.isAlone = isOurs(&Manager::isImplicitPaddingEnabled, &Manager::implicitPadding,
                               &Manager::byteAlignment, &Manager::byteAlignmentFromRep,
                               &Manager::byteAlignmentFixed, &Manager::byteAlignmentArray,
                               &Manager::byteAlignmentVariant, &Manager::byteAlignmentComplex);
    using ByName =
        DtStringTree* (Manager::*)(const DtString&, const void*, int, int&, const DtOMTNode*,
                                   unsigned int, DtStringTree*, DtObjectHistory*);
    using ByNode = DtStringTree* (Manager::*)(const DtOMTDatatypeNode&, const void*, int, int&,
                                              unsigned int, DtStringTree*, DtObjectHistory*);
    walker.isAlone = isOurs(
        ByName(&Manager::createStringTreeRep), ByNode(&Manager::createStringTreeRep),
        &Manager::createFixedTreeRep, &Manager::createComplexTreeRep, &Manager::createArrayTreeRep,
        &Manager::createVariantTreeRep, &Manager::createDefinedTreeRep, &Manager::getDatatypeRep);
    mayWalkClasses = isOurs(&Manager::checkObjOrphans, &Manager::checkIntOrphans);
    writer.isAlone = isOurs(&Manager::getValueFromStringRep, &Manager::getValueFromDatatypeRep);
    mayRenderAtOnce = isOurs(&Manager::convertStringTreeToString);
}

}  // namespace omtreader
