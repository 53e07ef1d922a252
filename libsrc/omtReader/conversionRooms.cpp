// SPDX-License-Identifier: Apache-2.0
// The rooms behind a datatype manager's door, furnished for one manager.
#include "omtReader/conversionRooms.h"

namespace omt
{

using Manager = DtDatatypeManager;

ConversionRooms::ConversionRooms(DtDatatypeManager& manager, ConversionSettings& settings)
    : myManager(manager),
      myOwnTable(virtualTable(&manager)),
      resolver(settings),
      alignment(manager, resolver, myBounds),
      renderer(manager, resolver),
      walker(manager, settings, resolver, myBounds),
      cutter(manager, settings, resolver, renderer, myWritingBounds),
      writer(manager, settings, resolver, cutter, myWritingBounds)
{
}

void ConversionRooms::lookAtManager()
{
    const char* const table = myTable = virtualTable(&myManager);
    const auto isOurs = [&](auto... operations)
    { return !(isReplaced(table, myOwnTable, operations) || ...); };
    mayKeepAlignments = isOurs(&Manager::byteAlignment, &Manager::byteAlignmentFromRep,
                               &Manager::byteAlignmentFixed, &Manager::byteAlignmentArray,
                               &Manager::byteAlignmentVariant, &Manager::byteAlignmentComplex);
    using ByName =
        DtStringTree* (Manager::*)(const DtString&, const void*, int, int&, const DtOMTNode*,
                                   unsigned int, DtStringTree*, DtObjectHistory*);
    using ByNode = DtStringTree* (Manager::*)(const DtOMTDatatypeNode&, const void*, int, int&,
                                              unsigned int, DtStringTree*, DtObjectHistory*);
    walker.isAlone =
        mayKeepAlignments &&
        isOurs(ByName(&Manager::createStringTreeRep), ByNode(&Manager::createStringTreeRep),
               &Manager::createFixedTreeRep, &Manager::createComplexTreeRep,
               &Manager::createArrayTreeRep, &Manager::createVariantTreeRep,
               &Manager::createDefinedTreeRep, &Manager::getDatatypeRep, &Manager::getDatatypeEnum,
               &Manager::implicitPadding, &Manager::isImplicitPaddingEnabled);
    mayRenderAtOnce = isOurs(&Manager::convertStringTreeToString);
    renderer.hasHostsDelimiters = !isOurs(&Manager::getDelimiterMap);
}

}  // namespace omt
