// SPDX-License-Identifier: Apache-2.0
// The standard MIM that the library carries inside itself.
#pragma once

#include "util/dtExport.h"

#include <cstdint>

/// The text of HLAstandardMIM.xml, the standard management and initialisation module of 1516-2010;
/// no zero octet after it. Names and values are the standard's, free texts our own, unless the
/// library was built with the published document.
extern OMTREADER_EXPORT const unsigned char HLAstandardMIM_xml[];
/// Its length in octets.
extern OMTREADER_EXPORT const std::int32_t HLAstandardMIM_xml_len;
