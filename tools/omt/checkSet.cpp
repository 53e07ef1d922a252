// SPDX-License-Identifier: Apache-2.0
#include "checkSet.h"

#include "engineInput.h"
#include "errors.h"
#include "inputFile.h"
#include "sha256.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* theSetName = "omt.json";

/// Reads one file; that it is no object model is worth a note only where nobody named it.
void addFile(CheckedSet& set, const std::string& name, bool isNamed)
{
    std::string content;
    try
    {
        content = name == "-" ? contentOf(stdin, "standard input") : contentOf(name);
    }
    catch (const InputError& error)
    {
        std::string text = error.what();
        if (text.rfind(name + ": ", 0) == 0) text.erase(0, name.size() + 2);
        set.findings.push_back({
            omt::Severity::error, "unreadable", text, {name, 0, 0}
        });
        return;
    }
    omt::Findings findings;
    omt::Model model = omt::readModule({name, content}, findings);
    const std::string hash = sha256(content);
    for (omt::Finding& finding : findings)
        if (!isNamed && finding.name == "no-object-model") finding.severity = omt::Severity::note;
    std::move(findings.begin(), findings.end(), std::back_inserter(set.findings));
    if (!model.modules().empty())
        set.files.push_back({name, hash, std::move(model), std::move(content)});
}

bool isModelName(const fs::path& path)
{
    const std::string ending = path.extension().string();
    return ending == ".xml" || ending == ".omd" || ending == ".omt";
}

/// The models of a folder, by name, then as they depend on each other.
void addFolder(CheckedSet& set, const std::string& folder)
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file() && isModelName(entry.path()))
            names.push_back((fs::path(folder) / entry.path().filename()).string());
    if (names.empty())
        throw InputError(folder +
                         ": holds no files .xml, .omd or .omt (folders in it are not looked into)");
    std::sort(names.begin(), names.end());
    const std::size_t before = set.files.size();
    for (const std::string& name : names) addFile(set, name, false);

    std::vector<omt::Model> models;
    for (std::size_t i = before; i < set.files.size(); ++i) models.push_back(set.files[i].model);
    std::vector<CheckedFile> ordered;
    for (const std::size_t index : omt::dependencyOrder(models))
        ordered.push_back(std::move(set.files[before + index]));
    std::move(ordered.begin(), ordered.end(),
              set.files.begin() + static_cast<std::ptrdiff_t>(before));
}

/// The parts of omt.json, each checked for its type.
class SetFile
{
public:
    explicit SetFile(std::string name) : myName(std::move(name))
    {
        myJson = json::parse(contentOf(myName), nullptr, false, true);
        if (!myJson.is_object()) fail("is no JSON object");
        constexpr const char* theKeys[] = {"modules", "mim", "baseline", "enable", "off"};
        for (const auto& member : myJson.items())
            if (std::find(std::begin(theKeys), std::end(theKeys), member.key()) ==
                std::end(theKeys))
                fail("has `" + member.key() +
                     "`, which is none of modules, mim, baseline, enable and off");
    }

    /// The files in their order; `withMim` becomes true for the standard MIM.
    std::vector<std::string> files(bool& withMim) const
    {
        std::vector<std::string> files;
        if (const json* const mim = find("mim"))
        {
            if (!mim->is_boolean() && !mim->is_string())
                fail("`mim` is neither true, false nor a file");
            if (mim->is_string())
                files.push_back(beside(mim->get<std::string>()));
            else
                withMim = withMim || mim->get<bool>();
        }
        const std::vector<std::string> modules = texts("modules");
        if (modules.empty()) fail("names no modules");
        for (const std::string& module : modules) files.push_back(beside(module));
        return files;
    }

    void read(CheckedSet& set) const
    {
        for (const std::string& file : files(set.withMim)) addFile(set, file, true);
        if (const json* const baseline = find("baseline"))
        {
            if (!baseline->is_string()) fail("`baseline` is no name of a file");
            set.baseline = beside(baseline->get<std::string>());
        }
        const std::vector<std::string> enabled = texts("enable");
        set.rules.enable.insert(set.rules.enable.end(), enabled.begin(), enabled.end());
        readOff(set);
        checkNames(set.rules);
    }

private:
    [[noreturn]] void fail(const std::string& text) const
    {
        throw InputError(myName + ": " + text);
    }

    const json* find(const char* key) const
    {
        const auto found = myJson.find(key);
        return found == myJson.end() ? nullptr : &*found;
    }

    std::string beside(const std::string& name) const
    {
        return (fs::path(myName).parent_path() / name).string();
    }

    std::vector<std::string> texts(const char* key) const
    {
        const json* const list = find(key);
        if (!list) return {};
        if (!list->is_array()) fail(std::string("`") + key + "` is no array of texts");
        std::vector<std::string> all;
        for (const json& one : *list)
        {
            if (!one.is_string()) fail(std::string("`") + key + "` is no array of texts");
            all.push_back(one.get<std::string>());
        }
        return all;
    }

    /// A rule is off for a reason that somebody gave.
    void readOff(CheckedSet& set) const
    {
        const json* const list = find("off");
        if (!list) return;
        if (!list->is_array()) fail("`off` is no array");
        for (const json& one : *list)
        {
            const auto text = [&](const char* key)
            {
                const bool isThere = one.is_object() && one.contains(key) && one[key].is_string();
                return isThere ? one[key].get<std::string>() : std::string();
            };
            if (text("rule").empty() || text("reason").empty())
                fail("each of `off` needs a `rule` and a `reason`");
            set.rules.disable.push_back(text("rule"));
        }
    }

    void checkNames(const omt::CheckOptions& options) const
    {
        try
        {
            omt::check(std::vector<omt::Model>(), options);
        }
        catch (const std::invalid_argument& error)
        {
            fail(error.what());
        }
    }

    std::string myName;
    json myJson;
};

/// The file of JSON that an argument names as a set, itself or as its folder; else nothing.
std::string setFileOf(const std::string& argument)
{
    const fs::path path = argument;
    std::error_code ignored;
    if (path.extension() == ".json") return argument;
    return fs::is_regular_file(path / theSetName, ignored) ? (path / theSetName).string() : "";
}

}  // namespace

CheckedSet readCheckedSet(const std::vector<std::string>& arguments)
{
    CheckedSet set;
    for (const std::string& argument : arguments)
    {
        std::error_code ignored;
        if (const std::string name = setFileOf(argument); !name.empty())
            SetFile(name).read(set);
        else if (fs::is_directory(argument, ignored))
            addFolder(set, argument);
        else
            addFile(set, placeOfModel(argument), true);
    }
    return set;
}

std::vector<std::string> filesOfSets(const std::vector<std::string>& arguments, bool& withMim,
                                     FileContents* contents)
{
    std::vector<std::string> files;
    for (const std::string& argument : arguments)
    {
        std::error_code ignored;
        std::vector<std::string> some = {argument};
        if (const std::string name = setFileOf(argument); !name.empty())
            some = SetFile(name).files(withMim);
        else if (fs::is_directory(argument, ignored))
        {
            CheckedSet folder;
            addFolder(folder, argument);
            some.clear();
            for (CheckedFile& file : folder.files)
            {
                some.push_back(file.name);
                if (contents) (*contents)[file.name] = std::move(file.content);
            }
        }
        files.insert(files.end(), some.begin(), some.end());
    }
    return files;
}
