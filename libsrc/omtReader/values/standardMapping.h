// SPDX-License-Identifier: Apache-2.0
// The datatype mapping that the library carries inside itself.
#pragma once

#include <cstdint>
#include <string_view>

/// The text of data/standard.map; no zero octet after it.
extern const unsigned char omtReaderStandardMap[];
/// Its length in octets.
extern const std::int32_t omtReaderStandardMap_len;

namespace omtreader
{

/// A mapping file that gives a representation to what models commonly build on.
inline std::string_view standardMapping()
{
    return {reinterpret_cast<const char*>(omtReaderStandardMap),
            static_cast<std::size_t>(omtReaderStandardMap_len)};
}

}  // namespace omtreader
