// SPDX-License-Identifier: Apache-2.0
// The rooms behind a datatype manager's door, furnished for one manager.
#pragma once

#include "omtReader/alignmentCalculator.h"
#include "omtReader/conversionBounds.h"
#include "omtReader/conversionSettings.h"
#include "omtReader/datatypeResolver.h"
#include "omtReader/orphanCheck.h"
#include "omtReader/textCutter.h"
#include "omtReader/treeRenderer.h"
#include "omtReader/valueReader.h"
#include "omtReader/valueWalker.h"
#include "omtReader/valueWriter.h"
#include "omtReader/virtualSlot.h"

#include <optional>

namespace omt
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

}  // namespace omt
