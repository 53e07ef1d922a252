// SPDX-License-Identifier: Apache-2.0
// A libxml2 document that is freed with its owner, for tests and fuzz targets.
#pragma once

#include <libxml/tree.h>

#include <memory>

struct FreeDocument
{
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;
