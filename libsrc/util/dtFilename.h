// SPDX-License-Identifier: Apache-2.0
// The name of a file, as a host hands it over.
#pragma once

#include "util/dtString.h"

/// A file name with or without directories; "/" separates them.
class OMTREADER_EXPORT DtFilename
{
public:
    DtFilename() = default;
    DtFilename(const char* name) : myName(name) {}
    DtFilename(const std::string& name) : myName(name) {}
    DtFilename(const DtString& name) : myName(name) {}

    const char* c_str() const { return myName.c_str(); }
    const DtString& name() const { return myName; }

    /// Whether an open call could be given this name: it is not empty and holds no zero octet.
    bool isValid() const;

    /// Drops the directories and keeps what follows the last "/".
    void stripPath();

private:
    DtString myName;
};
