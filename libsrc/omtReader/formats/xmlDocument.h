// SPDX-License-Identifier: Apache-2.0
// Parsing a text into a libxml2 document, safely and quietly.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string_view>

namespace omtreader
{

struct FreeXmlDocument
{
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocument = std::unique_ptr<xmlDoc, FreeXmlDocument>;

/// The document of a text, or null after one warning "name:line:column: what is wrong".
///
/// Nothing but the text is read: no DTD, no external entity, no network. Blank text between
/// elements is left out. libxml2's limits on depth, entities and sizes hold.
XmlDocument parseXml(std::string_view text, const char* name);

/// As above for what libxml2 opens by a name: a file, packed or not, by its path or as "file:" URI,
/// "-" for standard input, and what a host has registered with it; never the network. A file that
/// is not there gives null without a word, as callers look for it in more than one place; one that
/// cannot be read, a warning.
XmlDocument parseXmlFile(const char* name);

/// Lets libxml2 set itself up, once in a process. To be called before anything else of it is used,
/// as it does not stand several threads that begin at once.
void startXmlLibrary();

}  // namespace omtreader
