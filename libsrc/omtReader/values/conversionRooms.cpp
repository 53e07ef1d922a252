// SPDX-License-Identifier: Apache-2.0
#include "omtReader/values/conversionRooms.h"

namespace omtreader
{

ConversionRooms::ConversionRooms(DtDatatypeManager& manager, ConversionSettings& settings)
    : myManager(manager),
      mySettings(settings),
      resolver(manager, settings, bounds),
      alignment(manager, settings, resolver, bounds),
      renderer(manager, settings, resolver),
      reader(manager, settings, resolver, bounds),
      walker(manager, settings, resolver, alignment, reader, bounds),
      cutter(manager, settings, resolver, renderer, bounds),
      writer(manager, settings, resolver, cutter, bounds)
{
}

}  // namespace omtreader
