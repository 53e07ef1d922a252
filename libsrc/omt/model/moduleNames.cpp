// SPDX-License-Identifier: Apache-2.0
#include "omt/model/moduleNames.h"

#include "omt/model/compare.h"

#include <utility>

namespace omt
{

namespace
{

constexpr std::size_t theMostMatches = 100;

/// A name of a module as it is compared: letters and digits in lower case. One of other scripts is
/// compared as it is.
std::string plainName(std::string_view text)
{
    constexpr std::size_t theMost = 100;
    std::string plain;
    for (const char c : text.substr(0, theMost))
    {
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
        if (c >= 'A' && c <= 'Z') plain += static_cast<char>(c - 'A' + 'a');
    }
    return plain.empty() ? std::string(text.substr(0, theMost)) : plain;
}

/// The last part of a path, without ".xml" and the like.
std::string_view stem(std::string_view file)
{
    const std::size_t slash = file.find_last_of("/\\");
    if (slash != std::string_view::npos) file.remove_prefix(slash + 1);
    for (const std::string_view ending : {".xml", ".fdd", ".omd", ".omt"})
        if (file.size() > ending.size() && file.substr(file.size() - ending.size()) == ending)
            return file.substr(0, file.size() - ending.size());
    return file;
}

}  // namespace

void ModuleNames::add(const Module& module, std::size_t number)
{
    Entry entry;
    entry.file = plainName(stem(module.file));
    entry.title = plainName(module.identification.name);
    entry.number = number;
    entry.isMim = module.isBuiltIn || entry.file.find("mim") != std::string::npos;
    const auto keep = [&](const std::string& name)
    {
        std::vector<std::size_t>& numbers = myExact[name];
        if (numbers.size() < theMostMatches) numbers.push_back(number);
    };
    keep(entry.file);
    if (entry.title != entry.file) keep(entry.title);
    myEntries.push_back(std::move(entry));
    myFound.clear();
}

const std::vector<std::size_t>& ModuleNames::find(std::string_view dependency)
{
    std::string wanted = plainName(stem(dependency));
    const auto found = myFound.find(wanted);
    if (found != myFound.end()) return found->second;
    std::vector<std::size_t> numbers = look(wanted);
    return myFound.emplace(std::move(wanted), std::move(numbers)).first->second;
}

std::vector<std::size_t> ModuleNames::look(const std::string& wanted)
{
    const auto exact = myExact.find(wanted);
    if (exact != myExact.end() && !wanted.empty()) return exact->second;
    // What a folder full of modules and dependencies can ask for is bounded; whole names are found
    // all the same.
    constexpr std::size_t theMostComparisons = 4'000'000;
    std::vector<std::size_t> numbers;
    const bool isMim = wanted.ends_with("mim");
    for (const Entry& entry : myEntries)
    {
        if (wanted.empty() || numbers.size() == theMostMatches ||
            ++myComparisons > theMostComparisons)
            break;
        if ((isMim && entry.isMim) || entry.file.find(wanted) != std::string::npos ||
            entry.title.find(wanted) != std::string::npos ||
            (entry.title.size() > 3 && wanted.find(entry.title) != std::string::npos))
            numbers.push_back(entry.number);
    }
    return numbers;
}

bool isDependency(const Reference& reference)
{
    return plainName(reference.type) == "dependency" &&
           saysSomething(reference.identification.view());
}

}  // namespace omt
