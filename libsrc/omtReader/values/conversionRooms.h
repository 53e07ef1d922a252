// SPDX-License-Identifier: Apache-2.0
// The rooms behind a datatype manager's door, furnished for one manager.
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
#include "omtReader/values/virtualSlot.h"

#include <optional>

namespace omtreader
{

/// Everything that converts, and what a host's manager replaced of it.
class ConversionRooms
{
public:
    /// To be made in the constructor of the manager, where the manager has our own operations only.
    ConversionRooms(DtDatatypeManager& manager, ConversionSettings& settings);

    /// Learns what the manager's class replaced; every operation at the door begins with it.
    ConversionRooms& open()
    {
        if (virtualTable(&myManager) != myTable) lookAtManager();
        return *this;
    }

    bool mayRenderAtOnce = false;  ///< no host takes part in rendering
    bool mayWalkClasses = false;   ///< no host takes part in looking at classes

private:
    void lookAtManager();

    DtDatatypeManager& myManager;
    const char* myOwnTable;
    const char* myTable = nullptr;

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
