// SPDX-License-Identifier: Apache-2.0
#include "octetInput.h"

#include "argumentWords.h"
#include "errors.h"
#include "inputFile.h"
#include "octetDump.h"
#include "octetForms.h"
#include "plainText.h"

#include <algorithm>
#include <cstdio>

namespace
{

constexpr std::size_t theMostOctets = (std::size_t{1} << 31) - 1;

std::string givenText(const OctetChoice& choice)
{
    if (!choice.words.empty())
    {
        for (const std::string& word : choice.words)
            if (isFileName(word) && !isDumpLine(word))
                throw UsageError('"' + word +
                                 "\" is no octet; files of the model stand before the octets");
        return joined(choice.words, " ");
    }
    if (choice.isFromStandardInput()) return contentOf(stdin, "standard input");
    return contentOf(choice.file);
}

void readValue(std::string_view text, GivenValue& value)
{
    value.octets.clear();
    value.complaint.clear();
    try
    {
        value.octets = readOctets(text);
    }
    catch (const InputError& error)  // the next line may be better
    {
        value.complaint = error.what();
    }
}

void readLines(std::string_view content, const std::function<void(const GivenValue&)>& take)
{
    GivenValue value;
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < content.size();)
    {
        const std::size_t end = std::min(content.find('\n', begin), content.size());
        const std::string_view line = content.substr(begin, end - begin);
        begin = end + 1;
        ++number;
        if (trimmed(line).empty()) continue;
        value.place = "line " + std::to_string(number) + ": ";
        readValue(line, value);
        take(value);
    }
}

}  // namespace

bool isDumpLine(const std::string& word)
{
    std::size_t digits = 0;
    while (digits < word.size() && hexadecimalDigit(word[digits]) >= 0) ++digits;
    return digits >= 2 && word.find_first_of(" \t\n", digits) <= digits + 1 &&
           (word[digits] == ':' || word[digits] <= ' ');
}

bool isOctetText(const std::vector<std::uint8_t>& octets)
{
    GivenValue value;
    readValue({reinterpret_cast<const char*>(octets.data()), octets.size()}, value);
    return value.complaint.empty() && !value.octets.empty();
}

void readValues(const OctetChoice& choice, const std::function<void(const GivenValue&)>& take)
{
    const std::string content = givenText(choice);
    if (content.size() > theMostOctets) throw InputError("more octets than a value can have");
    if (choice.isByLine) return readLines(content, take);
    GivenValue value;
    if (choice.file.empty())
        readValue(content, value);
    else
        value.octets.assign(content.begin(), content.end());
    take(value);
}
