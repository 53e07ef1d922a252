// SPDX-License-Identifier: Apache-2.0
// Fault says why octets are no value of their datatype, and where; ValueError why a text is none.
#pragma once

#include "omt/base/export.h"

#include <cstddef>
#include <iosfwd>
#include <string>

namespace omt
{

/// What stopped decoding. What stands before `offset` was decoded.
struct Fault
{
    /// One sentence without the place.
    std::string what;
    /// "SpatialRVW.WorldLocation.X", "Datums[2].Value", the discriminant by its name; empty for the
    /// value as a whole.
    std::string path;
    /// In octets from the start of the value.
    std::size_t offset = 0;
    /// How many octets were needed from `offset` on (for a count: after it), and how many there
    /// were.
    std::size_t needed = 0;
    std::size_t left = 0;
};

/// What is odd about octets and did not stop decoding.
struct ValueNote
{
    std::string what;
    std::string path;
    std::size_t offset = 0;
};

/// Why a JSON text or a call gives no value.
struct ValueError
{
    std::string what;
    std::string path;
    /// From 1, column in octets; 0 where no text was read.
    std::size_t line = 0;
    std::size_t column = 0;
};

/// `PATH: octet OFFSET: WHAT`
OMT_EXPORT std::ostream& operator<<(std::ostream& out, const Fault& fault);
/// `PATH: octet OFFSET: WHAT`
OMT_EXPORT std::ostream& operator<<(std::ostream& out, const ValueNote& note);
/// `LINE:COLUMN: PATH: WHAT`
OMT_EXPORT std::ostream& operator<<(std::ostream& out, const ValueError& error);

}  // namespace omt
