// SPDX-License-Identifier: Apache-2.0
// What all tests share: all kinds of node, captured messages, octets, temporary folders, published
// models, tree dumps.
#pragma once

#include "datatypeNodes.h"
#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/boolAttrNode.h"
#include "omtReader/descriptionNode.h"
#include "omtReader/dimensionNode.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/noteNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/synchroNode.h"
#include "omtReader/tagNode.h"
#include "omtReader/timeRepNode.h"
#include "omtReader/updateRateNode.h"
#include "util/dtMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Captures the messages that are written while it lives, down to a level, and shows none of them.
class Messages
{
public:
    explicit Messages(DtMessageLevel level = DtMessageLevel::warn);
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages();

    /// All messages so far as they arrived, with the line break where there was one.
    const std::vector<std::string>& list() const { return myTexts; }
    /// The messages since the last call.
    std::vector<std::string> take();

private:
    std::vector<std::string> myTexts;
    DtMessageLevel myLevelBefore;
    DtMessageSink mySinkBefore;
};

/// The octets of a text such as "00 2A ff"; what is no such text fails the test.
std::vector<char> octets(std::string_view hexadecimal);

/// Expects of each case such as "2-5 => 2 2..5" that the text before the arrow gives what is
/// after it.
void expectEach(std::initializer_list<std::string> cases,
                const std::function<std::string(const DtString&)>& result);

/// A folder that is deleted with this object.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return myPath; }
    /// Writes a file into the folder and gives its whole name.
    std::string write(const std::string& name, std::string_view content) const;

private:
    std::filesystem::path myPath;
};

/// The base of tests that read published models; they are skipped where OMT_MODELS is unset.
class ModelsTest : public testing::Test
{
protected:
    void SetUp() override;
    /// The whole name of a file in the folder that OMT_MODELS names.
    static std::string model(const std::string& name);
};

using TreePtr = DtOMTTreePtr;

/// Every field of every node of a tree, one value on each line, so that trees can be compared.
std::string dump(DtOMTTree& tree);
inline std::string dump(const TreePtr& tree)
{
    return dump(*tree);
}
