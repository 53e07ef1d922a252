// SPDX-License-Identifier: Apache-2.0
#include "argumentWords.h"

#include "errors.h"

#include <algorithm>

// CLI11 has validators look at every word as it is, and once more at what it made of all of them.
void addWords(CLI::App& command, ArgumentWords& words, const std::string& description)
{
    command.validate_positionals();
    command.add_option("MODEL", words.parsed, description)
        ->required()
        ->check(CLI::Validator(
            [&words](std::string& word)
            {
                words.typed.push_back(word);
                return std::string();
            },
            ""));
}

bool isFileName(const std::string& word)
{
    return word == "-" || word.find_first_of("./") != std::string::npos;
}

SplitWords splitWords(const ArgumentWords& words, bool (*isOther)(const std::string& word))
{
    const auto end = words.typed.end() - static_cast<std::ptrdiff_t>(words.parsed.size());
    const auto first =
        std::find_if(words.typed.begin(), end,
                     [&](const std::string& word) { return !isFileName(word) || isOther(word); });
    if (first == words.typed.begin())
        throw UsageError('"' + *first +
                         "\" stands where a file of the model should; a file without a dot in its "
                         "name is written ./NAME");
    return {
        {words.typed.begin(), first},
        {first,               end  }
    };
}
