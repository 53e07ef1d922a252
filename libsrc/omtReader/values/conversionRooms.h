// SPDX-License-Identifier: Apache-2.0
// Holds everything that converts for one datatype manager, and decides whether a host takes part.
#pragma once

#include "omtReader/values/alignmentCalculator.h"
#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"
#include "omtReader/values/orphanCheck.h"
#include "omtReader/values/textCutter.h"
#include "omtReader/values/treeRenderer.h"
#include "omtReader/values/valueReader.h"
#include "omtReader/values/valueWalker.h"
#include "omtReader/values/valueWriter.h"

#include <optional>
#include <typeinfo>

namespace omtreader
{

class ConversionRooms
{
public:
    ConversionRooms(DtDatatypeManager& manager, ConversionSettings& settings);

    /// Every operation at the door begins with it. A class is a host's as a whole, whatever it
    /// replaces: that question the language can answer.
    ConversionRooms& open()
    {
        mySettings.hasHost = typeid(myManager) != typeid(DtDatatypeManager);
        if (!bounds.isCounting()) renderer.release();
        return *this;
    }
    bool hasHost() const { return mySettings.hasHost; }

private:
    DtDatatypeManager& myManager;
    ConversionSettings& mySettings;

public:
    ConversionBounds bounds;
    DatatypeResolver resolver;
    AlignmentCalculator alignment;
    TreeRenderer renderer;
    ValueReader reader;
    ValueWalker walker;
    TextCutter cutter;
    ValueWriter writer;
    std::optional<OrphanCheck> orphans;  // while all classes are being looked at
};

}  // namespace omtreader
