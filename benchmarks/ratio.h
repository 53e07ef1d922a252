// SPDX-License-Identifier: Apache-2.0
// What is measured: for omt_ratios pairs of pieces of work, and how long one takes as a part of the
// other; for omt_growth work of any size.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace ratios
{

/// Does a piece of work once and gives the seconds that the part of interest took; what prepares
/// it and cleans up after it stays outside.
using Work = double (*)();

struct Ratio
{
    const char* name;
    Work baseline;
    Work candidate;                   ///< the ratio is the median of this over that of the baseline
    const char* modelFile = nullptr;  ///< a file below OMT_MODELS that it takes, or null
    /// The name under which the geometric mean of all that have it is printed, after the last.
    const char* mean = nullptr;
};

/// Work whose time is to grow in proportion to its size.
struct Growth
{
    const char* name;
    const char* unit;  ///< of the size
    int smallest;      ///< the size to begin with
    double (*work)(int size);
};

/// One list for each subject. A new subject adds its list here and to the one in omtRatios.cpp.
std::vector<Ratio> readAndMergeRatios();
std::vector<Ratio> oldAndNewRatios();
std::vector<Ratio> convertValuesRatios();
std::vector<Ratio> entityTypesRatios();
std::vector<Ratio> modelEngineRatios();
std::vector<Ratio> codecEngineRatios();
std::vector<Ratio> batchDecodeRatios();
std::vector<Ratio> coldStartRatios();
std::vector<Ratio> columnsRatios();

/// The same for omt_growth, in growth.cpp.
std::vector<Growth> readAndMergeGrowth();
std::vector<Growth> convertValuesGrowth();
std::vector<Growth> entityTypesGrowth();

/// A file of the folder that OMT_MODELS names; empty if there is no such file.
std::filesystem::path modelPath(const char* file);

/// Lets the allocator do now what it puts off after many small blocks were freed, as after a read:
/// it would otherwise do it at the next large request, whoever makes that.
inline void settleHeap()
{
    void* volatile block = std::malloc(std::size_t{1} << 20);
    std::free(block);
}

/// The seconds that a call takes, from a settled heap to a settled heap: each piece of work pays
/// for what it leaves to the allocator, and for nothing that another left.
template <typename Call>
double secondsOf(Call call)
{
    settleHeap();
    const auto start = std::chrono::steady_clock::now();
    call();
    settleHeap();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace ratios
