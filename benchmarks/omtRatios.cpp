// SPDX-License-Identifier: Apache-2.0
// Prints "name ratio" for every ratio. All work is done in one process, the two sides of a ratio
// once for each repetition and in random order, so that what disturbs the machine disturbs both
// alike.
#include "ratio.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <regex>
#include <string_view>

namespace
{

using ratios::Ratio;

const std::string theBaseline = "/baseline";
const std::string theCandidate = "/candidate";

/// Keeps the time of every repetition and prints nothing itself.
class Times : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                myTimes[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
    }

    double medianOf(const std::string& name)
    {
        std::vector<double>& times = myTimes.at(name);
        std::sort(times.begin(), times.end());
        const std::size_t middle = times.size() / 2;
        return times.size() % 2 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
    }

private:
    std::map<std::string, std::vector<double>> myTimes;
};

void registerWork(const std::string& name, ratios::Work work)
{
    const auto repeat = [work](benchmark::State& state)
    {
        for (auto _ : state) state.SetIterationTime(work());
    };
    benchmark::RegisterBenchmark(name.c_str(), repeat)->UseManualTime()->Iterations(1);
}

std::vector<Ratio> registerRatios()
{
    std::vector<Ratio> all = ratios::readAndMergeRatios();
    for (const auto& list :
         {ratios::oldAndNewRatios(), ratios::convertValuesRatios(), ratios::entityTypesRatios(),
          ratios::modelEngineRatios(), ratios::codecEngineRatios(), ratios::batchDecodeRatios(),
          ratios::coldStartRatios(), ratios::columnsRatios()})
        all.insert(all.end(), list.begin(), list.end());
    std::vector<Ratio> registered;
    for (const Ratio& ratio : all)
    {
        if (ratio.modelFile && ratios::modelPath(ratio.modelFile).empty())
        {
            std::fprintf(stderr, "%s skipped\n", ratio.name);
            continue;
        }
        registerWork(ratio.name + theBaseline, ratio.baseline);
        registerWork(ratio.name + theCandidate, ratio.candidate);
        registered.push_back(ratio);
    }
    return registered;
}

/// One pair at a time: what another leaves in the heap does not weigh on this one.
double measured(const Ratio& ratio)
{
    Times times;
    std::string pair(1, '^');
    pair.append(ratio.name).append(1, '/');
    benchmark::RunSpecifiedBenchmarks(&times, pair);
    return times.medianOf(ratio.name + theCandidate) / times.medianOf(ratio.name + theBaseline);
}

void print(const char* name, double ratio)
{
    std::printf("%s %.3f\n", name, ratio);
    std::fflush(stdout);
}

/// Prints every ratio, and after the last of those that have a mean this mean.
void measureAll(const std::vector<Ratio>& wanted)
{
    double logarithms = 0;
    int count = 0;
    for (std::size_t i = 0; i < wanted.size(); ++i)
    {
        const char* const mean = wanted[i].mean;
        const double ratio = measured(wanted[i]);
        print(wanted[i].name, ratio);
        logarithms += std::log(ratio);
        ++count;
        const char* const next = i + 1 < wanted.size() ? wanted[i + 1].mean : nullptr;
        if (mean && next && std::string_view(mean) == next) continue;
        if (mean) print(mean, std::exp(logarithms / count));
        logarithms = 0;
        count = 0;
    }
}

}  // namespace

int main(int argc, char* argv[])
{
    // The library's defaults for us, before what the user says.
    std::string repetitions = "--benchmark_repetitions=40";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, {repetitions.data(), interleaving.data()});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    const std::regex wanted(benchmark::GetBenchmarkFilter());
    std::vector<Ratio> all = registerRatios();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&wanted](const Ratio& ratio)
                             { return !std::regex_search(ratio.name, wanted); }),
              all.end());
    measureAll(all);
    return 0;
}
