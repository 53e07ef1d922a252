// SPDX-License-Identifier: Apache-2.0
// What a model loses when it is written in today's format.
#pragma once

#include "omtReader/omtTree.h"

/// Says through DtWarn what of a tree DtXMLEvolvedFileWriter does not write, or not so that it can
/// be read again: one line for each kind that there is, with a count.
void reportLosses(DtOMTTree& tree);
