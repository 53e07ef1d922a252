// SPDX-License-Identifier: Apache-2.0
#include "omt/model/schemaValues.h"

#include "omt/base/xmlText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <iterator>

namespace omt
{

namespace
{

struct Choice
{
    ValueForm form;
    std::string_view word;
};

constexpr Choice theChoices[] = {
    {ValueForm::sharing,    "Publish"         },
    {ValueForm::sharing,    "Subscribe"       },
    {ValueForm::sharing,    "PublishSubscribe"},
    {ValueForm::sharing,    "Neither"         },
    {ValueForm::order,      "Receive"         },
    {ValueForm::order,      "TimeStamp"       },
    {ValueForm::updateType, "Static"          },
    {ValueForm::updateType, "Periodic"        },
    {ValueForm::updateType, "Conditional"     },
    {ValueForm::updateType, "NA"              },
    {ValueForm::ownership,  "Divest"          },
    {ValueForm::ownership,  "Acquire"         },
    {ValueForm::ownership,  "DivestAcquire"   },
    {ValueForm::ownership,  "NoTransfer"      },
    {ValueForm::capability, "Register"        },
    {ValueForm::capability, "Achieve"         },
    {ValueForm::capability, "RegisterAchieve" },
    {ValueForm::capability, "NoSynch"         },
    {ValueForm::capability, "NA"              },
    {ValueForm::reliable,   "Yes"             },
    {ValueForm::reliable,   "No"              },
    {ValueForm::endian,     "Big"             },
    {ValueForm::endian,     "Little"          },
    {ValueForm::boolean,    "true"            },
    {ValueForm::boolean,    "false"           },
    {ValueForm::modelType,  "FOM"             },
    {ValueForm::modelType,  "SOM"             },
};

struct OldWord
{
    ValueForm form;
    std::string_view old;
    std::string_view word;
};

constexpr OldWord theOldWords[] = {
  // HLA 1.3: who publishes and subscribes to classes, updates and reflects attributes, initiates,
  // senses and reacts to interactions; who may hand an attribute over.
    {ValueForm::sharing,   "P",         "Publish"         },
    {ValueForm::sharing,   "S",         "Subscribe"       },
    {ValueForm::sharing,   "PS",        "PublishSubscribe"},
    {ValueForm::sharing,   "N",         "Neither"         },
    {ValueForm::sharing,   "U",         "Publish"         },
    {ValueForm::sharing,   "R",         "Subscribe"       },
    {ValueForm::sharing,   "UR",        "PublishSubscribe"},
    {ValueForm::sharing,   "I",         "Publish"         },
    {ValueForm::sharing,   "IS",        "PublishSubscribe"},
    {ValueForm::sharing,   "IR",        "PublishSubscribe"},
    {ValueForm::ownership, "T",         "Divest"          },
    {ValueForm::ownership, "A",         "Acquire"         },
    {ValueForm::ownership, "TA",        "DivestAcquire"   },
    {ValueForm::ownership, "N",         "NoTransfer"      },
    {ValueForm::order,     "receive",   "Receive"         },
    {ValueForm::order,     "timestamp", "TimeStamp"       },
 // 1516-2000.
    {ValueForm::boolean,   "Enabled",   "true"            },
    {ValueForm::boolean,   "Disabled",  "false"           },
    {ValueForm::boolean,   "1",         "true"            },
    {ValueForm::boolean,   "0",         "false"           },
};

bool isSameWord(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](unsigned char a, unsigned char b)
                      { return std::tolower(a) == std::tolower(b); });
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::string_view withoutSign(std::string_view text)
{
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    return text;
}

bool isDecimal(std::string_view text)
{
    text = withoutSign(text);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view part =
        point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
    return (isDigits(whole) || isDigits(part)) && (whole.empty() || isDigits(whole)) &&
           (part.empty() || isDigits(part));
}

bool isPositive(std::string_view text)
{
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    return isDigits(text) && text.find_first_not_of('0') != std::string_view::npos;
}

/// "Dynamic", "8", "[1..5]".
bool isDimension(std::string_view text)
{
    if (text == "Dynamic" || isDigits(text)) return true;
    if (text.size() < 6 || text.front() != '[' || text.back() != ']') return false;
    text = text.substr(1, text.size() - 2);
    const std::size_t dots = text.find("..");
    return dots != std::string_view::npos && isDigits(text.substr(0, dots)) &&
           isDigits(text.substr(dots + 2));
}

bool isCardinality(std::string_view text)
{
    for (std::size_t comma; (comma = text.find(',')) != std::string_view::npos;
         text.remove_prefix(comma + 1))
        if (!isDimension(text.substr(0, comma))) return false;
    return isDimension(text);
}

/// "3", "[0..5)", "[4)", "Excluded".
bool isDimensionValue(std::string_view text)
{
    if (text == "Excluded" || isDigits(text)) return true;
    if (text.size() < 3 || text.front() != '[' || text.back() != ')') return false;
    text = text.substr(1, text.size() - 2);
    const std::size_t dots = text.find("..");
    if (dots == std::string_view::npos) return isDigits(text);
    return isDigits(text.substr(0, dots)) && isDigits(text.substr(dots + 2));
}

/// A day of the calendar, as in 2003-10-03; what follows may be a time zone.
bool isDate(std::string_view text)
{
    if (text.size() < 10 || text[4] != '-' || text[7] != '-') return false;
    unsigned parts[3] = {};
    const std::string_view digits[] = {text.substr(0, 4), text.substr(5, 2), text.substr(8, 2)};
    for (std::size_t i = 0; i < 3; ++i)
    {
        if (!isDigits(digits[i])) return false;
        std::from_chars(digits[i].data(), digits[i].data() + digits[i].size(), parts[i]);
    }
    constexpr unsigned theDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (parts[0] == 0 || parts[1] < 1 || parts[1] > 12 || parts[2] < 1) return false;
    const bool isLeap = parts[0] % 4 == 0 && (parts[0] % 100 != 0 || parts[0] % 400 == 0);
    const unsigned most = parts[1] == 2 && !isLeap ? 28 : theDays[parts[1] - 1];
    const std::string_view zone = text.substr(10);
    const bool isZone =
        zone.empty() || zone == "Z" ||
        (zone.size() == 6 && (zone[0] == '+' || zone[0] == '-') && isDigits(zone.substr(1, 2)) &&
         zone[3] == ':' && isDigits(zone.substr(4)) && zone.substr(1) <= "14:00" && zone[4] < '6');
    return parts[2] <= most && isZone;
}

/// 10/03/2003 of HLA 1.3 (the month first), 3.10.2003, 2003/10/3, 20031003 and a date with a time.
std::optional<std::string> madeDate(std::string_view text)
{
    if (text.size() > 10 && (text[10] == 'T' || text[10] == ' ') && isDate(text.substr(0, 10)))
        return std::string(text.substr(0, 10));
    std::string parts[3];
    char separator = 0;
    std::size_t count = 0;
    for (const char c : text)
    {
        if (isDigit(c))
            parts[count] += c;
        else if (++count == 3 || (separator != 0 && separator != c) ||
                 (c != '/' && c != '.' && c != '-'))
            return std::nullopt;
        else
            separator = c;
    }
    if (count == 0 && text.size() == 8)
    {
        parts[2] = text.substr(6);
        parts[1] = text.substr(4, 2);
        parts[0].resize(4);
    }
    else if (parts[0].size() < 4)
    {
        std::swap(parts[0], parts[2]);
        if (separator == '/') std::swap(parts[1], parts[2]);
    }
    for (std::string& part : parts)
        if (part.size() == 1) part.insert(0, 1, '0');
    const std::string date = parts[0] + '-' + parts[1] + '-' + parts[2];
    return isDate(date) ? std::optional(date) : std::nullopt;
}

constexpr std::string_view theHexDigits = "0123456789ABCDEF";

bool isHexDigit(char c)
{
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

/// How much of a text is the scheme of a URI, with its colon: the first part, where it is a word.
std::size_t schemeSize(std::string_view text)
{
    const std::size_t colon = text.find_first_of(":/?#");
    if (colon == std::string_view::npos || text[colon] != ':' || colon == 0) return 0;
    const auto isPart = [](unsigned char c)
    { return std::isalnum(c) != 0 || c == '+' || c == '-' || c == '.'; };
    const bool isWord = std::isalpha(static_cast<unsigned char>(text[0])) != 0 &&
                        std::all_of(text.begin(), text.begin() + static_cast<long>(colon), isPart);
    return isWord ? colon + 1 : 0;
}

/// A text as a reference that XML libraries take: odd characters as their octets in hexadecimal.
std::string madeUri(std::string_view text)
{
    std::string uri(text.substr(0, schemeSize(text)));
    bool isFirstPart = uri.empty();
    bool hasFragment = false;
    for (std::size_t i = uri.size(); i < text.size(); ++i)
    {
        const char c = text[i];
        const bool isEscape =
            c == '%' && i + 2 < text.size() && isHexDigit(text[i + 1]) && isHexDigit(text[i + 2]);
        const bool isOdd = (c == '%' && !isEscape) || (c == ':' && isFirstPart) ||
                           (c == '#' && hasFragment) || c == '[' || c == ']';
        isFirstPart = isFirstPart && c != '/' && c != '?' && c != '#';
        hasFragment = hasFragment || c == '#';
        if (!isOdd)
        {
            uri += c;
            continue;
        }
        uri += '%';
        uri += theHexDigits[static_cast<unsigned char>(c) >> 4U];
        uri += theHexDigits[static_cast<unsigned char>(c) & 15U];
    }
    return uri;
}

/// "0+", "1+" and "2-4" of HLA 1.3, "dynamic", and lists with blanks.
std::optional<std::string> madeCardinality(std::string_view text)
{
    std::string plain;
    for (const char c : text)
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') plain += c;
    if (isSameWord(plain, "dynamic") || plain == "0+") return "Dynamic";
    if (!plain.empty() && plain.back() == '+' && isDigits({plain.data(), plain.size() - 1}))
        return '[' + plain.substr(0, plain.size() - 1) + "..2147483647]";
    const std::size_t dash = plain.find('-');
    if (dash != std::string::npos) plain = '[' + plain.replace(dash, 1, "..") + ']';
    return isCardinality(plain) ? std::optional(plain) : std::nullopt;
}

bool isChoice(std::string_view text, ValueForm form)
{
    return std::any_of(std::begin(theChoices), std::end(theChoices),
                       [&](const Choice& choice)
                       { return choice.form == form && choice.word == text; });
}

}  // namespace

bool isAccepted(std::string_view text, ValueForm form, Edition edition)
{
    const bool is2010 = edition == Edition::ieee2010;
    switch (form)
    {
        case ValueForm::any:
            return true;
        case ValueForm::notEmpty:
            return !text.empty();
        case ValueForm::notEmptyIn2010:
            return !is2010 || !text.empty();
        case ValueForm::notEmptyIn2025:
            return is2010 || !text.empty();
        case ValueForm::identifier:
        case ValueForm::reference:
            return isXmlName(text);
        case ValueForm::uri:
            return madeUri(text) == text;
        case ValueForm::date:
            return isDate(text);
        case ValueForm::decimal:
            return isDecimal(text);
        case ValueForm::integer:
            return isDigits(withoutSign(text));
        case ValueForm::positive:
            return isPositive(text);
        case ValueForm::cardinality:
            return isCardinality(text);
        case ValueForm::dimensionValue:
            return isDimensionValue(text);
        case ValueForm::modelType:
            return is2010 ? !text.empty() : isChoice(text, form);
        case ValueForm::boolean:
        case ValueForm::sharing:
        case ValueForm::order:
        case ValueForm::updateType:
        case ValueForm::ownership:
        case ValueForm::capability:
        case ValueForm::reliable:
        case ValueForm::endian:
            return isChoice(text, form);
    }
    return true;
}

std::optional<std::string_view> todaysWord(std::string_view text, ValueForm form)
{
    for (const OldWord& row : theOldWords)
        if (row.form == form && row.old == text) return row.word;
    return std::nullopt;
}

std::optional<std::string> accepted(std::string_view text, ValueForm form, Edition edition)
{
    if (isAccepted(text, form, edition)) return std::string(text);
    if (form == ValueForm::date) return madeDate(text);
    if (form == ValueForm::uri) return madeUri(text);
    if (form == ValueForm::cardinality) return madeCardinality(text);
    if (const auto word = todaysWord(text, form)) return std::string(*word);
    for (const Choice& choice : theChoices)
        if (choice.form == form && isSameWord(choice.word, text)) return std::string(choice.word);
    return std::nullopt;
}

}  // namespace omt
