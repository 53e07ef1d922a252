// SPDX-License-Identifier: Apache-2.0
#include "representationTexts.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace
{

enum class Texts
{
    whole,     ///< a decimal integer between two limits
    number,    ///< any number
    truth,     ///< "true" or "false"
    hex,       ///< hexadecimal digits, of which the limits are the number
    character  ///< ASCII, or a single octet where the limit is one
};

struct Rule
{
    std::string_view representation;
    Texts texts;
    std::int64_t lowest;
    std::int64_t highest;
};

constexpr std::int64_t theShortLimit = std::numeric_limits<std::int16_t>::max();
constexpr std::int64_t theIntLimit = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t theUnlimited = std::numeric_limits<std::int64_t>::max();

// Numbers of 64 bits, and unsigned ones, are read from texts as signed ones of 32 bits.
constexpr Rule theRules[] = {
    {"byte",              Texts::whole,     0,                  255          },
    {"short",             Texts::whole,     -theShortLimit - 1, theShortLimit},
    {"short-LE",          Texts::whole,     -theShortLimit - 1, theShortLimit},
    {"unsigned-short",    Texts::whole,     0,                  65535        },
    {"unsigned-short-LE", Texts::whole,     0,                  65535        },
    {"int",               Texts::whole,     -theIntLimit - 1,   theIntLimit  },
    {"int-LE",            Texts::whole,     -theIntLimit - 1,   theIntLimit  },
    {"unsigned-int",      Texts::whole,     0,                  theIntLimit  },
    {"unsigned-int-LE",   Texts::whole,     0,                  theIntLimit  },
    {"long",              Texts::whole,     -theIntLimit - 1,   theIntLimit  },
    {"long-LE",           Texts::whole,     -theIntLimit - 1,   theIntLimit  },
    {"unsigned-long",     Texts::whole,     0,                  theIntLimit  },
    {"unsigned-long-LE",  Texts::whole,     0,                  theIntLimit  },
    {"enum8",             Texts::whole,     0,                  255          },
    {"enum16",            Texts::whole,     0,                  65535        },
    {"enum32",            Texts::whole,     -theIntLimit - 1,   theIntLimit  },
    {"float",             Texts::number,    0,                  0            },
    {"float-LE",          Texts::number,    0,                  0            },
    {"double",            Texts::number,    0,                  0            },
    {"double-LE",         Texts::number,    0,                  0            },
    {"bool",              Texts::truth,     0,                  0            },
    {"hex",               Texts::hex,       1,                  8            },
    {"char",              Texts::character, 0,                  1            },
    {"utf8",              Texts::character, 0,                  theUnlimited },
    {"utf16",             Texts::character, 0,                  theUnlimited },
};

std::string whyNotWhole(const Rule& rule, const DtString& text)
{
    bool isWhole = false;
    const std::int64_t number = text.toInt64(&isWhole);
    if (isWhole && number >= rule.lowest && number <= rule.highest) return "";
    bool isNumber = false;
    text.toDouble(&isNumber);
    if (!isNumber) return "is not a whole number";
    return "is not a whole number from " + std::to_string(rule.lowest) + " to " +
           std::to_string(rule.highest);
}

std::string whyNotCharacters(const Rule& rule, const DtString& text)
{
    if (static_cast<std::int64_t>(text.length()) > rule.highest) return "is more than one octet";
    const std::string_view all = text.view();
    const bool isAscii = std::all_of(all.begin(), all.end(),
                                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return isAscii || rule.highest == 1 ? "" : "is not ASCII";
}

std::string whyNot(const Rule& rule, const DtString& text)
{
    switch (rule.texts)
    {
        case Texts::whole:
            return whyNotWhole(rule, text);
        case Texts::number:
        {
            bool isNumber = false;
            text.toDouble(&isNumber);
            return isNumber ? "" : "is not a number";
        }
        case Texts::truth:
            return text == "true" || text == "false" ? "" : "is neither true nor false";
        case Texts::hex:
        {
            const bool hasDigits =
                text.str().find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
            const bool isShort =
                !text.empty() && text.length() <= static_cast<std::size_t>(rule.highest);
            return hasDigits && isShort ? "" : "is not one to eight hexadecimal digits";
        }
        case Texts::character:
            return whyNotCharacters(rule, text);
    }
    return "";
}

}  // namespace

std::string whyNotEncoded(std::string_view representation, const DtString& text)
{
    const auto* const rule = std::find_if(std::begin(theRules), std::end(theRules),
                                          [representation](const Rule& one)
                                          { return one.representation == representation; });
    if (rule == std::end(theRules)) return "";
    const std::string why = whyNot(*rule, text);
    return why.empty() ? "" : why + " (" + std::string(representation) + ')';
}
