// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/fault.h"

#include <ostream>

namespace omt
{

namespace
{

std::ostream& writePath(std::ostream& out, const std::string& path)
{
    return path.empty() ? out : out << path << ": ";
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Fault& fault)
{
    return writePath(out, fault.path) << "octet " << fault.offset << ": " << fault.what;
}

std::ostream& operator<<(std::ostream& out, const ValueNote& note)
{
    return writePath(out, note.path) << "octet " << note.offset << ": " << note.what;
}

std::ostream& operator<<(std::ostream& out, const ValueError& error)
{
    if (error.line > 0) out << error.line << ':' << error.column << ": ";
    return writePath(out, error.path) << error.what;
}

}  // namespace omt
